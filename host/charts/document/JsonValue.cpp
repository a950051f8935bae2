#include "charts/document/JsonValue.h"

#include <fmt/format.h>

#include <cmath>

#include "charts/document/DateLiterals.h"

namespace ostrel::charts {

namespace {

constexpr std::size_t kMostTextBytes = std::size_t{1} << 16;
constexpr std::size_t kMostElements = 10'000;

std::string DescribeRange(NumberRange const& range) {
  bool const hasMaximum = range.maximum < std::numeric_limits<double>::max();
  auto lower = fmt::format("{} {}", range.isAboveMinimum ? "above" : "of at least", range.minimum);
  if (!hasMaximum) return lower;
  if (!range.isAboveMinimum) return fmt::format("from {} to {}", range.minimum, range.maximum);
  return fmt::format("{} and at most {}", lower, range.maximum);
}

}  // namespace

double JsonValue::ReadNumber(NumberRange const& range) const {
  if (!value_->is_number()) Fail("expects a number, not " + Describe());
  auto const number = value_->get<double>();
  bool const isAbove = range.isAboveMinimum ? number > range.minimum : number >= range.minimum;
  if (!isAbove || !(number <= range.maximum)) {
    Fail(fmt::format("expects a number {}, not {}", DescribeRange(range), Describe()));
  }
  return number;
}

bool JsonValue::ReadBool() const {
  if (!value_->is_boolean()) Fail("expects true or false, not " + Describe());
  return value_->get<bool>();
}

std::string JsonValue::ReadText() const {
  auto const* text = value_->get_ptr<std::string const*>();
  if (text == nullptr) Fail("expects a text, not " + Describe());
  if (text->size() > kMostTextBytes) {
    Fail(fmt::format("{} bytes of text are more than {}", text->size(), kMostTextBytes));
  }
  if (text->find('\0') != std::string::npos) Fail("the text has a NUL character");
  return *text;
}

std::string JsonValue::ReadLines() const {
  if (!value_->is_array()) return ReadText();
  std::string lines;
  for (auto const& line : ReadArray()) {
    if (&line.Get() != &value_->front()) lines += '\n';
    lines += line.ReadText();
    if (lines.size() > kMostTextBytes) Fail(fmt::format("the lines have more than {} bytes", kMostTextBytes));
  }
  return lines;
}

TitleSpec JsonValue::ReadTitle() const {
  if (IsNull()) return {.isGiven = true, .text = {}};
  if (!value_->is_array() && !value_->is_string()) {
    Fail("expects a text, an array of lines or null, not " + Describe());
  }
  return {.isGiven = true, .text = ReadLines()};
}

Literal JsonValue::ReadLiteral() const {
  if (value_->is_boolean()) return value_->get<bool>();
  if (value_->is_number()) return ReadNumber();
  if (value_->is_string()) return ReadText();
  if (IsObject()) return ReadDateObject(*this);
  Fail("expects a text, a number, true or false, not " + Describe());
}

std::vector<Literal> JsonValue::ReadLiterals() const {
  std::vector<Literal> literals;
  for (auto const& element : ReadArray()) literals.push_back(element.ReadLiteral());
  return literals;
}

std::vector<JsonValue> JsonValue::ReadArray() const {
  if (!value_->is_array()) Fail("expects an array, not " + Describe());
  if (value_->size() > kMostElements) {
    Fail(fmt::format("{} elements are more than {}", value_->size(), kMostElements));
  }
  std::vector<JsonValue> elements;
  for (auto const& element : *value_) {
    elements.push_back({*tree_, *fileName_, element, fmt::format("{}[{}]", path_, elements.size()), owned_});
  }
  return elements;
}

std::vector<std::pair<std::string const*, JsonValue>> JsonValue::ReadObject() const {
  if (!IsObject()) Fail("expects an object, not " + Describe());
  if (value_->size() > kMostElements) {
    Fail(fmt::format("{} properties are more than {}", value_->size(), kMostElements));
  }
  std::vector<std::pair<std::string const*, JsonValue>> members;
  for (auto const* member : tree_->GetMembers(*value_)) {
    members.emplace_back(&member->first, JsonValue{*tree_, *fileName_, member->second,
                                                   MemberPath(path_, member->first), owned_});
  }
  return members;
}

JsonValue JsonValue::WithDefaults(JsonValue const& defaults) const {
  auto merged = std::make_shared<JsonTree::Json>(*defaults.value_);
  merged->update(*value_);
  return {*tree_, *fileName_, *merged, path_, merged};
}

void JsonValue::Fail(std::string const& cause) const {
  throw DocumentError(fmt::format("{}: {}: {}", *fileName_, path_, cause));
}

void JsonValue::FailAt(std::string_view below, std::string const& cause) const {
  throw DocumentError(fmt::format("{}: {}.{}: {}", *fileName_, path_, below, cause));
}

std::string JsonValue::Describe() const {
  if (value_->is_object()) return "an object";
  if (value_->is_array()) return "an array";
  auto const* text = value_->get_ptr<std::string const*>();
  return text != nullptr ? QuoteText(*text) : value_->dump();
}

}  // namespace ostrel::charts
