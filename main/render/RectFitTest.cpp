#include "render/RectFitTest.h"

namespace runtime {

bool RectFitTest::fits(FormattedText const& text) const {
  return text.IsEmpty() || composer_.Compose(text)->GetStatus() == AllPlaced;
}

}  // namespace runtime
