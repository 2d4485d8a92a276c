#include "platform/base/PickRectangle.h"
#include "tests/base/FakePicks.h"
#include "tests/base/Frame.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <random>

namespace {

// Reports the same records again and again, and now and then others of the same entities.
class RepeatingPicker : public GPicker {
public:
  struct Report {
    int id;
    float distance;
    bool exact;
  };

  RepeatingPicker() {
    for (int id = 0; id < entities; ++id)
      kept_.push_back(new FakeEntity("Hex", id));
    GPickerBase::register_picker("Hex", this);
  }
  ~RepeatingPicker() override {
    GPickerBase::unregister_picker("Hex", this);
    for (FakeEntity* each : kept_)
      each->Delete();
  }
  void compute_pick(vtkRenderer*, float, float) override {}
  void compute_pre_select(vtkRenderer*, float, float) override {}
  void compute_pick_by_bounds(vtkRenderer*, PickBounds*) override {
    const float nowhere[3] = {0, 0, 0};
    for (std::size_t i = 0; i < reports.size(); ++i) {
      const Report& each = reports[i];
      FakeEntity* const kept = kept_[std::size_t(each.id)];
      FakeEntity* const entity = i % 11 == 0 ? new FakeEntity("Hex", each.id) : kept;
      add_to_selection_buffer(entity, nowhere, each.distance, each.exact);
      if (entity != kept) entity->Delete();
    }
  }

  static constexpr int entities = 40;
  std::vector<Report> reports;

private:
  std::vector<FakeEntity*> kept_;
};

TEST(SelectionBuffer, GivenRecordsReportedAgainInAnyOrder_WhenPickedByARegion_ThenEachEntityKeepsItsBestReport) {
  OffscreenView view;
  RepeatingPicker picker;
  std::mt19937 random(7);
  const double corner[2] = {0, 0};
  PickRectangle region(corner, corner);
  for (int round = 0; round < 60; ++round) {
    // Piles that grow, as regions over many owners report them, and every third time no order at all.
    picker.reports.clear();
    std::vector<int> pile;
    for (int group = 0; group < 30; ++group) {
      for (int i = 0; i < 4; ++i)
        pile.insert(pile.begin() + std::ptrdiff_t(random() % (pile.size() + 1)), int(random() % picker.entities));
      for (const int id : pile)
        picker.reports.push_back({id, 0.1F * float(random() % 4), random() % 3 == 0});
    }
    if (round % 3 == 0) std::shuffle(picker.reports.begin(), picker.reports.end(), random);

    std::vector<RepeatingPicker::Report> best;
    for (const auto& each : picker.reports) {
      const auto known =
          std::find_if(best.begin(), best.end(), [&each](const auto& other) { return other.id == each.id; });
      if (known == best.end())
        best.push_back(each);
      else if (each.distance < known->distance || (each.distance == known->distance && each.exact && !known->exact))
        *known = each;
    }
    ASSERT_TRUE(GPickerBase::pick_by_bounds(view.get(), region));
    const auto& found = GPickerBase::possible_selections();
    ASSERT_THAT(found, testing::SizeIs(best.size()));
    for (std::size_t i = 0; i < best.size(); ++i) {
      EXPECT_EQ(found[i].entity()->id(), best[i].id);
      EXPECT_EQ(found[i].distance(), best[i].distance);
      EXPECT_EQ(found[i].is_exact(), best[i].exact);
    }
  }
}

} // namespace
