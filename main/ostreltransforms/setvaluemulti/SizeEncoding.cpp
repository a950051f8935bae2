#include "ostreltransforms/setvaluemulti/SizeEncoding.h"

#include <algorithm>
#include <cmath>

#include "ostrelrtcore/Factory.h"
#include "ostreltransforms/StoreValueOperators.h"

namespace OstrelTransforms {
namespace SizeEncoding {
namespace {

struct Sizes {
  double from;
  double to;
  bool isFromCenter = false;
  bool takesPositiveValuesOnly = false;
};

Sizes GrowFrom(double center, double low, double high) {
  return {center, center + std::max(std::fabs(low - center), std::fabs(high - center)), true, false};
}

Sizes GrowFromZero(double low, double high) {
  double const from = std::max(low, 0.0);
  return {from, std::max(high, from), false, true};
}

double LogarithmicEnd(double end) { return end > 0 ? end : 1; }

Sizes ChooseSizes(Field const& field, double low, double high) {
  if (field.isLog) return {LogarithmicEnd(low), LogarithmicEnd(high), false, true};
  if (field.center) return GrowFrom(*field.center, low, high);
  if (field.isTemporal || field.mode == Mode::MinimumToMaximum) return {low, high};
  bool const isFixed = field.fixedMinimum.has_value();
  if (field.mode == Mode::FromZero) return GrowFromZero(isFixed ? low : 0, high);
  if (isFixed) return {low, high};
  return low >= 0 ? GrowFromZero(0, high) : GrowFrom(0, low, high);
}

std::optional<double> Prefer(std::optional<double> const& first, std::optional<double> const& second) {
  return first ? first : second;
}

}  // namespace

Parameters Resolve(Field const& field) {
  auto const fixedOrOwnMinimum = Prefer(field.fixedMinimum, field.minimum);
  auto const fixedOrOwnMaximum = Prefer(field.fixedMaximum, field.maximum);
  auto const legendMinimum = Prefer(field.legendMinimum, fixedOrOwnMinimum);
  auto const legendMaximum = Prefer(field.legendMaximum, fixedOrOwnMaximum);
  bool const legendEndsDiffer = legendMinimum && legendMaximum && *legendMinimum != *legendMaximum;
  if (!fixedOrOwnMinimum || !fixedOrOwnMaximum) {
    return {.encodingMin = 0,
            .encodingMax = 0,
            .isFromCenter = false,
            .isReversed = field.isReversed,
            .takesPositiveValuesOnly = false,
            .isRangeEmpty = true,
            .legendEndsDiffer = legendEndsDiffer};
  }
  auto const [low, high] = std::minmax(*fixedOrOwnMinimum, *fixedOrOwnMaximum);
  bool const isCrossed = *fixedOrOwnMinimum > *fixedOrOwnMaximum;
  Sizes const sizes = ChooseSizes(field, low, high);
  return {.encodingMin = sizes.from,
          .encodingMax = sizes.to,
          .isFromCenter = sizes.isFromCenter,
          .isReversed = field.isReversed != isCrossed,
          .takesPositiveValuesOnly = sizes.takesPositiveValuesOnly,
          .isRangeEmpty = !(sizes.from < sizes.to),
          .legendEndsDiffer = legendEndsDiffer};
}

}  // namespace SizeEncoding

namespace {

using namespace ort::core;

std::optional<double> ReadEnd(StoreValue const& end) {
  if (end.IsSpecial()) return std::nullopt;
  double const number = StoreValueOperators::ConvertToDouble(end);
  return std::isfinite(number) ? std::optional(number) : std::nullopt;
}

SizeEncoding::Mode ReadMode(int mode) {
  if (mode < 0 || mode > 2) {
    throw OrtRuntimeException(OrtError_InputKindNotAccepted,
                              OStringCore(L"the mode of a size encoding is 0, 1 or 2"));
  }
  return static_cast<SizeEncoding::Mode>(mode);
}

}  // namespace

Value ResolveSizeEncodingParameters(StoreValue const& minimum, StoreValue const& maximum,
                                    StoreValue const& legendMinimum, StoreValue const& legendMaximum,
                                    StoreValue const& fixedMinimum, StoreValue const& fixedMaximum,
                                    StoreValue const& center, int mode, bool isReversed, bool isLog,
                                    int fieldType) {
  SizeEncoding::Parameters const resolved = SizeEncoding::Resolve(
      {.minimum = ReadEnd(minimum),
       .maximum = ReadEnd(maximum),
       .legendMinimum = ReadEnd(legendMinimum),
       .legendMaximum = ReadEnd(legendMaximum),
       .fixedMinimum = ReadEnd(fixedMinimum),
       .fixedMaximum = ReadEnd(fixedMaximum),
       .center = ReadEnd(center),
       .mode = ReadMode(mode),
       .isReversed = isReversed,
       .isLog = isLog,
       .isTemporal = StoreValueOperators::IsTemporal(static_cast<StoreType>(fieldType))});
  return factory::MakeKeyMap(
      {{L"isFromCenter", factory::MakeBool(resolved.isFromCenter)},
       {L"reversed", factory::MakeBool(resolved.isReversed)},
       {L"inputPositiveValuesOnly", factory::MakeBool(resolved.takesPositiveValuesOnly)},
       {L"encodingMin", factory::MakeReal64(resolved.encodingMin)},
       {L"encodingMax", factory::MakeReal64(resolved.encodingMax)},
       {L"encodingRangeIsEmpty", factory::MakeBool(resolved.isRangeEmpty)},
       {L"legendMinMaxNotEqual", factory::MakeBool(resolved.legendEndsDiffer)}});
}

}  // namespace OstrelTransforms
