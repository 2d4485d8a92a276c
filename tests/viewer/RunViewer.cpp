#include "RunViewer.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace run_viewer {
namespace {

constexpr unsigned patience_s = 60;

[[noreturn]] void become_viewer(const std::vector<std::string>& arguments, const Environment& environment,
                                const std::string& out, const std::string& err) {
  dup2(open("/dev/null", O_RDONLY), STDIN_FILENO);
  dup2(open(out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDOUT_FILENO);
  dup2(open(err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDERR_FILENO);
  for (const auto& [name, value] : environment)
    value.empty() ? unsetenv(name.c_str()) : setenv(name.c_str(), value.c_str(), 1);
  std::vector<char*> list = {const_cast<char*>(ORBEL_VIEW_PROGRAM)};
  for (const std::string& argument : arguments)
    list.push_back(const_cast<char*>(argument.c_str()));
  list.push_back(nullptr);
  alarm(patience_s);
  execv(list[0], list.data());
  _exit(126);
}

Outcome run_once(const std::vector<std::string>& arguments, const Environment& environment) {
  const std::string folder = scratch_folder();
  const std::string out = folder + "/out", err = folder + "/err";
  const pid_t child = fork();
  if (child == 0) become_viewer(arguments, environment, out, err);
  int status = 0;
  waitpid(child, &status, 0);
  Outcome run = {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), contents(out), contents(err)};
  std::filesystem::remove_all(folder);
  return run;
}

// LeakSanitizer looks at the ending process from a thread of its own, which crashes on some runs, presumably on threads
// of the software renderer that have just ended. It reports that, and no leak, as its failure.
bool leak_check_crashed(const Outcome& run) {
  return run.err.find("LeakSanitizer has encountered a fatal error") != std::string::npos;
}

} // namespace

Outcome run_orbel_view(const std::vector<std::string>& arguments, const Environment& environment) {
  const Outcome run = run_once(arguments, environment);
  if (!leak_check_crashed(run)) return run;
  Environment without_leak_check = environment;
  without_leak_check["ASAN_OPTIONS"] = "detect_leaks=0";
  return run_once(arguments, without_leak_check);
}

std::string mesh(const std::string& name) {
  const std::string sample = ORBEL_MESH_SAMPLES "/" + name;
  return std::filesystem::exists(sample) ? sample : ORBEL_MESH_TEST_DATA "/" + name;
}

std::string scratch_folder() {
  std::string pattern = testing::TempDir() + "orbel_view_XXXXXX";
  if (mkdtemp(pattern.data()) == nullptr) std::abort();
  return pattern;
}

std::string contents(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

} // namespace run_viewer
