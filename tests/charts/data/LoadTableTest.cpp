#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>

#include "TestPaths.h"
#include "charts/data/LoadTable.h"
#include "charts/data/TableText.h"

namespace ostrel::charts {
namespace {

DataRoots const kRoots{OSTREL_SOURCE_DIR "/examples/data", {}};

TEST(LoadTableTest, ReadsFilesAndInlineValues) {
  struct Case {
    char const* data;
    char const* table;
  };
  Case const cases[] = {
      {R"({"values":[{"a":1},{"a":2}]})", "a: Int64 1|2"},
      {R"({"values":{"a":1}})", "a: Int64 1"},
      {R"({"name":"n","values":"a,b\n1,2","format":{"type":"csv"}})", "a: Int64 1; b: Int64 2"},
      {R"({"values":"a|b\n1|2","format":{"type":"dsv","delimiter":"|"}})", "a: Int64 1; b: Int64 2"},
      {R"({"values":"[1,2]"})", "data: Int64 1|2"},
      {R"({"values":"Tea, tea or coffee","format":{"type":"text","limit":1}})",
       "word: String tea; count: Int64 2"},
      {R"({"values":{"r":[{"a":"1"}]},"format":{"property":"r","parse":{"a":"number"}}})", "a: Int64 1"},
  };
  for (auto const& [data, table] : cases) {
    EXPECT_EQ(DescribeTable(LoadTable(nlohmann::json::parse(data), "$.data", kRoots)), table) << data;
  }
  EXPECT_EQ(LoadTable({{"url", "penguins.json"}}, "$.data", kRoots).rowCount, 344);
}

TEST(LoadTableTest, MessagesNameThePlaceInTheChart) {
  struct Case {
    char const* data;
    char const* message;
  };
  Case const cases[] = {
      {"[]", "$.data: an object with 'url' or 'values' is expected"},
      {R"({"name":"x"})", "$.data: has neither 'url' nor 'values'"},
      {R"({"url":5})", "$.data.url: a text is expected"},
      {R"({"url":"no.csv"})", "no.csv: cannot be read: No such file or directory"},
      {R"({"values":[]})", "$.data.values: there are no rows"},
      {R"({"values":[[1]]})", "$.data.values: row 1: is an array; rows are objects or single values"},
      {R"({"values":"a\n","format":{"type":"csv"}})", "$.data.values: there are no rows"},
      {R"({"values":[1],"format":5})", "$.data.format: an object is expected"},
      {R"({"values":[1],"format":{"type":"topojson"}})",
       "$.data.format.type: \"topojson\" is not supported; csv, tsv, dsv, json and text are"},
      {R"({"values":[1],"format":{"type":"dsv"}})", "$.data.format.type: dsv needs a delimiter"},
      {R"({"values":[1],"format":{"delimiter":"\""}})",
       "$.data.format.delimiter: the delimiter must be one ASCII character other than a quote or a line "
       "break"},
      {R"({"values":[1],"format":{"parse":null}})",
       "$.data.format.parse: an object of fields and types is expected"},
      {R"({"values":[1],"format":{"parse":{"x":"dates"}}})",
       "$.data.format.parse['x']: \"dates\" is not supported; number, boolean, string, date and "
       "date:'pattern' are"},
      {R"({"values":[1],"format":{"parse":{"x":"date:'%Q'"}}})", "date pattern '%Q': '%Q' is not supported"},
      {R"({"values":[1],"format":{"feature":"land"}})",
       "$.data.format.feature: is not supported; type, delimiter, property, parse, stopWords and limit are"},
      {R"({"values":"a b","format":{"type":"text","stopWords":"a"}})",
       "$.data.format.stopWords: a list of words is expected; [] counts all words"},
      {R"({"values":"a b","format":{"type":"text","limit":0}})",
       "$.data.format.limit: a whole number of words above 0 is expected"},
      {R"({"values":"a b","format":{"type":"text","delimiter":" "}})",
       "$.data.format.delimiter: is not for text; leave it out"},
      {R"({"values":"a,b","format":{"type":"csv","limit":5}})",
       "$.data.format.limit: is for the type text only; leave it out"},
      {R"({"values":"the 12 of","format":{"type":"text"}})", "$.data.values: there are no rows"},
      {R"({"values":["a"],"format":{"type":"text"}})",
       "$.data.values: running text is one string; a list of rows was given"},
  };
  for (auto const& bad : cases) {
    EXPECT_EQ(MessageOf([&] { LoadTable(nlohmann::json::parse(bad.data), "$.data", kRoots); }), bad.message)
        << bad.data;
  }
}

}  // namespace
}  // namespace ostrel::charts
