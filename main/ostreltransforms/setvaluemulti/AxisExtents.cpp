#include "ostreltransforms/setvaluemulti/AxisExtents.h"

#include <cmath>
#include <utility>

#include "ostrelrtcore/Factory.h"
#include "ostreltransforms/StoreValueOperators.h"

namespace OstrelTransforms::AxisExtents {
namespace {

using namespace ort::core;
namespace Operators = StoreValueOperators;

constexpr int kPassThroughMode = 10;
constexpr double kInstantMargin = 0.1;

double AdjustMinimum(double minimum, StoreType fieldType) {
  if (fieldType == StoreType::Int32 || fieldType == StoreType::Int64) return std::floor(minimum);
  if (!Operators::IsTemporal(fieldType)) return minimum;
  OrtDateTime const instant = OrtDateTime::FromDouble(minimum);
  return (fieldType == StoreType::Date ? instant.TruncateTime() : instant).ToDouble();
}

double AdjustMaximum(double maximum, StoreType fieldType) {
  if (fieldType == StoreType::Int32 || fieldType == StoreType::Int64) return std::ceil(maximum);
  if (!Operators::IsTemporal(fieldType)) return maximum;
  OrtDateTime instant = OrtDateTime::FromDouble(maximum);
  if (fieldType == StoreType::Date && instant.HasTime()) {
    instant = instant.TruncateTime() + OrtTimeSpan(1, 0, 0, 0);
  }
  return instant.ToDouble();
}

// The domain that positions refer to.
class Interval {
 public:
  Interval(double minimum, double maximum)
      : minimum_(factory::MakeReal64(minimum)), maximum_(factory::MakeReal64(maximum)) {}

  void TakeLogarithms() {
    minimum_ = Operators::Ln(*minimum_);
    maximum_ = Operators::Ln(*maximum_);
  }
  bool IsPoint() const { return minimum_->Equals(*maximum_); }
  double GetMinimum() const { return minimum_->GetReal64(); }
  double GetMaximum() const { return maximum_->GetReal64(); }
  double GetPosition(double value, bool isTemporal) const {
    return Operators::InverseInterpolate(*factory::MakeReal64(value), *minimum_, *maximum_, isTemporal)
        ->GetReal64();
  }

 private:
  std::shared_ptr<StoreValue> minimum_;
  std::shared_ptr<StoreValue> maximum_;
};

}  // namespace

Extents Compute(Axis const& axis) {
  bool const isTemporal = Operators::IsTemporal(axis.fieldType);
  Extents extents = {0.0, 1.0, 0.0, AdjustMinimum(axis.minimum, axis.fieldType),
                     AdjustMaximum(axis.maximum, axis.fieldType)};
  Interval interval(extents.domainMinimum, extents.domainMaximum);
  if (axis.isLog) interval.TakeLogarithms();

  if (interval.IsPoint()) {
    if (isTemporal) {
      double const centre = interval.GetPosition(axis.rangeStart, true);
      extents.low = centre - kInstantMargin;
      extents.high = centre + kInstantMargin;
    }
  } else if (axis.modeCode == kPassThroughMode) {
    extents.low = interval.GetMinimum();
    extents.high = interval.GetMaximum();
  } else {
    extents.low = interval.GetPosition(axis.rangeStart, isTemporal);
    extents.high = interval.GetPosition(axis.rangeEnd, isTemporal);
    if (!isTemporal) extents.zero = interval.GetPosition(0.0, false);
  }
  if (axis.isReversed != (extents.high < extents.low)) std::swap(extents.low, extents.high);
  return extents;
}

}  // namespace OstrelTransforms::AxisExtents
