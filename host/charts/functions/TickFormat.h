#pragma once

#include <span>
#include <string_view>

#include "services/NumberFormat.h"

namespace ostrel::charts {

/// How the ticks of one axis are written.
///
/// Evenly spaced ticks get one number of decimals, by the distance between them: "0.0", "0.5", "1.0". A
/// pattern (see services::NumberFormat) without precision gets the one that tells neighbours apart, and of
/// type s all get the unit of the largest.
///
/// The other ticks, those of a logarithmic axis above all, and a single one, get each its own shortest text:
/// "0.001", "1", "1,000", above 10^9 and below 10^-6 "1e+12". Under a pattern without precision the zeros at
/// the end of decimals are left out.
class TickFormat {
 public:
  /// Ticks that are not finite are passed over. Throws OrtRuntimeException 55 for an ill-formed pattern.
  TickFormat(std::span<double const> ticks, std::u16string_view pattern);
  OStringCore Format(double tick) const;

 private:
  services::NumberFormat usual_;
  /// For magnitudes that are unreadable in plain digits.
  services::NumberFormat power_;
  bool usesPowers_ = false;
  bool sharesUnit_ = false;
  double largest_ = 0;
};

}  // namespace ostrel::charts
