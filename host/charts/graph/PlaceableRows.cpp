#include "charts/graph/PlaceableRows.h"

#include <fmt/format.h>

#include "charts/document/Readers.h"
#include "charts/marks/MarkTable.h"
#include "charts/scales/ScaledField.h"

namespace ostrel::charts {
namespace {

bool HasContinuousScale(MarkDefinition const& mark, Encoding const& encoding) {
  switch (encoding.channel) {
    case Channel::Size:
      if (!mark.scalesSize) return false;
      break;
    case Channel::X:
    case Channel::Y:
    case Channel::Color:
    case Channel::Opacity:
      break;
    default:
      return false;
  }
  return !encoding.field.empty() && ResolveScaleType(encoding) != ScaleType::Ordinal;
}

std::string Describe(Encoding const& encoding, std::size_t missing, int count) {
  bool const isTime = ResolveScaleType(encoding) == ScaleType::Time;
  std::string const title = DefaultTitle(encoding);
  std::string const begin = fmt::format("{} of {} rows have no {} in '{}' ", missing, count,
                                        isTime ? "date" : "finite number", title);
  return IsPosition(encoding.channel)
             ? begin + fmt::format("for the {} axis; not drawn", NameOf(encoding.channel))
             : begin + "that its scale can place; not drawn";
}

}  // namespace

std::shared_ptr<LayerRows> KeepPlaceable(GraphBuilder& graph, LayerSpec const& layer,
                                         std::shared_ptr<LayerRows> rows,
                                         std::vector<std::string>& sentences) {
  MarkDefinition const& mark = GetDefinition(layer.mark);
  if (mark.joinsRows || mark.isMap) return rows;
  NodeId mask = -1;
  for (Encoding const& encoding : layer.encodings) {
    if (!HasContinuousScale(mark, encoding)) continue;
    bool const isTime = ResolveScaleType(encoding) == ScaleType::Time;
    RowColumn const& column =
        isTime ? rows->GetDates(graph, encoding.field) : rows->GetNumbers(graph, encoding.field);
    std::size_t const missing = column.values->AsColumn().GetSpecialRows().size();
    // Without any value the scale says what is wrong with the field.
    if (missing == static_cast<std::size_t>(rows->GetRowCount())) return rows;
    if (missing == 0) continue;
    sentences.push_back(Describe(encoding, missing, rows->GetRowCount()));
    NodeId const isMissing = graph.Map(column.name + " is missing", "isSpecial", column.node);
    NodeId const isThere = graph.Map(column.name + " is there", "not", isMissing);
    mask = mask < 0 ? isThere : graph.Zip("rows with places", "and", mask, isThere);
  }
  if (mask < 0) return rows;
  return std::make_shared<LayerRows>(graph, std::move(rows), mask, layer.path + " placed ");
}

}  // namespace ostrel::charts
