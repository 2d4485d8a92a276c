#pragma once

#include <functional>
#include <string>
#include <vector>

class vtkRenderWindowInteractor;

namespace viewer {

/// A key and what it does.
struct KeyBinding {
  std::vector<std::string> keys; ///< as `pressed_key` gives them
  std::string label;             ///< the key or keys, for the help
  std::string text;              ///< what it does, for the help; empty where the line before tells it too
  std::function<void(const std::string& key)> action;
};

/// The key that was pressed last: "e", "Shift+x", "Ctrl+q", "Tab", "PageUp", "Space", "+" and so on.
std::string pressed_key(vtkRenderWindowInteractor* interactor);

/// The binding of the key, or null.
const KeyBinding* find_binding(const std::vector<KeyBinding>& bindings, const std::string& key);

/// The help: one line per binding, the labels in a column of their own.
std::vector<std::string> help_lines(const std::vector<KeyBinding>& bindings);
/// The letters before the second column.
std::size_t help_indent(const std::vector<KeyBinding>& bindings);

} // namespace viewer
