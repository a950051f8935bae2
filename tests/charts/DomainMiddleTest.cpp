#include <cmath>

#include "ChartDrawing.h"

namespace ostrel::charts {
namespace {

std::string Field(char const* channel, char const* scale) {
  return std::string("\"") + channel + R"(":{"field":"f0","type":"quantitative","scale":)" + scale + "}";
}

SymbolMarks DrawSymbols(std::string const& rows, std::string const& encoding) {
  ChartDrawing const drawing;
  Scene const scene = drawing.Draw(MakeDocument("\"circle\"", rows, encoding)).scene;
  return *FindMarks<SymbolMarks>(scene, "marks").front();
}

// A ramp of two colours tells each row's place by its blue.
TEST(DomainMiddle, HalvesOfTheDomainGetHalvesOfTheColors) {
  struct Case {
    char const* rows;
    char const* scale;
    std::vector<int> blues;
  };
  Case const cases[] = {
      {"-10|-5|0|20|40", R"({"domainMid":0,"range":["#000000","#0000c8"]})", {0, 50, 100, 150, 200}},
      {"-10|-5|0|20|40",
       R"({"domainMid":0,"reverse":true,"range":["#000000","#0000c8"]})",
       {200, 150, 100, 50, 0}},
      {"-10|0|30", R"({"domainMid":0,"domain":[-20,40],"range":["#000000","#0000c8"]})", {50, 100, 175}},
      // A middle outside of the data is an end.
      {"10|20|40", R"({"domainMid":0,"range":["#000000","#0000c8"]})", {125, 150, 200}},
      // The same as a domain of three values, whichever way they run.
      {"-10|0|30", R"({"domain":[-20,0,40],"range":["#000000","#000064","#0000c8"]})", {50, 100, 175}},
      {"-10|0|30", R"({"domain":[40,0,-20],"range":["#0000c8","#000064","#000000"]})", {50, 100, 175}},
      {"10|20|40", R"({"domainMid":50,"range":["#000000","#0000c8"]})", {0, 25, 75}},
  };
  for (Case const& c : cases) {
    SymbolMarks const marks = DrawSymbols(c.rows, Field("color", c.scale));
    auto const& colors = marks.color.column->AsTypedArray<ort::core::OrtColor>();
    for (std::size_t row = 0; row < c.blues.size(); ++row) {
      int const blue = colors.GetElement(static_cast<int>(row)).GetValue() & 0xFF;
      EXPECT_NEAR(blue, c.blues[row], 1) << c.rows << " " << c.scale << " row " << row;
    }
  }
}

TEST(DiscreteStyles, StandAtEvenDistancesInTheirRange) {
  struct Case {
    char const* rows;
    char const* encoding;
    std::vector<double> sizes;
  };
  Case const cases[] = {
      {"3|4|8", R"("type":"ordinal","scale":{"range":[10,50]})", {10, 30, 50}},
      {"3|4|8", R"("type":"ordinal","scale":{"range":[10,50],"reverse":true})", {50, 30, 10}},
      {"3|4|8", R"("type":"nominal","sort":[4,8,3])", {361, 9, 185}},
      {"5|5", R"("type":"ordinal","scale":{"range":[10,50]})", {30, 30}},
  };
  for (Case const& c : cases) {
    std::string const field = std::string(R"("size":{"field":"f0",)") + c.encoding + "}";
    SymbolMarks const marks = DrawSymbols(c.rows, field);
    for (std::size_t row = 0; row < c.sizes.size(); ++row)
      EXPECT_EQ(marks.size.column->AsTypedArray<double>().GetElement(static_cast<int>(row)), c.sizes[row])
          << c.encoding;
  }
  ChartDrawing const drawing;
  EXPECT_EQ(
      drawing.Draw(MakeDocument("\"point\"", "1|2", R"("opacity":{"field":"f0","type":"nominal"})")).warnings,
      std::vector<std::string>{"the opacity of nominal 'f0' tells an order that its values do not have; "
                               "use \"ordinal\", or color"});
}

TEST(DomainMiddle, SizesGrowFromItBothWays) {
  struct Case {
    char const* rows;
    char const* scale;
    std::vector<double> sizes;
  };
  Case const cases[] = {
      {"-10|-5|0|20", R"({"domainMid":0,"range":[0,100]})", {50, 25, 0, 100}},
      {"-10|-5|0|20", R"({"domainMid":5,"range":[10,40]})", {40, 30, 20, 40}},
      {"1|2|5", R"({"domainMid":0,"range":[0,100]})", {20, 40, 100}},
      {"-1|-2|-5", R"({"domainMid":0,"range":[0,100],"reverse":true})", {80, 60, 0}},
  };
  for (Case const& c : cases) {
    SymbolMarks const marks = DrawSymbols(c.rows, Field("size", c.scale));
    for (std::size_t row = 0; row < c.sizes.size(); ++row) {
      double const size = marks.size.column->AsTypedArray<double>().GetElement(static_cast<int>(row));
      EXPECT_NEAR(size, c.sizes[row], 1e-9) << c.rows << " " << c.scale << " row " << row;
    }
  }
}

}  // namespace
}  // namespace ostrel::charts
