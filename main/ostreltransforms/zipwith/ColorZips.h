#pragma once

#include <algorithm>
#include <cmath>
#include <limits>

#include "ostrelrtcore/OrtColor.h"

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
      : left_(nStepsLeft, true), right_(nStepsRight, false) {}

  double Apply(double position, bool isLeft) const { return (isLeft ? left_ : right_).Apply(position); }

 private:
  class Side {
   public:
    Side(double steps, bool isLeft)
        : steps_(steps), isHalf_(std::fabs(std::fmod(steps, 1.0)) > 0.25), middle_(isLeft ? 1.0 : 0.0) {
      // Minus zero leaves every number as it is, minus zero too.
      shift_ = isLeft ? -0.0 : isHalf_ ? 0.5 : 1.0;
    }

    double Apply(double position) const {
      double const step = std::floor(position * steps_ + shift_);
      if (!isHalf_) return step / steps_;
      double const whole = steps_ - 0.5;
      if (whole < 0.25) return middle_;
      return std::max(std::min(step, std::floor(steps_)), 0.0) / whole;
    }

   private:
    double steps_;
    bool isHalf_;
    double middle_;
    double shift_;
  };

  Side left_;
  Side right_;
};

}  // namespace OstrelTransforms
