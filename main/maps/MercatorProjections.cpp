#include "maps/MercatorProjections.h"

#include <cmath>

#include "maps/LongitudeWrap.h"
#include "maps/MapProjectorHelper.h"
#include "ostrelsys/OMath.h"

namespace MercatorProjections {
namespace {

constexpr double kRadius = MapProjectorHelper::sEarthRadius;
constexpr double kLatitudeLimit = 85.05112878;  // degrees

double ClampLatitude(double latitude) { return latitude >= kLatitudeLimit ? kLatitudeLimit : latitude; }

// tan(pi / 4 + h) for h of 0 to pi / 4, as (c + s) / (c - s) with s / c = tan h: exactly one at 0, and
// cheaper than the tangent of any angle. s / c is the continued fraction of tan h, broken off at its eighth
// member, beyond which a double sees nothing: J. H. Lambert, "Memoire sur quelques proprietes remarquables
// des quantites transcendentes circulaires et logarithmiques" (1761).
double TangentOfQuarterTurnAnd(double h) {
  double const z = h * h;
  double const w = z * z;
  double const s = h * (2027025.0 - (270270.0 * z - w * (6930.0 - 36.0 * z)));
  double const c = 2027025.0 - (945945.0 * z - w * ((51975.0 - 630.0 * z) + w));
  return (c + s) / (c - s);
}

}  // namespace

double GetX(double longitude) { return WrapLongitude(longitude) * OMath::PI / 180 * kRadius; }

double GetInverseOfX(double x) { return WrapLongitude(x / kRadius * 180 / OMath::PI); }

double GetY(double latitude, double eccentricity) {
  double const phi = ClampLatitude(std::fabs(latitude)) * OMath::PI / 180;
  double tangent = TangentOfQuarterTurnAnd(phi / 2);
  if (eccentricity != 0) {
    double const s = eccentricity * std::sin(phi);
    tangent *= std::pow((1 - s) / (1 + s), eccentricity / 2);
  }
  return std::copysign(std::log(tangent) * kRadius, latitude);
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
