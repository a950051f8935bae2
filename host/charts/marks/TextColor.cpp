#include "charts/marks/TextColor.h"

#include <cmath>

namespace ostrel::charts {
namespace {

using ort::core::OrtColor;

// The relative luminance of a part of a colour, from 0 to 255.
double Linearise(int part) {
  double const share = part / 255.0;
  return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
}

}  // namespace

OrtColor ChooseTextColor(OrtColor ground) {
  auto const value = static_cast<unsigned>(ground.GetValue());
  auto const part = [value](int shift) { return Linearise(static_cast<int>((value >> shift) & 0xFFU)); };
  double const luminance = 0.2126 * part(16) + 0.7152 * part(8) + 0.0722 * part(0);
  constexpr double kFlare = 0.05;
  bool const isDark = (1 + kFlare) / (luminance + kFlare) > (luminance + kFlare) / kFlare;
  return OrtColor(static_cast<int>(isDark ? 0xFFFFFFFF : 0xFF222222));
}

}  // namespace ostrel::charts
