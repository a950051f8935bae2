#include "charts/marks/MarkTable.h"

#include <algorithm>

#include "charts/marks/Marks.h"

namespace ostrel::charts {

std::span<MarkDefinition const> GetMarkTable() {
  static std::vector<MarkDefinition> const table = {
      DefinePoint(),   DefineCircle(),        DefineSquare(),    DefineLine(),
      DefineBar(),     DefineArea(),          DefineRect(),      DefineRule(),
      DefineTick(),    DefineText(),          DefineGeoshape(),  DefineImage(),
      DefineTreemap(), DefinePackedBubbles(), DefineWordCloud(), DefineTextTable(),
  };
  return table;
}

std::vector<char const*> WithPaints(std::vector<char const*> further) {
  std::vector<char const*> properties = {"fill",        "stroke",     "filled",       "fillOpacity",
                                         "strokeWidth", "strokeDash", "strokeOpacity"};
  properties.insert(properties.end(), further.begin(), further.end());
  return properties;
}

MarkDefinition const& GetDefinition(MarkSpec const& mark) {
  auto const isMeant = [&](MarkDefinition const& definition) { return mark.type == definition.name; };
  return *std::ranges::find_if(GetMarkTable(), isMeant);
}

}  // namespace ostrel::charts
