#pragma once

// A zoom level of a map.
struct MapScaleLevel {
  double level = -1.0;   // fractional unless the level was snapped, then the whole part alone
  int size = -1;         // the size in pixels of what a level doubles, rescaled when the level was snapped
  double scale = -1.0;   // 2^level times the base scale; keeps the fraction of a snapped level
  bool clamped = false;  // the wanted level reached the highest one

  friend bool operator==(MapScaleLevel const&, MapScaleLevel const&) = default;
};
