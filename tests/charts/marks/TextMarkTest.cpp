#include <fmt/format.h>

#include "../ChartDrawing.h"

namespace ostrel::charts {
namespace {

constexpr char kAnchors[] = "<|>";

// Texts of a font size of 10 at (50, 50); a line is 10 pixels high, its baseline 8 below its top.
std::string Describe(ChartDrawing const& drawing, std::string const& properties, std::string const& text) {
  Scene const scene = drawing
                          .Draw(MakeDocument(R"({"type":"text","fontSize":10)" + properties + "}",
                                             "\"" + text + "\"", R"("text":{"field":"f0","type":"nominal"})"))
                          .scene;
  std::string all;
  for (TextMark const* mark : FindMarks<TextMark>(scene, "marks")) {
    all +=
        fmt::format("{}{}@{:.3g},{:.3g}/{}{}{}", all.empty() ? "" : " ", mark->text, mark->at.x, mark->at.y,
                    mark->angle, kAnchors[static_cast<int>(mark->anchor)], mark->isRightToLeft ? "r" : "");
  }
  return all;
}

TEST(TextMarks, StandAtTheirPlaceByAlignmentBaselineAndAngle) {
  struct {
    char const* properties;
    char const* text;
    char const* expected;
  } const cases[] = {
      {"", "abcd", "abcd@50,53/0|"},
      {R"(,"align":"left","baseline":"top")", "abcd", "abcd@50,58/0<"},
      {R"(,"align":"right","baseline":"bottom")", "abcd", "abcd@50,48/0>"},
      {R"(,"baseline":"alphabetic","dx":1,"dy":2)", "abcd", "abcd@51,52/0|"},
      // The second line is 12 pixels below the first.
      {R"(,"baseline":"alphabetic")", "ab\\ncd", "ab@50,50/0| cd@50,62/0|"},
      {R"(,"baseline":"bottom")", "ab\\ncd", "ab@50,36/0| cd@50,48/0|"},
      // Lines from below have their baseline on the right, those from above on the left.
      {R"(,"angle":-90,"baseline":"top")", "ab\\ncd", "ab@58,50/-90| cd@70,50/-90|"},
      {R"(,"angle":90,"baseline":"top")", "ab\\ncd", "ab@42,50/90| cd@30,50/90|"},
      {R"(,"angle":270,"baseline":"alphabetic","align":"left")", "ab", "ab@50,50/-90<"},
      {R"(,"angle":90,"baseline":"alphabetic")", "ab", "ab@50,50/90|"},
      {R"(,"angle":180,"baseline":"top")", "ab", "ab@50,42/180|"},
      {R"(,"limit":40)", "abcd", "abcd@50,53/0|"},
      {R"(,"limit":40)", "abcde", "ab..@50,53/0|"},
      {R"(,"limit":40,"angle":90)", "abcde", "ab..@47,50/90|"},
      {R"(,"limit":0)", "abcde", "abcde@50,53/0|"},
      // Each line has the limit.
      {R"(,"limit":40,"baseline":"top")", "abcde\\nab\\nefghi", "ab..@50,58/0| ab@50,70/0| ef..@50,82/0|"},
      {R"(,"limit":40,"baseline":"top")", "abcd\\n\\nab", "abcd@50,58/0| ab@50,82/0|"},
      {R"(,"limit":40,"angle":90,"baseline":"top")", "abcde\\nab", "ab..@42,50/90| ab@30,50/90|"},
      {R"(,"limit":5,"baseline":"top")", "abcde\\nab", ""},
      // What is left out stood where the line ends.
      {R"(,"limit":40)", "אבגדה", "אב..@50,53/0|r"},
      {R"(,"limit":40,"dir":"rtl")", "אבגדה", "אב..@50,53/0|r"},
      {R"(,"limit":40,"dir":"rtl")", "abcde", "\u200E..de@50,53/0|r"},
      {R"(,"limit":40,"dir":"ltr")", "אבגדה", "אב..\u200F@50,53/0|"},
      {R"(,"dir":"rtl")", "abc!", "abc!@50,53/0|r"},
  };
  ChartDrawing const drawing;
  for (auto const& c : cases)
    EXPECT_EQ(Describe(drawing, c.properties, c.text), c.expected) << c.properties << ' ' << c.text;
}

}  // namespace
}  // namespace ostrel::charts
