#pragma once

#include <vector>

#include "ChartDrawing.h"
#include "charts/guides/GuideStyle.h"

namespace ostrel::charts {

/// The rooms that the texts of a group take, those of the groups in it included.
inline void CollectRooms(Group const& group, Point origin, TextSetter const& setter,
                         std::vector<Rect>& rooms) {
  origin = {origin.x + group.origin.x, origin.y + group.origin.y};
  for (SceneNode const& node : group.nodes) {
    if (auto const* child = std::get_if<std::unique_ptr<Group>>(&node))
      CollectRooms(**child, origin, setter, rooms);
    auto const* text = std::get_if<TextMark>(&node);
    if (text == nullptr) continue;
    Rect const rect = setter.MeasureRect(*text);
    rooms.push_back({rect.x + origin.x, rect.y + origin.y, rect.width, rect.height});
  }
}

}  // namespace ostrel::charts
