#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <unordered_map>

#include "ostrelrtcore/BufferPool.h"
#include "ostrelrtcore/builtins/Columns.h"

/// Equal rows found by hashing: values as StoreValue::Equals tells them apart, so that NaN equals NaN and
/// both zeros are equal; special rows by their kind.
namespace ort::core::builtins {

/// Numbers of 64-bit words: open addressing with linear probing, at most half full.
class WordTable {
 public:
  WordTable() { Allocate(kFirstSlots); }

  /// The word's number, which is `next` when the word is new; `next` is counted up then.
  int FindOrInsert(uint64 word, int& next) {
    if (used_ * 2 >= slots_.size()) Grow();
    Slot& slot = slots_[Probe(word)];
    if (slot.number < 0) {
      slot = {word, next++};
      ++used_;
    }
    return slot.number;
  }
  /// -1 for a word that is not there.
  int Find(uint64 word) const { return slots_[Probe(word)].number; }

  /// Whether most look-ups miss the caches, so that it pays to fetch their slots some time before.
  bool IsLarge() const { return slots_.size() > kLargeSlots; }
  void Prefetch(uint64 word) const { __builtin_prefetch(&slots_[FirstSlot(word)], 1); }

 private:
  static constexpr std::size_t kFirstSlots = 64;
  static constexpr std::size_t kLargeSlots = 1 << 15;
  struct Slot {
    uint64 word = 0;
    int number = -1;
  };

  std::size_t FirstSlot(uint64 word) const {
    return StringHash::Mix(word ^ 0xD1B54A32D192ED03U, 0x9E3779B97F4A7C15U) & (slots_.size() - 1);
  }
  std::size_t Probe(uint64 word) const {
    std::size_t const mask = slots_.size() - 1;
    std::size_t at = FirstSlot(word);
    while (slots_[at].number >= 0 && slots_[at].word != word) at = (at + 1) & mask;
    return at;
  }
  void Allocate(std::size_t count);
  void Grow();

  PooledBuffer memory_;
  std::span<Slot> slots_;
  std::size_t used_ = 0;
};

namespace detail {

template <class T>
uint64 RealWord(T value) {
  using Bits = std::conditional_t<sizeof(T) == 4, uint32, uint64>;
  if (value == 0) return 0;
  return std::bit_cast<Bits>(value != value ? std::numeric_limits<T>::quiet_NaN() : value);
}
inline uint64 WordOf(uint8 value) { return value; }
inline uint64 WordOf(uint32 value) { return value; }
inline uint64 WordOf(uint64 value) { return value; }
inline uint64 WordOf(float value) { return RealWord(value); }
inline uint64 WordOf(double value) { return RealWord(value); }
/// Equal texts share one address, which is all that an interned string is made of.
inline uint64 WordOf(RIndirectString const& text) {
  static_assert(sizeof(text) == sizeof(uint64));
  uint64 word;
  std::memcpy(&word, static_cast<void const*>(&text), sizeof(word));
  return word;
}

}  // namespace detail

/// Numbers of the different values of columns of one element type, counted from 0 in order of appearance.
class RowNumbers {
 public:
  RowNumbers() { kinds_.fill(-1); }

  int GetCount() const { return count_; }

  /// Calls visit(row, number) for every row; a value that was not met before gets the next number.
  template <class Visit>
  void Number(StoreValue const& column, Visit const& visit) {
    ForEachWord(
        column, [&](int row, uint64 word) { visit(row, words_.FindOrInsert(word, count_)); },
        [&](int row, SpecialKind kind) {
          int& number = kinds_[static_cast<std::size_t>(kind)];
          if (number < 0) number = count_++;
          visit(row, number);
        });
  }

  /// Calls visit(row, number) for every row, with -1 for a value that was not met.
  template <class Visit>
  void Find(StoreValue const& column, Visit const& visit) {
    ForEachWord(
        column, [&](int row, uint64 word) { visit(row, words_.Find(word)); },
        [&](int row, SpecialKind kind) { visit(row, kinds_[static_cast<std::size_t>(kind)]); });
  }

 private:
  template <class VisitWord, class VisitKind>
  void ForEachWord(StoreValue const& column, VisitWord const& visitWord, VisitKind const& visitKind) {
    RowKinds const kinds(column.AsColumn());
    auto const run = [&]<class T>(auto const& wordOf) {
      auto const values = column.AsTypedArray<T>().GetValues();
      int const count = static_cast<int>(values.size());
      if (!kinds.HasSpecials()) {
        VisitBlocks(
            count, [&](int row) { return wordOf(values[static_cast<std::size_t>(row)]); }, visitWord);
        return;
      }
      for (int row = 0; row < count; ++row) {
        if (kinds[row] == SpecialKind::None) {
          visitWord(row, wordOf(values[static_cast<std::size_t>(row)]));
        } else {
          visitKind(row, kinds[row]);
        }
      }
    };
    auto const plain = [](auto const& value) { return detail::WordOf(value); };
    switch (ElementType(column)) {
      case StoreType::Real32:
        return run.template operator()<float>(plain);
      case StoreType::Real64:
        return run.template operator()<double>(plain);
      default:
        break;
    }
    VisitStorage(column.AsColumn().GetStorage(), [&]<class T>() {
      if constexpr (std::is_same_v<T, Value>) {
        run.template operator()<T>([this](Value const& value) { return WordOfWhole(value); });
      } else {
        run.template operator()<T>(plain);
      }
    });
  }

  template <class WordAt, class VisitWord>
  void VisitBlocks(int count, WordAt const& wordAt, VisitWord const& visitWord) {
    constexpr int kBlock = 32;
    std::array<uint64, kBlock> words;
    for (int first = 0; first < count; first += kBlock) {
      int const rows = std::min(kBlock, count - first);
      bool const isLarge = words_.IsLarge();
      for (int i = 0; i < rows; ++i) {
        words[static_cast<std::size_t>(i)] = wordAt(first + i);
        if (isLarge) words_.Prefetch(words[static_cast<std::size_t>(i)]);
      }
      for (int i = 0; i < rows; ++i) visitWord(first + i, words[static_cast<std::size_t>(i)]);
    }
  }

  struct HashWhole {
    std::size_t operator()(Value const& value) const { return value->GetHash(); }
  };
  struct EqualWhole {
    bool operator()(Value const& a, Value const& b) const { return a->Equals(*b); }
  };
  uint64 WordOfWhole(Value const& value) { return whole_.try_emplace(value, whole_.size()).first->second; }

  WordTable words_;
  std::array<int, 256> kinds_;
  int count_ = 0;
  std::unordered_map<Value, uint64, HashWhole, EqualWhole> whole_;
};

/// The rows of one or more columns of one length, told apart by all columns together.
struct RowGroups {
  ColumnBuilder<int> groups;   ///< Of each row its group, counted from 0 in order of appearance.
  std::vector<int> firstRows;  ///< Of each group its first row.
};

/// Throws 219 without columns and 259 where they differ in length.
RowGroups GroupRows(std::span<Value const> columns);

}  // namespace ort::core::builtins
