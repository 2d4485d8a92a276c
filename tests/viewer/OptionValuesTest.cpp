#include "viewer/OptionValues.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace viewer;

template <class Parse> std::string complaint(Parse parse, const std::string& text) {
  try {
    parse(text);
  } catch (const BadValue& bad) {
    return bad.what();
  }
  return "";
}

TEST(OptionValues, GivenNumbers_WhenParsed_ThenTheirValues) {
  const std::pair<const char*, double> rows[] = {{"0", 0},      {"-0.5", -0.5},      {"+2", 2},       {".5", 0.5},
                                                 {"1e3", 1000}, {"-1.5E-2", -0.015}, {"1e300", 1e300}};
  for (const auto& [text, value] : rows)
    EXPECT_EQ(parse_number(text), value) << text;
}

TEST(OptionValues, GivenWhatIsNoFiniteNumber_WhenParsed_ThenRefused) {
  for (const char* text : {"", " 1", "1 ", "1,5", "0x10", "nan", "NaN", "-nan", "inf", "-inf", "infinity", "1e999",
                           "one", "--1", "+-1", "+", "-", "1e", "1.2.3"})
    EXPECT_EQ(complaint([](auto& t) { return parse_number(t); }, text), "'" + std::string(text) + "' is not a number");
}

TEST(OptionValues, GivenARange_WhenParsed_ThenItsEndsAreIn) {
  EXPECT_EQ(parse_number("0.1", 0.1, 1), 0.1);
  EXPECT_EQ(parse_number("1", 0.1, 1), 1);
  for (const char* text : {"0.0999", "1.0001", "-1"})
    EXPECT_EQ(complaint([](auto& t) { return parse_number(t, 0.1, 1); }, text),
              "'" + std::string(text) + "' is not from 0.1 to 1");
}

TEST(OptionValues, GivenResolutions_WhenParsed_ThenWidthAndHeight) {
  EXPECT_THAT(parse_resolution("1280,720"), testing::ElementsAre(1280, 720));
  EXPECT_THAT(parse_resolution("1,1"), testing::ElementsAre(1, 1));
  EXPECT_THAT(parse_resolution("16384,4096"), testing::ElementsAre(16384, 4096));
  for (const char* text : {"", "1280", "1280,720,1", "1280x720", "0,720", "-1,5", "1280,", ",720", "1e3,5", "16385,1",
                           "16384,16384", "99999999999999999999,5", "1280, 720", "5.5,5"})
    EXPECT_NE(complaint([](auto& t) { return parse_resolution(t); }, text), "") << text;
}

TEST(OptionValues, GivenColors_WhenParsed_ThenOpaqueChannels) {
  EXPECT_EQ(parse_color("#000000"), TovanColor(0, 0, 0, 255));
  EXPECT_EQ(parse_color("#12abEF"), TovanColor(0x12, 0xab, 0xef, 255));
  for (const char* text : {"", "#", "123456", "#12345", "#1234567", "#12345g", "#-12345", "red", "# 12345", "#+1+2+3"})
    EXPECT_EQ(complaint([](auto& t) { return parse_color(t); }, text),
              "'" + std::string(text) + "' is not of the form #RRGGBB");
}

TEST(OptionValues, GivenClipPlanes_WhenParsed_ThenNormalAndDistance) {
  const ClipPlane plane = parse_clip("-1,0,2.5,1e2");
  EXPECT_THAT(plane.normal, testing::ElementsAre(-1, 0, 2.5));
  EXPECT_EQ(plane.distance, 100);
  for (const char* text : {"", "1,0,0", "1,0,0,0,0", "0,0,0,1", "0,-0,0,0", "nan,0,0,0", "1,0,0,inf", "1e200,0,0,0",
                           "1e-200,0,0,0", "a,b,c,d", "1,,0,0"})
    EXPECT_NE(complaint([](auto& t) { return parse_clip(t); }, text), "") << text;
}

TEST(OptionValues, GivenAClippingPlane_WhenWritten_ThenTheShortTextThatIsParsedToIt) {
  const std::pair<ClipPlane, const char*> rows[] = {{{{1, 0, 0}, -0.25}, "1,0,0,-0.25"},
                                                    {{{0, -1, 0}, 0.1 + 0.2}, "0,-1,0,0.3"},
                                                    {{{0, -0.0, 1}, 1.5e12}, "0,0,1,1.5e+12"}};
  for (const auto& [plane, text] : rows) {
    EXPECT_EQ(clip_text(plane), text);
    EXPECT_EQ(parse_clip(text).normal, plane.normal);
    EXPECT_DOUBLE_EQ(parse_clip(text).distance, plane.distance);
  }
}

TEST(OptionValues, GivenNamesOfModes_WhenParsed_ThenTheBaseModes) {
  EXPECT_EQ(parse_render_mode("wireframe"), OBUtil::Wireframe);
  EXPECT_EQ(parse_render_mode("hidden-line"), OBUtil::HiddenLine);
  EXPECT_EQ(parse_render_mode("dimmed"), OBUtil::DimmedHiddenLine);
  EXPECT_EQ(parse_render_mode("shaded"), OBUtil::Shaded);
  EXPECT_EQ(parse_render_mode("translucent"), OBUtil::Translucent);
  EXPECT_EQ(complaint([](auto& t) { return parse_render_mode(t); }, "Shaded"),
            "'Shaded' is not one of wireframe, hidden-line, dimmed, shaded, translucent");
  EXPECT_STREQ(render_mode_name(OBUtil::DimmedHiddenLine), "dimmed");
}

TEST(OptionValues, GivenOtherNames_WhenParsed_ThenTheirMeaning) {
  const std::pair<const char*, ViewFrom> views[] = {
      {"iso", ViewFrom::Iso},   {"+x", ViewFrom::PlusX}, {"-x", ViewFrom::MinusX}, {"+y", ViewFrom::PlusY},
      {"-y", ViewFrom::MinusY}, {"+z", ViewFrom::PlusZ}, {"-z", ViewFrom::MinusZ}};
  for (const auto& [name, view] : views) {
    EXPECT_EQ(parse_view(name), view) << name;
    EXPECT_STREQ(view_name(view), name);
  }
  EXPECT_EQ(parse_color_by("owner"), ColorBy::Owner);
  EXPECT_EQ(parse_color_by("kind"), ColorBy::Kind);
  EXPECT_EQ(parse_group_by("owner"), readers::GroupBy::Owner);
  EXPECT_EQ(parse_group_by("none"), readers::GroupBy::None);
  EXPECT_NE(complaint([](auto& t) { return parse_view(t); }, "x"), "");
  EXPECT_NE(complaint([](auto& t) { return parse_color_by(t); }, "kinds"), "");
  EXPECT_NE(complaint([](auto& t) { return parse_group_by(t); }, ""), "");
}

TEST(OptionValues, GivenPicturePaths_WhenParsed_ThenOnlyPngIsTaken) {
  EXPECT_EQ(parse_picture_path("a/b.png"), "a/b.png");
  EXPECT_EQ(parse_picture_path("B.PNG"), "B.PNG");
  for (const char* text : {"", ".png", "png", "a.jpg", "a.png.gz", "a"})
    EXPECT_NE(complaint([](auto& t) { return parse_picture_path(t); }, text), "") << text;
}

} // namespace
