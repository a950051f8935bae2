#include "services/InstallServices.h"

#include <utility>

#include "ostreltransforms/Callbacks.h"
#include "services/BreakHints.h"
#include "services/NumberFormat.h"
#include "services/ValueConverter.h"

namespace ostrel::services {

InstalledServices::InstalledServices(std::shared_ptr<TextMeasurer const> measurer)
    : measurer_(std::move(measurer)) {
  auto const shared = measurer_;
  OstrelTransforms::SetRuntimeFunctionCallbacks(
      [](double value, ort::core::IStoreTuple const& format) { return FormatNumber(value, format); },
      [shared](OStringCore const& text, Value const& font) { return shared->MeasureTextWidth(text, font); },
      [shared](Value const& value) { return ConvertStyleValue(value, *shared); }, InsertBreakHints);
}

InstalledServices::~InstalledServices() {
  OstrelTransforms::SetRuntimeFunctionCallbacks(nullptr, nullptr, nullptr, nullptr);
}

InstalledServices InstallServices(FontOptions const& options) {
  return InstalledServices(std::make_shared<FontService const>(options));
}

}  // namespace ostrel::services
