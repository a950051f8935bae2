#include "render/Token.h"

#include <utility>

namespace runtime {

void TokenSegments::push_back(TokenSegment segment) {
  if (!hasFirst_) {
    first_ = std::move(segment);
    hasFirst_ = true;
    return;
  }
  if (more_.empty()) more_.push_back(std::move(first_));
  more_.push_back(std::move(segment));
}

}  // namespace runtime
