#pragma once

#include <utility>

#include "ostrelrtcore/StoreType.h"
#include "ostreltransforms/map/ElementaryFunctions.h"

namespace OstrelTransforms {

// A special row, and a number at or below zero, gives a special row of kind 1; NaN stays NaN.
template <class In, class Out>
std::pair<Out, ort::core::SpecialKind> LnSpecial(In x, ort::core::SpecialKind kind) {
  auto const number = static_cast<Out>(x);
  if (kind != ort::core::SpecialKind::None || number <= 0) return {Out{0}, ort::core::SpecialKind::Missing};
  return {NaturalLogarithm(number), ort::core::SpecialKind::None};
}

// A special row gives a special row of kind 1; overflow gives infinity.
template <class In, class Out>
std::pair<Out, ort::core::SpecialKind> ExpSpecial(In x, ort::core::SpecialKind kind) {
  if (kind != ort::core::SpecialKind::None) return {Out{0}, ort::core::SpecialKind::Missing};
  return {Exponential(static_cast<Out>(x)), ort::core::SpecialKind::None};
}

}  // namespace OstrelTransforms
