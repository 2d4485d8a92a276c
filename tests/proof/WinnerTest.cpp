#include "platform/base/GPickerBase.h"
#include "platform/base/MultiCellPicker.h"
#include "platform/base/PickedEntity.h"
#include "tests/proof/PickSettings.h"
#include "tests/proof/Scene.h"

#include <gtest/gtest.h>

#include <vtkRenderer.h>

#include <cmath>
#include <cstdio>
#include <map>
#include <unordered_map>

using namespace proof;

namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr int kept_of = 40; // a sanitized pick takes longer
#else
constexpr int kept_of = 1;
#endif
constexpr unsigned seed = 20250301;
constexpr long pixels_wanted = 1'000'000;
// The default tolerance in a window of 1280 by 720 pixels.
constexpr double usual_pixels = 3.67;
// How many times as large, at most, a scene's nearest part is drawn as its middle.
constexpr double nearness = 2;

const std::vector<std::string> all_but_nodes_and_edges = {
    "Hex", "Tet", "Pyramid", "Wedge", "Knife", "Superelement", "Face", "Tri", "ThreeDimElement", "TwoDimElement"};

/// What becomes of a pixel.
enum Verdict {
  SameElement,
  BothEmpty,
  OnBoundary,   // they differ, within a pixel of where two ids meet
  OnCurvedFace, // they differ on a curved quadratic face
  BesideMesh,   // nothing is drawn, but something is within the tolerance
  BesideDot,    // a superelement wins, whose dot is within the tolerance
  Unexplained,
  VerdictCount
};
const char* const verdict_names[] = {"same element",    "both empty",     "on a boundary", "on a curved face",
                                     "beside the mesh", "beside its dot", "UNEXPLAINED"};
using Counts = std::array<long, VerdictCount>;

double half_diagonal(vtkRenderer* renderer) { return 0.5 * std::hypot(renderer->GetSize()[0], renderer->GetSize()[1]); }

/// Sets the tolerance; gives it in pixels, as the next one does.
double use_tolerance(double pixels, vtkRenderer* renderer) {
  MultiCellPicker::SetPickToleranceByWindowDiagonal(pixels / half_diagonal(renderer));
  return pixels;
}

double use_default_tolerance(const PickSettings& settings, vtkRenderer* renderer) {
  MultiCellPicker::SetPickToleranceByWindowDiagonal(settings.tolerance());
  return settings.tolerance() * half_diagonal(renderer);
}

// Where in its pixel a pick is made, across and up: a cursor has whole coordinates, which are the pixel's corner.
constexpr float middle = 0.5F;
constexpr float corner = 0.0F;

/// The pixels of one view and the elements drawn in them.
class View {
public:
  View(Stage& stage, std::size_t index, double dot_size, float place)
      : stage_(stage), index_(index), place_(place), look_(stage.scene().views[index]),
        ids_(draw_ids(stage.scene(), stage.shown(), look_, dot_size)) {
    const auto& elements = stage.scene().mesh.elements;
    for (std::size_t i = 0; i < elements.size(); ++i)
      element_of_[elements[i].handle.value] = static_cast<int>(i);
  }

  /// Calls `visit(x, y)` for each pixel of the view, or for some of them, chosen at random.
  template <class Visit> void for_each_pixel(int of, Visit visit) const {
    const int x0 = int(look_.viewport[0] * width());
    const int y0 = int(look_.viewport[1] * height());
    unsigned state = seed;
    for (int y = y0; y < int(look_.viewport[3] * height()); ++y) {
      for (int x = x0; x < int(look_.viewport[2] * width()); ++x) {
        state = state * 1664525u + 1013904223u;
        if (of == 1 || (state >> 16) % unsigned(of) == 0) visit(x, y);
      }
    }
  }

  /// The element drawn in the pixel; outside the view there is none.
  int drawn(int x, int y) const {
    if (x < 0 || y < 0 || x >= width() || y >= height()) return -1;
    return ids_[std::size_t(y) * std::size_t(width()) + std::size_t(x)];
  }
  /// The element that wins a pick in the pixel, or -1; -2 for a stranger.
  int picked(int x, int y) const {
    if (!GPickerBase::pick(stage_.view(index_), float(x) + place_, float(y) + place_)) return -1;
    const auto found = element_of_.find(GPickerBase::picked().front().entity()->handle());
    return found == element_of_.end() ? -2 : found->second;
  }
  /// Whether all of the pixel and those around it (four, or eight) show the same.
  bool is_uniform(int x, int y, bool eight) const {
    for (int dy = -1; dy <= 1; ++dy)
      for (int dx = -1; dx <= 1; ++dx)
        if ((eight || dx == 0 || dy == 0) && drawn(x + dx, y + dy) != drawn(x, y)) return false;
    return true;
  }
  bool is_curved(int element) const { return element >= 0 && elements()[std::size_t(element)].curved; }
  /// Whether the element is a superelement.
  bool is_dotted(int element) const {
    return element >= 0 && elements()[std::size_t(element)].type == Tarn::Superelement;
  }

  /// Whether a pixel no further away than `reach` shows an element for which `is` holds.
  template <class Is> bool is_beside(int x, int y, double reach, Is is) const {
    const int far = int(std::ceil(reach));
    for (int dy = -far; dy <= far; ++dy)
      for (int dx = -far; dx <= far; ++dx)
        if (dx * dx + dy * dy <= reach * reach && is(drawn(x + dx, y + dy))) return true;
    return false;
  }

