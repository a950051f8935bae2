#pragma once

#include <string>
#include <utility>

#include "ostrelrtcore/OrtRuntimeException.h"

namespace ort::core {

/// The code and message that a call throws; {-1, "no error"} when it returns.
using Error = std::pair<int, std::string>;

template <class Call>
Error ErrorOf(Call&& call) {
  try {
    call();
  } catch (OrtRuntimeException const& error) {
    return {error.GetError(), error.GetMessage().toUtf8()};
  }
  return {-1, "no error"};
}

}  // namespace ort::core
