#pragma once

#include <memory>

#include "services/FontService.h"

namespace ostrel::services {

/// While it lives, number formatter, text measurer, value converter and break hints are the callbacks of the
/// plug-in. Its end sets them to empty ones. There may be one at a time; installing belongs to start-up.
class InstalledServices {
 public:
  explicit InstalledServices(std::shared_ptr<TextMeasurer const> measurer);
  ~InstalledServices();
  InstalledServices(InstalledServices&&) = delete;

  TextMeasurer const& GetMeasurer() const { return *measurer_; }
  std::shared_ptr<TextMeasurer const> const& ShareMeasurer() const { return measurer_; }

 private:
  std::shared_ptr<TextMeasurer const> measurer_;
};

/// Services that measure with fonts; see FontService for what it throws.
InstalledServices InstallServices(FontOptions const& options = {});

}  // namespace ostrel::services
