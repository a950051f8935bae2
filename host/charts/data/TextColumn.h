#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "charts/data/ColumnStore.h"
#include "charts/data/SeparatedRecords.h"

namespace ostrel::charts {

/// Strings interned lately, for columns with few different ones: a hit saves the pool's lock and look-up. The
/// texts' storage must outlive the cache.
class RecentStrings {
 public:
  RecentStrings() : slots_(kSlots) {}
  /// Interns a text; `misses` counts the texts that were not among the recent ones.
  ort::core::RIndirectString const& Get(std::string_view text, std::size_t& misses);

 private:
  static constexpr std::size_t kSlots = 2048;
  struct Slot {
    std::string_view text;
    ort::core::RIndirectString value;
  };
  std::vector<Slot> slots_;
};

/// One column's fields in a block of records that lie one after the other.
struct FieldBlock {
  SeparatedField const* first;
  std::size_t stride;
  std::size_t count;
  SeparatedField const& Get(std::size_t row) const { return first[row * stride]; }
};

/// A column that is read from text and takes the narrowest type of all its fields.
class TextColumn {
 public:
  enum class Kind { AnyType, OnlyStrings };
  TextColumn(Kind kind, std::size_t mostRows);

  /// Does nothing once the column needs all of its texts.
  void Read(FieldBlock const& block, RecentStrings& strings);

  /// The fields have no type in common, so that the column must be read again, from the first row on, as
  /// strings.
  bool NeedsTexts() const { return needsTexts_; }
  ColumnStore& GetStore() { return store_; }

 private:
  std::size_t ReadUndecided(FieldBlock const& block, std::size_t row, RecentStrings& strings);
  std::size_t ReadNumbers(FieldBlock const& block, std::size_t row);
  std::size_t ReadDates(FieldBlock const& block, std::size_t row);
  std::size_t ReadBools(FieldBlock const& block, std::size_t row);
  std::size_t ReadStrings(FieldBlock const& block, std::size_t row, RecentStrings& strings);
  std::size_t ReadDifferentStrings(FieldBlock const& block, std::size_t row);
  template <typename Accept>
  std::size_t ReadWhile(FieldBlock const& block, std::size_t row, Accept accept);
  bool AppendMissing(std::string_view text);

  Kind kind_;
  ColumnStore store_;
  bool needsTexts_ = false;
  bool stringsDiffer_ = false;  // so that looking among the recent ones is lost labour
  std::string scratch_;
};

}  // namespace ostrel::charts
