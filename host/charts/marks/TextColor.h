#pragma once

#include "ostrelrtcore/OrtColor.h"

namespace ostrel::charts {

/// Black or white: what stands out more against a colour (the contrast ratio of WCAG 2).
ort::core::OrtColor ChooseTextColor(ort::core::OrtColor ground);

}  // namespace ostrel::charts
