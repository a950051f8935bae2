#include <cstddef>
#include <cstdint>
#include <string_view>

#include "charts/document/ChartDocument.h"

/// Any bytes as a chart document: it is read or refused.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  try {
    ostrel::charts::ParseChartDocument({reinterpret_cast<char const*>(data), size}, "fuzz.vl.json");
  } catch (ostrel::charts::DocumentError const&) {
  }
  return 0;
}
