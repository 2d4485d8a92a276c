// Where labels are drawn, how they look, and which are left out.

#include "tests/base/LabelScene.h"

#include <gtest/gtest.h>

#include <vtkImageData.h>
#include <vtkPointData.h>
#include <vtkStdString.h>
#include <vtkTextProperty.h>
#include <vtkTextRenderer.h>
#include <vtkUnsignedCharArray.h>

#include <cmath>
#include <limits>
#include <vector>

namespace {

using Point = std::array<double, 3>;

class LabelMapper : public testing::Test {
protected:
  LabelMapper() {
    look_along_z(view.renderer());
    view.renderer()->AddViewProp(labels.actor);
  }

  OffscreenView view;
  Labels labels;
};

// ------------------------------------------------------------------------------------------ places

TEST_F(LabelMapper, GivenALabelAnywhereInView_WhenDrawn_ThenItLiesRoundItsPoint) {
  struct Row {
    const char* text;
    Point place;
  };
  for (const bool parallel : {true, false}) {
    look_along_z(view.renderer(), parallel);
    for (const Row& row : {Row{"0", {0, 0, 0}}, Row{"42", {-0.5, 0.5, 0}}, Row{"1234567", {0.5, -0.5, 2}},
                           Row{"-80", {0.7, 0.3, -3}}, Row{"2147483647", {0, 0.6, 1}}}) {
      SCOPED_TRACE(row.text);
      labels.mapper->clear();
      labels.add(row.place, row.text);
      const PixelBox box = drawn_box(view.render());
      ASSERT_FALSE(box.empty());
      const auto pixel = pixel_of(view.renderer(), row.place);
      EXPECT_NEAR(box.x(), pixel[0], 2.0);
      EXPECT_NEAR(box.y(), pixel[1], 2.0);
      EXPECT_LE(box.height(), 16);
      const double digit = double(box.width() - 2) / double(std::string(row.text).size());
      EXPECT_GT(digit, 3.5);
      EXPECT_LT(digit, 9.0);
    }
  }
}

TEST_F(LabelMapper, GivenALabel_WhenTheCameraMovesOrTheWindowChangesItsSize_ThenItStaysAtItsPoint) {
  const Point place = {0.3, 0.2, 0.5};
  labels.add(place, "88");
  const auto expect_at_point = [&](const char* what) {
    SCOPED_TRACE(what);
    const PixelBox box = drawn_box(view.render());
    const auto pixel = pixel_of(view.renderer(), place);
    ASSERT_FALSE(box.empty());
    EXPECT_NEAR(box.x(), pixel[0], 2.0);
    EXPECT_NEAR(box.y(), pixel[1], 2.0);
  };
  expect_at_point("first");
  const auto before = pixel_of(view.renderer(), place);
  view.renderer()->GetActiveCamera()->Azimuth(40);
  expect_at_point("turned");
  EXPECT_GT(std::abs(pixel_of(view.renderer(), place)[0] - before[0]), 5.0);
  view.renderer()->GetActiveCamera()->SetParallelScale(0.6);
  expect_at_point("zoomed");
  view.window()->SetSize(420, 360);
  expect_at_point("larger");
  view.window()->SetSize(120, 90);
  expect_at_point("smaller");
  view.renderer()->GetActiveCamera()->SetWindowCenter(0.3, -0.2);
  expect_at_point("moved in the window");
}

TEST_F(LabelMapper, GivenALabelCutByTheBorder_WhenTheWindowGrowsBesideIt_ThenTheRestIsDrawn) {
  labels.add({1.48, 0, 0}, "8888");
  const PixelBox cut = drawn_box(view.render());
  EXPECT_EQ(cut.right, 299);
  // Twice the window at twice the scale, moved so that every point stays where it was from the lower left.
  view.window()->SetSize(600, 400);
  vtkCamera* camera = view.renderer()->GetActiveCamera();
  camera->SetParallelScale(2);
  camera->SetPosition(1.5, 1, 10);
  camera->SetFocalPoint(1.5, 1, 0);
  const PixelBox whole = drawn_box(view.render());
  EXPECT_EQ(whole.left, cut.left);
  EXPECT_EQ(whole.low, cut.low);
  EXPECT_GT(whole.right, 305);
}

TEST_F(LabelMapper, GivenALabelCutByTheCorner_WhenDrawn_ThenWhatIsLeftLooksAsItDoesInTheMiddle) {
  labels.add({0, 0, 0}, "2468"); // its point is in pixel 150, 100
  const Frame whole = view.render();
  labels.mapper->clear();
  labels.add({-1.48, -0.98, 0}, "2468"); // and now in 2, 2
  const Frame cut = view.render();
  int drawn = 0;
  for (int dy = -2; dy < 12; ++dy)
    for (int dx = -2; dx < 25; ++dx) {
      ASSERT_EQ(cut.at(2 + dx, 2 + dy), whole.at(150 + dx, 100 + dy)) << dx << ' ' << dy;
      drawn += !is_background(cut.at(2 + dx, 2 + dy));
    }
  EXPECT_GT(drawn, 50);
}

TEST_F(LabelMapper, GivenHowTextsLieToTheirPoints_WhenDrawn_ThenTheyLieLikeThat) {
  struct Row {
    const char* name;
    int horizontal, vertical;
    int side_x, side_y; // of the label, as seen from its point
  };
  const Row rows[] = {{"left", VTK_TEXT_LEFT, VTK_TEXT_CENTERED, 1, 0},
                      {"right", VTK_TEXT_RIGHT, VTK_TEXT_CENTERED, -1, 0},
                      {"bottom", VTK_TEXT_CENTERED, VTK_TEXT_BOTTOM, 0, 1},
                      {"top", VTK_TEXT_CENTERED, VTK_TEXT_TOP, 0, -1},
                      {"centred", VTK_TEXT_CENTERED, VTK_TEXT_CENTERED, 0, 0}};
  vtkTextProperty* style = labels.style;
  EXPECT_EQ(labels.mapper->GetTextProperty(), style);
  labels.add({0, 0, 0}, "8888");
  const auto pixel = pixel_of(view.renderer(), {0, 0, 0});
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    style->SetJustification(row.horizontal);
    style->SetVerticalJustification(row.vertical);
    const PixelBox box = drawn_box(view.render());
    ASSERT_FALSE(box.empty());
    EXPECT_NEAR(box.x() - pixel[0], row.side_x * box.width() / 2.0, 3.0);
    EXPECT_NEAR(box.y() - pixel[1], row.side_y * box.height() / 2.0, 5.0);
    EXPECT_GE(row.side_y * (box.y() - pixel[1]), 2.0 * std::abs(row.side_y));
  }
}

