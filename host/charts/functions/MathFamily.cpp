#include <cmath>
#include <limits>

#include "charts/functions/ChartFamilies.h"
#include "ostrelrtcore/OrtDateTime.h"

/// What expressions need of mathematics and logic beyond the built-in functions. Reals follow IEEE 754: NaN
/// and infinities pass through and nothing throws. Special rows stay special, but for those
/// functions that tell or replace them.
namespace ostrel::charts {
namespace {

using namespace ort::core;
using namespace ort::core::builtins;

// clang-format off
template <class T> struct Exponential { T Apply(T value) const { return std::exp(value); } };
template <class T> struct NaturalLogarithm { T Apply(T value) const { return std::log(value); } };
template <class T> struct Sine { T Apply(T angle) const { return std::sin(angle); } };
template <class T> struct Cosine { T Apply(T angle) const { return std::cos(angle); } };
template <class T> struct Tangent { T Apply(T angle) const { return std::tan(angle); } };
template <class T> struct ArcSine { T Apply(T value) const { return std::asin(value); } };
template <class T> struct ArcCosine { T Apply(T value) const { return std::acos(value); } };
template <class T> struct ArcTangent { T Apply(T value) const { return std::atan(value); } };
template <class T> struct ArcTangent2 { T Apply(T y, T x) const { return std::atan2(y, x); } };
template <class T> struct Hypotenuse { T Apply(T a, T b) const { return std::hypot(a, b); } };
// clang-format on

template <class T>
struct Sign {
  T Apply(T value) const { return value > 0 ? T{1} : value < 0 ? T{-1} : value; }
};

template <class T>
struct RoundHalfUp {
  T Apply(T value) const {
    T const below = std::floor(value);
    return value - below >= T{0.5} ? below + 1 : below;
  }
};

// A NaN on either side wins, and 0 is above -0.
template <class T>
struct Least {
  T Apply(T a, T b) const {
    if (std::isnan(a) || std::isnan(b)) return std::numeric_limits<T>::quiet_NaN();
    if (a == b) return std::signbit(a) ? a : b;
    return a < b ? a : b;
  }
};

template <class T>
struct Greatest {
  T Apply(T a, T b) const {
    if (std::isnan(a) || std::isnan(b)) return std::numeric_limits<T>::quiet_NaN();
    if (a == b) return std::signbit(a) ? b : a;
    return a > b ? a : b;
  }
};

template <class T>
struct IsNan {
  std::pair<bool, SpecialKind> Apply(T value, SpecialKind kind) const {
    return {kind != SpecialKind::None || std::isnan(value), SpecialKind::None};
  }
};

template <class T>
struct MissingIfNan {
  std::pair<T, SpecialKind> Apply(T value, SpecialKind kind) const {
    if (kind != SpecialKind::None) return {T{}, kind};
    return std::isnan(value) ? std::pair(T{}, SpecialKind::Missing) : std::pair(value, SpecialKind::None);
  }
};

template <class T>
struct IsNull {
  std::pair<bool, SpecialKind> Apply(T const&, SpecialKind kind) const {
    return {kind == SpecialKind::Null, SpecialKind::None};
  }
};

template <class T>
struct CoerceNumber {
  std::pair<T, SpecialKind> Apply(T value, SpecialKind kind) const {
    if (kind == SpecialKind::None) return {value, kind};
    return {kind == SpecialKind::Null ? T{} : std::numeric_limits<T>::quiet_NaN(), SpecialKind::None};
  }
};

template <class T>
struct CoerceText {
  std::pair<T, SpecialKind> Apply(T const& value, SpecialKind kind) const {
    return {kind == SpecialKind::None   ? value
            : kind == SpecialKind::Null ? null
                                        : undefined,
            SpecialKind::None};
  }

 private:
  T null = T::FromUtf8("null");
  T undefined = T::FromUtf8("undefined");
};

template <class T>
struct IsTruthy {
  std::pair<bool, SpecialKind> Apply(T const& value, SpecialKind kind) const {
    return {kind == SpecialKind::None && Test(value), SpecialKind::None};
  }

