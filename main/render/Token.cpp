#include "render/Token.h"

namespace runtime {

void TokenSegments::Grow(TokenSegment&& segment) {
  if (more_.empty()) more_.push_back(std::move(first_));
  more_.push_back(std::move(segment));
}

}  // namespace runtime
