#include "render/RectFitTest.h"

namespace runtime {

bool RectFitTest::fits(FormattedText const& text) const {
  if (text.IsEmpty()) return true;
  ComposedText composed;
  composer_->compose(text, size_, composed);
  return composed.GetStatus() == AllPlaced;
}

}  // namespace runtime
