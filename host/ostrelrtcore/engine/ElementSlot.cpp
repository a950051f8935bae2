#include "ostrelrtcore/engine/ElementSlot.h"

#include <cstring>

namespace ort::core::engine {
namespace {

template <class T>
void Store(unsigned char* bits, T value) {
  static_assert(std::is_trivially_copyable_v<T> && sizeof(T) <= 8);
  std::memcpy(bits, &value, sizeof value);
}

template <class T>
T Load(unsigned char const* bits) {
  T value;
  std::memcpy(&value, bits, sizeof value);
  return value;
}

}  // namespace

ElementSlot::ElementSlot(Value const& scalar) : storage_(GetStorageClass(scalar->GetStoreType())) {
  if (scalar->IsSpecial()) return;
  switch (scalar->GetStoreType()) {
    case StoreType::Bool:
      Store(bits_, static_cast<uint8>(scalar->GetBool()));
      return;
    case StoreType::Int32:
      Store(bits_, scalar->GetInt32());
      return;
    case StoreType::Real32:
      Store(bits_, scalar->GetReal32());
      return;
    case StoreType::Color:
      Store(bits_, scalar->GetColor());
      return;
    case StoreType::Int64:
      Store(bits_, scalar->GetInt64());
      return;
    case StoreType::Real64:
      Store(bits_, scalar->GetReal64());
      return;
    case StoreType::Date:
    case StoreType::DateTime:
      Store(bits_, scalar->GetDateTime());
      return;
    case StoreType::String:
      text_ = scalar->GetString();
      return;
    default:
      value_ = scalar;
  }
}

void const* ElementSlot::GetAddress() const noexcept {
  if (storage_ == StorageClass::String) return &text_;
  if (storage_ == StorageClass::Value) return &value_;
  return bits_;
}

Value ElementSlot::ToScalar(StoreType type, SpecialKind kind) const {
  if (kind != SpecialKind::None) return factory::MakeSpecial(StoreTypeInfo(type, false), kind);
  switch (type) {
    case StoreType::Bool:
      return factory::MakeBool(Load<uint8>(bits_) != 0);
    case StoreType::Int32:
      return factory::MakeInt32(Load<int>(bits_));
    case StoreType::Real32:
      return factory::MakeReal32(Load<float>(bits_));
    case StoreType::Color:
      return factory::MakeColor(Load<OrtColor>(bits_));
    case StoreType::Int64:
      return factory::MakeInt64(Load<int64>(bits_));
    case StoreType::Real64:
      return factory::MakeReal64(Load<double>(bits_));
    case StoreType::Date:
      return factory::MakeDate(Load<OrtDateTime>(bits_));
    case StoreType::DateTime:
      return factory::MakeDateTime(Load<OrtDateTime>(bits_));
    case StoreType::String:
      return factory::MakeString(text_);
    default:
      if (value_ != nullptr) return value_;
      throw OrtRuntimeException(OrtError_WrongValueKind, OStringCore(L"a function gave no value"));
  }
}

}  // namespace ort::core::engine
