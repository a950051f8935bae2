#include "maps/MercatorProjections.h"

#include <cmath>

#include "maps/LongitudeWrap.h"
#include "maps/MapProjectorHelper.h"
#include "ostrelsys/OMath.h"

namespace MercatorProjections {
namespace {

constexpr double kRadius = MapProjectorHelper::sEarthRadius;
constexpr double kLatitudeLimit = 85.05112878;  // degrees

double ClampLatitude(double latitude) {
  if (latitude >= kLatitudeLimit) return kLatitudeLimit;
  if (latitude <= -kLatitudeLimit) return -kLatitudeLimit;
  return latitude;
}

}  // namespace

double GetX(double longitude) { return WrapLongitude(longitude) * OMath::PI / 180 * kRadius; }

double GetInverseOfX(double x) { return WrapLongitude(x / kRadius * 180 / OMath::PI); }

double GetY(double latitude, double eccentricity) {
  if (latitude == 0) return 0;
  double const phi = ClampLatitude(latitude) * OMath::PI / 180;
  double flattening = 1;
  if (eccentricity != 0) {
    double const s = eccentricity * std::sin(phi);
    flattening = std::pow((1 - s) / (1 + s), eccentricity / 2);
  }
  return std::log(std::tan(OMath::PI / 4 + phi / 2) * flattening) * kRadius;
}

double GetInverseOfY(double y, double eccentricity) {
  double const chi = 2 * std::atan(std::exp(y / kRadius)) - OMath::PI / 2;
  if (eccentricity == 0) return chi * 180 / OMath::PI;
  double const e2 = eccentricity * eccentricity;
  double const e4 = e2 * e2;
  double const e6 = e4 * e2;
  double const e8 = e6 * e2;
  double const phi = chi + std::sin(2 * chi) * (e2 / 2 + 5 * e4 / 24 + e6 / 12 + 13 * e8 / 360) +
                     std::sin(4 * chi) * (7 * e4 / 48 + 29 * e6 / 240 + 811 * e8 / 11520) +
                     std::sin(6 * chi) * (7 * e6 / 120 + 81 * e8 / 1120) +
                     std::sin(8 * chi) * (4279 * e8 / 161280);
  return phi * 180 / OMath::PI;
}

}  // namespace MercatorProjections
