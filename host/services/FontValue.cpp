#include "ostrelrtcore/Factory.h"
#include "ostrelrtcore/OrtRuntimeException.h"
#include "services/TextMeasurer.h"

namespace ostrel::services {

using namespace ort::core;

namespace {

[[noreturn]] void ThrowNoFont() {
  throw OrtRuntimeException(OrtError_WrongValueKind,
                            u"a font is a tuple (family String, size Real64, weight Int32, slant Int32)");
}

bool IsFont(IStoreTuple const& tuple) {
  constexpr StoreType types[] = {StoreType::String, StoreType::Real64, StoreType::Int32, StoreType::Int32};
  if (tuple.GetCount() < 4) return false;
  for (int i = 0; i < 4; ++i) {
    auto const& member = tuple.GetMember(i);
    if (!member || member->GetStoreType() != types[i] || member->IsSpecial()) return false;
  }
  return true;
}

}  // namespace

FontRequest ReadFont(Value const& font) {
  if (!font || font->GetStoreType() != StoreType::Tuple || font->IsSpecial()) ThrowNoFont();
  IStoreTuple const& tuple = font->AsTuple();
  if (!IsFont(tuple)) ThrowNoFont();
  return {tuple.GetMember(0)->GetString(), tuple.GetMember(1)->GetReal64(), tuple.GetMember(2)->GetInt32(),
          tuple.GetMember(3)->GetInt32()};
}

Value MakeFont(FontRequest const& font) {
  return factory::MakeTuple({factory::MakeString(font.family), factory::MakeReal64(font.size),
                             factory::MakeInt32(font.weight), factory::MakeInt32(font.slant)});
}

}  // namespace ostrel::services
