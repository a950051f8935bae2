#pragma once

#include <bit>
#include <optional>

#include "ostrelrtcore/values/ValueBase.h"

namespace ort::core {

// A number, instant, colour or truth value, held by its bits; or a special value of any type.
class ScalarValue final : public ValueBase {
 public:
  ScalarValue(StoreTypeInfo const& type, uint64 bits, SpecialKind kind = SpecialKind::None)
      : ValueBase(type), bits_(bits), kind_(kind) {}

  SpecialKind GetSpecialKind() const override { return kind_; }
  bool Equals(StoreValue const& other) const override;
  std::shared_ptr<StoreValue> ConvertTo(StoreType type) const override;
  int GetInt32() const override { return static_cast<int>(Read(StoreType::Int32)); }
  int64 GetInt64() const override { return static_cast<int64>(Read(StoreType::Int64)); }
  float GetReal32() const override {
    return std::bit_cast<float>(static_cast<uint32>(Read(StoreType::Real32)));
  }
  double GetReal64() const override { return std::bit_cast<double>(Read(StoreType::Real64)); }
  OrtDateTime GetDate() const override { return OrtDateTime::FromValue(Read(StoreType::Date)); }
  OrtDateTime GetDateTime() const override;
  bool GetBool() const override { return Read(StoreType::Bool) != 0; }
  OrtColor GetColor() const override { return OrtColor(static_cast<int>(Read(StoreType::Color))); }
  // A text is never held here: only a special value can have the type.
  RIndirectString GetString() const override { ThrowUnreadable(StoreType::String); }
  std::shared_ptr<StoreValue> Clone() const override;
  bool IsLessThan(StoreValue const& other) const override;
  std::size_t GetHash() const override;

  uint64 GetBits() const { return bits_; }

 private:
  uint64 Read(StoreType wanted) const {
    if (GetStoreType() != wanted || kind_ != SpecialKind::None) ThrowUnreadable(wanted);
    return bits_;
  }
  [[noreturn]] void ThrowUnreadable(StoreType wanted) const;

  uint64 bits_;
  SpecialKind kind_;
};

class StringValue final : public ValueBase {
 public:
  explicit StringValue(RIndirectString text) : ValueBase(StoreTypeInfo::String), text_(std::move(text)) {}

  bool Equals(StoreValue const& other) const override;
  std::shared_ptr<StoreValue> ConvertTo(StoreType type) const override;
  RIndirectString GetString() const override { return text_; }
  std::shared_ptr<StoreValue> Clone() const override;
  bool IsLessThan(StoreValue const& other) const override;
  std::size_t GetHash() const override;

 private:
  RIndirectString text_;
};

// The bits under which equal numbers of a type are one: every NaN the same, negative zero made positive.
uint64 GetCanonicalBits(StoreType type, uint64 bits) noexcept;

// The payload bits of an ordinary scalar that is no string; nothing for any other value.
std::optional<uint64> GetScalarBits(StoreValue const& value);

}  // namespace ort::core
