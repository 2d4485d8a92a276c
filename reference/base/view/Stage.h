#pragma once

#include <vector>

class GModel;
class GView;

/// Who meets whom in this process: the open views and the models that are hooked to views, each in order of arrival.
/// Both run the host's code and may come and go while they do, so walk over copies and ask before each step.
struct Stage {
  std::vector<GView*> views;
  std::vector<GModel*> models;

  static Stage& instance();

  bool is_open(const GView* view) const;
  bool is_hooked(const GModel* model) const;
  void leave(const GView* view);
  void leave(const GModel* model);
};
