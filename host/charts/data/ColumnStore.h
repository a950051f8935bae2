#pragma once

#include <bit>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "charts/data/PooledAllocator.h"
#include "ostrelrtcore/Factory.h"

namespace ostrel::charts {

/// A column that grows row by row and takes the narrowest type that holds its rows so far. The Append
/// functions give false, and append nothing, when the value fits no type that the column could take but
/// String.
class ColumnStore {
 public:
  using StoreType = ort::core::StoreType;
  using SpecialKind = ort::core::SpecialKind;

  void Reserve(std::size_t rows) { bits_.reserve(rows); }

  /// Empty as long as all rows are special.
  StoreType GetType() const { return type_; }
  std::size_t GetCount() const { return type_ == StoreType::String ? strings_.size() : bits_.size(); }
  bool HasSpecials() const { return !specialRows_.empty(); }

  void AppendSpecial(SpecialKind kind) {
    specialRows_.push_back(static_cast<int>(GetCount()));
    specialKinds_.push_back(kind);
    if (type_ == StoreType::String) {
      strings_.emplace_back();
    } else {
      bits_.push_back(0);
    }
  }

  bool AppendInteger(std::int64_t value) {
    if (type_ == StoreType::Real64) return AppendReal(static_cast<double>(value));
    return AppendBits(StoreType::Int64, static_cast<std::uint64_t>(value));
  }

  /// NaN becomes a Missing row.
  bool AppendReal(double value) {
    if (value != value) {
      AppendSpecial(SpecialKind::Missing);
      return true;
    }
    if (type_ == StoreType::Int64) TurnIntegersIntoReals();
    return AppendBits(StoreType::Real64, std::bit_cast<std::uint64_t>(value));
  }

  bool AppendBool(bool value) { return AppendBits(StoreType::Bool, value ? 1 : 0); }

  bool AppendDate(ort::core::OrtDateTime instant, bool hasTime) {
    if (hasTime && type_ == StoreType::Date) type_ = StoreType::DateTime;
    bool const withTime = hasTime || type_ == StoreType::DateTime;
    return AppendBits(withTime ? StoreType::DateTime : StoreType::Date, instant.GetValue());
  }

  /// False unless the column is of strings or has no ordinary row yet.
  bool AppendString(ort::core::RIndirectString text) {
    if (type_ != StoreType::String) {
      if (type_ != StoreType::Empty) return false;
      TurnIntoStrings();
    }
    strings_.push_back(std::move(text));
    return true;
  }

  /// Makes a String column of what is there (see DescribeScalar).
  void TurnIntoStrings();

  /// The column, of type `emptyType` when it has nothing but special rows. The store is empty afterwards.
  std::shared_ptr<ort::core::StoreValue> Finish(StoreType emptyType = StoreType::Real64);

 private:
  template <typename T>
  using Pooled = std::vector<T, PooledAllocator<T>>;

  bool AppendBits(StoreType type, std::uint64_t bits) {
    if (type_ != type) {
      if (type_ != StoreType::Empty) return false;
      type_ = type;
    }
    bits_.push_back(bits);
    return true;
  }
  void TurnIntegersIntoReals();

  StoreType type_ = StoreType::Empty;
  Pooled<std::uint64_t> bits_;  // of a String column empty
  Pooled<ort::core::RIndirectString> strings_;
  std::vector<int> specialRows_;
  std::vector<SpecialKind> specialKinds_;
};

/// The text of a stored scalar that is not a string: numbers in the shortest form that reads back to the same
/// value, "true" and "false", ISO dates and date-times.
std::string DescribeScalar(ort::core::StoreType type, std::uint64_t bits);

}  // namespace ostrel::charts
