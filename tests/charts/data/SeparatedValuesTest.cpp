#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <string>
#include <vector>

#include "TestPaths.h"
#include "charts/data/LoadTable.h"
#include "charts/data/SeparatedRecords.h"
#include "charts/data/TableText.h"

namespace ostrel::charts {
namespace {

struct Case {
  std::string text;
  std::string table;  // or the message
};

void ExpectTables(std::vector<Case> const& cases) {
  for (auto const& [text, table] : cases) EXPECT_EQ(DescribeTable(LoadText(text, "a.csv")), table) << text;
}

TEST(SeparatedValuesTest, ColumnsTakeTheNarrowestTypeOfAllRows) {
  ExpectTables(
      {{"a\n1\n-2\n", "a: Int64 1|-2"},
       {"a\n1\n2.5\n", "a: Real64 1|2.5"},
       {"a\n2.5\n1\n", "a: Real64 2.5|1"},
       {"a\n9007199254740993\n0.5\n", "a: Real64 9007199254740992|0.5"},
       {"a\ntrue\nfalse\n", "a: Bool true|false"},
       {"a\ntrue\n1\n", "a: String true|1"},
       {"a\nTrue\nfalse\n", "a: String True|false"},
       {"a\n2000-01-31\n1999/12/31\n", "a: Date 2000-01-31|1999-12-31"},
       {"a\n2000-01-31\n1999-12-31T01:00\n", "a: DateTime 2000-01-31T00:00:00.0000|1999-12-31T01:00:00.0000"},
       {"a\n1999-12-31T01:00\n2000-01\n", "a: DateTime 1999-12-31T01:00:00.0000|2000-01-01T00:00:00.0000"},
       {"a\n1\n2000-01-31\n", "a: String 1|2000-01-31"},
       {"a\n007\n1.50\nx\n", "a: String 007|1.50|x"},
       {"a\n 5 \n\" 6\"\n", "a: Int64 5|6"},
       {"a,b\n1,x\n2,y\n", "a: Int64 1|2; b: String x|y"}});
}

TEST(SeparatedValuesTest, MissingFieldsAreSpecialExceptInStrings) {
  ExpectTables({{"a,b\n1,\n,2\n", "a: Int64 1|null; b: Int64 null|2"},
                {"a\nNaN\n1.5\nnan\nnull\nNA\nN/A\n", "a: Real64 -|1.5|-|-|-|-"},
                {"a,b\n2000-01-31,true\n,\n", "a: Date 2000-01-31|null; b: Bool true|null"},
                {"a,b\n,1\n ,2\nNA,3\nx,4\n", "a: String | |NA|x; b: Int64 1|2|3|4"},
                {"a,b\nNA,1\n,2\n", "a: Real64 -|null; b: Int64 1|2"},
                {"a\n\n1\n\n2\n", "a: Int64 null|1|null|2"},
                {"a,b\n\n1,2\n\n\n3,4\n\n", "a: Int64 1|3; b: Int64 2|4"}});
}

TEST(SeparatedValuesTest, QuotesAndLineBreaksFollowTheFormat) {
  ExpectTables({{"a,b\n\"x,y\",\"say \"\"hi\"\"\"\n\"\",\"1\"\n", "a: String x,y|; b: String say \"hi\"|1"},
                {"a,b\r\n1,2\r\n3,4\r\n", "a: Int64 1|3; b: Int64 2|4"},
                {"a,b\r1,2\r3,4", "a: Int64 1|3; b: Int64 2|4"},
                {"\xEF\xBB\xBF\"a\",b\n1,2", "a: Int64 1; b: Int64 2"},
                {"a,b\n\"one\ntwo\",2", "a: String one\ntwo; b: Int64 2"},
                {"a,b\n1,", "a: Int64 1; b: Real64 null"},
                {"a,,\"c\"\"d\"\n1,2,3\n", "a: Int64 1; column 2: Int64 2; c\"d: Int64 3"},
                {"a\n\"\"\"\"\n\"\"\"\"\"\"\n", "a: String \"|\"\""}});
}

TEST(SeparatedValuesTest, DelimitersOfOtherKinds) {
  EXPECT_EQ(DescribeTable(LoadText("a\tb\n1,5\t2\n", "a.tsv")), "a: String 1,5; b: Int64 2");
  DataFormat format;
  format.type = DataFormatType::Csv;
  format.delimiter = ';';
  EXPECT_EQ(DescribeTable(LoadText("a;b\n1;\"2;3\"\n", "a.txt", format)), "a: Int64 1; b: String 2;3");
}

TEST(SeparatedValuesTest, ParseOverridesInference) {
  DataFormat format;
  format.parse = {
      {"zip", "string"}, {"n", "number"}, {"d", "date:'%d.%m.%Y'"}, {"y", "date"}, {"b", "boolean"}};
  auto const table = LoadText(
      "zip,n,d,y,b\n007,1,01.02.2012,1880,0\n,x,1.2.,Jan 2 2000,yes\n,2,03.04.2013,,\n", "a.csv", format);
  EXPECT_EQ(
      DescribeTable(table),
      "zip: String 007||; n: Int64 1|-|2; d: Date 2012-02-01|-|2013-04-03; y: Date 1880-01-01|2000-01-02|-; "
      "b: Bool false|true|-");
}

TEST(SeparatedValuesTest, BadTextIsRefusedWithItsPlace) {
  std::string const nul("a,b\n1,\0\n", 8);
  std::vector<Case> const cases = {
      {"a,b\n1,2\n1,2,3\n", "a.csv:3: 3 fields, the header has 2"},
      {"a,b\n\"1\n\n\",2\n1\n", "a.csv:5: 1 field, the header has 2"},
      {"a,b\r\n1,2\r\n,,\r\n", "a.csv:3: 3 fields, the header has 2"},
      {"a,b\n1,\"2\n3,4\n", "a.csv:2: the quote that opens field 2 is never closed"},
      {"a,b\n1,5\" pipe\n",
       "a.csv:2: field 2 has a quote inside; the whole field must be quoted and its quotes doubled"},
      {"a,b\n\"1\"x,2\n", "a.csv:2: field 1 goes on behind its closing quote"},
      {"a,b,a\n1,2,3\n", "a.csv:1: the header names the field 'a' twice"},
      {"a,b\n1,2\n3,\xFF\n", "a.csv:3:3: byte 0xFF is not valid UTF-8 here (offset 10)"},
      {"\xC3\xA4,b\n\xC3\xA4\xC3,2\n", "a.csv:2:2: byte 0xC3 is not valid UTF-8 here (offset 7)"},
      {"a\n\xED\xA0\x80\n", "a.csv:2:1: byte 0xED is not valid UTF-8 here (offset 2)"},
      {nul, "a.csv:2:3: a NUL byte (offset 6)"},
      {"", "a.csv: is empty; a header line is needed"},
      {"a,b\n", "a.csv: there are no rows"},
      {"a,b\n,NA\n,\n", "a.csv: 2 rows with only missing values"},
      {"a\n" + std::string((16 << 20) + 1, 'x'), "a.csv:2: field 1 is longer than 16 MiB"},
      {"a\n\"" + std::string(100 << 20, '\n'), "a.csv:2: the quote that opens field 1 is never closed"},
      {std::string(20'000, ','), "a.csv:1: more than 16384 fields"},
  };
  for (auto const& bad : cases) {
    EXPECT_EQ(MessageOf([&] { LoadText(bad.text, "a.csv"); }), bad.table) << bad.text.substr(0, 80);
  }
}

TEST(SeparatedValuesTest, Utf8IsCheckedAcrossBlocks) {
  for (std::size_t length = 50; length < 140; ++length) {
    auto const start = "a\n" + std::string(length, 'x');
    EXPECT_EQ(LoadText(start + "\xF0\x9F\x98\x80y\n", "a.csv").rowCount, 1) << length;
    EXPECT_NE(MessageOf([&] { LoadText(start + "\xF0\x9F\x98y\n", "a.csv"); }), "") << length;
    EXPECT_NE(MessageOf([&] { LoadText(start + "\xF0\x9F\x98", "a.csv"); }), "") << length;
  }
}

/// The format read one character at a time.
std::vector<std::vector<std::string>> ReadSlowly(std::string const& text) {
  std::vector<std::vector<std::string>> records;
  std::size_t at = 0;
  while (at < text.size()) {
    std::vector<std::string> record(1);
    for (bool ended = false; !ended;) {
      if (at < text.size() && text[at] == '"') {
        for (++at; text[at] != '"' || text.substr(at, 2) == "\"\""; ++at) {
          if (text[at] == '"') ++at;
          record.back() += text[at];
        }
        ++at;
      }
      while (at < text.size() && text[at] != ',' && text[at] != '\r' && text[at] != '\n')
        record.back() += text[at++];
      ended = at == text.size() || text[at] != ',';
      if (!ended) record.emplace_back();
      if (ended && text.substr(at, 2) == "\r\n") ++at;
      ++at;
    }
    records.push_back(std::move(record));
  }
  return records;
}

TEST(SeparatedValuesTest, RecordsAreThoseOfTheSlowReader) {
  rc::check("any fields, quoted or not, with any line breaks", [] {
    auto const field = rc::gen::container<std::string>(rc::gen::element('a', ',', '"', '\n', '\r', ' ', 'b'));
    auto const lines = *rc::gen::container<std::vector<std::vector<std::string>>>(
        rc::gen::nonEmpty(rc::gen::container<std::vector<std::string>>(field)));
    std::string text;
    for (auto const& line : lines) {
      for (std::size_t i = 0; i < line.size(); ++i) {
        bool const needsQuotes = line[i].find_first_of(",\"\r\n") != std::string::npos;
        std::string quoted;
        for (char const c : line[i]) quoted += c == '"' ? "\"\"" : std::string(1, c);
        text += i > 0 ? "," : "";
        text += needsQuotes || *rc::gen::arbitrary<bool>() ? '"' + quoted + '"' : line[i];
      }
      text += *rc::gen::element<std::string>("\n", "\r\n", "\r");
    }
    std::string const name = "a.csv";
    SeparatedRecords records(text, ',', name);
    std::vector<std::vector<std::string>> read;
    std::string scratch;
    for (std::vector<SeparatedField> fields; records.Read(fields); fields.clear()) {
      auto& record = read.emplace_back();
      for (auto const& each : fields) record.emplace_back(each.GetText(scratch));
    }
    RC_ASSERT(read == ReadSlowly(text));
  });
}

/// Types decided over many blocks are those of the same rows in one block.
TEST(SeparatedValuesTest, LateRowsDecideLikeEarlyOnes) {
  constexpr int rows = 30'000;
  std::string text = "n,s,d,m\n";
  for (int row = 0; row < rows; ++row) {
    text += std::to_string(row) + ",\"name " + std::to_string(row % 300) + "\",2000-01-31,\n";
  }
  auto const table = LoadText(text + "0.5,x,late,7\n", "a.csv");
  EXPECT_EQ(table.rowCount, rows + 1);
  EXPECT_EQ(table.Get("n").GetType(), ort::core::StoreType::Real64);
  EXPECT_EQ(table.Get("n").values->AsTypedArray<double>().GetElement(rows - 1), rows - 1.0);
  EXPECT_EQ(table.Get("s").values->AsTypedArray<ort::core::RIndirectString>().GetElement(299).Get().toUtf8(),
            "name 299");
  EXPECT_EQ(table.Get("d").GetType(), ort::core::StoreType::String);
  EXPECT_EQ(table.Get("d").values->AsTypedArray<ort::core::RIndirectString>().GetElement(0).Get().toUtf8(),
            "2000-01-31");
  EXPECT_EQ(table.Get("m").values->AsColumn().GetSpecialRows().size(), static_cast<std::size_t>(rows));
  EXPECT_EQ(table.Get("m").values->AsTypedArray<std::int64_t>().GetElement(rows), 7);
}

TEST(SeparatedValuesTest, ExampleFilesHaveTheirTypes) {
  auto const types = [](char const* file) {
    DataRoots const roots{OSTREL_SOURCE_DIR "/examples/data", {}};
    auto const table = LoadFile(file, roots);
    std::string text = std::to_string(table.rowCount);
    for (auto const& column : table.columns) {
      text += " " + column.name + ":" + ort::core::StoreTypeToString(column.GetType()).toUtf8();
    }
    return text;
  };
  EXPECT_EQ(types("seattle-weather.csv"),
            "1461 date:Date precipitation:Real64 temp_max:Real64 temp_min:Real64 wind:Real64 weather:String");
  EXPECT_EQ(types("earthquakes.csv"),
            "1707 time_ms:Int64 longitude:Real64 latitude:Real64 depth_km:Real64 mag:Real64 place:String");
  EXPECT_EQ(types("gapminder-health-income.csv"),
            "187 country:String income:Int64 health:Real64 population:Int64 region:String");
  EXPECT_EQ(types("global-temp.csv"), "144 year:Int64 temp:Real64");
  EXPECT_EQ(types("unemployment-across-industries.json"),
            "1708 series:String year:Int64 month:Int64 count:Int64 rate:Real64 date:DateTime");
}

}  // namespace
}  // namespace ostrel::charts
