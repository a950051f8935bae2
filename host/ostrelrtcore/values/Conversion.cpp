#include "ostrelrtcore/values/Conversion.h"

#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <string>

#include "ostrelrtcore/Factory.h"

namespace ort::core {
namespace {

using Value = std::shared_ptr<StoreValue>;

bool IsInteger(StoreType type) { return type == StoreType::Int32 || type == StoreType::Int64; }
bool IsReal(StoreType type) { return type == StoreType::Real32 || type == StoreType::Real64; }
bool IsNumber(StoreType type) { return IsInteger(type) || IsReal(type); }
bool IsInstant(StoreType type) { return type == StoreType::Date || type == StoreType::DateTime; }

bool HasRule(StoreType from, StoreType to) {
  if (from == to) return true;
  if (IsNumber(from)) {
    return IsNumber(to) || IsInstant(to) || to == StoreType::Bool || to == StoreType::String ||
           (IsInteger(from) && to == StoreType::Color);
  }
  if (IsInstant(from)) return IsInstant(to) || IsNumber(to) || to == StoreType::String;
  switch (from) {
    case StoreType::Bool:
      return IsNumber(to);
    case StoreType::Color:
      return IsInteger(to);
    case StoreType::String:
      return IsNumber(to) || IsInstant(to);
    default:
      return false;
  }
}

void RequireRule(StoreType from, StoreType to) {
  if (HasRule(from, to)) return;
  throw OrtRuntimeException(OrtError_UnsupportedType,
                            StoreTypeToString(from) + OStringCore(L" to ") + StoreTypeToString(to));
}

// The nearest integer within [lowest, highest], halves away from zero. The value is no NaN.
int64 RoundWithin(double value, int64 lowest, int64 highest) {
  double const rounded = std::round(value);
  if (rounded <= static_cast<double>(lowest)) return lowest;
  if (rounded >= static_cast<double>(highest)) return highest;
  return static_cast<int64>(rounded);
}

Value MakeMissing(StoreType type) {
  return factory::MakeSpecial(StoreTypeInfo(type, false), SpecialKind::Missing);
}

Value MakeInstant(OrtDateTime instant, StoreType type) {
  return type == StoreType::Date ? factory::MakeDate(instant) : factory::MakeDateTime(instant);
}

OrtDateTime FromWholeDays(int64 days) {
  constexpr auto kLastDay =
      static_cast<int64>(std::numeric_limits<uint64>::max() / OrtDateTime::kTicksPerDay);
  constexpr auto kZero = static_cast<int64>(OrtDateTime::kDayNumberZero);
  if (days < -kZero) return OrtDateTime();
  if (days > kLastDay - kZero) return OrtDateTime::FromValue(std::numeric_limits<uint64>::max());
  return OrtDateTime::FromValue(static_cast<uint64>(days + kZero) * OrtDateTime::kTicksPerDay);
}

Value FromInteger(int64 value, StoreType to) {
  switch (to) {
    case StoreType::Int32: {
      using Limits = std::numeric_limits<int>;
      return factory::MakeInt32(static_cast<int>(std::clamp<int64>(value, Limits::min(), Limits::max())));
    }
    case StoreType::Int64:
      return factory::MakeInt64(value);
    case StoreType::Real32:
      return factory::MakeReal32(static_cast<float>(value));
    case StoreType::Real64:
      return factory::MakeReal64(static_cast<double>(value));
    case StoreType::Bool:
      return factory::MakeBool(value != 0);
    case StoreType::Color:
      return factory::MakeColor(OrtColor(static_cast<int>(value)));
    case StoreType::String:
      return factory::MakeString(OStringCore::fromUtf8(std::to_string(value)));
    default:
      return MakeInstant(FromWholeDays(value), to);
  }
}

template <class Real>
OStringCore ToShortestText(Real value) {
  if (std::isnan(value)) return OStringCore(L"NaN");
  if (std::isinf(value)) return OStringCore(value < 0 ? L"-Infinity" : L"Infinity");
  std::array<char, 64> buffer;
  auto const end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr;
  return OStringCore::fromUtf8({buffer.data(), static_cast<std::size_t>(end - buffer.data())});
}

Value FromReal(double value, StoreType to) {
  if (std::isnan(value) && !IsReal(to)) return MakeMissing(to);
  using Limits32 = std::numeric_limits<int>;
  using Limits64 = std::numeric_limits<int64>;
  switch (to) {
    case StoreType::Int32:
      return factory::MakeInt32(static_cast<int>(RoundWithin(value, Limits32::min(), Limits32::max())));
    case StoreType::Int64:
      return factory::MakeInt64(RoundWithin(value, Limits64::min(), Limits64::max()));
    case StoreType::Real32: {
      // Saturates like every narrowing; only an infinity becomes one.
      constexpr double kMost = std::numeric_limits<float>::max();
      bool const saturates = std::isfinite(value) && std::abs(value) > kMost;
      return factory::MakeReal32(static_cast<float>(saturates ? std::copysign(kMost, value) : value));
    }
    case StoreType::Real64:
      return factory::MakeReal64(value);
    case StoreType::Bool:
      return factory::MakeBool(value != 0.0);
    default:
      return MakeInstant(OrtDateTime::FromDouble(value), to);
  }
}

Value FromInstant(OrtDateTime instant, StoreType to, bool isDate) {
  if (IsInstant(to)) return MakeInstant(instant, to);
  if (to == StoreType::String) {
    bool const dateOnly = isDate && !instant.HasTime();
    return factory::MakeString(
        OStringCore::fromUtf8(dateOnly ? instant.ToIsoDateText() : instant.ToIsoText()));
  }
  if (IsReal(to)) return FromReal(instant.ToDouble(), to);
  auto const days =
      static_cast<int64>(instant.GetDayCount()) - static_cast<int64>(OrtDateTime::kDayNumberZero);
  return FromInteger(days, to);
}

template <class Number>
std::optional<Number> ParseWhole(std::string_view text) {
  Number value{};
  auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

}  // namespace

Value ConvertScalar(StoreType from, uint64 bits, SpecialKind kind, StoreType to) {
  RequireRule(from, to);
  if (kind != SpecialKind::None) return factory::MakeSpecial(StoreTypeInfo(to, false), kind);
  switch (from) {
    case StoreType::Int32:
    case StoreType::Color:
      return from == to ? factory::MakeColor(OrtColor(static_cast<int>(bits)))
                        : FromInteger(static_cast<int>(bits), to);
    case StoreType::Int64:
      return FromInteger(static_cast<int64>(bits), to);
    case StoreType::Real32: {
      auto const value = std::bit_cast<float>(static_cast<uint32>(bits));
      return to == StoreType::String ? factory::MakeString(ToShortestText(value)) : FromReal(value, to);
    }
    case StoreType::Real64: {
      auto const value = std::bit_cast<double>(bits);
      return to == StoreType::String ? factory::MakeString(ToShortestText(value)) : FromReal(value, to);
    }
    case StoreType::Bool:
      return from == to ? factory::MakeBool(bits != 0) : FromInteger(bits != 0, to);
    default:
      return FromInstant(OrtDateTime::FromValue(bits), to, from == StoreType::Date);
  }
}

Value ConvertString(RIndirectString const& text, StoreType to) {
  if (to == StoreType::String) return factory::MakeString(text);
  RequireRule(StoreType::String, to);
  std::string const utf8 = text.Get().toUtf8();
  if (IsInstant(to)) {
    auto const instant = OrtDateTime::FromIsoText(std::string_view(utf8));
    return instant ? MakeInstant(*instant, to) : MakeMissing(to);
  }
  if (to == StoreType::Int32) {
    auto const value = ParseWhole<int>(utf8);
    return value ? factory::MakeInt32(*value) : MakeMissing(to);
  }
  if (to == StoreType::Int64) {
    auto const value = ParseWhole<int64>(utf8);
    return value ? factory::MakeInt64(*value) : MakeMissing(to);
  }
  if (to == StoreType::Real32) {
    auto const value = ParseWhole<float>(utf8);
    return value ? factory::MakeReal32(*value) : MakeMissing(to);
  }
  auto const value = ParseWhole<double>(utf8);
  return value ? factory::MakeReal64(*value) : MakeMissing(to);
}

}  // namespace ort::core
