#include <algorithm>

#include "charts/transforms/ChannelFields.h"

namespace ostrel::charts {

namespace {

Encoding const* FindChannel(std::vector<Encoding> const& encodings, Channel channel) {
  auto const found = std::ranges::find(encodings, channel, &Encoding::channel);
  return found != encodings.end() ? &*found : nullptr;
}

bool IsContinuous(Encoding const* encoding) {
  return encoding != nullptr && std::holds_alternative<std::monostate>(encoding->value) &&
         (encoding->type == FieldType::Quantitative || encoding->type == FieldType::Temporal);
}

// A measure begins at a base line; a bin or a unit of time is a place of its own.
bool IsMeasure(Encoding const* encoding) {
  return IsContinuous(encoding) && !encoding->bin && encoding->timeUnit.empty();
}

}  // namespace

bool IsHorizontal(MarkSpec const& mark, std::vector<Encoding> const& encodings) {
  if (mark.isHorizontal) return *mark.isHorizontal;
  Encoding const* const x = FindChannel(encodings, Channel::X);
  Encoding const* const y = FindChannel(encodings, Channel::Y);
  bool const hasX2 = FindChannel(encodings, Channel::X2) != nullptr;
  bool const hasY2 = FindChannel(encodings, Channel::Y2) != nullptr;
  bool const isOfX = x != nullptr && x->aggregate;
  bool const isOfY = y != nullptr && y->aggregate;
  if (mark.type == "bar" && x != nullptr && y != nullptr && isOfX != isOfY) return isOfX;
  if (hasX2 != hasY2) {
    Encoding const* const ranged = hasX2 ? x : y;
    bool const isBinned = ranged != nullptr && (ranged->bin || !ranged->timeUnit.empty());
    return hasX2 != isBinned;
  }
  if (IsMeasure(x) != IsMeasure(y)) return IsMeasure(x);
  if (IsMeasure(x) && IsMeasure(y)) {
    if ((x->type == FieldType::Temporal) != (y->type == FieldType::Temporal))
      return y->type == FieldType::Temporal;
    return x->aggregate.has_value() && !y->aggregate;
  }
  return IsContinuous(x) && !IsContinuous(y) && y != nullptr;
}

bool IsPlaceOf(MarkSpec const& mark, std::vector<Encoding> const& encodings, Channel channel) {
  bool const isBetweenAll = !mark.isHorizontal && IsMeasure(FindChannel(encodings, Channel::X)) &&
                            IsMeasure(FindChannel(encodings, Channel::Y)) &&
                            FindChannel(encodings, Channel::X2) != nullptr &&
                            FindChannel(encodings, Channel::Y2) != nullptr;
  return !isBetweenAll && IsHorizontal(mark, encodings) == (channel == Channel::Y);
}

}  // namespace ostrel::charts
