#include "charts/texts/TextDirection.h"

#include <unicode/ubidi.h>

namespace ostrel::charts {

bool ReadsFromRight(OStringCore const& text) {
  auto const units = text.view();
  return ubidi_getBaseDirection(units.data(), static_cast<int32_t>(units.size())) == UBIDI_RTL;
}

bool ReadsFromRight(std::string const& text) { return ReadsFromRight(OStringCore::fromUtf8(text)); }

}  // namespace ostrel::charts
