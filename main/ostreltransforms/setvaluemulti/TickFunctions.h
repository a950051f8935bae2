#pragma once

#include <vector>

#include "ostreltransforms/FunctorInputs.h"

namespace OstrelTransforms {

// The positions of a logarithmic axis' ticks, 0 at the domain's minimum and 1 at its maximum, as a Real64
// column. The inputs, by position:
//
//   0, 1  the domain's minimum and maximum (Real64)
//   2     the axis' length in pixels (Int32)
//   3     whether the axis runs horizontally (Bool)
//   4     the least gap between two labels in pixels (Int32)
//   5     the number format of the labels (a tuple, as the host's number formatter takes it)
//   6     the font of the labels (as the host's text measurer takes it)
//   7, 8  scale and base: decades begin at scale * base^k (Real64)
//
// With a length of at least 1 and a format, the finest of six sets of ticks is taken whose labels, formatted
// and measured by the host, keep the gap; across a vertical axis a label is as high as its font. Otherwise
// ticks stand at the decades alone. Throws std::out_of_range "invalid vector<T> subscript" for fewer inputs,
// and code 2 for a bound, scale or base that is not finite, a scale not above 0, a base not above 1, and
// more ticks than can be shown (10,000).
Value CalcLogTicks(std::vector<Value> const& inputs);

// The first of the candidates, a column of Int32, that times a factor exceeds the larger of two counts, in
// single precision; 0 where none does. Special rows are no candidates.
int TemporalTickFrequency(int a, float factor, int b, Value const& candidates);

// The first and last slot, as a tuple of two Int32, of the largest gap in a column of Int32 (see SlotGaps).
// Throws 219 for another number of inputs than one, 55 for anything but such a column.
Value FindLargestGap(Value const& slots);

}  // namespace OstrelTransforms
