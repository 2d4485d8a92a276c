#include "readers/QuietVtk.h"

#include "readers/Refusal.h"

#include <vtkObjectFactory.h>
#include <vtkOutputWindow.h>

#include <algorithm>
#include <cctype>

namespace readers {

namespace {

class Listener : public vtkOutputWindow {
public:
  static Listener* New();
  vtkTypeMacro(Listener, vtkOutputWindow)

  void DisplayText(const char*) override {}
  void DisplayWarningText(const char*) override {}
  void DisplayGenericWarningText(const char*) override {}
  void DisplayDebugText(const char*) override {}
  void DisplayErrorText(const char* text) override {
    if (first_error.empty() && text) first_error = text;
  }

  std::string first_error;
};

vtkStandardNewMacro(Listener)

// "ERROR: In FILE, line N\nvtkClass (0x1234): what is wrong" -> "what is wrong"
std::string without_source(const std::string& text) {
  const std::size_t address = text.find(" (0x");
  const std::size_t end = address == std::string::npos ? address : text.find("): ", address);
  return end == std::string::npos ? text : text.substr(end + 3);
}

// "what is wrong for file: PATH" -> "what is wrong"; elsewhere the path becomes "it".
std::string without_path(std::string text, const std::string& path) {
  for (const std::string& phrase : {" for file: " + path, " file: " + path, " file " + path, path}) {
    const std::size_t at = text.find(phrase);
    if (!path.empty() && at != std::string::npos) text.replace(at, phrase.size(), phrase == path ? "it" : "");
  }
  return text;
}

std::string in_one_line(const std::string& text) {
  std::string line;
  for (char c : text) {
    const bool blank = std::isspace(static_cast<unsigned char>(c)) != 0;
    if (blank && (line.empty() || line.back() == ' ')) continue;
    const bool printable = blank || std::isprint(static_cast<unsigned char>(c)) != 0;
    line += blank ? ' ' : printable ? c : '?';
  }
  while (!line.empty() && (line.back() == ' ' || line.back() == '.'))
    line.pop_back();
  constexpr std::size_t longest = 200;
  return line.substr(0, longest);
}

} // namespace

QuietVtk::QuietVtk() : before_(vtkOutputWindow::GetInstance()), listener_(vtkSmartPointer<Listener>::New()) {
  vtkOutputWindow::SetInstance(listener_);
}

QuietVtk::~QuietVtk() { vtkOutputWindow::SetInstance(before_); }

void QuietVtk::refuse_errors(const std::string& path) const {
  const std::string& error = static_cast<Listener*>(listener_.Get())->first_error;
  if (!error.empty()) throw Refusal(in_one_line(without_path(without_source(error), path)));
}

} // namespace readers
