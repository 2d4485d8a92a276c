#include "viewer/ViewerWindow.h"

#include "viewer/Messages.h"
#include "viewer/OptionValues.h"
#include "viewer/PickKinds.h"
#include "viewer/Scene.h"

#include <vtkRenderWindowInteractor.h>

#include <utility>

// What the keys do.

namespace viewer {
namespace {

constexpr double usual_shrink = 0.8;
constexpr double clip_step = 0.05;
constexpr double turn_step = 15;
constexpr double zoom_step = 1.25;

const char* on_or_off(bool on) { return on ? "on" : "off"; }

} // namespace

void ViewerWindow::bind(std::vector<std::string> keys, const std::string& label, const std::string& text,
                        std::function<void(const std::string& key)> action) {
  bindings_.push_back({std::move(keys), label, text, std::move(action)});
}

void ViewerWindow::bind_mode_keys() {
  bind({"1", "2", "3", "4", "5"}, "1 2 3 4 5", "wireframe, hidden lines, dimmed hidden lines, shaded, translucent",
       [this](const std::string& key) {
         change_display([&](DisplayOptions& display) {
           display.render_mode = static_cast<OBUtil::RenderMode>(OBUtil::Wireframe + key[0] - '1');
           return std::string(render_mode_name(display.render_mode));
         });
       });
}

void ViewerWindow::bind_display_keys() {
  const auto toggle = [this](const char* what, bool DisplayOptions::*setting) {
    return [this, what, setting](const std::string&) {
      change_display([&](DisplayOptions& display) {
        display.*setting = !(display.*setting);
        return std::string(what) + on_or_off(display.*setting);
      });
    };
  };
  bind({"e"}, "E", "edges on and off", toggle("edges ", &DisplayOptions::edges));
  bind({"n"}, "N", "nodes on and off", toggle("nodes ", &DisplayOptions::nodes));
  bind({"s"}, "S", "shrink elements, or not", [this](const std::string&) {
    change_display([&](DisplayOptions& display) {
      const double factor = options_.display.shrink < 1 ? options_.display.shrink : usual_shrink;
      display.shrink = display.shrink < 1 ? 1 : factor;
      return std::string("shrink ") + on_or_off(display.shrink < 1);
    });
  });
  bind({"k"}, "K", "colour by kind of element, or by owner", [this](const std::string&) {
    change_display([&](DisplayOptions& display) {
      display.color_by = display.color_by == ColorBy::Owner ? ColorBy::Kind : ColorBy::Owner;
      return std::string("colour by ") + (display.color_by == ColorBy::Owner ? "owner" : "kind");
    });
  });
}

void ViewerWindow::bind_label_keys() {
  bind({"l"}, "L", "ids of what can be picked: local, global, none", [this](const std::string&) { turn_labels(); });
  bind({"Shift+l"}, "Shift+L", "no ids at all", [this](const std::string&) {
    change_display([](DisplayOptions& display) {
      display.labels = LabelOptions();
      return std::string("no labels");
    });
  });
}

void ViewerWindow::bind_clip_keys() {
  bind({"p"}, "P", "clipping plane on and off", [this](const std::string&) {
    clip_.toggle();
    apply_clip();
  });
  bind({"PageUp", "PageDown"}, "PageUp PageDown", "move the clipping plane", [this](const std::string& key) {
    clip_.move(key == "PageUp" ? clip_step : -clip_step);
    apply_clip();
  });
  bind({"a"}, "A", "turn the clipping plane to the next axis", [this](const std::string&) {
    clip_.turn();
    apply_clip();
  });
}

void ViewerWindow::bind_view_keys() {
  bind({"i"}, "I", "look from the corner", [this](const std::string&) { look_from(ViewFrom::Iso); });
  bind({"x", "y", "z"}, "X Y Z", "look from +x, +y, +z", [this](const std::string& key) {
    look_from(key == "x" ? ViewFrom::PlusX : key == "y" ? ViewFrom::PlusY : ViewFrom::PlusZ);
  });
  bind({"Shift+x", "Shift+y", "Shift+z"}, "Shift+X Y Z", "look from -x, -y, -z", [this](const std::string& key) {
    look_from(key == "Shift+x" ? ViewFrom::MinusX : key == "Shift+y" ? ViewFrom::MinusY : ViewFrom::MinusZ);
  });
  bind({"f"}, "F", "fit the visible mesh into the window", [this](const std::string&) { fit(); });
  bind({"v"}, "V", "parallel or perspective projection", [this](const std::string&) { toggle_parallel(); });
  bind({"Left", "Right", "Up", "Down"}, "Arrows", "turn", [this](const std::string& key) {
    turn(key == "Left"    ? -turn_step
         : key == "Right" ? turn_step
                          : 0,
         key == "Down" ? -turn_step
         : key == "Up" ? turn_step
                       : 0);
  });
  bind({"+", "-"}, "+ -", "zoom", [this](const std::string& key) { zoom(key == "+" ? zoom_step : 1 / zoom_step); });
}

void ViewerWindow::bind_owner_keys() {
  bind({"Tab", "Shift+Tab"}, "Tab Shift+Tab", "next and previous owner into focus",
       [this](const std::string& key) { move_focus(key == "Tab" ? 1 : -1); });
  bind({"Space", "Return"}, "Space Return", "the owner in focus: hide or show it; show it alone",
       [this](const std::string& key) {
         if (!owners_.focus()) {
           say("no owner is in focus: Tab takes one");
           return;
         }
         const std::size_t focus = *owners_.focus();
         const std::string name = "'" + scene_.owners()[focus].name + "'";
         const bool shows = key == "Return" || !scene_.is_visible(focus);
         if (key == "Return")
           owners_.show_alone(focus);
         else
           owners_.show(focus, shows);
         owners_changed((key == "Return" ? "alone: " : shows ? "shown: " : "hidden: ") + name);
       });
  bind({"m", "Shift+m"}, "M Shift+M", "the owners of what is picked: hide them; show them alone",
       [this](const std::string& key) { key == "m" ? hide_picked() : isolate_picked(); });
  bind({"u"}, "U", "show all owners", [this](const std::string&) {
    owners_.show_all();
    owners_changed("all owners shown");
  });
  bind({"BackSpace", "Ctrl+z"}, "Backspace Ctrl+Z", "undo hiding and showing",
       [this](const std::string&) { owners_changed(owners_.undo() ? "undone" : "nothing to undo"); });
  bind({"g"}, "G", "legend on and off; click in it: hide or show, Shift+click: alone, wheel: scroll",
       [this](const std::string&) {
         legend_.set_visible(!legend_.is_visible());
         say(std::string("legend ") + on_or_off(legend_.is_visible()));
       });
}

void ViewerWindow::bind_pick_keys() {
  bind({"6", "7", "8", "9", "Ctrl+6", "Ctrl+7", "Ctrl+8", "Ctrl+9"}, "6 7 8 9",
       "pick nodes, edges, faces, solids; with Ctrl: besides the others, or no longer",
       [this](const std::string& key) { toggle_kind(key); });
  bind({"0"}, "0", "pick all of these", [this](const std::string&) { set_filter(all_kinds_filter()); });
  bind({"/", "Ctrl+f"}, "/", "find by id: 12, hex:1,5,9-12, node:7, quad@global:3", [this](const std::string&) {
    typed_ = "";
    say("find: _");
  });
  bind({"Ctrl+s"}, "Ctrl+S", "write what is picked to orbel_view-picked-001.json and so on",
       [this](const std::string&) { save_picks(); });
  bind({"j"}, "J", "hover on and off", [this](const std::string&) { toggle_hover(); });
  bind({"Escape"}, "Esc", "pick nothing; end what was begun", [this](const std::string&) {
    if (!overlay_.shows_help()) {
      clear_picks();
      return;
    }
    overlay_.end_help();
    render();
  });
}

void ViewerWindow::bind_region_keys() {
  bind({"b", "o", "c"}, "B O C", "pick a box, a polygon, a circle: drag, or click corners and press Return",
       [this](const std::string& key) {
         start_region(key == "b"   ? PickRequest::Shape::Box
                      : key == "c" ? PickRequest::Shape::Circle
                                   : PickRequest::Shape::Polygon);
       });
  bind({"d", "w"}, "D W", "such picks take hidden entities too; only whole ones", [this](const std::string& key) {
    bool& setting = key == "d" ? picking_.through : picking_.whole;
    setting = !setting;
    say(std::string(key == "d" ? "regions take hidden entities: " : "regions take only what is wholly inside: ") +
        on_or_off(setting));
  });
}

void ViewerWindow::bind_window_keys() {
  bind({"t"}, "T", "take a picture: orbel_view-001.png and so on", [this](const std::string&) { take_picture(); });
  bind({"r"}, "R", "everything as at the start", [this](const std::string&) { reset(); });
  bind({"h"}, "H", "this list, page by page where it is long", [this](const std::string&) {
    overlay_.turn_help();
    render();
  });
  bind({"q", "Ctrl+q"}, "Q", "quit", [this](const std::string&) { interactor_->TerminateApp(); });
  bind({}, "", "", nullptr);
  bind({}, "Drag", "left rotates, middle or Shift+left pans, wheel or right zooms", nullptr);
  bind({}, "Click", "picks; Ctrl adds, Shift removes; again: what lies below; double: the centre", nullptr);
}

void ViewerWindow::key(const std::string& key, char character) {
  forget_click();
  if (typed_) {
    type(key, character);
    return;
  }
  if (region_.is_active() && region_key(key)) return;
  if (const KeyBinding* const binding = find_binding(bindings_, key)) binding->action(key);
}

// True: the key was for the region that is being drawn.
bool ViewerWindow::region_key(const std::string& key) {
  const bool is_return = key == "Return" || key == "Ctrl+Return";
  if (key != "Escape" && key != "BackSpace" && !is_return) return false;
  if (key == "Escape") {
    region_.cancel();
    say("");
  } else if (key == "BackSpace") {
    region_.remove_corner();
    render();
  } else if (region_.close()) {
    finish_region(change_of(interactor_->GetShiftKey() != 0, interactor_->GetControlKey() != 0));
  } else {
    say(region_.hint());
  }
  return true;
}

void ViewerWindow::type(const std::string& key, char character) {
  if (key == "Return") {
    const std::string text = *std::exchange(typed_, std::nullopt);
    find(text);
    return;
  }
  if (key == "Escape") {
    typed_.reset();
    say("");
    return;
  }
  if (key == "BackSpace") {
    if (!typed_->empty()) typed_->pop_back();
  } else if (character > ' ' && character < '\x7f') {
    *typed_ += character;
  }
  overlay_.set_message(one_line("find: " + *typed_ + "_"));
  render_soon();
}

} // namespace viewer
