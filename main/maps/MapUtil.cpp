#include "maps/MapUtil.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "ostrelsys/OMath.h"
#include "ostrelsys/ThrowLogicException.h"

namespace {

double Log2(double x) { return std::log(x) / std::log(2.0); }

int SaturateSize(double size) {
  constexpr double least = std::numeric_limits<int>::min();
  constexpr double most = std::numeric_limits<int>::max();
  return std::isnan(size) ? 0 : static_cast<int>(std::clamp(size, least, most));
}

MapScaleLevel MakeScaleLevel(double level, double baseScale, int tileSize, double maximumLevel, bool snap) {
  MapScaleLevel result;
  result.clamped = level >= maximumLevel;
  if (result.clamped) level = maximumLevel;
  result.level = level;
  result.size = tileSize;
  if (level < 0) {
    level = 0;
    result.level = 0;
  } else if (snap) {
    double const whole = std::floor(level);
    double fraction = level - whole;
    result.level = whole;
    if (fraction > 0) {
      result.size = SaturateSize(std::floor(std::exp2(fraction) * tileSize + 0.5));
      fraction = Log2(static_cast<double>(result.size) / tileSize);
    }
    level = whole + fraction;
  }
  result.scale = std::exp2(level) * baseScale;
  return result;
}

}  // namespace

namespace MapUtil {

double ComputeScale(double xExtent, double yExtent, int width, int height) {
  if (xExtent == 0.0 || yExtent == 0.0 || width == 0 || height == 0) return 0.0;
  double const xScale = width / xExtent;
  double const yScale = height / yExtent;
  // One-sided on purpose: only an x scale above that of y can fail.
  if (std::fabs(xScale / yScale) - 1.0 >= 2.0 / std::min(width, height))
    return std::numeric_limits<double>::quiet_NaN();
  return xScale;
}

MapScaleLevel ComputeScaleLevel(double scale, double baseScale, int stepsPerLevel, int tileSize,
                                double maximumLevel, bool snap, double ratio) {
  double const steps = stepsPerLevel * Log2(scale / baseScale);
  auto const make = [&](double wholeSteps) {
    return MakeScaleLevel(wholeSteps / stepsPerLevel, baseScale, tileSize, maximumLevel, snap);
  };
  MapScaleLevel const above = make(std::ceil(steps));
  double const tolerance = ratio > 0.99 ? 0.99 : ratio;
  return above.scale * tolerance > scale ? make(std::floor(steps)) : above;
}

std::unique_ptr<MapProjectorHelper> MakeProjector(int kind, double eccentricity) {
  switch (kind) {
    case 0:
      return std::make_unique<MercatorMapProjectorHelper>(eccentricity);
    case 1:
      return std::make_unique<IdentitySpatialProjectorHelper>();
    default:
      ThrowLogicException("maps/MapUtil", 369, "false");
  }
}

}  // namespace MapUtil
