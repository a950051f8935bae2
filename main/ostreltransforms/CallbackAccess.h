#pragma once

#include "ostreltransforms/Callbacks.h"

// How the library's own functions use the host's callbacks. Each call runs on a copy of the callback, so that
// one installed meanwhile does not pull the running one away; an empty callback throws
// std::bad_function_call.
namespace OstrelTransforms {

OStringCore FormatNumber(double value, ort::core::IStoreTuple const& format);
float MeasureTextWidth(OStringCore const& text, std::shared_ptr<ort::core::StoreValue> const& font);
std::shared_ptr<ort::core::StoreValue> ConvertHostValue(std::shared_ptr<ort::core::StoreValue> const& value);
OStringCore TransformString(OStringCore const& text);

// A copy for work that measures many texts: one copy a composition instead of one a word.
TextWidthMeasurer CurrentTextWidthMeasurer();

}  // namespace OstrelTransforms
