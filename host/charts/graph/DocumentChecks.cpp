#include "charts/graph/DocumentChecks.h"

#include "charts/scales/ScaledField.h"

namespace ostrel::charts {

bool IsFilled(MarkSpec const& mark) {
  return mark.filled.value_or(mark.kind == MarkKind::Circle || mark.kind == MarkKind::Square);
}

void CheckDocument(ChartDocument const& document) {
  MarkSpec const& mark = document.mark;
  if (mark.kind == MarkKind::Line) return;
  if (Encoding const* const order = document.Find(Channel::Order)) {
    ThrowDocumentError(document, order->path, "only the mark line has an order; leave it out");
  }
  if (!mark.strokeDash.empty()) {
    ThrowDocumentError(document, mark.path + ".strokeDash", "is for the mark line only; leave it out");
  }
  if (IsFilled(mark) && !mark.stroke.empty()) {
    ThrowDocumentError(document, mark.path + ".stroke",
                       "a filled symbol has no outline; use fill, or set filled to false");
  }
  if (!IsFilled(mark) && !mark.fill.empty()) {
    ThrowDocumentError(document, mark.path + ".fill", "a symbol is an outline; set filled to true");
  }
}

}  // namespace ostrel::charts
