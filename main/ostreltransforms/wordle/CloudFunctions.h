#pragma once

#include "ostreltransforms/FunctorInputs.h"

// The layout of word clouds as functions of columns (see WordCloud).
namespace OstrelTransforms {

// A key map of the Real64 columns "x" and "y": the left top corner of each word times the scale. A word that
// is not shown gets minus its width times the scale, and 0; a word of which the width, height or start
// fraction is special gets special rows of that kind and takes no room. The inputs, by position:
//
//   0  widths, 1 heights, 2 start fractions: Real64 columns of one length
//   3  the width and 4 the height of the bounds, 5 the scale, 6 the gap: Real64
//
// Throws 219 for another number of inputs, 55 for inputs of another kind and 259 for columns of different
// lengths.
Value LayOutWordCloudCells(Value const& widths, Value const& heights, Value const& starts, double width,
                           double height, double scale, double gap);

// The scale for words of these widths and heights in bounds of a width and a height, by
// WordCloud::FindScale; words with a special width or height count as none. Throws 219 for another number of
// inputs, 55 for inputs of another kind and 259 for columns of different lengths.
double FindWordleScale(Value const& widths, Value const& heights, double width, double height);

}  // namespace OstrelTransforms
