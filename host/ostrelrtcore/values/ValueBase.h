#pragma once

#include "ostrelrtcore/StoreValue.h"

namespace ort::core {

[[noreturn]] void ThrowWrongKind(StoreTypeInfo const& type, wchar_t const* wanted);

// What all values share: the type, and the refusal of every accessor that a value doesn't have.
class ValueBase : public StoreValue {
 public:
  explicit ValueBase(StoreTypeInfo const& type) : type_(type) {}

  StoreTypeInfo const& GetTypeInfo() const override { return type_; }
  StoreType GetStoreType() const override { return type_.GetStoreType(); }
  SpecialKind GetSpecialKind() const override { return SpecialKind::None; }
  std::shared_ptr<StoreValue> ConvertTo(StoreType type) const override;
  int GetInt32() const override { ThrowWrongKind(type_, L"Int32"); }
  int64 GetInt64() const override { ThrowWrongKind(type_, L"Int64"); }
  float GetReal32() const override { ThrowWrongKind(type_, L"Real32"); }
  double GetReal64() const override { ThrowWrongKind(type_, L"Real64"); }
  OrtDateTime GetDate() const override { ThrowWrongKind(type_, L"Date"); }
  OrtDateTime GetDateTime() const override { ThrowWrongKind(type_, L"DateTime"); }
  bool GetBool() const override { ThrowWrongKind(type_, L"Bool"); }
  OrtColor GetColor() const override { ThrowWrongKind(type_, L"Color"); }
  RIndirectString GetString() const override { ThrowWrongKind(type_, L"String"); }
  bool IsLessThan(StoreValue const& other) const override;

 private:
  StoreTypeInfo type_;
};

}  // namespace ort::core
