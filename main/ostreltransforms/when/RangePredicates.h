#pragma once

#include "ostrelrtcore/StoreValue.h"

// Predicates on the minimum and maximum of a range of values, and on the centre of a palette. Values are
// compared by the host's ordering and equality, which throws 220 for types that do not compare.
namespace OstrelTransforms {

// Whether a range of numbers begins below 0 and ends above; false for a minimum of any other type.
bool StraddlesZero(ort::core::StoreValue const& minimum, ort::core::StoreValue const& maximum);

// Whether the centre lies inside the range; where it is special, whether 0 does.
bool IsDivergingAuto(ort::core::StoreValue const& minimum, ort::core::StoreValue const& maximum,
                     ort::core::StoreValue const& centre);

// Whether the range begins below the centre and ends at or below it; where that is special, the same for 0
// and a range of numbers.
bool IsReversedAuto(ort::core::StoreValue const& minimum, ort::core::StoreValue const& maximum,
                    ort::core::StoreValue const& centre);

}  // namespace OstrelTransforms
