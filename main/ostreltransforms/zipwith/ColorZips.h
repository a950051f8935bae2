#pragma once

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

#include "ostrelrtcore/OrtColor.h"
#include "ostreltransforms/map/ElementaryFunctions.h"

// Zip-withs of colours and of positions in palettes.
namespace OstrelTransforms {

class AdjustTotalColorFunctor {
 public:
  explicit AdjustTotalColorFunctor(ort::core::OrtColor totalColor) : totalColor_(totalColor) {}
  ort::core::OrtColor Apply(ort::core::OrtColor color, bool isTotal) const {
    return isTotal ? totalColor_ : color;
  }

 private:
  ort::core::OrtColor totalColor_;
};

// Turns a position on one side of a diverging palette into the position of its step. A side may end in half
// a step, in the middle of the palette.
class ApplySteppingForDivergingPaletteFunctor {
 public:
  ApplySteppingForDivergingPaletteFunctor(double nStepsLeft, double nStepsRight)
      : left_(MakeSide(nStepsLeft, true)), right_(MakeSide(nStepsRight, false)) {}

  // Sides follow no pattern, so each number is chosen by its bits and rows need no branch.
  double Apply(double position, bool isLeft) const {
    auto const choose = [&](double Side::*number) {
      auto const right = std::bit_cast<std::uint64_t>(right_.*number);
      auto const left = std::bit_cast<std::uint64_t>(left_.*number);
      return std::bit_cast<double>(right ^ detail::BitsIf(isLeft, right ^ left));
    };
    double const step = std::floor(position * choose(&Side::steps) + choose(&Side::shift));
    double const bounded =
        std::max(std::min(step, choose(&Side::highest)), choose(&Side::lowest)) / choose(&Side::divisor);
    // A side without a whole step shows the middle wherever the position lies.
    double const middle = choose(&Side::middle);
    return middle == middle ? middle : bounded;
  }

 private:
  struct Side {
    double steps;
    double shift;
    double lowest;
    double highest;
    double divisor;
    double middle;  // NaN where there are steps
  };

  static Side MakeSide(double steps, bool isLeft) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    constexpr double none = std::numeric_limits<double>::quiet_NaN();
    // Minus zero leaves every number as it is, minus zero too.
    if (!(std::fabs(std::fmod(steps, 1.0)) > 0.25)) {
      return {steps, isLeft ? -0.0 : 1.0, -infinity, infinity, steps, none};
    }
    double const whole = steps - 0.5;
    return {steps, isLeft ? -0.0 : 0.5,
            0.0,   std::floor(steps),
            whole, whole < 0.25 ? (isLeft ? 1.0 : 0.0) : none};
  }

  Side left_;
  Side right_;
};

}  // namespace OstrelTransforms