  /// `reach`: how far the tolerance reaches, in pixels.
  Verdict judge(int x, int y, bool eight, double reach) const {
    const int is = picked(x, y);
    const int should = drawn(x, y);
    if (is == should) return is < 0 ? BothEmpty : SameElement;
    if (!is_uniform(x, y, eight)) return OnBoundary;
    if (is_curved(is) || is_curved(should)) return OnCurvedFace;
    if (should < 0 && is_beside(x, y, reach + 1, [](int element) { return element >= 0; })) return BesideMesh;
    if (is_dotted(is) && is_beside(x, y, reach + 1, [is](int element) { return element == is; })) return BesideDot;
    return Unexplained;
  }

private:
  int width() const { return stage_.scene().width; }
  int height() const { return stage_.scene().height; }
  const std::vector<Element>& elements() const { return stage_.scene().mesh.elements; }

  Stage& stage_;
  std::size_t index_;
  float place_;
  const Look& look_;
  std::vector<int> ids_;
  std::unordered_map<unsigned long long, int> element_of_;
};

long sum(const Counts& counts) {
  long total = 0;
  for (const long count : counts)
    total += count;
  return total;
}

void print(const std::string& title, const Counts& counts) {
  std::printf("%-44s", title.c_str());
  for (std::size_t i = 0; i < VerdictCount; ++i)
    std::printf(" %8ld", counts[i]);
  std::printf("\n");
}

// Judges the pixels of every scene, prints the table and gives the sums.
Counts judge_all(const std::string& title, int of, float place, double dot_size, bool eight,
                 const std::function<double(const PickSettings&, vtkRenderer*)>& set_tolerance) {
  Counts total{};
  std::printf("%-44s", title.c_str());
  for (const char* name : verdict_names)
    std::printf(" | %s", name);
  std::printf("\n");
  for (Scene& scene : all_scenes()) {
    const PickSettings settings;
    GPickerBase::set_filter(all_but_nodes_and_edges);
    Stage stage(scene);
    Counts counts{};
    for (std::size_t i = 0; i < stage.view_count(); ++i) {
      // The tolerance is measured at the focal point; nearer the eye it is more pixels.
      const double reach = nearness * set_tolerance(settings, stage.view(i)->renderer());
      const View view(stage, i, dot_size, place);
      view.for_each_pixel(of, [&](int x, int y) {
        const Verdict verdict = view.judge(x, y, eight, reach);
        ++counts[verdict];
        if (verdict == Unexplained && counts[verdict] <= 3)
          ADD_FAILURE() << scene.name << ", pixel " << x << " " << y << ": picked " << view.picked(x, y) << ", drawn "
                        << view.drawn(x, y);
      });
    }
    print(scene.name, counts);
    EXPECT_GT(counts[SameElement], sum(counts) / 10) << scene.name << ": the mesh fills too little of its view";
    for (std::size_t i = 0; i < VerdictCount; ++i)
      total[i] += counts[i];
  }
  print("sum of " + std::to_string(sum(total)), total);
  return total;
}

TEST(Winner, GivenAQuarterOfAPixel_WhenEveryPixelIsPicked_ThenOnlyBoundariesAndCurvedFacesDiffer) {
  const Counts counts =
      judge_all("tolerance 0.25 pixels", kept_of, middle, 1, true,
                [](const PickSettings&, vtkRenderer* renderer) { return use_tolerance(0.25, renderer); });
  EXPECT_GE(sum(counts), kept_of == 1 ? pixels_wanted : pixels_wanted / kept_of / 2);
  EXPECT_EQ(counts[BesideMesh], 0);
  EXPECT_EQ(counts[BesideDot], 0);
  EXPECT_EQ(counts[Unexplained], 0);
}

TEST(Winner, GivenWholeCoordinates_WhenPixelsArePicked_ThenOnlyBoundariesAndCurvedFacesDiffer) {
  const Counts counts =
      judge_all("tolerance 0.25 pixels, in the corner", 8 * kept_of, corner, 1, true,
                [](const PickSettings&, vtkRenderer* renderer) { return use_tolerance(0.25, renderer); });
  EXPECT_EQ(counts[BesideMesh], 0);
  EXPECT_EQ(counts[BesideDot], 0);
  EXPECT_EQ(counts[Unexplained], 0);
}

TEST(Winner, GivenTheDefaultTolerance_WhenPixelsArePicked_ThenTheDrawnElementWinsWithinItsFace) {
  const Counts counts = judge_all("default tolerance", 2 * kept_of, middle, 1, false, use_default_tolerance);
  EXPECT_EQ(counts[Unexplained], 0);
}

TEST(Winner, GivenTheToleranceOfAUsualWindow_WhenPixelsArePicked_ThenTheDrawnElementWinsWithinItsFace) {
  const Counts counts =
      judge_all("tolerance 3.67 pixels", 8 * kept_of, middle, 6, false,
                [](const PickSettings&, vtkRenderer* renderer) { return use_tolerance(usual_pixels, renderer); });
  EXPECT_EQ(counts[Unexplained], 0);
}

} // namespace
