#pragma once

#include "ostreltransforms/Export.h"

// Projects geographic to map coordinates and back. Immutable, so that threads may share it.
class OSTREL_API MapProjectorHelper {
 public:
  static constexpr double sEarthRadius = 6378137.0;  // metres, at the equator

  // Through the base nothing but the class is copied: a projector keeps its parameters.
  MapProjectorHelper(MapProjectorHelper const&) = default;
  MapProjectorHelper& operator=(MapProjectorHelper const&) = default;
  virtual ~MapProjectorHelper();
  virtual double GetInverseOfX(double x) const = 0;
  virtual double GetInverseOfY(double y) const = 0;
  virtual double GetX(double longitude) const = 0;
  virtual double GetY(double latitude) const = 0;

  double GetCoordinate(bool isX, double value) const { return isX ? GetX(value) : GetY(value); }
  double GetInverseOf(bool isX, double value) const {
    return isX ? GetInverseOfX(value) : GetInverseOfY(value);
  }

 protected:
  MapProjectorHelper() = default;
};

// See MercatorProjections.
class OSTREL_API MercatorMapProjectorHelper : public MapProjectorHelper {
 public:
  explicit MercatorMapProjectorHelper(double eccentricity) : eccentricity_(eccentricity) {}

  double GetEccentricity() const { return eccentricity_; }
  double GetInverseOfX(double x) const override;
  double GetInverseOfY(double y) const override;
  double GetX(double longitude) const override;
  double GetY(double latitude) const override;

 private:
  double eccentricity_;
};

// Map coordinates are degrees themselves; GetX alone wraps into -180 to 180.
class OSTREL_API IdentitySpatialProjectorHelper : public MapProjectorHelper {
 public:
  double GetInverseOfX(double x) const override { return x; }
  double GetInverseOfY(double y) const override { return y; }
  double GetX(double longitude) const override;
  double GetY(double latitude) const override { return latitude; }
};
