#pragma once

#include <memory>
#include <optional>
#include <string_view>

#include "ostrelrtcore/OrtColor.h"
#include "services/TextMeasurer.h"

namespace ostrel::services {

/// A CSS colour: a name, "#rgb", "#rgba", "#rrggbb", "#rrggbbaa", rgb(), rgba(), hsl() or hsla() with commas
/// or blanks, "transparent". Letter case and outer blanks don't matter. Nothing for another text.
std::optional<ort::core::OrtColor> ParseColor(std::u16string_view text);

/// Converts a style's value: a colour text to a Color, a font tuple to a resolved one (see
/// TextMeasurer::ResolveFont); a Color passes through. Throws OrtRuntimeException 55, with the text, for
/// anything else.
Value ConvertStyleValue(Value const& value, TextMeasurer const& measurer);

}  // namespace ostrel::services
