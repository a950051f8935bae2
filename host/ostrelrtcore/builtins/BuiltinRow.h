#pragma once

#include <tuple>
#include <type_traits>
#include <utility>

#include "ostrelrtcore/FunctionDocumentation.h"
#include "ostrelrtcore/FunctionRegistry.h"
#include "ostrelrtcore/OrtBinaryFunctor.h"
#include "ostrelrtcore/OrtUnaryFunctor.h"
#include "ostrelrtcore/OrtUnarySpecialFunctor.h"

/// How the families of built-in functions, and of other functions of the host, are written: operations and
/// functions of whole values first, then one table with a row for each name.
namespace ort::core::builtins {

using Value = std::shared_ptr<StoreValue>;
using Values = std::vector<Value>;

enum class Arity : std::uint8_t { Unary = 1, Binary = 2, Multinary = 3 };

/// One key of a name and what it makes.
struct Registration {
  Arity arity;
  int type = 0;  ///< The numeric value of the sub-registry's Type.
  std::vector<KeySegmentType> inputs;
  KeySegmentType output;
  std::vector<KeySegmentType> parameters;
  FunctorFactory factory;
};

/// One name with all that is known about it.
struct BuiltinRow {
  char const* name;
  std::vector<std::string> inputs;
  std::vector<std::string> parameters = {};
  char const* help;
  char const* example;  ///< A request's members apart from "function".
  std::vector<Registration> registrations;
};

struct BuiltinFamily {
  char const* name;
  std::vector<BuiltinRow> rows;
};

/// What other hosts of families in this form need: the rows put into a registry, and into help pages.
ORTCORE_API void RegisterFamily(FunctionRegistry& registry, BuiltinFamily const& family);
ORTCORE_API void AppendDocumentation(BuiltinFamily const& family,
                                     std::vector<FunctionDocumentation>& documentation);

BuiltinFamily ArithmeticFamily();
BuiltinFamily ComparisonFamily();
BuiltinFamily LogicFamily();
BuiltinFamily ConversionFamily();
BuiltinFamily SelectionFamily();
BuiltinFamily ConstructionFamily();
BuiltinFamily GroupingFamily();
BuiltinFamily SortingFamily();
BuiltinFamily AggregationFamily();

inline KeySegmentType Segment(StoreType type) { return KeySegmentType(type, false); }
inline KeySegmentType ArrayOf(StoreType element) {
  return {StoreTypeInfo::Array, StoreTypeInfo::Empty, StoreTypeInfo(element, false), StoreTypeInfo::Empty};
}
/// A column of whatever elements.
inline KeySegmentType AnyArray() { return ArrayOf(StoreType::Empty); }
/// An input of whatever type, or the output of a function whose result's type follows from its inputs.
inline KeySegmentType AnyValue() { return {}; }

namespace detail {

template <StoreType Type>
struct ElementOfType;
// clang-format off
template <> struct ElementOfType<StoreType::Bool> { using Element = bool; };
template <> struct ElementOfType<StoreType::Int32> { using Element = int; };
template <> struct ElementOfType<StoreType::Int64> { using Element = int64; };
template <> struct ElementOfType<StoreType::Real32> { using Element = float; };
template <> struct ElementOfType<StoreType::Real64> { using Element = double; };
template <> struct ElementOfType<StoreType::String> { using Element = RIndirectString; };
template <> struct ElementOfType<StoreType::Date> { using Element = OrtDateTime; };
template <> struct ElementOfType<StoreType::DateTime> { using Element = OrtDateTime; };
template <> struct ElementOfType<StoreType::Color> { using Element = OrtColor; };
// clang-format on

template <class Result>
struct ResultOf {
  using Element = Result;
  static constexpr bool kIsSpecial = false;
};
template <class Result>
struct ResultOf<std::pair<Result, SpecialKind>> {
  using Element = Result;
  static constexpr bool kIsSpecial = true;
};

/// A result of the input's own C++ type is of its store type too: a Date stays a Date.
template <class In, class Out>
constexpr StoreType ResultType(StoreType input) {
  return std::is_same_v<In, Out> ? input : ElementTraits<Out>::kStoreType;
}

ORTCORE_API void RequireParameterCount(ParameterSpan parameters, std::size_t wanted);
/// Throws 219 unless there are as many inputs, and 55 for a null pointer among them.
ORTCORE_API void RequireInputs(Values const& inputs, std::size_t wanted);

template <class... T>
Value CallWithInputs(Value (*fn)(T const&...), Values const& inputs) {
  static_assert((std::is_same_v<T, Value> && ...), "functions of whole values take nothing but them");
  RequireInputs(inputs, sizeof...(T));
  return [&]<std::size_t... I>(std::index_sequence<I...>) { return fn(inputs[I]...); }
  (std::index_sequence_for<T...>());
}

template <auto fn>
class Call final : public IMultinaryFunctor {
 public:
  Value Apply(Values const& inputs) override {
    if constexpr (std::is_invocable_v<decltype(fn), Values const&>) {
      RequireInputs(inputs, inputs.size());
      return fn(inputs);
    } else {
      return CallWithInputs(fn, inputs);
    }
  }
};

template <class Operation, StoreType Type>
Registration MapRegistration(StoreType output) {
  using In = typename ElementOfType<Type>::Element;
  if constexpr (requires(Operation const& o, In const& value) { o.Apply(value, SpecialKind::None); }) {
    using Out = typename ResultOf<decltype(std::declval<Operation const&>().Apply(
        std::declval<In const&>(), SpecialKind::None))>::Element;
    return {Arity::Unary,
            static_cast<int>(UnaryFunctionType::Special),
            {Segment(Type)},
            Segment(output == StoreType::Empty ? ResultType<In, Out>(Type) : output),
            {},
            [] { return std::make_unique<OrtUnarySpecialFunctor<In, Out, Operation>>(); }};
  } else {
    using Out = decltype(std::declval<Operation const&>().Apply(std::declval<In const&>()));
    return {Arity::Unary,
            static_cast<int>(UnaryFunctionType::Plain),
            {Segment(Type)},
            Segment(output == StoreType::Empty ? ResultType<In, Out>(Type) : output),
            {},
            [] { return std::make_unique<OrtUnaryFunctor<In, Out, Operation>>(); }};
  }
}

template <class Operation, StoreType Type>
Registration ZipRegistration() {
  using In = typename ElementOfType<Type>::Element;
  using Out =
      decltype(std::declval<Operation const&>().Apply(std::declval<In const&>(), std::declval<In const&>()));
  return {Arity::Binary,
          static_cast<int>(BinaryFunctionType::Plain),
          {Segment(Type), Segment(Type)},
          Segment(ResultType<In, Out>(Type)),
          {},
          [] { return std::make_unique<OrtBinaryFunctor<In, In, Out, Operation>>(); }};
}

/// A special operation made from one parameter of the input's type, whose result is of that type too.
template <class Operation, StoreType Type>
Registration ParameterRegistration() {
  using In = typename ElementOfType<Type>::Element;
  return {Arity::Unary,
          static_cast<int>(UnaryFunctionType::SpecialOperation),
          {Segment(Type)},
          Segment(Type),
          {Segment(Type)},
          [](ParameterSpan parameters) {
            RequireParameterCount(parameters, 1);
            return std::make_unique<OrtUnarySpecialFunctor<In, In, Operation>>(
                FetchStoreValue<In>(parameters[0]));
          }};
}

}  // namespace detail

/// A unary operation class for each of the types: `Out Apply(T const&) const`, or, where it sees special
/// rows, `std::pair<Out, SpecialKind> Apply(T const&, SpecialKind) const`.
template <template <class> class Operation, StoreType... Types>
std::vector<Registration> Map() {
  return {detail::MapRegistration<Operation<typename detail::ElementOfType<Types>::Element>, Types>(
      StoreType::Empty)...};
}

/// A unary operation class that is made from one parameter of its own type.
template <template <class> class Operation, StoreType... Types>
std::vector<Registration> MapWithParameter() {
  return {
      detail::ParameterRegistration<Operation<typename detail::ElementOfType<Types>::Element>, Types>()...};
}

/// A binary operation class for each of the types: `Out Apply(T const&, T const&) const`.
template <template <class> class Operation, StoreType... Types>
std::vector<Registration> Zip() {
  return {detail::ZipRegistration<Operation<typename detail::ElementOfType<Types>::Element>, Types>()...};
}

/// A function of whole values, `Value fn(Value const&, ...)` or `Value fn(Values const&)`, under one key.
template <auto fn>
Registration Multinary(std::vector<KeySegmentType> inputs, KeySegmentType output) {
  return {Arity::Multinary, 0,  std::move(inputs),
          output,           {}, [] {
    return std::make_unique<detail::Call<fn>>(); }};
}

}  // namespace ort::core::builtins
