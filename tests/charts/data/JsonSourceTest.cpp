#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "charts/data/LoadTable.h"
#include "charts/data/TableText.h"

namespace ostrel::charts {
namespace {

struct Case {
  std::string text;
  std::string table;
};

/// The text itself and its values in memory give one table.
TEST(JsonSourceTest, RowsBecomeColumns) {
  Case const cases[] = {
      {R"([{"a":1,"b":"x"},{"a":2,"b":"y"}])", "a: Int64 1|2; b: String x|y"},
      {R"([{"a":1},{"a":2.5}])", "a: Real64 1|2.5"},
      {R"([{"a":18446744073709551615}])", "a: Real64 1.8446744073709552e+19"},
      {R"([{"a":9007199254740993}])", "a: Int64 9007199254740993"},
      {R"([{"a":true},{"a":null},{}])", "a: Bool true|null|-"},
      {R"([{"a":1},{"b":2},{"a":3}])", "a: Int64 1|-|3; b: Int64 -|2|-"},
      {R"([{"a":1},{"a":"x"},{"a":true},{"a":0.5}])", "a: String 1|x|true|0.5"},
      {R"([{"a":"2000-01-31"},{"a":null},{"a":"1999-12-31"}])", "a: Date 2000-01-31|null|1999-12-31"},
      {R"([{"a":"2000-01-31"},{"a":"x"}])", "a: String 2000-01-31|x"},
      {R"([{"a":"12"},{"a":"NaN"}])", "a: String 12|NaN"},
      {R"([{"a":{"b":1,"c":{"d":"x"}},"e":[3,[4],{"f":5}]}])",
       "a.b: Int64 1; a.c.d: String x; e[0]: Int64 3; e[1][0]: Int64 4; e[2].f: Int64 5"},
      {R"([{"a":{}},{"a":1,"b":[]}])", "a: Int64 -|1"},
      {"[1, null, 2.5]", "data: Real64 1|null|2.5"},
      {R"(["x","y"])", "data: String x|y"},
      {"[{}]", ""},
      {R"([{"":1}])", ": Int64 1"},
      {R"([{"\u00e4":"\ud83d\ude00"}])", "\xC3\xA4: String \xF0\x9F\x98\x80"},
  };
  for (auto const& [text, table] : cases) {
    EXPECT_EQ(DescribeTable(LoadText(text, "a.json")), table) << text;
    EXPECT_EQ(DescribeTable(LoadValues(nlohmann::json::parse(text), "$.data.values")), table) << text;
  }
  EXPECT_EQ(DescribeTable(LoadText("\xEF\xBB\xBF[{\"b\":1,\"a\":2,\"b\":\"x\"}]", "a.json")),
            "b: String x; a: Int64 2");
  EXPECT_EQ(DescribeTable(LoadValues(nlohmann::json::parse(R"({"a":1})"), "$.data.values")), "a: Int64 1");
}

TEST(JsonSourceTest, PropertyLeadsToTheRows) {
  Case const cases[] = {{"rows", R"({"x":[{"rows":1}],"rows":[{"a":1}],"y":[[2]]})"},
                        {"p.q", R"({"q":[9],"p":{"o":{"q":[8]},"q":[{"a":1}],"z":{"q":[7]}}})"},
                        {"p[1].q", R"({"p":[{"q":[9]},{"q":[{"a":1}]},{"q":[8]}]})"},
                        {"[2]", R"([[9],{"2":[8]},[{"a":1}]])"},
                        {"['p.q'][0]", R"({"p":{"q":[[9]]},"p.q":[[{"a":1}],[8]]})"}};
  for (auto const& [property, text] : cases) {
    DataFormat format;
    format.property = property;
    EXPECT_EQ(DescribeTable(LoadText(text, "a.json", format)), "a: Int64 1") << text;
    EXPECT_EQ(DescribeTable(LoadValues(nlohmann::json::parse(text), "a.json", format)), "a: Int64 1") << text;
  }
}

TEST(JsonSourceTest, ParseOverridesInference) {
  DataFormat format;
  format.parse = {{"n", "number"}, {"s", "string"}, {"d", "date"}, {"t", "string"}};
  EXPECT_EQ(
      DescribeTable(LoadText(R"([{"n":"12","s":1.5,"d":86400000,"t":"2000-01-31"}, {"n":"x","d":null}])",
                             "a.json", format)),
      "n: Int64 12|-; s: String 1.5|-; d: DateTime 1970-01-02T00:00:00.0000|null; t: String 2000-01-31|-");
}

TEST(JsonSourceTest, BadDocumentsAreRefusedWithTheirPlace) {
  auto const nested = [](std::size_t levels) { return std::string(levels, '[') + std::string(levels, ']'); };
  struct BadCase {
    std::string text;
    std::string property;
    std::string message;
  };
  BadCase const cases[] = {
      {"", "",
       "a.json:1:1: syntax error while parsing value - unexpected end of input; expected '[', '{', or a "
       "literal"},
      {"[{\"a\":1},\n {\"a\":}]", "",
       "a.json:2:7: syntax error while parsing value - unexpected '}'; expected '[', '{', or a literal"},
      {"[1] 2", "",
       "a.json:1:5: syntax error while parsing value - unexpected number literal; expected end of input"},
      {"[NaN]", "", "a.json:1:2: syntax error while parsing value - invalid literal; last read: '[N'"},
      {"[1e999]", "", "a.json:1:6: number overflow parsing '1e999'"},
      {"[\"\xFF\"]", "", "a.json:1:3: byte 0xFF is not valid UTF-8 here (offset 2)"},
      {std::string("[1,\0]", 5), "", "a.json:1:4: a NUL byte (offset 3)"},
      {R"([{"a":"x\u0000"}])", "", "a.json: row 1: a text holds a NUL character"},
      {R"([{"a":1},[2]])", "", "a.json: row 2: is an array; rows are objects or single values"},
      {"[]", "", "a.json: there are no rows"},
      {R"([{"a":null},{}])", "", "a.json: 2 rows with only missing values"},
      {"5", "", "a.json: holds a single value where an array of rows is expected"},
      {R"({"a":1})", "",
       "a.json: holds an object where an array of rows is expected; 'property' in the format names an array "
       "inside"},
      {R"({"a":{}})", "a", "a.json: 'a' is an object where an array of rows is expected"},
      {R"({"a":[1]})", "b", "a.json: has no 'b'"},
      {R"({"a":[1]})", "a..b", "a.json: 'a..b' is no property path"},
      {R"({"a":[1]})", "a[x]", "a.json: 'a[x]' is no property path"},
      {R"({"a":[1]})", "a[", "a.json: 'a[' is no property path"},
      {"[{\"a\":" + nested(300) + "}]", "", "a.json: row 1: nested more than 200 levels deep"},
      {"{\"a\":" + nested(100'000) + "}", "b", "a.json: nested more than 200 levels deep"},
  };
  for (auto const& bad : cases) {
    DataFormat format;
    format.property = bad.property;
    EXPECT_EQ(MessageOf([&] { LoadText(bad.text, "a.json", format); }), bad.message)
        << bad.text.substr(0, 60);
  }
  auto const longName = "[{\"" + std::string(5000, 'x') + "\":1}]";
  EXPECT_EQ(MessageOf([&] { LoadText(longName, "a.json"); }),
            "a.json: row 1: a field's name is longer than 4096 bytes");
}

/// Few bytes must not become a table of many gigabytes.
TEST(JsonSourceTest, RowsWithNothingInCommonAreNoTable) {
  std::string text = "[";
  for (int i = 0; i < 15'000; ++i) text += "{\"a" + std::to_string(i) + "\":1},";
  for (int i = 0; i < 100'000; ++i) text += "{},";
  auto const message = MessageOf([&] { LoadText(text + "{}]", "a.json"); });
  EXPECT_EQ(message.substr(message.find("fields")),
            "fields, most of them in few rows only; such rows are no table");
}

}  // namespace
}  // namespace ostrel::charts
