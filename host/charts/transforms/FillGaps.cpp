#include <algorithm>

#include "charts/transforms/RowTransforms.h"

namespace ostrel::charts {

namespace {

using namespace ort::core;

bool Contains(std::vector<std::string> const& names, std::string const& name) {
  return std::ranges::find(names, name) != names.end();
}

class GapFiller {
 public:
  GapFiller(GraphBuilder& graph, GapSpec const& gaps, std::shared_ptr<LayerRows> rows)
      : graph_(graph), gaps_(gaps), rows_(std::move(rows)), step_(graph, *rows_, gaps.path) {}

  std::shared_ptr<LayerRows> Fill() {
    NodeId const places = step_.Groups("place of row", gaps_.place);
    NodeId const series = step_.Groups("series to be stacked", gaps_.series);
    NodeId const isWhole = FindWholeRows();
    auto const keep = [&](NodeId groups) {
      return isWhole < 0 ? groups : graph_.Call("rows with a place", "filter", {groups, isWhole});
    };
    NodeId const gaps = graph_.Call("gaps of series", "missingPairs", {keep(places), keep(series)});
    NodeId const place = graph_.Call("places of gaps", "member", {gaps, graph_.Text("first")});
    NodeId const owner = graph_.Call("series of gaps", "member", {gaps, graph_.Text("second")});
    if (graph_.Peek(place)->AsColumn().GetCount() == 0) return rows_;
    NodeId const count = graph_.Call("number of gaps", "count", {place});
    NodeId const ofPlace = FindRows("row of place", places, place);
    NodeId const ofSeries = FindRows("row of series", series, owner);
    Value const none = factory::MakeSpecial(StoreTypeInfo::Int32, SpecialKind::Missing);
    NodeId const ofNone = graph_.Call("no row", "repeat", {graph_.Constant("none", none), count});
    for (DataColumn const& column : rows_->GetTable().columns) {
      std::string const& name = column.name;
      if (name == gaps_.field) {
        Append(name, step_.Numbers(name), graph_.Call("zeros", "repeat", {graph_.Real(0), count}));
        continue;
      }
      NodeId const rows = Contains(gaps_.place, name)    ? ofPlace
                          : Contains(gaps_.series, name) ? ofSeries
                                                         : ofNone;
      NodeId const whole = step_.Column(name);
      Append(name, whole, graph_.Call(name + " of gaps", "take", {whole, rows}));
    }
    return step_.Replace();
  }

 private:
  // -1 for all.
  NodeId FindWholeRows() {
    NodeId isWhole = -1;
    for (std::string const& field : gaps_.needed) {
      NodeId const isMissing = graph_.Map(field + " is none", "isSpecial", step_.Column(field));
      NodeId const isThere = graph_.Map(field + " is there", "not", isMissing);
      isWhole = isWhole < 0 ? isThere : graph_.Zip("row is whole", "and", isWhole, isThere);
    }
    return isWhole;
  }

  NodeId FindRows(std::string const& name, NodeId groups, NodeId wanted) {
    NodeId const firstRows = graph_.Call(name + " groups", "groupFirstRow", {groups});
    return graph_.Call(name, "take", {firstRows, wanted});
  }

  void Append(std::string const& name, NodeId column, NodeId more) {
    step_.Set(name, graph_.Call(name + " without gaps", "concatenate", {column, more}));
  }

  GraphBuilder& graph_;
  GapSpec const& gaps_;
  std::shared_ptr<LayerRows> rows_;
  RowStep step_;
};

}  // namespace

std::shared_ptr<LayerRows> FillGaps(GraphBuilder& graph, GapSpec const& gaps,
                                    std::shared_ptr<LayerRows> const& rows) {
  return GapFiller(graph, gaps, rows).Fill();
}

}  // namespace ostrel::charts
