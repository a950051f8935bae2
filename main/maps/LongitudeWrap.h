#pragma once

#include <cmath>

// Degrees of longitude in -180 to 180; both ends stay as they are.
inline double WrapLongitude(double degrees) {
  double wrapped = std::fabs(degrees) < 360.0 ? degrees : std::fmod(degrees, 360.0);
  if (wrapped > 180.0) wrapped -= 360.0;
  if (wrapped < -180.0) wrapped += 360.0;
  return wrapped;
}
