#pragma once

#include <string_view>

#include "ostrelrtcore/Factory.h"
#include "ostrelrtcore/OrtBinaryFunctor.h"
#include "ostrelrtcore/OrtBinarySpecialFunctor.h"
#include "ostrelrtcore/OrtUnaryFunctor.h"
#include "ostrelrtcore/OrtUnarySpecialFunctor.h"
#include "ostreltransforms/FamilyRow.h"
#include "ostreltransforms/FunctorInputs.h"
#include "ostreltransforms/MultinaryCall.h"
#include "ostreltransforms/OperationTraits.h"

// How a family writes its table:
//
//   constexpr Row kRows[] = {
//       Unary<AbsoluteValue>({.name = TransformNames::ABS,
//                             .inputs = {"values"},
//                             .help = "The absolute value.",
//                             .example = R"("inputs": [{"Real64": -2.5}])"}),
//       UnaryOperation<ClampMinFunctor<double>, double>({.name = TransformNames::CLAMP_MIN,
//                                                        .inputs = {"values"},
//                                                        .parameters = {"minimum"},
//                                                        ...
//
// Unary and Binary take element functions, UnaryOperation and BinaryOperation operation classes, which are
// made from the parameters whose types follow the class; SpecialUnaryOperation and SpecialBinaryOperation use
// the Apply that sees special rows. Multinary takes a function of whole values. Types of slots are
// read from the C++ types; a slot of whole values says its own: {"rectangle", StoreType::Tuple}. An operation
// that checks its parameters in a way of its own takes the list of them: UnaryOperation<F, ParameterSpan>.
//
// A row that does not fit its operation does not compile.
namespace OstrelTransforms {
namespace detail {

// The store type for which a C++ type stands in a signature; Empty for whole values.
template <class T>
constexpr StoreType StoreTypeOf() {
  if constexpr (std::is_same_v<T, OStringCore>) {
    return StoreType::String;
  } else if constexpr (std::is_same_v<T, ort::core::StoreValue>) {
    return StoreType::Empty;
  } else {
    return ort::core::ElementTraits<T>::kStoreType;
  }
}

// The named slots with the types that the C++ types give where none is spelled out.
template <class... T>
constexpr Slots CompleteSlots(Slots slots, char const* wrongCount) {
  if (slots.size() != sizeof...(T)) RowFault(wrongCount);
  std::size_t index = 0;
  for (StoreType const type : std::initializer_list<StoreType>{StoreTypeOf<T>()...}) {
    SlotType& slot = slots[index++].type;
    if (slot.main == StoreType::Empty) slot = type;
    if (slot.main == StoreType::Empty) RowFault("a slot of whole values does not tell its type");
    if (type != StoreType::Empty && type != slot.main) RowFault("a slot's type is not the operation's");
  }
  return slots;
}

// An operation made from the list of parameters as it was given, which it checks for itself.
template <class... P>
inline constexpr bool kTakesParameterList = (std::is_same_v<P, ort::core::ParameterSpan> && ...) &&
                                            sizeof...(P) == 1;

constexpr Slots RequireTypes(Slots slots) {
  for (Slot const& slot : slots) {
    if (slot.type.main == StoreType::Empty) RowFault("a slot of whole values does not tell its type");
  }
  return slots;
}

template <class... P>
constexpr Slots CompleteParameters(Slots parameters) {
  if constexpr (kTakesParameterList<P...>) {
    return RequireTypes(parameters);
  } else {
    return CompleteSlots<P...>(parameters, "a row names not as many parameters as its operation has");
  }
}

template <class Out>
constexpr SlotType CompleteOutput(SlotType output) {
  constexpr StoreType kType = StoreTypeOf<Out>();
  if (output.main == StoreType::Empty) output = kType;
  if (output.main == StoreType::Empty) RowFault("an output of whole values does not tell its type");
  if (kType != StoreType::Empty && kType != output.main) RowFault("the output's type is not the operation's");
  return output;
}

constexpr void CheckText(RowText const& text) {
  std::string_view const help = text.help ? text.help : "";
  if (help.empty() || help.back() != '.') RowFault("a row's help is not a sentence");
  std::string_view const example = text.example ? text.example : "";
  if (!example.starts_with("\"inputs\": [")) RowFault("a row's example does not begin with its inputs");
  bool const hasParameters = example.find("\"parameters\": [") != std::string_view::npos;
  if (hasParameters != (text.parameters.size() != 0))
    RowFault("a row's example has not the row's parameters");
}

template <class Out>
constexpr Row MakeRow(RowText const& text, Arity arity, std::uint8_t type, bool isOperation,
                      FunctorMaker make) {
  CheckText(text);
  if (text.isOrderDependent && !isOperation) RowFault("an element function carries no state");
  return {.name = &text.name,
          .arity = arity,
          .type = type,
          .isOperation = isOperation,
          .isOrderDependent = text.isOrderDependent,
          .requiredInputs = {},
          .inputs = text.inputs,
          .output = CompleteOutput<Out>(text.output),
          .parameters = text.parameters,
          .make = make,
          .help = text.help,
          .details = text.details,
          .example = text.example};
}

template <class Signature, class... P>
constexpr Row MakeUnaryRow(RowText const& text, std::uint8_t type, bool isOperation, FunctorMaker make) {
  using In = typename Signature::template Element<0>;
  Row row = MakeRow<typename Signature::Result>(text, Arity::Unary, type, isOperation, make);
  row.requiredInputs = {StoreTypeOf<In>()};
  row.inputs = CompleteSlots<In>(text.inputs, "a unary row names another number of inputs than one");
  row.parameters = CompleteParameters<P...>(text.parameters);
  return row;
}

template <class Signature, class... P>
constexpr Row MakeBinaryRow(RowText const& text, std::uint8_t type, bool isOperation, FunctorMaker make) {
  using In1 = typename Signature::template Element<0>;
  using In2 = typename Signature::template Element<1>;
  Row row = MakeRow<typename Signature::Result>(text, Arity::Binary, type, isOperation, make);
  row.requiredInputs = {StoreTypeOf<In1>(), StoreTypeOf<In2>()};
  row.inputs = CompleteSlots<In1, In2>(text.inputs, "a binary row names another number of inputs than two");
  row.parameters = CompleteParameters<P...>(text.parameters);
  return row;
}

template <class P>
P FetchParameter(Value const& parameter) {
  if constexpr (std::is_same_v<P, Value>) {
    RequireValue(parameter);
    return parameter;
  } else {
    return ort::core::FetchStoreValue<P>(parameter);
  }
}

template <class Functor, class... P>
std::unique_ptr<ort::core::OrtFunctor> MakeFunctor(ort::core::ParameterSpan parameters) {
  if constexpr (kTakesParameterList<P...>) {
    return std::make_unique<Functor>(parameters);
  } else {
    RequireParameterCount(parameters.size(), sizeof...(P));
    return [&]<std::size_t... I>(std::index_sequence<I...>) {
      return std::make_unique<Functor>(FetchParameter<P>(parameters[I])...);
    }
    (std::index_sequence_for<P...>());
  }
}

}  // namespace detail

// An element function `Out fn(In)` or `std::pair<Out, SpecialKind> fn(In, SpecialKind)`.
template <auto fn>
constexpr Row Unary(RowText const& text) {
  using namespace ort::core;
  using S = decltype(detail::SignatureOf(fn));
  using In = typename S::template Argument<0>;
  using Out = typename S::Result;
  using Element = typename S::template Element<0>;
  if constexpr (S::kIsSpecial) {
    using Functor = OrtUnarySpecialFunctor<Element, Out, OrtUnarySpecialFunctorGenerator<In, Out, fn>>;
    return detail::MakeUnaryRow<S>(text, 1, false, detail::MakeFunctor<Functor>);
  } else {
    using Functor = OrtUnaryFunctor<Element, Out, OrtUnaryFunctorGenerator<In, Out, fn>>;
    return detail::MakeUnaryRow<S>(text, 0, false, detail::MakeFunctor<Functor>);
  }
}

// An operation class with `Out Apply(In)`, made from parameters of types P.
template <class F, class... P>
constexpr Row UnaryOperation(RowText const& text) {
  using S = decltype(detail::PlainUnary(&F::Apply));
  using Functor = ort::core::OrtUnaryFunctor<typename S::template Element<0>, typename S::Result, F>;
  return detail::MakeUnaryRow<S, P...>(text, 2, true, detail::MakeFunctor<Functor, P...>);
}

// An operation class with `std::pair<Out, SpecialKind> Apply(In, SpecialKind)`, made from parameters.
template <class F, class... P>
constexpr Row SpecialUnaryOperation(RowText const& text) {
  using S = decltype(detail::SpecialUnary(&F::Apply));
  using Functor = ort::core::OrtUnarySpecialFunctor<typename S::template Element<0>, typename S::Result, F>;
  return detail::MakeUnaryRow<S, P...>(text, 3, true, detail::MakeFunctor<Functor, P...>);
}

// An element function `Out fn(In1, In2)` or `std::pair<Out, SpecialKind> fn(In1, SpecialKind, In2,
// SpecialKind)`.
template <auto fn>
constexpr Row Binary(RowText const& text) {
  using namespace ort::core;
  using S = decltype(detail::SignatureOf(fn));
  using In1 = typename S::template Argument<0>;
  using In2 = typename S::template Argument<1>;
  using Element1 = typename S::template Element<0>;
  using Element2 = typename S::template Element<1>;
  using Out = typename S::Result;
  if constexpr (S::kIsSpecial) {
    using Functor =
        OrtBinarySpecialFunctor<Element1, Element2, Out, OrtBinarySpecialFunctorGenerator<In1, In2, Out, fn>>;
    return detail::MakeBinaryRow<S>(text, 3, true, detail::MakeFunctor<Functor>);
  } else {
    using Functor = OrtBinaryFunctor<Element1, Element2, Out, OrtBinaryFunctorGenerator<In1, In2, Out, fn>>;
    return detail::MakeBinaryRow<S>(text, 0, false, detail::MakeFunctor<Functor>);
  }
}

// An operation class with `Out Apply(In1, In2)`, made from parameters of types P.
template <class F, class... P>
constexpr Row BinaryOperation(RowText const& text) {
  using S = decltype(detail::PlainBinary(&F::Apply));
  using Functor = ort::core::OrtBinaryFunctor<typename S::template Element<0>,
                                              typename S::template Element<1>, typename S::Result, F>;
  return detail::MakeBinaryRow<S, P...>(text, 2, true, detail::MakeFunctor<Functor, P...>);
}

// An operation class with `std::pair<Out, SpecialKind> Apply(In1, SpecialKind, In2, SpecialKind)`.
template <class F, class... P>
constexpr Row SpecialBinaryOperation(RowText const& text) {
  using S = decltype(detail::SpecialBinary(&F::Apply));
  using Functor = ort::core::OrtBinarySpecialFunctor<typename S::template Element<0>,
                                                     typename S::template Element<1>, typename S::Result, F>;
  return detail::MakeBinaryRow<S, P...>(text, 3, true, detail::MakeFunctor<Functor, P...>);
}

// A function of whole values. With one C++ argument an input (a scalar type, StoreValue const& or Value
// const&), another number of inputs throws 219, and a scalar of another type 55. A function of the list of
// inputs, `fn(std::vector<Value> const&)`, checks for itself; its row names the inputs it is registered with.
// The result is a Value, whose type the row spells out, or a scalar.
template <auto fn>
constexpr Row Multinary(RowText const& text) {
  using S = decltype(detail::SignatureOf(fn));
  Row row = detail::MakeRow<typename S::Result>(text, Arity::Multinary, 0, false,
                                                detail::MakeFunctor<detail::MultinaryCall<fn>>);
  if constexpr (detail::kTakesList<S>) {
    row.inputs = detail::RequireTypes(text.inputs);
  } else {
    row.inputs = [&]<std::size_t... I>(std::index_sequence<I...>) {
      return detail::CompleteSlots<typename S::template Element<I>...>(
          text.inputs, "a row names not as many inputs as its function takes");
    }
    (std::make_index_sequence<S::kCount>());
  }
  if (text.parameters.size() != 0) RowFault("a multinary row has inputs alone");
  return row;
}

}  // namespace OstrelTransforms
