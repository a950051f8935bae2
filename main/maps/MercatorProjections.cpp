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

// tan(pi / 4 + h) for h of 0 to pi / 4, which is (cos h + sin h) / (cos h - sin h): one at 0, and cheaper
// than the tangent of any angle. Polynomials of K. C. Ng, "FDLIBM: k_sin.c, k_cos.c", Sun Microsystems
// (1993).
double TangentOfQuarterTurnAnd(double h) {
  double const z = h * h;
  double const w = z * z;
  double const sine = h + h * z *
                              ((-1.66666666666666324348e-01 + z * 8.33333333332248946124e-03) +
                               w * ((-1.98412698298579493134e-04 + z * 2.75573137070700676789e-06) +
                                    w * (-2.50507602534068634195e-08 + z * 1.58969099521155010221e-10)));
  double const rest = z * ((4.16666666666666019037e-02 + z * -1.38888888888741095749e-03) +
                           w * ((2.48015872894767294178e-05 + z * -2.75573143513906633035e-07) +
                                w * (2.08757232129817482790e-09 + z * -1.13596475577881948265e-11)));
  double const halfSquare = 0.5 * z;
  double const first = 1.0 - halfSquare;
  double const cosine = first + (((1.0 - first) - halfSquare) + z * rest);
  return (cosine + sine) / (cosine - sine);
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
