#pragma once

#include <type_traits>
#include <vector>

#include "ostrelrtcore/Factory.h"
#include "ostrelrtcore/OrtFunctor.h"
#include "ostreltransforms/FunctorInputs.h"
#include "ostreltransforms/OperationTraits.h"

// Calls a function of whole values with the list of inputs that a host hands over.
namespace OstrelTransforms::detail {

template <class S>
inline constexpr bool kTakesList = [] {
  if constexpr (S::kCount == 1) {
    return std::is_same_v<typename S::template Element<0>, std::vector<Value>>;
  } else {
    return false;
  }
}();

template <class Argument>
decltype(auto) FetchInput(Value const& input) {
  using T = std::remove_cvref_t<Argument>;
  RequireValue(input);
  if constexpr (std::is_same_v<T, Value>) {
    return (input);
  } else if constexpr (std::is_same_v<T, ort::core::StoreValue>) {
    return (*input);
  } else {
    return ort::core::FetchStoreValue<T>(input);
  }
}

inline Value MakeResult(Value value) { return value; }
inline Value MakeResult(bool value) { return ort::core::factory::MakeBool(value); }
inline Value MakeResult(int value) { return ort::core::factory::MakeInt32(value); }
inline Value MakeResult(ort::core::int64 value) { return ort::core::factory::MakeInt64(value); }
inline Value MakeResult(float value) { return ort::core::factory::MakeReal32(value); }
inline Value MakeResult(double value) { return ort::core::factory::MakeReal64(value); }
inline Value MakeResult(ort::core::OrtDateTime value) { return ort::core::factory::MakeDateTime(value); }
inline Value MakeResult(ort::core::OrtColor value) { return ort::core::factory::MakeColor(value); }
inline Value MakeResult(OStringCore const& value) { return ort::core::factory::MakeString(value); }

template <auto fn>
class MultinaryCall final : public ort::core::IMultinaryFunctor {
 public:
  Value Apply(std::vector<Value> const& inputs) override {
    using S = decltype(SignatureOf(fn));
    if constexpr (kTakesList<S>) {
      return MakeResult(fn(inputs));
    } else {
      RequireInputCount(inputs.size(), S::kCount);
      return [&]<std::size_t... I>(std::index_sequence<I...>) {
        return MakeResult(fn(FetchInput<typename S::template Argument<I>>(inputs[I])...));
      }
      (std::make_index_sequence<S::kCount>());
    }
  }
};

}  // namespace OstrelTransforms::detail
