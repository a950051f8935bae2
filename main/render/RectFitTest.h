#pragma once

#include "render/CompositionCache.h"

namespace runtime {

// Whether a text can be shown in a box as a whole. It composes through the composition cache. The composer
// must outlive the test.
class OSTREL_API RectFitTest {
 public:
  RectFitTest(TextComposer& composer, Size const& size) : composer_(composer, size) {}
  explicit RectFitTest(CachedComposer composer) : composer_(std::move(composer)) {}

  // True for an empty text, and when its composition at this size has status AllPlaced.
  bool fits(FormattedText const& text) const;
  bool operator()(FormattedText const& text) const { return fits(text); }

 private:
  CachedComposer composer_;
};

}  // namespace runtime
