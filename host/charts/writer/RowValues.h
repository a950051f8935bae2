#pragma once

#include <memory>
#include <span>

#include "charts/scene/Scene.h"
#include "ostrelrtcore/OrtRuntimeException.h"

/// Columns of marks as they are written, row by row.
namespace ostrel::charts {

template <class T>
std::span<T const> ReadColumn(std::shared_ptr<ort::core::StoreValue> const& column, std::size_t count) {
  using namespace ort::core;
  if (column == nullptr) throw OrtRuntimeException(OrtError_WrongValueKind);
  std::span<T const> const values = column->AsTypedArray<T>().GetValues();
  if (values.size() != count) throw OrtRuntimeException(OrtError_LengthsDiffer);
  return values;
}

/// A Varying<T> as it is read; Stored is the element of its column.
template <class T, class Stored = T>
class RowValues {
 public:
  RowValues(Varying<T> const& values, std::size_t count) : constant_(values.constant) {
    if (values.column != nullptr) rows_ = ReadColumn<Stored>(values.column, count);
  }
  bool IsConstant() const { return rows_.empty(); }
  T operator[](std::size_t row) const { return rows_.empty() ? constant_ : static_cast<T>(rows_[row]); }

 private:
  T constant_;
  std::span<Stored const> rows_;
};

}  // namespace ostrel::charts
