#pragma once

#include <optional>
#include <span>
#include <string>
#include <utility>

#include "ostrelrtcore/builtins/Columns.h"

/// Functions of several inputs that go row by row: a scalar beside columns counts for every row, scalars
/// alone give a scalar, and a row with a special value among its inputs stays special.
namespace ostrel::charts {

/// A column or a scalar of one element type.
template <class T>
class RowInput {
 public:
  using Value = ort::core::builtins::Value;

  /// Throws 55 for a value of another type.
  RowInput(Value const& value, char const* what) : value_(value) {
    using namespace ort::core;
    auto const& info = value->GetTypeInfo();
    bool const isColumn = builtins::IsColumn(*value);
    StoreType const type = isColumn ? info.GetElementType().GetStoreType() : info.GetStoreType();
    if (type != ElementTraits<T>::kStoreType) {
      builtins::ThrowError(OrtError_WrongValueKind,
                           std::string(what) + ": " +
                               StoreTypeToString(ElementTraits<T>::kStoreType).toUtf8() + " wanted, not " +
                               StoreTypeToString(type).toUtf8());
    }
    if (!isColumn) {
      scalarKind_ = value->GetSpecialKind();
      if (scalarKind_ == SpecialKind::None) scalar_ = FetchStoreValue<T>(value);
      return;
    }
    auto const& column = value->AsTypedArray<T>();
    count_ = column.GetCount();
    kinds_ = builtins::RowKinds(column);
    first_ = static_cast<T const*>(column.GetFirstElement());
    step_ = column.IsConstant() ? 0 : 1;
  }
  RowInput(RowInput const&) = delete;
  RowInput& operator=(RowInput const&) = delete;

  /// -1 for a scalar.
  int GetCount() const { return count_; }
  T const& operator[](int row) const {
    return count_ < 0 ? scalar_ : first_[static_cast<std::size_t>(row) * step_];
  }
  ort::core::SpecialKind GetKind(int row) const { return count_ < 0 ? scalarKind_ : kinds_[row]; }

 private:
  using SpecialKind = ort::core::SpecialKind;

  Value value_;  // keeps the rows alive
  int count_ = -1;
  T scalar_{};
  SpecialKind scalarKind_ = SpecialKind::None;
  T const* first_ = nullptr;
  std::size_t step_ = 1;
  ort::core::builtins::RowKinds kinds_;
};

/// The rows that the inputs have in common, -1 when all are scalars. Throws 259 for columns of unequal
/// length.
template <class... In>
int CountRows(RowInput<In> const&... inputs) {
  int count = -1;
  auto const add = [&count](int other) {
    if (other >= 0 && count >= 0) ort::core::builtins::RequireOneLength(other, count, "inputs");
    if (other >= 0) count = other;
  };
  (add(inputs.GetCount()), ...);
  return count;
}

inline ort::core::builtins::Value MakeScalar(double value) { return ort::core::factory::MakeReal64(value); }
inline ort::core::builtins::Value MakeScalar(ort::core::OrtDateTime value) {
  return ort::core::factory::MakeDateTime(value);
}
inline ort::core::builtins::Value MakeScalar(ort::core::RIndirectString const& value) {
  return ort::core::factory::MakeString(value);
}

/// What `map` gives for each row, as an optional: rows without a result are special of kind 1.
template <class Out, class Map, class... In>
ort::core::builtins::Value MapRowsOf(Map const& map, RowInput<In> const&... inputs) {
  using namespace ort::core;
  StoreTypeInfo const type(ElementTraits<Out>::kStoreType, false);
  auto const kindOf = [&](int row) {
    SpecialKind kind = SpecialKind::None;
    ((kind = kind == SpecialKind::None ? inputs.GetKind(row) : kind), ...);
    return kind;
  };
  int const count = CountRows(inputs...);
  if (count < 0) {
    SpecialKind const kind = kindOf(0);
    std::optional<Out> result;
    if (kind == SpecialKind::None) result = map(inputs[0]...);
    return result ? MakeScalar(*result) : factory::MakeSpecial(type, kind);
  }
  auto builder = factory::MakeColumnBuilder<Out>(type, count);
  auto const out = builder.GetValues();
  for (int row = 0; row < count; ++row) {
    SpecialKind const kind = kindOf(row);
    std::optional<Out> result;
    if (kind == SpecialKind::None) result = map(inputs[row]...);
    out[static_cast<std::size_t>(row)] = result ? *result : Out();
    if (!result) builder.SetSpecial(row, kind == SpecialKind::None ? SpecialKind::Missing : kind);
  }
  return builder.Finish();
}

}  // namespace ostrel::charts
