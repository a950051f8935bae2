#pragma once

#include "ostreltransforms/Export.h"
#include "render/RectFitTest.h"
#include "string/TextFitStyle.h"
#include "string/Trimmer.h"

namespace runtime {

// Shortens a text that a box of `size` does not hold, by a fit style; `out` is the text when it fits, the
// longest of its shorter forms that the search finds to fit when it does not, and empty when none fits. The
// size stays as it is. Whether a text fits the composer decides, with the settings that it has (see
// RectFitTest): the text itself is composed once, and its shorter forms a number of times that grows with
// the logarithm of its length.
//
// A fit style that is none throws an OLogicException ("InternalTrim", line 122, "0") and leaves `out` empty.
OSTREL_API void InternalTrim(FormattedText text, TextComposer& composer, Size& size, TextFitStyle style,
                             FormattedText& out);

// The same for a text that is known not to fit, with a test that is made once for many texts.
void ShortenToFit(FormattedText const& text, RectFitTest const& test, TextFitStyle style, FormattedText& out);

}  // namespace runtime
