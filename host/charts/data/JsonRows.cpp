#include "charts/data/JsonRows.h"

#include <fmt/format.h>

#include <charconv>

namespace ostrel::charts {

using ort::core::RIndirectString;
using ort::core::StoreType;

JsonRows::JsonRows(std::string const& property, std::string sourceName, bool acceptsOneRow)
    : sourceName_(std::move(sourceName)),
      property_(property),
      steps_(ParseProperty(property, sourceName_)),
      acceptsOneRow_(acceptsOneRow),
      rows_(sourceName_) {}

/// "a.b[0].c" and "a['b.c']".
std::vector<JsonRows::Step> JsonRows::ParseProperty(std::string const& property,
                                                    std::string const& sourceName) {
  std::vector<Step> steps;
  std::size_t at = 0;
  auto const fail = [&] {
    throw DataError(fmt::format("{}: '{}' is no property path", sourceName, property));
  };
  while (at < property.size()) {
    if (property[at] != '[') {
      if (property[at] == '.' && !steps.empty()) ++at;
      auto const end = std::min(property.find_first_of(".[", at), property.size());
      if (end == at) fail();
      steps.push_back({property.substr(at, end - at)});
      at = end;
      continue;
    }
    auto const close = property.find(']', at);
    if (close == std::string::npos || close == at + 1) fail();
    auto const inside = property.substr(at + 1, close - at - 1);
    Step step;
    if (inside.size() > 2 && (inside.front() == '\'' || inside.front() == '"') &&
        inside.back() == inside.front()) {
      step.key = inside.substr(1, inside.size() - 2);
    } else {
      step.isIndex = true;
      auto const result = std::from_chars(inside.data(), inside.data() + inside.size(), step.index);
      if (result.ec != std::errc() || result.ptr != inside.data() + inside.size()) fail();
    }
    steps.push_back(std::move(step));
    at = close + 1;
  }
  return steps;
}

void JsonRows::OnBool(bool value) { OnScalar({StoreType::Bool, value ? 1U : 0U, {}}); }

void JsonRows::OnInteger(std::int64_t value) {
  OnScalar({StoreType::Int64, static_cast<std::uint64_t>(value), {}});
}

void JsonRows::OnReal(double value) {
  OnScalar({StoreType::Real64, std::bit_cast<std::uint64_t>(value), {}});
}

void JsonRows::OnText(std::string_view value) {
  if (place_ != Place::Rows) return OnScalar({StoreType::String, 0, {}});
  if (value.size() > kMostTextBytes) Fail(fmt::format("a text is longer than {} MiB", kMostTextBytes >> 20));
  if (value.find('\0') != std::string_view::npos) Fail("a text holds a NUL character");
  OnScalar({StoreType::String, 0, RIndirectString::FromUtf8(value)});
}

void JsonRows::OnKey(std::string_view key) {
  if (place_ == Place::BeforeRows) {
    if (depth_ == matched_) levels_.back().key = key;
    return;
  }
  if (place_ == Place::BehindRows) return;
  name_.resize(levels_.back().prefixLength);
  if (levels_.size() > 1) name_ += '.';
  name_ += key;
  CheckName();
}

void JsonRows::OnScalar(RowCell cell) {
  switch (place_) {
    case Place::BeforeRows:
      if (IsOnTheWay() && depth_ == steps_.size())
        Fail("holds a single value where an array of rows is expected");
      break;
    case Place::Rows:
      if (depth_ == rowsDepth_) {
        rows_.SetField("data", std::move(cell));
        rows_.EndRow();
      } else {
        NameElement();
        rows_.SetField(name_, std::move(cell));
      }
      break;
    case Place::BehindRows:
      break;
  }
}

void JsonRows::Begin(bool isArray) {
  if (depth_ == kMostLevels) Fail(fmt::format("nested more than {} levels deep", kMostLevels));
  if (place_ == Place::BeforeRows) {
    BeginBeforeRows(isArray);
  } else if (place_ == Place::Rows) {
    BeginInRows(isArray);
  }
  ++depth_;
}

void JsonRows::BeginBeforeRows(bool isArray) {
  if (!IsOnTheWay()) return;
  if (depth_ < steps_.size()) {
    levels_.push_back({isArray, 0, 0, {}});
    matched_ = depth_ + 1;
    return;
  }
  if (!isArray && !acceptsOneRow_) {
    Fail(property_.empty()
             ? "holds an object where an array of rows is expected; 'property' in the format names "
               "an array inside"
             : fmt::format("'{}' is an object where an array of rows is expected", property_));
  }
  place_ = Place::Rows;
  levels_.clear();
  isOneRow_ = !isArray;
  rowsDepth_ = isArray ? depth_ + 1 : depth_;
  if (isOneRow_) levels_.emplace_back();
}

void JsonRows::BeginInRows(bool isArray) {
  if (depth_ == rowsDepth_) {
    if (isArray) Fail("is an array; rows are objects or single values");
    name_.clear();
  } else {
    NameElement();
  }
  levels_.push_back({isArray, 0, name_.size(), {}});
}

void JsonRows::End() {
  --depth_;
  switch (place_) {
    case Place::BeforeRows:
      matched_ = std::min(matched_, depth_);
      levels_.resize(matched_);
      break;
    case Place::Rows:
      if (levels_.empty()) {
        place_ = Place::BehindRows;
        break;
      }
      levels_.pop_back();
      if (!levels_.empty()) break;
      rows_.EndRow();
      if (isOneRow_) place_ = Place::BehindRows;
      break;
    case Place::BehindRows:
      break;
  }
}

/// Whether the value that begins lies on the way to the rows, or is their array itself. Asked once a value.
bool JsonRows::IsOnTheWay() {
  if (depth_ != matched_) return false;
  if (depth_ == 0) return true;
  auto& level = levels_.back();
  auto const& step = steps_[depth_ - 1];
  if (!level.isArray) return !step.isIndex && level.key == step.key;
  return level.index++ == step.index && step.isIndex;
}

/// The name of an array's next element; an object's members have their names from their keys.
void JsonRows::NameElement() {
  auto& level = levels_.back();
  if (!level.isArray) return;
  name_.resize(level.prefixLength);
  fmt::format_to(std::back_inserter(name_), "[{}]", level.index++);
  CheckName();
}

void JsonRows::CheckName() const {
  if (name_.size() > kMostNameBytes)
    Fail(fmt::format("a field's name is longer than {} bytes", kMostNameBytes));
  if (name_.find('\0') != std::string::npos) Fail("a field's name holds a NUL character");
}

void JsonRows::Fail(std::string_view cause) const {
  if (place_ == Place::BeforeRows) throw DataError(fmt::format("{}: {}", sourceName_, cause));
  throw DataError(fmt::format("{}: row {}: {}", sourceName_, rows_.GetRowCount() + 1, cause));
}

DataTable JsonRows::Finish() {
  if (place_ == Place::BeforeRows) Fail(fmt::format("has no '{}'", property_));
  return rows_.Finish();
}

}  // namespace ostrel::charts
