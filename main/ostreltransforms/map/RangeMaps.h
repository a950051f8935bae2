#pragma once

#include "ostreltransforms/FunctorInputs.h"
#include "ostreltransforms/RangeUtilities.h"

// Functions from one range tuple to another (see RangeUtilities). Mode, field type and scale stay.
namespace OstrelTransforms {

// Opens a range of one point, after taking the logarithms of a logarithmic one, which stay logarithms.
Value ExtendPointRanges(Value const& range);

// Makes the ends special that the mode code leaves to the data; a range whose mode fixes both is returned as
// it is.
Value ClearRanges(Value const& range);

// Takes one amount off the minimum and puts the other on the maximum, by RangeUtilities::MoveEnd. The ends of
// a logarithmic range are moved as they stand.
class PadRangeTableFunctor {
 public:
  PadRangeTableFunctor(double below, double above) : below_(below), above_(above) {}
  Value Apply(Value const& range) const;

 private:
  double below_;
  double above_;
};

// Gives a range new ends when they contain the old ones; otherwise returns it as it is.
class ExpandMinAndMaxFunctor {
 public:
  ExpandMinAndMaxFunctor(Value newMinimum, Value newMaximum)
      : newEnds_{std::move(newMinimum), std::move(newMaximum)} {}
  Value Apply(Value const& range) const;

 private:
  RangeUtilities::Ends newEnds_;
};

// The projected range of half a size in degrees to either side of the projected point at which a range
// begins. A range at 0 gets ends of its own.
class ExpandAroundPointFunctor {
 public:
  ExpandAroundPointFunctor(Value zeroMinimum, Value zeroMaximum, double halfSize, int projectorKind,
                           double eccentricity, bool isX)
      : zeroEnds_{std::move(zeroMinimum), std::move(zeroMaximum)},
        halfSize_(halfSize),
        projectorKind_(projectorKind),
        eccentricity_(eccentricity),
        isX_(isX) {}
  Value Apply(Value const& range) const;

 private:
  RangeUtilities::Ends zeroEnds_;
  double halfSize_;
  int projectorKind_;
  double eccentricity_;
  bool isX_;
};

}  // namespace OstrelTransforms
