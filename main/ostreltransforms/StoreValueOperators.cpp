#include "ostreltransforms/StoreValueOperators.h"

#include <cmath>
#include <limits>
#include <type_traits>

#include "ostrelrtcore/Factory.h"

namespace StoreValueOperators {
namespace {

using namespace ort::core;
using Value = std::shared_ptr<StoreValue>;

[[noreturn]] void ThrowUnsupported(StoreValue const& value) {
  throw OrtRuntimeException(OrtError_UnsupportedType, StoreTypeToString(value.GetStoreType()));
}

void RequireSameType(StoreValue const& a, StoreValue const& b) {
  if (a.GetStoreType() == b.GetStoreType()) return;
  OStringCore message = StoreTypeToString(a.GetStoreType());
  message += OStringCore(L", ");
  message += StoreTypeToString(b.GetStoreType());
  throw OrtRuntimeException(OrtError_TypesDiffer, message);
}

// Calls operation with both operands in their common C++ type and makes a value of what it gives.
template <class Operation>
Value OnNumbers(StoreValue const& a, StoreValue const& b, Operation operation) {
  RequireSameType(a, b);
  switch (a.GetStoreType()) {
    case StoreType::Int32:
      return factory::MakeInt32(operation(a.GetInt32(), b.GetInt32()));
    case StoreType::Int64:
      return factory::MakeInt64(operation(a.GetInt64(), b.GetInt64()));
    case StoreType::Real32:
      return factory::MakeReal32(operation(a.GetReal32(), b.GetReal32()));
    case StoreType::Real64:
      return factory::MakeReal64(operation(a.GetReal64(), b.GetReal64()));
    default:
      ThrowUnsupported(a);
  }
}

// Integer arithmetic goes through the unsigned type, in which overflow wraps.
template <class T>
struct WrappingType {
  using Type = T;
};
template <class T>
requires std::is_integral_v<T>
struct WrappingType<T> {
  using Type = std::make_unsigned_t<T>;
};
template <class T>
using Wrapping = typename WrappingType<T>::Type;

Value Negate(StoreValue const& value) {
  auto const negate = [](auto x, auto) {
    using T = decltype(x);
    if constexpr (std::is_integral_v<T>) {
      return static_cast<T>(Wrapping<T>{0} - static_cast<Wrapping<T>>(x));
    } else {
      return -x;
    }
  };
  return OnNumbers(value, value, negate);
}

OrtTimeSpan MakeSpan(double days) {
  double const ticks = std::round(std::fabs(days) * static_cast<double>(OrtTimeSpan::kTicksPerDay));
  if (std::isnan(ticks)) return {};
  auto const magnitude = ticks < 0x1p63 ? OrtTimeSpan::FromTicks(static_cast<int64>(ticks))
                                        : OrtTimeSpan::FromTicks(std::numeric_limits<int64>::max());
  return days < 0 ? -magnitude : magnitude;
}

OrtTimeSpan DaysToSpan(StoreValue const& days) {
  switch (days.GetStoreType()) {
    case StoreType::Int32:
      return {days.GetInt32(), 0, 0, 0};
    case StoreType::Int64:
      return {days.GetInt64(), 0, 0, 0};
    case StoreType::Real32:
      return MakeSpan(days.GetReal32());
    case StoreType::Real64:
      return MakeSpan(days.GetReal64());
    default:
      ThrowUnsupported(days);
  }
}

enum class InterpolationMode { Empty, Linear, Ratio };

InterpolationMode ChooseMode(StoreValue const& from, StoreValue const& to, bool linearOnly) {
  if (from.Equals(to)) return InterpolationMode::Empty;
  if (linearOnly || !IsNumeric(from) || !IsNumeric(to)) return InterpolationMode::Linear;
  double const distance = ConvertToDouble(to) * 0.000001 - ConvertToDouble(from) * 0.000001;
  return std::fabs(distance) > 1.0 ? InterpolationMode::Ratio : InterpolationMode::Linear;
}

double InverseRatio(double x, double from, double to) {
  if (from == to) return 0.0;
  if (from != 0.0) return (x / from - 1) / (to / from - 1);
  if (to != 0.0) return ((x - from) / to) / (1 - from / to);
  return 0.0;
}

double InverseLinear(StoreValue const& value, StoreValue const& from, StoreValue const& to) {
  double const distance = ConvertToDouble(*Subtract(to, from));
  return distance == 0.0 ? 0.0 : ConvertToDouble(*Subtract(value, from)) / distance;
}

}  // namespace

Value Add(StoreValue const& a, StoreValue const& b) {
  if (IsTemporal(b) && IsNumeric(a)) return Add(b, a);
  if (IsTemporal(a)) return factory::MakeDateTime(a.GetDateTime() + DaysToSpan(b));
  if (IsTemporal(b)) ThrowUnsupported(a);
  return OnNumbers(a, b, [](auto x, auto y) {
    using T = decltype(x);
    return static_cast<T>(static_cast<Wrapping<T>>(x) + static_cast<Wrapping<T>>(y));
  });
}

Value Subtract(StoreValue const& a, StoreValue const& b) {
  if (IsTemporal(a) && IsTemporal(b))
    return factory::MakeReal64(a.GetDateTime().ToDouble() - b.GetDateTime().ToDouble());
  if (IsTemporal(a) || IsTemporal(b)) return Add(a, *Negate(b));
  return OnNumbers(a, b, [](auto x, auto y) {
    using T = decltype(x);
    return static_cast<T>(static_cast<Wrapping<T>>(x) - static_cast<Wrapping<T>>(y));
  });
}

Value Multiply(StoreValue const& a, StoreValue const& b) {
  return OnNumbers(a, b, [](auto x, auto y) {
    using T = decltype(x);
    return static_cast<T>(static_cast<Wrapping<T>>(x) * static_cast<Wrapping<T>>(y));
  });
}

Value Divide(StoreValue const& a, StoreValue const& b) {
  // On purpose the machine's integer division, with its faults.
  return OnNumbers(a, b, [](auto x, auto y) { return x / y; });
}

Value Max(StoreValue const& a, StoreValue const& b) {
  RequireSameType(a, b);
  auto const larger = [](auto x, auto y) { return x > y ? x : y; };
  if (a.GetStoreType() == StoreType::DateTime)
    return factory::MakeDateTime(larger(a.GetDateTime(), b.GetDateTime()));
  return OnNumbers(a, b, larger);
}

Value Min(StoreValue const& a, StoreValue const& b) {
  RequireSameType(a, b);
  auto const smaller = [](auto x, auto y) { return y > x ? x : y; };
  if (a.GetStoreType() == StoreType::DateTime)
    return factory::MakeDateTime(smaller(a.GetDateTime(), b.GetDateTime()));
  return OnNumbers(a, b, smaller);
}

Value Cast(StoreValue const& value, StoreType type) {
  return value.GetStoreType() == type ? value.Clone() : value.ConvertTo(type);
}

double ConvertToDouble(StoreValue const& value) {
  switch (value.GetStoreType()) {
    case StoreType::Int32:
      return value.GetInt32();
    case StoreType::Int64:
      return static_cast<double>(value.GetInt64());
    case StoreType::Real32:
      return value.GetReal32();
    case StoreType::Real64:
      return value.GetReal64();
    case StoreType::Date:
      return value.GetDate().ToDouble();
    case StoreType::DateTime:
      return value.GetDateTime().ToDouble();
    default:
      ThrowUnsupported(value);
  }
}

int CompareAsDoubles(StoreValue const& a, StoreValue const& b) {
  double const x = ConvertToDouble(a);
  double const y = ConvertToDouble(b);
  if (x == y) return 0;
  return y > x ? -1 : 1;
}

Value Interpolate(double fraction, StoreValue const& from, StoreValue const& to, bool linearOnly) {
  RequireSameType(from, to);
  InterpolationMode const mode = ChooseMode(from, to, linearOnly);
  if (mode == InterpolationMode::Empty) return from.Clone();
  double const f = ConvertToDouble(from);
  double const t = ConvertToDouble(to);
  double const result =
      mode == InterpolationMode::Ratio ? f * (1 - fraction) + t * fraction : f + (t - f) * fraction;
  return Cast(*factory::MakeReal64(result), from.GetStoreType());
}

Value InverseInterpolate(StoreValue const& value, StoreValue const& from, StoreValue const& to,
                         bool linearOnly) {
  RequireSameType(value, from);
  RequireSameType(value, to);
  switch (ChooseMode(from, to, linearOnly)) {
    case InterpolationMode::Linear:
      return factory::MakeReal64(InverseLinear(value, from, to));
    case InterpolationMode::Ratio:
      return factory::MakeReal64(
          InverseRatio(ConvertToDouble(value), ConvertToDouble(from), ConvertToDouble(to)));
    default:
      return factory::MakeReal64(0.0);
  }
}

Value Ln(StoreValue const& value) {
  if (value.IsSpecial()) return factory::MakeSpecial(value.GetTypeInfo(), value.GetSpecialKind());
  if (!IsNumeric(value)) ThrowUnsupported(value);
  double const x = ConvertToDouble(value);
  return factory::MakeReal64(x > 0 ? std::log(x) : 0.0);
}

bool IsNumeric(StoreType type) { return type >= StoreType::Int32 && type <= StoreType::Real64; }
bool IsNumeric(StoreValue const& value) { return IsNumeric(value.GetStoreType()); }
bool IsTemporal(StoreType type) { return type == StoreType::Date || type == StoreType::DateTime; }
bool IsTemporal(StoreValue const& value) { return IsTemporal(value.GetStoreType()); }

}  // namespace StoreValueOperators
