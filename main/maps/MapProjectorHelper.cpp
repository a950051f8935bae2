#include "maps/MapProjectorHelper.h"

#include "maps/LongitudeWrap.h"
#include "maps/MercatorProjections.h"

MapProjectorHelper::~MapProjectorHelper() = default;

double MercatorMapProjectorHelper::GetInverseOfX(double x) const {
  return MercatorProjections::GetInverseOfX(x);
}
double MercatorMapProjectorHelper::GetInverseOfY(double y) const {
  return MercatorProjections::GetInverseOfY(y, eccentricity_);
}
double MercatorMapProjectorHelper::GetX(double longitude) const {
  return MercatorProjections::GetX(longitude);
}
double MercatorMapProjectorHelper::GetY(double latitude) const {
  return MercatorProjections::GetY(latitude, eccentricity_);
}

double IdentitySpatialProjectorHelper::GetX(double longitude) const { return WrapLongitude(longitude); }
