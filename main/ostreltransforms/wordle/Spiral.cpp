#include "ostreltransforms/wordle/Spiral.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "ostrelsys/OMath.h"

namespace OstrelTransforms::WordCloud {
namespace {

constexpr double kStep = 5;
constexpr double kRadiusPerAngle = kStep / (OMath::PI * 2);

double FindNextAngle(double angle, double radius) { return angle + (radius == 0 ? kStep : kStep / radius); }

}  // namespace

void Spiral::AddBlock() {
  angles_.push_back(nextAngle_);
  double radius = 0;
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  Extent extent{{kInfinity, kInfinity}, {-kInfinity, -kInfinity}};
  for (std::size_t i = 0; i < kBlockSize; ++i) {
    radius = nextAngle_ * kRadiusPerAngle;
    Offset const offset{radius * std::sin(nextAngle_), radius * std::cos(nextAngle_)};
    offsets_.push_back(offset);
    extent.least = {std::min(extent.least.x, offset.x), std::min(extent.least.y, offset.y)};
    extent.greatest = {std::max(extent.greatest.x, offset.x), std::max(extent.greatest.y, offset.y)};
    nextAngle_ = FindNextAngle(nextAngle_, radius);
  }
  extents_.push_back(extent);
  lastRadii_.push_back(radius);
}

std::size_t Spiral::CountWithin(std::size_t block, double radius) const {
  double angle = angles_[block];
  std::size_t count = 0;
  for (; count < kBlockSize; ++count) {
    double const r = angle * kRadiusPerAngle;
    if (r > radius) break;
    angle = FindNextAngle(angle, r);
  }
  return count;
}

std::size_t Spiral::FindBlock(double radius) const {
  auto const found = std::upper_bound(lastRadii_.begin(), lastRadii_.end(), radius);
  return static_cast<std::size_t>(found - lastRadii_.begin());
}

}  // namespace OstrelTransforms::WordCloud
