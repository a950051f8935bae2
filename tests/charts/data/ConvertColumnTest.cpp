#include <gtest/gtest.h>

#include <string>

#include "charts/data/ConvertColumn.h"
#include "charts/data/LoadTable.h"
#include "charts/data/TableText.h"

namespace ostrel::charts {
namespace {

DataColumn Column(std::string const& text) { return LoadText(text, "a.json").columns.at(0); }
DataColumn TextColumnOf(std::string const& text) { return LoadText("a\n" + text, "a.csv").columns.at(0); }

constexpr char const* kIntegers = "[-1, 0, null, 86400000]";
constexpr char const* kReals = "[0.5, null, -0.05]";
constexpr char const* kBools = "[true, false, null]";
constexpr char const* kDates = R"(["1970-01-02", null, "1969-12-31"])";
constexpr char const* kTimes = R"(["1970-01-01T00:00:00.0001", "1969-12-31T23:59:59"])";
constexpr char const* kStrings =
    R"(["12", " 1.5 ", "x", null, "", "Jan 2 1970", "1880", "false", "0", "\u00e4"])";

TEST(ConvertColumnTest, EveryTypeConvertsByRow) {
  struct Case {
    char const* rows;
    char const* number;
    char const* date;
    char const* string;
    char const* boolean;
  };
  Case const cases[] = {
      {kIntegers, "Int64 -1|0|null|86400000",
       "DateTime 1969-12-31T23:59:59.9990|1970-01-01T00:00:00.0000|null|1970-01-02T00:00:00.0000",
       "String -1|0|null|86400000", "Bool true|false|null|true"},
      {kReals, "Real64 0.5|null|-0.05", "DateTime 1970-01-01T00:00:00.0005|null|1969-12-31T23:59:59.9999",
       "String 0.5|null|-0.05", "Bool true|null|true"},
      {kBools, "Int64 1|0|null", "Date -|-|null", "String true|false|null", "Bool true|false|null"},
      {kDates, "Real64 86400000|null|-86400000", "Date 1970-01-02|null|1969-12-31",
       "String 1970-01-02|null|1969-12-31", "Bool true|null|true"},
      {kTimes, "Real64 0.1|-1000", "DateTime 1970-01-01T00:00:00.0001|1969-12-31T23:59:59.0000",
       "String 1970-01-01T00:00:00.0001|1969-12-31T23:59:59.0000", "Bool true|true"},
      {kStrings, "Real64 12|1.5|-|null|null|-|1880|-|0|-",
       "DateTime 0012-01-01T00:00:00.0000|1970-01-01T00:00:00.0015|-|null|-|1970-01-02T00:00:00.0000|"
       "1880-01-01T00:00:00.0000|-|1970-01-01T00:00:00.0000|-",
       "String 12| 1.5 |x|null||Jan 2 1970|1880|false|0|\xC3\xA4",
       "Bool true|true|true|null|-|true|true|false|false|true"}};
  for (auto const& [rows, number, date, string, boolean] : cases) {
    auto const column = Column(rows);
    EXPECT_EQ(DescribeColumn(ConvertToNumber(column)), number) << rows;
    EXPECT_EQ(DescribeColumn(ConvertToDate(column)), date) << rows;
    EXPECT_EQ(DescribeColumn(ConvertToString(column)), string) << rows;
    EXPECT_EQ(DescribeColumn(ConvertToBoolean(column)), boolean) << rows;
  }
}

TEST(ConvertColumnTest, SmallWholeNumbersOutOfTextAreYears) {
  EXPECT_EQ(DescribeColumn(ConvertToDate(TextColumnOf("1880\n2012\n"))), "Date 1880-01-01|2012-01-01");
  EXPECT_EQ(DescribeColumn(ConvertToDate(TextColumnOf("1880\n1517966773840\n0\n"))),
            "DateTime 1880-01-01T00:00:00.0000|2018-02-07T01:26:13.8400|1970-01-01T00:00:00.0000");
  EXPECT_EQ(DescribeColumn(ConvertToDate(Column("[1880]"))), "DateTime 1970-01-01T00:00:01.8800");
}

TEST(ConvertColumnTest, FarNumbersSaturateAsDates) {
  auto const dates = ConvertToDate(TextColumnOf("1e300\n-1e300\nInfinity\n"));
  auto const& view = dates.values->AsTypedArray<ort::core::OrtDateTime>();
  EXPECT_EQ(view.GetElement(1).GetValue(), 0U);
  EXPECT_GT(view.GetElement(0), ort::core::OrtDateTime(9999, 12, 31));
  EXPECT_EQ(view.GetSpecialKind(2), ort::core::SpecialKind::Missing);
}

TEST(ConvertColumnTest, PatternsReadTexts) {
  auto const column = TextColumnOf("31 Jan 2012\n2012-01-31\n\n");
  EXPECT_EQ(DescribeColumn(ConvertToDate(column, "%d %b %Y")), "Date 2012-01-31|-|-");
  EXPECT_EQ(DescribeColumn(ConvertToDate(Column("[2012, 1]"), "%Y")), "Date 2012-01-01|0001-01-01");
}

TEST(ConvertColumnTest, MissingFieldsAreNamedWithTheNearest) {
  auto const cars = LoadText("Name,Horsepower,Weight\nx,1,\n", "cars.csv");
  EXPECT_EQ(cars.Get("Horsepower").name, "Horsepower");
  EXPECT_EQ(
      MessageOf([&] { cars.Get("Horsepwr"); }),
      "no field 'Horsepwr' in cars.csv; did you mean 'Horsepower'? Its fields are Name, Horsepower, Weight");
  EXPECT_EQ(MessageOf([&] { cars.Get("zzz"); }),
            "no field 'zzz' in cars.csv. Its fields are Name, Horsepower, Weight");
  EXPECT_EQ(MessageOf([&] { RequireValues(cars, cars.Get("Weight")); }),
            "cars.csv: field 'Weight' holds only missing values");
  EXPECT_EQ(MessageOf([&] { RequireValues(cars, cars.Get("Name")); }), "");
}

}  // namespace
}  // namespace ostrel::charts
