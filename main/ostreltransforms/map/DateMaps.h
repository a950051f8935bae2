#pragma once

#include <utility>

#include "ostrelrtcore/OrtDateTime.h"
#include "ostrelrtcore/StoreType.h"

namespace OstrelTransforms {

inline double ConvertDateToReal64(ort::core::OrtDateTime date) { return date.ToDouble(); }

// A special row gives a special row of kind 1.
inline std::pair<double, ort::core::SpecialKind> ConvertDateToReal64Special(ort::core::OrtDateTime date,
                                                                            ort::core::SpecialKind kind) {
  if (kind != ort::core::SpecialKind::None) return {0.0, ort::core::SpecialKind::Missing};
  return {date.ToDouble(), ort::core::SpecialKind::None};
}

[[gnu::flatten]] inline int GetMonth(ort::core::OrtDateTime date) {
  return date.GetOrtDateTimeParts().GetMonth();
}
[[gnu::flatten]] inline int GetYear(ort::core::OrtDateTime date) {
  return date.GetOrtDateTimeParts().GetYear();
}

}  // namespace OstrelTransforms
