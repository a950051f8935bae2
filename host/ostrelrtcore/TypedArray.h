#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <span>
#include <vector>

#include "ostrelrtcore/OrtRuntimeException.h"
#include "ostrelrtcore/StorageClass.h"

namespace ort::core {

/// A column of n rows whatever its element type: the count, the special rows and the storage. Immutable; safe
/// to read from many threads. The one object of a column; ITypedArray<T> gives it an element type.
class ORTCORE_API ColumnView {
 public:
  ColumnView(ColumnView const&) = delete;
  ColumnView& operator=(ColumnView const&) = delete;

  int GetCount() const noexcept { return count_; }
  StorageClass GetStorage() const noexcept { return storage_; }

  bool HasSpecials() const noexcept { return uniformKind_ != SpecialKind::None || !specialRows_.empty(); }
  bool IsSpecial(int row) const { return GetSpecialKind(row) != SpecialKind::None; }
  /// None for an ordinary row. Throws 55 for a row outside the column. Logarithmic in the special rows.
  SpecialKind GetSpecialKind(int row) const;

  /// The special rows in ascending order and, at the same positions, their kinds. A column whose rows are all
  /// special of one kind makes these lists on first demand: ask GetUniformSpecialKind() before.
  std::span<int const> GetSpecialRows() const;
  std::span<SpecialKind const> GetSpecialKinds() const;
  /// The kind of every row of a column made of one special value; None for any other column.
  SpecialKind GetUniformSpecialKind() const noexcept { return uniformKind_; }

  /// True for a column that holds one value for all its rows and has not stored it n times.
  bool IsConstant() const noexcept { return stride_ == 0; }

  /// The first element; for a constant column (IsConstant) the only one, also when it has no rows.
  void const* GetFirstElement() const noexcept { return first_; }
  /// All n elements one after the other. A constant column stores them on first demand.
  void const* GetRawValues() const { return stride_ != 0 ? first_ : MaterialiseValues(); }

  /// What keeps the storage alive, for values that share it.
  struct Content {
    StorageClass storage = StorageClass::UInt64;
    int count = 0;
    bool isConstant = false;
    SpecialKind uniformKind = SpecialKind::None;
    void const* first = nullptr;
    std::shared_ptr<void const> owner;  // of the elements
    std::vector<int> specialRows;       // ascending, without doubles
    std::vector<SpecialKind> specialKinds;
  };
  explicit ColumnView(Content content);
  Content GetContent() const;
  /// Hands over what keeps the elements alive; nothing may be read afterwards.
  struct Owners {
    std::shared_ptr<void const> elements;
    std::shared_ptr<void const> repeatedElements;
  };
  Owners TakeOwners() noexcept;

 protected:
  ~ColumnView();
  [[noreturn]] static void ThrowRowOutOfRange(int row, int count);

  void const* first_;
  std::size_t stride_;  // 0 when every row reads the one element, else 1
  int count_;
  StorageClass storage_;
  SpecialKind uniformKind_;

 private:
  struct Materialised;
  void const* MaterialiseValues() const;
  Materialised& Materialise() const;

  std::vector<int> specialRows_;
  std::vector<SpecialKind> specialKinds_;
  std::shared_ptr<void const> owner_;
  mutable std::atomic<Materialised*> materialised_{nullptr};
  mutable std::mutex materialiseMutex_;
};

/// A column read as elements of type T: the storage element, or a type that lives in it.
template <class T>
class ITypedArray : public ColumnView {
 public:
  using Result = typename ElementTraits<T>::Result;

  explicit ITypedArray(Content content) : ColumnView(std::move(content)) {}

  /// The element of a row; the zero of the storage for a special row. Throws 55 outside the column.
  Result GetElement(int row) const {
    if (static_cast<unsigned>(row) >= static_cast<unsigned>(count_)) ThrowRowOutOfRange(row, count_);
    return static_cast<T const*>(first_)[static_cast<std::size_t>(row) * stride_];
  }

  /// All elements, without a copy.
  std::span<T const> GetValues() const {
    return {static_cast<T const*>(GetRawValues()), static_cast<std::size_t>(count_)};
  }

 protected:
  ~ITypedArray() = default;
};

}  // namespace ort::core
