#include <fmt/format.h>

#include <algorithm>

#include "ChartDrawing.h"
#include "charts/document/DateLiterals.h"
#include "ostrelrtcore/OrtDateTime.h"

namespace ostrel::charts {
namespace {

TEST(DateLiterals, AreTakenByTheirUnit) {
  struct Case {
    char const* unit;
    Literal literal;
    char const* date;  // empty for none
  };
  Case const cases[] = {
      {"", "2020-03-01", "2020-03-01T00:00:00"},
      {"", 1'583'020'800'500.0, "2020-03-01T00:00:00.5"},
      {"", 2020.0, "1970-01-01T00:00:02.02"},
      {"", "mar", ""},
      {"", true, ""},
      {"year", 2020.0, "2020-01-01T00:00:00"},
      {"year", "2020", "2020-01-01T00:00:00"},
      {"utcyear", 2020.0, "2020-01-01T00:00:00"},
      {"year", "2020-06-01", "2020-06-01T00:00:00"},
      {"year", 2020.5, ""},
      {"quarter", 3.0, "2012-07-01T00:00:00"},
      {"quarter", 5.0, ""},
      {"month", 3.0, "2012-03-01T00:00:00"},
      {"month", "3", "2012-03-01T00:00:00"},
      {"month", "Mar", "2012-03-01T00:00:00"},
      {"month", "sept", "2012-09-01T00:00:00"},
      {"month", "ma", ""},
      {"month", "monday", ""},
      {"month", 0.0, ""},
      {"day", "monday", "2012-01-02T00:00:00"},
      {"day", 0.0, "2012-01-01T00:00:00"},
      {"day", 7.0, "2012-01-01T00:00:00"},
      {"dayofyear", 60.0, "2012-02-29T00:00:00"},
      {"hours", 23.0, "2012-01-01T23:00:00"},
      {"yearmonth", 1'583'020'800'000.0, "2020-03-01T00:00:00"},
  };
  for (Case const& c : cases) {
    TimeUnitSpec unit;
    unit.name = c.unit;
    auto const date = FindDate(unit, c.literal);
    EXPECT_EQ(date, ort::core::OrtDateTime::FromIsoText(std::string_view(c.date))) << c.unit;
  }
  TimeUnitSpec fiscal;
  fiscal.name = "year";
  fiscal.fiscalStart = 10;
  EXPECT_FALSE(FindDate(fiscal, 2020.0));
}

/// The pixels and labels of the x axis.
std::string DescribeTicks(Scene const& scene) {
  std::string text;
  for (TextMark const* label : FindMarks<TextMark>(scene, "axis x"))
    text += fmt::format("{}{} {:.0f}", text.empty() ? "" : ", ", label->text, label->at.x);
  return text;
}

std::string MakeDates(std::string const& x, std::string const& transform = "") {
  return MakeDocument("\"point\"", R"("2020-01-05" 3|"2020-03-09" 7|"2021-06-01" 5)",
                      R"("x":{"field":"f0","title":null,)" + x + "}",
                      transform.empty() ? "" : R"("transform":[{"filter":)" + transform + "}],");
}

TEST(DateLiterals, StandInDomainsAndOnAxes) {
  ChartDrawing const drawing;
  struct Case {
    char const* x;
    char const* ticks;
  };
  Case const cases[] = {
      {R"("type":"temporal","scale":{"domain":[{"year":2020},{"year":2024}]},"axis":{"values":[{"year":2021,)"
       R"("month":"jan"},1672531200000],"format":"%y"})",
       "21 25, 23 75"},
      {R"("timeUnit":"month","type":"ordinal","sort":["jun","mar"])", "Jun 20, Mar 53, Jan 86"},
      {R"("timeUnit":"month","type":"ordinal","scale":{"domain":["jan",6]})", "Jan 25, Jun 75"},
      {R"("timeUnit":"year","type":"ordinal","axis":{"values":[{"year":2021}]})", "2021 75"},
  };
  for (Case const& c : cases) EXPECT_EQ(DescribeTicks(drawing.Draw(MakeDates(c.x)).scene), c.ticks) << c.x;
}

TEST(DateLiterals, AreTestedFor) {
  ChartDrawing const drawing;
  struct Case {
    char const* filter;
    char const* left;  // the days of the month that pass
  };
  Case const cases[] = {
      {R"({"field":"f0","timeUnit":"year","equal":2020})", "05 09"},
      {R"({"field":"f0","timeUnit":"year","range":[2021,2022]})", "01"},
      {R"({"field":"f0","timeUnit":"month","equal":"mar"})", "09"},
      {R"({"field":"f0","timeUnit":"month","oneOf":[1,"june"]})", "05 01"},
      {R"({"field":"f0","timeUnit":"month","gte":3})", "09 01"},
      {R"({"field":"f0","range":[{"year":2020,"month":2},{"year":2020,"month":"dec","date":31}]})", "09"},
      {R"({"field":"f0","lt":{"year":2020,"quarter":2}})", "05 09"},
      {R"({"field":"f0","timeUnit":"yearmonth","equal":{"year":2021,"month":6}})", "01"},
  };
  for (Case const& c : cases) {
    std::string const document = MakeDates(
        R"("type":"ordinal","timeUnit":"yearmonthdate","axis":{"format":"%d","labelAngle":0})", c.filter);
    Scene const scene = drawing.Draw(document).scene;
    std::string left = ReadTexts(scene, "axis x");
    std::ranges::replace(left, '|', ' ');
    EXPECT_EQ(left, c.left) << c.filter;
  }
}

TEST(DateLiterals, ThatAreNoneAreRefused) {
  ChartDrawing const drawing;
  std::string const values = "chart.vl.json: $.encoding.x.axis.values[0]";
  struct Case {
    char const* date;
    std::string message;
  };
  Case const cases[] = {
      {R"({"year":2020,"month":13})", values + ".month: expects a whole number from 1 to 12, or a name"},
      {R"({"year":0})", values + ".year: expects a whole number from 1 to 9999"},
      {R"({"utc":true})", values + R"(: expects a date such as {"year": 2020, "month": 3})"},
      {R"({"year":2020,"day":"mon"})", values + ".day: stands alone; use date"},
      {R"({"yaer":2020})", values + ".yaer: unknown property; did you mean \"year\"?"},
  };
  for (Case const& c : cases) {
    std::string const document =
        MakeDates(fmt::format(R"("type":"temporal","axis":{{"values":[{}]}})", c.date));
    EXPECT_EQ(drawing.DescribeError(document), c.message);
  }
}

}  // namespace
}  // namespace ostrel::charts