TEST_F(LabelMapper, GivenAViewportOfHalfTheWindow_WhenDrawn_ThenLabelsAreThereAndNowhereElse) {
  view.renderer()->SetViewport(0.5, 0.25, 1.0, 1.0);
  labels.add({0, 0, 0}, "7777");
  labels.add({-0.97, 0, 0}, "123456789"); // reaches over the border
  const Frame frame = view.render();
  PixelBox box(frame, is_green);
  ASSERT_FALSE(box.empty());
  EXPECT_GE(box.left, 150);
  const auto pixel = pixel_of(view.renderer(), {0, 0, 0});
  EXPECT_NEAR(pixel[0], 225, 1);
  EXPECT_NEAR(pixel[1], 125, 1);
  int near_point = 0;
  for (int y = 120; y < 130; ++y)
    for (int x = 212; x < 238; ++x)
      near_point += is_green(frame.at(x, y));
  EXPECT_GT(near_point, 10);
}

TEST_F(LabelMapper, GivenPointsOutOfView_WhenDrawn_ThenTheyAreLeftOut) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double infinity = std::numeric_limits<double>::infinity();
  const Point places[] = {{0, 0, 11},  {0, 0, 10},       {0, 0, 9.5},       {0, 0, -200},
                          {9, 0, 0},   {0, 5, 0},        {nan, 0, 0},       {0, nan, 0},
                          {0, 0, nan}, {infinity, 0, 0}, {0, -infinity, 0}, {1e300, 1e300, 1e300}};
  for (const bool parallel : {true, false}) {
    look_along_z(view.renderer(), parallel);
    labels.mapper->clear();
    for (const Point& place : places)
      labels.add(place, "888");
    EXPECT_TRUE(drawn_box(view.render()).empty());
    labels.add({0, 0, 0}, "888");
    EXPECT_FALSE(drawn_box(view.render()).empty());
  }
}

TEST_F(LabelMapper, GivenCamerasThatSeeNothing_WhenDrawn_ThenNothingIsAndItRecovers) {
  labels.add({0, 0, 0}, "888");
  vtkCamera* camera = view.renderer()->GetActiveCamera();
  camera->SetPosition(0, 0, 0.0);
  camera->SetFocalPoint(0, 0, -1e-9);
  view.render();
  look_along_z(view.renderer(), false);
  camera->SetPosition(0, 0, 0);
  camera->SetFocalPoint(0, 0, -1);
  EXPECT_TRUE(drawn_box(view.render()).empty()) << "the camera is on the point";
  look_along_z(view.renderer());
  view.renderer()->SetViewport(0.5, 0.5, 0.5, 0.5);
  view.render();
  view.renderer()->SetViewport(0, 0, 1, 1);
  EXPECT_FALSE(drawn_box(view.render()).empty());
}

// ------------------------------------------------------------------------------------------ looks