 private:
  static bool Test(T const& value) {
    if constexpr (std::is_floating_point_v<T>) {
      return value < 0 || value > 0;
    } else if constexpr (std::is_arithmetic_v<T>) {
      return value != T{};
    } else if constexpr (std::is_same_v<T, RIndirectString>) {
      return !value.IsEmpty();
    } else {
      return true;
    }
  }
};

template <template <class> class Operation>
BuiltinRow RealRow(char const* name, char const* help, char const* example) {
  return {.name = name,
          .inputs = {"values"},
          .help = help,
          .example = example,
          .registrations = Map<Operation, StoreType::Real64>()};
}

template <template <class> class Operation>
BuiltinRow PairRow(char const* name, std::vector<std::string> const& inputs, char const* help,
                   char const* example) {
  return {.name = name,
          .inputs = inputs,
          .help = help,
          .example = example,
          .registrations = Zip<Operation, StoreType::Real64>()};
}

constexpr char kHalf[] = R"("inputs": [{"Real64": 0.5}])";

}  // namespace

BuiltinFamily MathFamily() {
  using enum StoreType;
  return {
      "mathematics",
      {
          RealRow<Exponential>("exp", "The exponential.", R"("inputs": [{"Real64": 0}])"),
          RealRow<NaturalLogarithm>("ln", "The natural logarithm; minus infinity for zero, NaN below it.",
                                    R"("inputs": [{"Real64": 1}])"),
          RealRow<Sine>("sin", "The sine of an angle in radians.", R"("inputs": [{"Real64": 0}])"),
          RealRow<Cosine>("cos", "The cosine of an angle in radians.", R"("inputs": [{"Real64": 0}])"),
          RealRow<Tangent>("tan", "The tangent of an angle in radians.", R"("inputs": [{"Real64": 0}])"),
          RealRow<ArcSine>("asin", "The angle of a sine, in radians; NaN outside -1 to 1.", kHalf),
          RealRow<ArcCosine>("acos", "The angle of a cosine, in radians; NaN outside -1 to 1.", kHalf),
          RealRow<ArcTangent>("atan", "The angle of a tangent, in radians.", kHalf),
          PairRow<ArcTangent2>("atan2", {"y", "x"},
                               "The angle of the point (x, y) from the x axis, in radians, -pi to pi.",
                               R"("inputs": [{"Real64": 0}, {"Real64": 1}])"),
          PairRow<Hypotenuse>("hypot", {"a", "b"}, "The square root of the sum of two squares.",
                              R"("inputs": [{"Real64": 3}, {"Real64": 4}])"),
          RealRow<Sign>("sign", "1 above zero, -1 below it; zeros and NaN as they are.",
                        R"("inputs": [{"Real64": -2.5}])"),
          RealRow<RoundHalfUp>("roundHalfUp", "The nearest whole number, halves upwards.",
                               R"("inputs": [{"Array": {"type": "Real64", "values": [2.5, -2.5]}}])"),
          PairRow<Least>("least", {"a", "b"}, "The smaller of two numbers; NaN beside a NaN.",
                         R"("inputs": [{"Real64": 2}, {"Real64": 3}])"),
          PairRow<Greatest>("greatest", {"a", "b"}, "The larger of two numbers; NaN beside a NaN.",
                            R"("inputs": [{"Real64": 2}, {"Real64": 3}])"),
          {.name = "isNaN",
           .inputs = {"values"},
           .help = "Whether the row is NaN or special; the result has no special rows.",
           .example = R"("inputs": [{"Array": {"type": "Real64", "values": [1, "NaN"]}}])",
           .registrations = Map<IsNan, Real64>()},
          {.name = "missingIfNaN",
           .inputs = {"values"},
           .help = "The values with a special row of kind 1 in the place of every NaN.",
           .example = R"("inputs": [{"Array": {"type": "Real64", "values": [1, "NaN"]}}])",
           .registrations = Map<MissingIfNan, Real64>()},
          {.name = "isTruthy",
           .inputs = {"values"},
           .help = "Whether the row counts as true: not special, and neither false, zero, NaN nor the empty "
                   "text. The result has no special rows.",
           .example = R"("inputs": [{"Array": {"type": "String", "values": ["a", ""]}}])",
           .registrations = Map<IsTruthy, Int64, Real64, String, Date, DateTime, Bool>()},
          {.name = "isNull",
           .inputs = {"values"},
           .help = "Whether the row is special of kind 9; the result has no special rows.",
           .example =
               R"("inputs": [{"Array": {"type": "Real64", "values": [1, null], "specials": [[1, 9]]}}])",
           .registrations = Map<IsNull, Int64, Real64, String, Date, DateTime, Bool>()},
          {.name = "coerceNumber",
           .inputs = {"values"},
           .help = "The numbers with 0 in the place of special rows of kind 9, and NaN in that of others.",
           .example =
               R"("inputs": [{"Array": {"type": "Real64", "values": [1, null], "specials": [[1, 9]]}}])",
           .registrations = Map<CoerceNumber, Real64>()},
          {.name = "coerceText",
           .inputs = {"values"},
           .help =
               "The texts with \"null\" in the place of special rows of kind 9, and \"undefined\" in that "
               "of others.",
           .example =
               R"("inputs": [{"Array": {"type": "String", "values": ["a", ""], "specials": [[1, 9]]}}])",
           .registrations = Map<CoerceText, String>()},
      }};
}

}  // namespace ostrel::charts
