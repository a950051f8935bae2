#pragma once

#include "ostreltransforms/FunctorInputs.h"

namespace OstrelTransforms {

// The text style table that the composers read, made from a table of any of its columns; a style is a row.
//
//   font              String  family names as the host reads them     "sans-serif"
//   font_size         Real64  pixels                                  11
//   font_weight       Int32   100 to 900                              400
//   font_style        Int32   0 normal, 1 italic                      0
//   text_decoration   Int32   the host's                              0
//   text_alignment    Int32   the host's                              0
//   text_orientation  Int32   0 horizontal, 2 turned anticlockwise,   0
//                             3 turned clockwise
//   hAlign            Int32   0 begin, 1 middle, 2 end                0
//   vAlign            Int32   0 top, 1 middle, 2 bottom               0
//   text_wrap_mode    Int32   0 none, 1 clip, 2 words                 0
//   text_style_color  Color   or String, to be converted by the host  black
//   text_font         values  the host's font                         (font, size, weight, style)
//   ascent            Real64  baseline to top, pixels                 0.8 of the size
//   font_height       Real64  pixels                                  the size
//   leading           Real64  between two lines, pixels               0.2 of the size
//
// A column that is missing, and a special row, takes the default; what else the table has passes through.
// Each different font is resolved by the host's value converter and measured once, so that a font that the
// host does not take is refused here. Where the resolved font is a tuple whose members 4 to 6 are Real64,
// these are the ascent, height and leading, whatever the columns say; and where text_font is given as a
// tuple (String, Real64, Int32, Int32, ...), the columns font to font_style are read from it unless they are
// given too.
//
// Throws 259 for columns of unequal length, 55 for a column of another type, and 2 for a size or metric that
// is not finite or, leading and ascent apart, negative.
Value UpdateTextStyleTable(Value const& styles);

}  // namespace OstrelTransforms
