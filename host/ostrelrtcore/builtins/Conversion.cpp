#include "ostrelrtcore/values/Conversion.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "ostrelrtcore/builtins/BuiltinRow.h"

/// Conversion between scalar types, row by row, by the rules of StoreValue::ConvertTo. A special row keeps
/// its kind in the new type; NaN to an integer or an instant, and text that is not wholly what was asked for,
/// give a special row of kind 1.
namespace ort::core::builtins {
namespace {

template <class Out>
Out RoundAndSaturate(double value) {
  using Limits = std::numeric_limits<Out>;
  double const rounded = std::round(value);
  // The highest Int64 is no double; what reaches the next one above saturates.
  if (rounded >= -static_cast<double>(Limits::min())) return Limits::max();
  if (rounded <= static_cast<double>(Limits::min())) return Limits::min();
  return static_cast<Out>(rounded);
}

float NarrowAndSaturate(double value) {
  constexpr double kMost = std::numeric_limits<float>::max();
  return static_cast<float>(std::isfinite(value) ? std::clamp(value, -kMost, kMost) : value);
}

uint64 BitsOf(int value) { return static_cast<uint32>(value); }
uint64 BitsOf(int64 value) { return static_cast<uint64>(value); }
uint64 BitsOf(float value) { return std::bit_cast<uint32>(value); }
uint64 BitsOf(double value) { return std::bit_cast<uint64>(value); }
uint64 BitsOf(OrtDateTime value) { return value.GetValue(); }

template <StoreType From, StoreType To>
struct Convert {
  using In = typename detail::ElementOfType<From>::Element;
  using Out = typename detail::ElementOfType<To>::Element;
  using Result = std::pair<Out, SpecialKind>;

  Result Apply(In const& value, SpecialKind kind) const {
    if (kind != SpecialKind::None) return {Out(), kind};
    if constexpr (std::is_arithmetic_v<In> && std::is_arithmetic_v<Out>) {
      return ConvertNumber(value);
    } else if constexpr (std::is_same_v<In, Out>) {
      return {value, SpecialKind::None};
    } else if constexpr (std::is_same_v<In, double> && std::is_same_v<Out, OrtDateTime>) {
      return {OrtDateTime::FromDouble(value), std::isnan(value) ? SpecialKind::Missing : SpecialKind::None};
    } else {
      return ConvertText(value);
    }
  }

 private:
  static Result ConvertNumber(In value) {
    if constexpr (std::is_integral_v<Out> && std::is_floating_point_v<In>) {
      if (std::isnan(value)) return {Out(), SpecialKind::Missing};
      return {RoundAndSaturate<Out>(value), SpecialKind::None};
    } else if constexpr (std::is_same_v<Out, float> && std::is_same_v<In, double>) {
      return {NarrowAndSaturate(value), SpecialKind::None};
    } else if constexpr (sizeof(In) > sizeof(Out) && std::is_integral_v<Out>) {
      using Limits = std::numeric_limits<Out>;
      return {static_cast<Out>(std::clamp<In>(value, Limits::min(), Limits::max())), SpecialKind::None};
    } else {
      return {static_cast<Out>(value), SpecialKind::None};
    }
  }

  static Result ConvertText(In const& value) {
    Value converted;
    if constexpr (From == StoreType::String) {
      converted = ConvertString(value, To);
    } else {
      converted = ConvertScalar(From, BitsOf(value), SpecialKind::None, To);
    }
    if (converted->IsSpecial()) return {Out(), converted->GetSpecialKind()};
    return {FetchStoreValue<Out>(converted), SpecialKind::None};
  }
};

template <StoreType To, StoreType... From>
std::vector<Registration> ConvertTo() {
  return {detail::MapRegistration<Convert<From, To>, From>(To)...};
}

}  // namespace

BuiltinFamily ConversionFamily() {
  using enum StoreType;
  return {
      "conversion",
      {
          {.name = "toInt32",
           .inputs = {"values"},
           .help = "The nearest 32-bit integer, halves away from zero, saturating; NaN and other text than a "
                   "number give a special row of kind 1.",
           .example = R"("inputs": [{"Array": {"type": "Real64", "values": [2.5, -2.5, "NaN"]}}])",
           .registrations = ConvertTo<Int32, Int64, Real32, Real64, Bool, String>()},
          {.name = "toInt64",
           .inputs = {"values"},
           .help = "The nearest 64-bit integer, halves away from zero, saturating; NaN and other text than a "
                   "number give a special row of kind 1.",
           .example = R"("inputs": [{"String": "42"}])",
           .registrations = ConvertTo<Int64, Int32, Real32, Real64, Bool, String>()},
          {.name = "toReal32",
           .inputs = {"values"},
           .help =
               "The nearest 32-bit real, saturating; other text than a number gives a special row of kind "
               "1.",
           .example = R"("inputs": [{"Real64": 0.5}])",
           .registrations = ConvertTo<Real32, Int32, Int64, Real64, Bool, String>()},
          {.name = "asReal64",
           .inputs = {"values"},
           .help =
               "The same number as a 64-bit real; other text than a number gives a special row of kind 1.",
           .example = R"("inputs": [{"Array": {"type": "Int32", "values": [1, 2]}}])",
           .registrations = ConvertTo<Real64, Int32, Int64, Real32, Bool, String>()},
          {.name = "toDateTime",
           .inputs = {"values"},
           .help =
               "The instant of a day number counted from 1899-12-30, of a date, or of an ISO text; NaN and "
               "other text give a special row of kind 1.",
           .example = R"("inputs": [{"Real64": 43891.5}])",
           .registrations = ConvertTo<DateTime, Real64, Date, String>()},
          {.name = "toString",
           .inputs = {"values"},
           .help = "The shortest text that reads back to the number, or the ISO text of the instant.",
           .example = R"("inputs": [{"Array": {"type": "Real64", "values": [0.1, 100]}}])",
           .registrations = ConvertTo<String, Int32, Int64, Real32, Real64, Date, DateTime>()},
      }};
}

}  // namespace ort::core::builtins
