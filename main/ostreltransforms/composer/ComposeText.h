#pragma once

#include <vector>

#include "ostrelrtcore/StoreValue.h"
#include "ostreltransforms/Export.h"

namespace OstrelTransforms {

// Lays out texts of several styled runs each, all in boxes of one size. The inputs, by position:
//
//   0  first runs: an Int32 column, one row a text, the row of its first run
//   1  numbers of runs: an Int32 column, one row a text; a special row here or in 0 makes an empty text
//   2  texts: a String column, one row a run; a special row counts as an empty one
//   3  styles: an Int32 column, one row a run, a row of the style table
//   4  the text style table, as updateTextStyleTable makes it
//   5  the box' width and
//   6  height in pixels (Real64); when either is 0 the box is unbounded
//   7  fit style (Int32): what becomes of a text that does not fit, see runtime::TextFitStyle
//   8  wrap mode (Int32): 0 lines end at line breaks, 1 and are cut at the box' edge, 2 or 3 and end where
//   the
//      next word would not fit; -1 takes "text_wrap_mode" of a text's first style
//
// The result is a key map of columns. One row a text: "text_run_offset" and "text_run_count" (Int32), its
// rows in the run columns, and "width" and "height" (Real64), the box around its lines. One row a run, in
// reading order: "text_run" (String), "text_style_id" (Int32), "text_run_x" and "text_run_y" (Real64), where
// it begins on its baseline, and "text_run_x_remote" and "text_run_y_remote", the same seen from the anchor:
// the point of the box around the text's lines that "hAlign" (along the lines: 0 begin, 1 middle, 2 end) and
// "vAlign" (across them) of its first style name. A run takes at most one line of its text. An empty text,
// and one that fits in no form, has no runs.
//
// Many texts are composed on several threads; the result is the same. Compositions come from the runtime
// composition cache.
//
// Throws 219 for another number of inputs, and for a column that the style table lacks, with its name; 55 for
// inputs of another kind, runs or styles that are not there, and a special style; 259 for columns of unequal
// length; 2 for a width or height that is negative or not finite and for another wrap mode; an
// OLogicException ("InternalTrim", line 122, "0") for another fit style; and whatever the text measurer
// throws.
OSTREL_API std::shared_ptr<ort::core::StoreValue> ComposeText(
    std::vector<std::shared_ptr<ort::core::StoreValue>> const& inputs);

}  // namespace OstrelTransforms