/// How much of each pixel a text covers, 0 to 255, row by row upwards.
struct Coverage {
  int width = 0, height = 0;
  std::vector<int> values;
  int at(int x, int y) const {
    if (x < 0 || y < 0 || x >= width || y >= height) return 0;
    return values[std::size_t(y) * std::size_t(width) + std::size_t(x)];
  }
};

Coverage coverage_by_vtk(const std::string& text, vtkTextProperty* style, int dpi) {
  vtkNew<vtkImageData> image;
  int size[2];
  EXPECT_TRUE(vtkTextRenderer::GetInstance()->RenderString(style, vtkStdString(text), image, size, dpi));
  auto* pixels = vtkUnsignedCharArray::SafeDownCast(image->GetPointData()->GetScalars());
  Coverage coverage{size[0], size[1], {}};
  for (int y = 0; y < size[1]; ++y)
    for (int x = 0; x < size[0]; ++x)
      coverage.values.push_back(pixels->GetValue(4 * (y * image->GetDimensions()[0] + x) + 3));
  return coverage;
}

/// Of green texts on white: the rim is black, so that red tells what is left of the background.
Coverage coverage_in(const Frame& frame) {
  Coverage coverage{frame.width, frame.height, {}};
  for (int y = 0; y < frame.height; ++y)
    for (int x = 0; x < frame.width; ++x)
      coverage.values.push_back((frame.at(x, y)[1] - frame.at(x, y)[0]) * 255 / 200);
  return coverage;
}

bool is_there(const Coverage& text, const Coverage& picture, int left, int low) {
  for (int y = -2; y < text.height + 2; ++y)
    for (int x = -2; x < text.width + 2; ++x)
      if (std::abs(text.at(x, y) - picture.at(left + x, low + y)) > 6) return false;
  return true;
}

TEST_F(LabelMapper, GivenATextOfOnePiece_WhenDrawn_ThenEachPixelIsFilledAsTheTextRendererDoes) {
  labels.style->SetFontSize(14);
  const std::array<double, 3> place = {0.21, -0.13, 0};
  for (const char* text : {"0", "7", "12", "345", "908", "node A", "W", "+-!"}) {
    SCOPED_TRACE(text);
    labels.mapper->clear();
    labels.add(place, text);
    const Coverage picture = coverage_in(view.render());
    const Coverage expected = coverage_by_vtk(text, labels.style, view.window()->GetDPI());
    const auto pixel = pixel_of(view.renderer(), place);
    int found = 0;
    for (int dy = -4; dy <= 4; ++dy)
      for (int dx = -2; dx <= 2; ++dx)
        found += is_there(expected, picture, int(pixel[0]) - expected.width / 2 + dx,
                          int(pixel[1]) - expected.height / 2 + dy);
    EXPECT_EQ(found, 1);
  }
}

TEST_F(LabelMapper, GivenALongNumber_WhenDrawn_ThenItIsWideAsItsDigitsAndEachDigitTells) {
  labels.add({0, 0, 0}, "1234567");
  const Frame first = view.render();
  for (const char* other : {"2234567", "1334567", "1233567", "1234467", "1234577", "1234568", "123456", "-1234567"}) {
    labels.mapper->clear();
    labels.add({0, 0, 0}, other);
    EXPECT_NE(view.render().pixels, first.pixels) << other;
  }
  labels.mapper->clear();
  labels.add({0, 0, 0}, "1234567");
  EXPECT_EQ(view.render().pixels, first.pixels);
}

TEST_F(LabelMapper, GivenAnyColor_WhenDrawn_ThenTextsAreFilledWithItOnARimThatContrasts) {
  struct Row {
    const char* name;
    TovanColor color;
    Frame::Color fill, rim;
  };
  const Row rows[] = {{"bright", TovanColor(250, 240, 80), {250, 240, 80}, {0, 0, 0}},
                      {"dark", TovanColor(40, 0, 60), {40, 0, 60}, {255, 255, 255}},
                      {"rather bright", TovanColor(150, 135, 90), {150, 135, 90}, {0, 0, 0}},
                      {"rather dark", TovanColor(120, 105, 150), {120, 105, 150}, {255, 255, 255}},
                      {"none given", TovanColor(), {250, 120, 0}, {0, 0, 0}}};
  vtkTextProperty* style = labels.style;
  style->SetFontSize(30);
  style->SetColor(250 / 255.0, 120 / 255.0, 0);
  view.renderer()->SetBackground(0.5, 0.5, 0.5);
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    labels.mapper->clear();
    labels.add({0, 0, 0}, "888", row.color);
    const Frame frame = view.render();
    EXPECT_GT(frame.count([&](const Frame::Color& c) { return is_near(c, row.fill, 3); }), 50);
    EXPECT_GT(frame.count([&](const Frame::Color& c) { return is_near(c, row.rim, 30); }), 50);
  }
}

