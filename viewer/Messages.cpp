#include "viewer/Messages.h"

#include <vtkNew.h>
#include <vtkObjectFactory.h>
#include <vtkOutputWindow.h>

#include <iostream>
#include <utility>

namespace viewer {
namespace {

class MessageSink : public vtkOutputWindow {
public:
  static MessageSink* New();
  vtkTypeMacro(MessageSink, vtkOutputWindow) // NOLINT(modernize-use-override): the macro's
  void DisplayText(const char* text) override { say(text); }
  void DisplayWarningText(const char* text) override { say(text); }
  void DisplayErrorText(const char* text) override {
    errors.push_back(one_line(text));
    say(text);
  }

  bool verbose = false;
  std::vector<std::string> errors;

protected:
  MessageSink() = default;

private:
  void say(const char* text) const {
    if (verbose) tell(text);
  }
};
vtkStandardNewMacro(MessageSink)

MessageSink* sink() {
  static vtkNew<MessageSink> only;
  return only;
}

} // namespace

void catch_library_messages(bool verbose) {
  sink()->verbose = verbose;
  vtkOutputWindow::SetInstance(sink());
}

std::vector<std::string> take_errors() { return std::exchange(sink()->errors, {}); }

std::string one_line(std::string text) {
  for (char& c : text)
    if (static_cast<unsigned char>(c) < ' ' || c == '\x7f') c = ' ';
  return text;
}

void tell(const std::string& text) { std::cerr << "orbel_view: " << one_line(text) << std::endl; }

} // namespace viewer
