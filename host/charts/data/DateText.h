#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "ostrelrtcore/OrtDateTime.h"

namespace ostrel::charts {

struct DateText {
  ort::core::OrtDateTime instant;
  bool hasTime = false;  // a time of day was written
};

/// The forms that make a text column a date column: ISO 8601 dates and date-times, "2020/03/01" in place of
/// "2020-03-01", and "2020-03".
std::optional<DateText> ReadPlainDate(std::string_view text);

/// Those, and the looser forms that ConvertToDate lists.
std::optional<DateText> ReadFreeDate(std::string_view text);

/// A pattern such as "%d %b %Y", which a whole text has to match.
class DatePattern {
 public:
  /// Throws DataError for a letter that is not supported.
  explicit DatePattern(std::string pattern);
  std::optional<DateText> Read(std::string_view text) const;

 private:
  std::string pattern_;
};

}  // namespace ostrel::charts
