#pragma once

#include <cstdint>

namespace runtime {

// What becomes of a text that its box has no room for.
enum TextFitStyle : std::uint32_t {
  Overflow = 0,        // it is shown all the same
  HideIfOverflow = 1,  // it is not shown
  Truncate = 2,        // its first characters
  DotsLeft = 3,        // two full stops and its last characters
  DotsRight = 4,       // its first characters and two full stops
  TruncateAlso = 5,    // the same as Truncate, kept for documents that hold this number
  PoundFill = 6,       // number signs instead
};

}  // namespace runtime
