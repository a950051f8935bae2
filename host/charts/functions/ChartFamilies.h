#pragma once

#include <memory>

#include "ostrelrtcore/builtins/BuiltinRow.h"
#include "services/TextMeasurer.h"

namespace ostrel::charts {

using ort::core::builtins::BuiltinFamily;

BuiltinFamily TickFamily();
BuiltinFamily LabelFamily(std::shared_ptr<services::TextMeasurer const> const& measurer);
BuiltinFamily TextBoxFamily(std::shared_ptr<services::TextMeasurer const> const& measurer);
BuiltinFamily PaletteFamily();
BuiltinFamily CalendarFamily();
BuiltinFamily BinFamily();
BuiltinFamily MapFamily();
BuiltinFamily PeriodFamily();
BuiltinFamily GapFamily();
BuiltinFamily MathFamily();
BuiltinFamily TextFamily();
BuiltinFamily DatePartFamily();

}  // namespace ostrel::charts
