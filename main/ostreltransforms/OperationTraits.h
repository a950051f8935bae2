#pragma once

#include <tuple>
#include <type_traits>
#include <utility>

#include "ostrelrtcore/OrtFunctor.h"

// Reads the element types and the form of an operation from its signature.
namespace OstrelTransforms::detail {

using ort::core::SpecialKind;

template <class Out, class... In>
struct Signature {
  using Result = Out;
  template <std::size_t I>
  using Argument = std::tuple_element_t<I, std::tuple<In...>>;  // as it is written, often a reference
  template <std::size_t I>
  using Element = std::remove_cvref_t<Argument<I>>;
  static constexpr std::size_t kCount = sizeof...(In);
  static constexpr bool kIsSpecial = false;
};

template <class Out, class... In>
struct SpecialSignature : Signature<Out, In...> {
  static constexpr bool kIsSpecial = true;
};

// Element functions. The special forms carry a kind beside each value.
template <class Out, class... In>
Signature<Out, In...> SignatureOf(Out (*)(In...));
template <class Out, class In>
SpecialSignature<Out, In> SignatureOf(std::pair<Out, SpecialKind> (*)(In, SpecialKind));
template <class Out, class In1, class In2>
SpecialSignature<Out, In1, In2> SignatureOf(std::pair<Out, SpecialKind> (*)(In1, SpecialKind, In2,
                                                                            SpecialKind));

// Operation classes. One class may have an Apply for plain rows and another for special rows; each of
// these finds its own.
template <class F, class Out, class In>
Signature<Out, In> PlainUnary(Out (F::*)(In));
template <class F, class Out, class In>
Signature<Out, In> PlainUnary(Out (F::*)(In) const);
template <class F, class Out, class In>
SpecialSignature<Out, In> SpecialUnary(std::pair<Out, SpecialKind> (F::*)(In, SpecialKind));
template <class F, class Out, class In>
SpecialSignature<Out, In> SpecialUnary(std::pair<Out, SpecialKind> (F::*)(In, SpecialKind) const);
template <class F, class Out, class In1, class In2>
Signature<Out, In1, In2> PlainBinary(Out (F::*)(In1, In2));
template <class F, class Out, class In1, class In2>
Signature<Out, In1, In2> PlainBinary(Out (F::*)(In1, In2) const);
template <class F, class Out, class In1, class In2>
SpecialSignature<Out, In1, In2> SpecialBinary(std::pair<Out, SpecialKind> (F::*)(In1, SpecialKind, In2,
                                                                                 SpecialKind));
template <class F, class Out, class In1, class In2>
SpecialSignature<Out, In1, In2> SpecialBinary(std::pair<Out, SpecialKind> (F::*)(In1, SpecialKind, In2,
                                                                                 SpecialKind) const);

}  // namespace OstrelTransforms::detail
