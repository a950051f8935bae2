#include "ostreltransforms/setvaluemulti/Stepping.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "ostrelrtcore/Factory.h"
#include "ostreltransforms/StoreValueOperators.h"
#include "ostreltransforms/setvaluemulti/ScaleRange.h"

namespace OstrelTransforms {
namespace {

using namespace ort::core;
namespace Operators = StoreValueOperators;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

double ReadNumber(Value const& value) {
  double const number = value->IsSpecial() ? kInfinity : Operators::ConvertToDouble(*value);
  return std::isfinite(number) ? number : kInfinity;
}

struct Stepping {
  double minimum;
  double maximum;
  double left;
  double right;
};

// The width of a step when `left` of `count` steps lie below the centre.
double GetWidth(double below, double above, double left, double count) {
  double const right = count - left;
  double const leftWidth = below > 0 ? below / left : 0.0;
  double const rightWidth = above > 0 ? above / right : 0.0;
  return std::max(leftWidth, rightWidth);
}

// The narrowest steps are those of the split nearest to the proportion of both sides, to half a step.
Stepping StepAround(double centre, double minimum, double maximum, double count) {
  double const below = std::max(centre - minimum, 0.0);
  double const above = std::max(maximum - centre, 0.0);
  double const total = below + above;
  double const halves = total > 0 ? 2 * count * (below / total) : count;
  double const fewer = std::floor(halves) * 0.5;
  double const more = std::ceil(halves) * 0.5;
  bool const takesFewer = GetWidth(below, above, fewer, count) <= GetWidth(below, above, more, count);
  double const left = takesFewer ? fewer : more;
  double const right = count - left;
  double const width = GetWidth(below, above, left, count);
  // A side that decides the width keeps its end exactly.
  return {left > 0 && below / left == width ? minimum : std::min(minimum, centre - left * width),
          right > 0 && above / right == width ? maximum : std::max(maximum, centre + right * width), left,
          right};
}

Value MakeColors(Value const& minimum, Value const& maximum, double left, double right) {
  return factory::MakeKeyMap({{L"colorMin", minimum},
                              {L"colorMax", maximum},
                              {L"nStepsLeft", factory::MakeReal64(left)},
                              {L"nStepsRight", factory::MakeReal64(right)}});
}

StoreType FindCommonType(StoreType a, StoreType b, int fieldType) {
  bool const isTemporal = Operators::IsTemporal(a);
  if (isTemporal != Operators::IsTemporal(b)) {
    bool const isTemporalField =
        fieldType == static_cast<int>(StoreType::Date) || fieldType == static_cast<int>(StoreType::DateTime);
    return isTemporalField ? StoreType::DateTime : StoreType::Real64;
  }
  if (isTemporal) return StoreType::DateTime;
  auto const isInteger = [](StoreType type) { return type == StoreType::Int32 || type == StoreType::Int64; };
  return isInteger(a) && isInteger(b) ? StoreType::Int64 : StoreType::Real64;
}

void RequireNumberOrDate(StoreType type) {
  if (!Operators::IsNumeric(type) && !Operators::IsTemporal(type))
    throw OrtRuntimeException(OrtError_UnsupportedType, StoreTypeToString(type));
}

// Towards an infinity where Real64 does not hold the integer.
double RoundOutside(int64 value, double direction) {
  constexpr double kBeyond = 0x1p63;
  auto const nearest = static_cast<double>(value);
  // 2^63 itself is no Int64, and above every one.
  bool const isExact = nearest < kBeyond && static_cast<int64>(nearest) == value;
  bool const isBelow = nearest < kBeyond && static_cast<int64>(nearest) < value;
  if (isExact || isBelow == (direction < 0)) return nearest;
  return std::nextafter(nearest, direction);
}

Value ConvertEnd(Value const& end, StoreType type, double outside) {
  if (end->IsSpecial()) return factory::MakeSpecial(StoreTypeInfo(type, false), end->GetSpecialKind());
  if (end->GetStoreType() == StoreType::Int64 && type == StoreType::Real64)
    return factory::MakeReal64(RoundOutside(end->GetInt64(), outside));
  if (Operators::IsTemporal(*end) && type == StoreType::Real64)
    return factory::MakeReal64(Operators::ConvertToDouble(*end));
  if (Operators::IsNumeric(*end) && type == StoreType::DateTime)
    return factory::MakeDateTime(OrtDateTime::FromDouble(Operators::ConvertToDouble(*end)));
  return Operators::Cast(*end, type);
}

}  // namespace

Value AdjustDomainForStepping(Value const& minimum, Value const& maximum, Value const& centre, int steps) {
  if (steps < 1) Refuse(L"steps", L"1 or more");
  double low = ReadNumber(minimum), high = ReadNumber(maximum), middle = ReadNumber(centre);
  if (high < low) std::swap(low, high);
  bool const isAutomatic = centre->IsSpecial();
  if (isAutomatic) middle = 0;
  auto const count = static_cast<double>(steps);
  if (std::isinf(low) || std::isinf(high) || std::isinf(middle) || std::isinf(high - low)) {
    Value const missing = factory::MakeSpecial(StoreTypeInfo::Real64, SpecialKind::Missing);
    return MakeColors(missing, missing, 0, count);
  }
  bool const diverges = !isAutomatic || (low < 0 && high > 0);
  Stepping const stepping = diverges ? StepAround(middle, low, high, count) : Stepping{low, high, 0, count};
  return MakeColors(factory::MakeReal64(stepping.minimum), factory::MakeReal64(stepping.maximum),
                    stepping.left, stepping.right);
}

Value ResolveMinMaxDataTypeMismatch(Value const& minimum, Value const& maximum, int fieldType) {
  StoreType const low = minimum->GetStoreType(), high = maximum->GetStoreType();
  RequireNumberOrDate(low);
  RequireNumberOrDate(high);
  if (low == high) return factory::MakeTuple(std::vector{minimum, maximum});
  StoreType type = FindCommonType(low, high, fieldType);
  if (minimum->IsSpecial() != maximum->IsSpecial()) type = minimum->IsSpecial() ? high : low;
  return factory::MakeTuple(
      std::vector{ConvertEnd(minimum, type, -kInfinity), ConvertEnd(maximum, type, kInfinity)});
}

}  // namespace OstrelTransforms
