#pragma once

#include "render/TextComposer.h"

namespace runtime {

// Whether a text can be shown in a box as a whole. The composer must outlive the test.
class OSTREL_API RectFitTest {
 public:
  RectFitTest(TextComposer& composer, Size const& size) noexcept : composer_(&composer), size_(size) {}

  // True for an empty text, and when the composition at this size has status AllPlaced.
  bool fits(FormattedText const& text) const;
  bool operator()(FormattedText const& text) const { return fits(text); }

 private:
  TextComposer* composer_;
  Size size_;
};

}  // namespace runtime
