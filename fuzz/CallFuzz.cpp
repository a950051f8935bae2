#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "ostrel/CallProtocol.h"

/// Any bytes as a request: the answer is one line of JSON.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  static ostrel::program::CallSession session(ostrel::services::MakeFixedMeasurer());
  std::string const response = session.Answer({reinterpret_cast<char const*>(data), size});
  if (response.find('\n') != std::string::npos || !ostrel::program::Json::accept(response)) std::abort();
  return 0;
}
