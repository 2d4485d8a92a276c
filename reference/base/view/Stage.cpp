#include "reference/base/view/Stage.h"

#include <algorithm>

namespace {

template <class T> bool contains(const std::vector<T*>& list, const T* wanted) {
  return std::find(list.begin(), list.end(), wanted) != list.end();
}

template <class T> void remove(std::vector<T*>& list, const T* unwanted) {
  list.erase(std::remove(list.begin(), list.end(), unwanted), list.end());
}

} // namespace

// The first view or model makes it, before its own constructor is done: so whatever the host keeps in static storage
// goes first.
Stage& Stage::instance() {
  static Stage stage;
  return stage;
}

bool Stage::is_open(const GView* view) const { return contains(views, view); }

bool Stage::is_hooked(const GModel* model) const { return contains(models, model); }

void Stage::leave(const GView* view) { remove(views, view); }

void Stage::leave(const GModel* model) { remove(models, model); }
