#include "ostrelrtcore/values/ScalarValue.h"

#include <cmath>
#include <limits>

#include "ostrelrtcore/values/Conversion.h"
#include "ostrelrtcore/values/ValueOrder.h"
#include "ostrelsys/StringHash.h"

namespace ort::core {

uint64 GetCanonicalBits(StoreType type, uint64 bits) noexcept {
  if (type == StoreType::Real64) {
    auto const value = std::bit_cast<double>(bits);
    if (std::isnan(value)) return std::bit_cast<uint64>(std::numeric_limits<double>::quiet_NaN());
    return value == 0.0 ? 0 : bits;
  }
  if (type == StoreType::Real32) {
    auto const value = std::bit_cast<float>(static_cast<uint32>(bits));
    if (std::isnan(value)) return std::bit_cast<uint32>(std::numeric_limits<float>::quiet_NaN());
    return value == 0.0F ? 0 : bits;
  }
  return bits;
}

std::optional<uint64> GetScalarBits(StoreValue const& value) {
  auto const* scalar = dynamic_cast<ScalarValue const*>(&value);
  if (scalar == nullptr || scalar->IsSpecial()) return std::nullopt;
  return scalar->GetBits();
}

void ScalarValue::ThrowUnreadable(StoreType wanted) const {
  OStringCore text = StoreTypeToString(GetStoreType());
  if (kind_ != SpecialKind::None) text = OStringCore(L"special ") + text;
  throw OrtRuntimeException(OrtError_WrongValueKind,
                            text + OStringCore(L" read as ") + StoreTypeToString(wanted));
}

OrtDateTime ScalarValue::GetDateTime() const {
  StoreType const wanted = GetStoreType() == StoreType::Date ? StoreType::Date : StoreType::DateTime;
  return OrtDateTime::FromValue(Read(wanted));
}

bool ScalarValue::Equals(StoreValue const& other) const {
  if (GetStoreType() != other.GetStoreType() || kind_ != other.GetSpecialKind()) return false;
  if (kind_ != SpecialKind::None) return true;
  auto const* scalar = dynamic_cast<ScalarValue const*>(&other);
  return scalar != nullptr &&
         GetCanonicalBits(GetStoreType(), bits_) == GetCanonicalBits(GetStoreType(), scalar->bits_);
}

std::shared_ptr<StoreValue> ScalarValue::ConvertTo(StoreType type) const {
  return type == GetStoreType() ? Clone() : ConvertScalar(GetStoreType(), bits_, kind_, type);
}

std::shared_ptr<StoreValue> ScalarValue::Clone() const { return std::make_shared<ScalarValue>(*this); }

bool ScalarValue::IsLessThan(StoreValue const& other) const {
  if (kind_ != SpecialKind::None) return ValueBase::IsLessThan(other);
  return IsScalarLess(GetStoreType(), bits_, other);
}

std::size_t ScalarValue::GetHash() const {
  auto const typeAndKind = static_cast<uint64>(GetStoreType()) << 8 | static_cast<uint64>(kind_);
  uint64 const bits = kind_ != SpecialKind::None ? 0 : GetCanonicalBits(GetStoreType(), bits_);
  return StringHash::Mix(bits ^ 0x9E3779B97F4A7C15ull, typeAndKind ^ 0xD1B54A32D192ED03ull);
}

bool StringValue::Equals(StoreValue const& other) const {
  return other.GetStoreType() == StoreType::String && !other.IsSpecial() && other.GetString() == text_;
}

std::shared_ptr<StoreValue> StringValue::ConvertTo(StoreType type) const {
  return ConvertString(text_, type);
}

std::shared_ptr<StoreValue> StringValue::Clone() const { return std::make_shared<StringValue>(*this); }

bool StringValue::IsLessThan(StoreValue const& other) const {
  if (other.GetStoreType() != StoreType::String || other.IsSpecial()) return ValueBase::IsLessThan(other);
  return text_.Get().compare(other.GetString().Get()) < 0;
}

std::size_t StringValue::GetHash() const { return text_.GetHash(); }

}  // namespace ort::core
