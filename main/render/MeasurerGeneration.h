#pragma once

#include <cstdint>

#include "ostreltransforms/Export.h"

// Composed texts hold widths of the measurer they were measured with. The generation tells whether the
// measurer is still the one a composition began with: read it before the measurer is first used, and keep the
// result only if it has not changed by the time the result is entered, compared under the lock that the
// clearing function also takes.
namespace runtime {

OSTREL_API std::uint64_t TextMeasurerGeneration() noexcept;

// To be called after another text measurer has been installed: begins a new generation, then runs the
// clearing function, so that what is entered in between is cleared and what comes later is refused.
void OnTextMeasurerChanged() noexcept;

// Names the function that drops what was composed so far, null for none, and gives back the former one.
using ComposedTextsClearer = void (*)() noexcept;
ComposedTextsClearer SetComposedTextsClearer(ComposedTextsClearer clear) noexcept;

}  // namespace runtime
