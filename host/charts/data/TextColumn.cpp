#include "charts/data/TextColumn.h"

#include <array>
#include <cstring>
#include <optional>
#include <span>
#include <utility>

#include "charts/data/DateText.h"
#include "charts/data/NumberText.h"

namespace ostrel::charts {

using ort::core::RIndirectString;
using ort::core::SpecialKind;
using ort::core::StoreType;

namespace {

/// A block of so many rows tells whether a column's strings repeat.
constexpr std::size_t kTellingRows = 256;

bool IsMissingWord(std::string_view text) {
  return text == "null" || text == "NaN" || text == "nan" || text == "NA" || text == "N/A";
}

std::optional<bool> ReadBool(std::string_view text) {
  if (text == "true") return true;
  if (text == "false") return false;
  return std::nullopt;
}

std::uint64_t LoadUpToEight(char const* bytes, std::size_t count) {
  std::uint64_t word = 0;
  std::memcpy(&word, bytes, count < 8 ? count : 8);
  return word;
}

}  // namespace

RIndirectString const& RecentStrings::Get(std::string_view text, std::size_t& misses) {
  // Length and both ends tell most texts apart; a collision costs a look-up in the pool.
  auto const tail = text.size() > 8 ? LoadUpToEight(text.data() + text.size() - 8, 8) : 0;
  auto hash = (LoadUpToEight(text.data(), text.size()) ^ text.size()) * 0x9E3779B97F4A7C15U;
  hash = (hash ^ (hash >> 29) ^ tail) * 0xBF58476D1CE4E5B9U;
  auto& slot = slots_[hash >> 53];
  if (slot.text != text) {
    slot = {text, RIndirectString::FromUtf8(text)};
    ++misses;
  }
  return slot.value;
}

TextColumn::TextColumn(Kind kind, std::size_t mostRows) : kind_(kind) { store_.Reserve(mostRows); }

void TextColumn::Read(FieldBlock const& block, RecentStrings& strings) {
  std::size_t row = 0;
  while (row < block.count && !needsTexts_) {
    switch (store_.GetType()) {
      case StoreType::Empty:
        row = ReadUndecided(block, row, strings);
        break;
      case StoreType::Int64:
      case StoreType::Real64:
        row = ReadNumbers(block, row);
        break;
      case StoreType::Date:
      case StoreType::DateTime:
        row = ReadDates(block, row);
        break;
      case StoreType::Bool:
        row = ReadBools(block, row);
        break;
      default:
        row = ReadStrings(block, row, strings);
        break;
    }
  }
}

/// Appends fields as long as `accept` takes them or they are missing, and stops for good at the first other
/// one.
template <typename Accept>
std::size_t TextColumn::ReadWhile(FieldBlock const& block, std::size_t row, Accept accept) {
  for (; row < block.count; ++row) {
    auto const text = TrimBlanks(block.Get(row).GetText(scratch_));
    if (accept(text) || AppendMissing(text)) continue;
    needsTexts_ = true;
    break;
  }
  return row;
}

bool TextColumn::AppendMissing(std::string_view text) {
  if (!text.empty() && !IsMissingWord(text)) return false;
  // An empty cell is null, a word for none no number.
  store_.AppendSpecial(text.empty() ? SpecialKind::Null : SpecialKind::Missing);
  return true;
}

/// Reads up to and including the first field that says something.
std::size_t TextColumn::ReadUndecided(FieldBlock const& block, std::size_t row, RecentStrings& strings) {
  if (kind_ == Kind::OnlyStrings) return ReadStrings(block, row, strings);
  for (; row < block.count; ++row) {
    auto const text = TrimBlanks(block.Get(row).GetText(scratch_));
    if (AppendMissing(text)) continue;
    if (ReadNumber(text).kind != NumberText::Kind::None) return ReadNumbers(block, row);
    if (ReadPlainDate(text)) return ReadDates(block, row);
    if (ReadBool(text)) return ReadBools(block, row);
    // What was Missing so far is a text in a column of strings.
    if (!store_.HasSpecials()) return ReadStrings(block, row, strings);
    needsTexts_ = true;
    break;
  }
  return row;
}

std::size_t TextColumn::ReadNumbers(FieldBlock const& block, std::size_t row) {
  return ReadWhile(block, row, [this](std::string_view text) {
    auto const number = ReadNumber(text);
    if (number.kind == NumberText::Kind::None) return false;
    return number.kind == NumberText::Kind::Integer ? store_.AppendInteger(number.integer)
                                                    : store_.AppendReal(number.real);
  });
}

std::size_t TextColumn::ReadDates(FieldBlock const& block, std::size_t row) {
  return ReadWhile(block, row, [this](std::string_view text) {
    auto const date = ReadPlainDate(text);
    return date && store_.AppendDate(date->instant, date->hasTime);
  });
}

std::size_t TextColumn::ReadBools(FieldBlock const& block, std::size_t row) {
  return ReadWhile(block, row, [this](std::string_view text) {
    auto const value = ReadBool(text);
    return value && store_.AppendBool(*value);
  });
}

std::size_t TextColumn::ReadStrings(FieldBlock const& block, std::size_t row, RecentStrings& strings) {
  if (stringsDiffer_) return ReadDifferentStrings(block, row);
  auto const first = row;
  std::size_t misses = 0;
  for (; row < block.count; ++row) {
    auto const& field = block.Get(row);
    if (field.hasDoubledQuotes) {
      store_.AppendString(RIndirectString::FromUtf8(field.GetText(scratch_)));
    } else {
      store_.AppendString(strings.Get(field.GetRawText(), misses));
    }
  }
  stringsDiffer_ = row - first >= kTellingRows && misses > (row - first) / 4 * 3;
  return row;
}

std::size_t TextColumn::ReadDifferentStrings(FieldBlock const& block, std::size_t row) {
  std::array<std::string_view, 64> texts;
  std::array<RIndirectString, 64> strings;
  while (row < block.count) {
    std::size_t count = 0;
    while (count < texts.size() && row < block.count && !block.Get(row).hasDoubledQuotes) {
      texts[count++] = block.Get(row++).GetRawText();
    }
    RIndirectString::FromUtf8(std::span(texts.data(), count), std::span(strings.data(), count));
    for (std::size_t i = 0; i < count; ++i) store_.AppendString(std::move(strings[i]));
    if (row == block.count || !block.Get(row).hasDoubledQuotes) continue;
    store_.AppendString(RIndirectString::FromUtf8(block.Get(row++).GetText(scratch_)));
  }
  return row;
}

}  // namespace ostrel::charts
