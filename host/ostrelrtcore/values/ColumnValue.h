#pragma once

#include "ostrelrtcore/values/ValueBase.h"

namespace ort::core {

// A column. The typed view is a base, made with the value.
class ColumnValue final : public ValueBase {
 public:
  ColumnValue(StoreType elementType, ColumnView::Content content)
      : ValueBase(StoreTypeInfo::MakeArrayType(elementType)), view_(std::move(content)) {}
  ~ColumnValue() override;

  bool Equals(StoreValue const& other) const override;
  std::shared_ptr<StoreValue> Clone() const override;
  std::size_t GetHash() const override;

 protected:
  ColumnView const* FindColumn() const override { return &view_; }

 private:
  struct View final : ITypedArray<uint64> {
    explicit View(Content content) : ITypedArray(std::move(content)) {}
  };
  View view_;
};

}  // namespace ort::core
