#pragma once

#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace Tarn {
struct SMeshOwnerType;
}

namespace viewer {

class Scene;

/// Which owners of a scene are shown, with a way back, and which one is in focus.
class OwnerControl {
public:
  /// `scene` is borrowed. Nothing is in focus.
  explicit OwnerControl(Scene& scene);

  void show(std::size_t index, bool visible);
  void show_alone(std::size_t index);
  void show_all();
  /// Hides these owners, strangers and null apart. How many that hid.
  std::size_t hide(const std::set<Tarn::SMeshOwnerType*>& owners);
  /// Shows these owners and no others; nothing when none of them is the scene's. How many are shown by that.
  std::size_t show_alone(const std::set<Tarn::SMeshOwnerType*>& owners);
  /// As before the last change; false when there was none.
  bool undo();
  /// Remembers how things are before a change from elsewhere.
  void remember();

  std::size_t shown_count() const;
  const std::optional<std::size_t>& focus() const;
  /// Takes the next owner (`step` 1) or the one before (-1) into focus; false when there are none.
  bool move_focus(int step);
  void end_focus();

private:
  void set_visible(const std::vector<bool>& wanted);

  Scene& scene_;
  std::vector<std::vector<bool>> before_;
  std::optional<std::size_t> focus_;
};

} // namespace viewer
