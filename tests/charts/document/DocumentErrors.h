#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "charts/document/Readers.h"

namespace ostrel::charts {

struct ErrorCase {
  std::string text;
  std::string message;  ///< without the file's name
};

inline std::string MessageOf(std::string const& json) {
  try {
    ParseChartDocument(json, "a.vl.json");
  } catch (DocumentError const& error) {
    return error.what();
  }
  return "accepted";
}

/// Every case's text, put into a document, gives its message; an empty message means that it is accepted.
inline void ExpectMessages(std::string const& before, std::string const& after,
                           std::vector<ErrorCase> const& cases) {
  for (auto const& [text, message] : cases) {
    auto const expected = message.empty() ? "accepted" : "a.vl.json: " + message;
    EXPECT_EQ(MessageOf(before + text + after), expected) << text;
  }
}

inline void ExpectOfRoot(std::vector<ErrorCase> const& cases) {
  ExpectMessages(R"({"data": {"url": "a.csv"}, "mark": "point", )", "}", cases);
}
inline void ExpectOfMark(std::vector<ErrorCase> const& cases) {
  ExpectMessages(R"({"data": {"url": "a.csv"}, "mark": )", "}", cases);
}
inline void ExpectOfEncoding(std::vector<ErrorCase> const& cases) {
  ExpectMessages(R"({"data": {"url": "a.csv"}, "mark": "point", "encoding": {)", "}}", cases);
}
/// Of channel x with a quantitative field.
inline void ExpectOfX(std::vector<ErrorCase> const& cases) {
  ExpectMessages(
      R"({"data": {"url": "a.csv"}, "mark": "point", "encoding": {"x": {"field": "a", "type": "quantitative", )",
      "}}}", cases);
}

}  // namespace ostrel::charts
