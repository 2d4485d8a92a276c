#include "viewer/KeyBindings.h"

#include <vtkRenderWindowInteractor.h>

#include <algorithm>
#include <cctype>
#include <map>

namespace viewer {
namespace {

// X11's names of keys that have a character or a second name.
const std::map<std::string, std::string>& usual_names() {
  static const std::map<std::string, std::string> names = {{"ISO_Left_Tab", "Tab"},
                                                           {"Prior", "PageUp"},
                                                           {"KP_Prior", "PageUp"},
                                                           {"Page_Up", "PageUp"},
                                                           {"Next", "PageDown"},
                                                           {"KP_Next", "PageDown"},
                                                           {"Page_Down", "PageDown"},
                                                           {"space", "Space"},
                                                           {"KP_Enter", "Return"},
                                                           {"plus", "+"},
                                                           {"equal", "+"},
                                                           {"KP_Add", "+"},
                                                           {"minus", "-"},
                                                           {"KP_Subtract", "-"},
                                                           {"slash", "/"},
                                                           {"KP_Divide", "/"}};
  return names;
}

} // namespace

std::string pressed_key(vtkRenderWindowInteractor* interactor) {
  const char* const symbol = interactor->GetKeySym();
  std::string key = symbol == nullptr ? "" : symbol;
  const auto usual = usual_names().find(key);
  if (usual != usual_names().end()) key = usual->second;
  const bool is_letter = key.size() == 1 && std::isalpha(static_cast<unsigned char>(key[0])) != 0;
  if (is_letter) key[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(key[0])));
  if (interactor->GetShiftKey() != 0 && (is_letter || key == "Tab")) key = "Shift+" + key;
  return interactor->GetControlKey() != 0 ? "Ctrl+" + key : key;
}

const KeyBinding* find_binding(const std::vector<KeyBinding>& bindings, const std::string& key) {
  for (const KeyBinding& binding : bindings)
    if (std::find(binding.keys.begin(), binding.keys.end(), key) != binding.keys.end()) return &binding;
  return nullptr;
}

std::vector<std::string> help_lines(const std::vector<KeyBinding>& bindings) {
  const std::size_t indent = help_indent(bindings);
  std::vector<std::string> lines;
  // Blanks at both ends, since the text's frame has no margin.
  for (const KeyBinding& binding : bindings)
    lines.push_back("  " + binding.label + std::string(indent - 2 - binding.label.size(), ' ') + binding.text + "  ");
  return lines;
}

std::size_t help_indent(const std::vector<KeyBinding>& bindings) {
  std::size_t width = 0;
  for (const KeyBinding& binding : bindings)
    width = std::max(width, binding.label.size());
  return width + 4;
}

} // namespace viewer
