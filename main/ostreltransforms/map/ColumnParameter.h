#pragma once

#include <span>

#include "ostrelrtcore/StoreValue.h"
#include "ostreltransforms/FunctorInputs.h"

namespace OstrelTransforms {
namespace detail {

// Throws 55 for a null pointer, for anything but a column, and for elements of another scalar type.
void RequireColumnOf(ort::core::StoreType elementType, Value const& column);

}  // namespace detail

// A column given as parameter, kept alive and read without a copy. Made from anything but a column of T's
// store type it throws 55.
template <class T>
class ColumnParameter {
 public:
  explicit ColumnParameter(Value column) : column_(std::move(column)) {
    detail::RequireColumnOf(ort::core::ElementTraits<T>::kStoreType, column_);
    values_ = column_->AsTypedArray<T>().GetValues();
  }

  std::size_t GetCount() const { return values_.size(); }
  T const* GetData() const { return values_.data(); }

  // The element of a row; zero outside the column.
  T GetOrZero(int row) const {
    return static_cast<unsigned>(row) < values_.size() ? values_[static_cast<unsigned>(row)] : T{};
  }

 private:
  Value column_;
  std::span<T const> values_;
};

}  // namespace OstrelTransforms
