#pragma once

#include <optional>

#include "ostreltransforms/FunctorInputs.h"

namespace OstrelTransforms {

namespace SizeEncoding {

enum class Mode { Automatic = 0, MinimumToMaximum = 1, FromZero = 2 };

/// What is known of a field whose numbers become sizes. Dates are day numbers; ends that are not there, or
/// are not finite, are empty.
struct Field {
  std::optional<double> minimum, maximum;
  std::optional<double> legendMinimum, legendMaximum;
  std::optional<double> fixedMinimum, fixedMaximum;
  std::optional<double> center;
  Mode mode;
  bool isReversed;
  bool isLog;
  bool isTemporal;
};

struct Parameters {
  double encodingMin;
  double encodingMax;
  bool isFromCenter;
  bool isReversed;
  bool takesPositiveValuesOnly;
  bool isRangeEmpty;
  bool legendEndsDiffer;
};

/// See ResolveSizeEncodingParameters for the rule.
Parameters Resolve(Field const& field);

}  // namespace SizeEncoding

// Which numbers the smallest and the largest mark of a chart stand for, for scaling the marks and for their
// legend. The inputs, by position; ends are numbers or dates (as days) of any type:
//
//   0, 1  the least and greatest value of the field among the marks; special where there is none
//   2, 3  the ends that the legend shows; special for those of the sizes
//   4, 5  ends of the sizes that are fixed; special for those of the marks
//   6     a centre from which sizes grow both ways; special for none
//   7     the mode (Int32): 0 chooses, 1 goes from the least to the greatest value, 2 from zero
//   8     whether large values get small marks (Bool)
//   9     whether sizes follow the logarithm (Bool)
//   10    the store type code of the field (Int32)
//
// The result is a key map of "encodingMin" and "encodingMax" (Real64; before any logarithm) and the Bools
// "isFromCenter", "reversed", "inputPositiveValuesOnly", "encodingRangeIsEmpty" and "legendMinMaxNotEqual".
// The size of value v is its position from encodingMin to encodingMax, where "isFromCenter" that of
//
//   encodingMin + |v - encodingMin|
//
// counted from the other end where "reversed". With low and high for the least and greatest value, or what is
// fixed in their place, the first of these rules that fits holds:
//
//   - a logarithmic field goes from low to high; an end not above 0 counts as 1, whose logarithm is the 0
//     that all such values have
//   - with a centre, sizes go from there to as far as the farther of low and high lies from it,
//     "isFromCenter"
//   - dates, and mode 1, go from low to high; so does mode 0 where the least value is fixed
//   - mode 2, and mode 0 without values below 0, go from 0 to high, in mode 2 from the least value where it
//     is fixed above 0; values below have no size
//   - anything else is as with the centre 0: -5 and 5 are marks of one size
//
// "inputPositiveValuesOnly" tells of logarithmic fields and of those that go from zero. Where low is above
// high, they are exchanged and "reversed" is turned over. "encodingRangeIsEmpty" tells that encodingMax is
// not above encodingMin: all marks have one size. Without a least or greatest value both are 0.
// "legendMinMaxNotEqual" tells that the legend has two ends and that they differ. An end that is not finite
// is none.
//
// Throws 219 for another number of inputs, 2 for another mode, 55 for inputs of another kind, and 178 for
// ends that are no numbers or dates.
Value ResolveSizeEncodingParameters(
    ort::core::StoreValue const& minimum, ort::core::StoreValue const& maximum,
    ort::core::StoreValue const& legendMinimum, ort::core::StoreValue const& legendMaximum,
    ort::core::StoreValue const& fixedMinimum, ort::core::StoreValue const& fixedMaximum,
    ort::core::StoreValue const& center, int mode, bool isReversed, bool isLog, int fieldType);

}  // namespace OstrelTransforms
