#include <fmt/format.h>

#include <algorithm>
#include <optional>

#include "charts/document/Readers.h"

namespace ostrel::charts {

namespace {

/// Takes an accessor apart and puts the column's name together.
class Accessor {
 public:
  explicit Accessor(JsonValue const& value) : value_(value), text_(value.ReadText()) {}

  std::string ReadName() {
    while (place_ < text_.size()) {
      if (text_[place_] == '[') {
        ReadBrackets();
      } else {
        ReadPlain();
      }
    }
    if (name_.empty()) value_.Fail("expects the name of a field");
    return name_;
  }

 private:
  /// A key up to the next point or bracket; a backslash takes the next character as it is.
  void ReadPlain() {
    std::string key;
    for (; place_ < text_.size() && text_[place_] != '.' && text_[place_] != '['; ++place_) {
      if (text_[place_] == '\\' && place_ + 1 < text_.size()) ++place_;
      key += text_[place_];
    }
    AddKey(key);
    if (place_ == text_.size() || text_[place_] == '[') return;
    ++place_;
    if (place_ == text_.size() || text_[place_] == '[') value_.Fail("a name is missing after the last point");
  }

  void ReadBrackets() {
    ++place_;
    bool const isQuoted = place_ < text_.size() && (text_[place_] == '\'' || text_[place_] == '"');
    if (isQuoted) {
      AddKey(ReadQuoted());
    } else {
      auto const end = std::min(text_.find(']', place_), text_.size());
      AddIndexOrKey(text_.substr(place_, end - place_));
      place_ = end;
    }
    if (place_ == text_.size() || text_[place_] != ']') value_.Fail("a closing bracket is missing");
    ++place_;
    if (place_ < text_.size() && text_[place_] == '.') {
      ++place_;
      if (place_ == text_.size()) value_.Fail("a name is missing after the last point");
    }
  }

  std::string ReadQuoted() {
    char const quote = text_[place_++];
    std::string key;
    for (; place_ < text_.size() && text_[place_] != quote; ++place_) {
      if (text_[place_] == '\\' && place_ + 1 < text_.size()) ++place_;
      key += text_[place_];
    }
    if (place_ == text_.size()) value_.Fail("a closing quote is missing");
    ++place_;
    return key;
  }

  void AddKey(std::string const& key) {
    if (key.empty()) value_.Fail("a name between two points or brackets is missing");
    name_ += (name_.empty() ? "" : ".") + key;
  }

  void AddIndexOrKey(std::string const& text) {
    auto const isDigit = [](char letter) { return letter >= '0' && letter <= '9'; };
    bool const isIndex = !text.empty() && std::all_of(text.begin(), text.end(), isDigit);
    if (!isIndex || name_.empty()) return AddKey(text);
    name_ += "[" + text + "]";
  }

  JsonValue const& value_;
  std::string text_;
  std::string name_;
  std::size_t place_ = 0;
};

}  // namespace

std::string ReadFieldName(JsonValue const& value) {
  if (value.IsObject()) value.Fail("repeated fields are not supported; name one field");
  return Accessor(value).ReadName();
}

}  // namespace ostrel::charts
