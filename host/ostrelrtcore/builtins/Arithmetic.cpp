#include <cmath>

#include "ostrelrtcore/builtins/BuiltinRow.h"

/// Arithmetic of numbers of one type, row by row. Special rows stay special. Integers wrap around at the ends
/// of their type; reals follow IEEE 754, so that NaN and infinities pass through and nothing throws.
namespace ort::core::builtins {
namespace {

template <class T>
using Wrapping =
    typename std::conditional_t<std::is_integral_v<T>, std::make_unsigned<T>, std::type_identity<T>>::type;

template <class T>
struct Add {
  T Apply(T first, T second) const {
    return static_cast<T>(static_cast<Wrapping<T>>(first) + static_cast<Wrapping<T>>(second));
  }
};

template <class T>
struct Subtract {
  T Apply(T first, T second) const {
    return static_cast<T>(static_cast<Wrapping<T>>(first) - static_cast<Wrapping<T>>(second));
  }
};

template <class T>
struct Multiply {
  T Apply(T first, T second) const {
    return static_cast<T>(static_cast<Wrapping<T>>(first) * static_cast<Wrapping<T>>(second));
  }
};

template <class T>
struct Divide {
  T Apply(T dividend, T divisor) const { return dividend / divisor; }
};

template <class T>
struct Remainder {
  T Apply(T dividend, T divisor) const { return std::fmod(dividend, divisor); }
};

template <class T>
struct Power {
  T Apply(T base, T exponent) const { return std::pow(base, exponent); }
};

template <class T>
struct Negate {
  T Apply(T value) const {
    if constexpr (std::is_integral_v<T>) {
      return static_cast<T>(Wrapping<T>{0} - static_cast<Wrapping<T>>(value));
    } else {
      return -value;
    }
  }
};

template <class T>
struct SquareRoot {
  T Apply(T value) const { return std::sqrt(value); }
};

template <class T>
struct Floor {
  T Apply(T value) const { return std::floor(value); }
};

template <class T>
struct Ceiling {
  T Apply(T value) const { return std::ceil(value); }
};

template <class T>
struct Logarithm10 {
  T Apply(T value) const { return std::log10(value); }
};

}  // namespace

BuiltinFamily ArithmeticFamily() {
  using enum StoreType;
  return {
      "arithmetic",
      {
          {.name = "add",
           .inputs = {"first", "second"},
           .help = "The sum; integers wrap around.",
           .example = R"("inputs": [{"Int32": 2}, {"Array": {"type": "Int32", "values": [1, 40]}}])",
           .registrations = Zip<Add, Int32, Int64, Real32, Real64>()},
          {.name = "subtract",
           .inputs = {"first", "second"},
           .help = "The first number less the second; integers wrap around.",
           .example = R"("inputs": [{"Real64": 2.5}, {"Real64": 1}])",
           .registrations = Zip<Subtract, Int32, Int64, Real32, Real64>()},
          {.name = "multiply",
           .inputs = {"first", "second"},
           .help = "The product; integers wrap around.",
           .example = R"("inputs": [{"Real64": 2.5}, {"Real64": 4}])",
           .registrations = Zip<Multiply, Int32, Int64, Real32, Real64>()},
          {.name = "divide",
           .inputs = {"dividend", "divisor"},
           .help = "The quotient of reals; a divisor of zero gives an infinity, or NaN for zero by zero.",
           .example = R"("inputs": [{"Real64": 1}, {"Real64": 4}])",
           .registrations = Zip<Divide, Real32, Real64>()},
          {.name = "remainder",
           .inputs = {"dividend", "divisor"},
           .help =
               "What the division toward zero leaves, with the sign of the dividend; NaN for a divisor of "
               "zero.",
           .example = R"("inputs": [{"Real64": -7.5}, {"Real64": 2}])",
           .registrations = Zip<Remainder, Real64>()},
          {.name = "power",
           .inputs = {"base", "exponent"},
           .help = "The base raised to the exponent; NaN for a negative base with a fractional exponent.",
           .example = R"("inputs": [{"Real64": 2}, {"Real64": 10}])",
           .registrations = Zip<Power, Real64>()},
          {.name = "negate",
           .inputs = {"values"},
           .help = "The number with its sign changed; the lowest integer stays as it is.",
           .example = R"("inputs": [{"Real64": 2.5}])",
           .registrations = Map<Negate, Int32, Int64, Real32, Real64>()},
          {.name = "sqrt",
           .inputs = {"values"},
           .help = "The square root; NaN below zero.",
           .example = R"("inputs": [{"Real64": 2.25}])",
           .registrations = Map<SquareRoot, Real64>()},
          {.name = "floor",
           .inputs = {"values"},
           .help = "The largest whole number that is not above the value.",
           .example = R"("inputs": [{"Real64": -0.5}])",
           .registrations = Map<Floor, Real64>()},
          {.name = "ceil",
           .inputs = {"values"},
           .help = "The smallest whole number that is not below the value.",
           .example = R"("inputs": [{"Real64": 0.5}])",
           .registrations = Map<Ceiling, Real64>()},
          {.name = "log10",
           .inputs = {"values"},
           .help = "The decimal logarithm; minus infinity for zero, NaN below it.",
           .example = R"("inputs": [{"Real64": 1000}])",
           .registrations = Map<Logarithm10, Real64>()},
      }};
}

}  // namespace ort::core::builtins