TEST_F(LabelMapper, GivenOpacity_WhenDrawn_ThenTheBackgroundShowsThrough) {
  vtkTextProperty* style = labels.style;
  style->SetFontSize(30);
  labels.add({0, 0, 0}, "888");
  const auto is_full_green = [](const Frame::Color& c) { return is_near(c, {0, 200, 0}, 6); };
  EXPECT_GT(view.render().count(is_full_green), 50);
  style->SetOpacity(0.5);
  const Frame half = view.render();
  EXPECT_EQ(half.count(is_full_green), 0);
  EXPECT_GT(half.count([](const Frame::Color& c) { return is_near(c, {127, 228, 127}, 6); }), 50);
  style->SetOpacity(0);
  EXPECT_TRUE(drawn_box(view.render()).empty());
}

TEST_F(LabelMapper, GivenTwiceTheDpi_WhenDrawn_ThenLabelsAreTwiceAsLarge) {
  labels.add({0, 0, 0}, "8888");
  const PixelBox plain = drawn_box(view.render());
  view.window()->SetDPI(2 * view.window()->GetDPI());
  const PixelBox fine = drawn_box(view.render());
  EXPECT_NEAR(fine.width(), 2 * plain.width(), 5);
  EXPECT_NEAR(fine.height(), 2 * plain.height(), 4);
  EXPECT_NEAR(fine.x(), 150, 2);
  EXPECT_NEAR(fine.y(), 100, 2);
}

// ------------------------------------------------------------------------------------------ the list

TEST_F(LabelMapper, GivenEqualTextsAtEqualPoints_WhenDrawn_ThenOneOfThemIs) {
  vtkTextProperty* style = labels.style;
  style->SetOpacity(0.5); // two on top of each other would be darker
  labels.add({0, 0, 0}, "88");
  const Frame one = view.render();
  ASSERT_FALSE(drawn_box(one).empty());
  labels.add({0, 0, 0}, "88");
  labels.add({-0.0, 0, -0.0}, "88");
  labels.add({0, 0, 0}, "88", magenta_text);
  EXPECT_EQ(view.render().pixels, one.pixels);
  labels.add({0, 0, 0}, "89");
  const Frame with_other_text = view.render();
  EXPECT_NE(with_other_text.pixels, one.pixels);
  labels.add({0, 1e-12, 0}, "88");
  EXPECT_NE(view.render().pixels, with_other_text.pixels) << "not quite there";
}

TEST_F(LabelMapper, GivenLabels_WhenCleared_ThenNoneIsDrawnAndOthersMayCome) {
  labels.add({0, 0, 0}, "88");
  labels.add({0.5, 0, 0}, "88");
  const Frame first = view.render();
  labels.mapper->clear();
  EXPECT_TRUE(drawn_box(view.render()).empty());
  labels.add({0, 0, 0}, "");
  EXPECT_TRUE(drawn_box(view.render()).empty());
  labels.add({0, 0, 0}, "88");
  labels.add({0.5, 0, 0}, "88");
  EXPECT_EQ(view.render().pixels, first.pixels);
}

TEST_F(LabelMapper, GivenThousandsOfLabels_WhenDrawn_ThenEachIsThere) {
  for (int row = 0; row < 10; ++row)
    for (int column = 0; column < 6; ++column)
      for (int copy = 0; copy < 100; ++copy) // all but one lie out of view
        labels.add({-1.2 + 0.48 * column + (copy == 0 ? 0 : 10.0 * copy), -0.9 + 0.2 * row, 0},
                   std::to_string(100 + row));
  const Frame frame = view.render();
  for (int row = 0; row < 10; ++row)
    for (int column = 0; column < 6; ++column) {
      const auto pixel = pixel_of(view.renderer(), {-1.2 + 0.48 * column, -0.9 + 0.2 * row, 0});
      int green = 0;
      for (int dy = -6; dy <= 6; ++dy)
        for (int dx = -12; dx <= 12; ++dx)
          green += is_green(frame.at(int(pixel[0]) + dx, int(pixel[1]) + dy));
      EXPECT_GT(green, 5) << row << ' ' << column;
    }
}

TEST_F(LabelMapper, GivenNoStyle_WhenAskedFor_ThenThereIsNoneAndLabelsAreDrawnAllTheSame) {
  vtkNew<GLabelMapper> fresh;
  EXPECT_EQ(fresh->GetTextProperty(), nullptr);
  labels.mapper->SetTextProperty(nullptr);
  labels.add({0, 0, 0}, "88");
  EXPECT_FALSE(drawn_box(view.render()).empty());
  EXPECT_EQ(labels.mapper->GetNumberOfInputPorts(), 1);
}

} // namespace
