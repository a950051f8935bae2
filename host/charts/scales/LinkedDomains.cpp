#include "charts/scales/LinkedDomains.h"

#include <fmt/format.h>

#include "charts/document/Readers.h"
#include "charts/scales/DomainRange.h"

namespace ostrel::charts {
namespace {

namespace factory = ort::core::factory;
using ort::core::SpecialKind;
using ort::core::StoreTypeInfo;

// What is drawn may take this share of a pane.
constexpr double kLargestShare = 0.5;

std::string NameOf(PositionScale const& scale) { return scale.name + " of " + scale.encoding.field; }

/// Columns of a row for each scale.
class ScaleColumns {
 public:
  ScaleColumns(GraphBuilder& graph, std::span<PositionScale* const> scales)
      : graph_(graph), scales_(scales) {}

  /// What `make` gives for each scale, as a column.
  template <class Make>
  NodeId Gather(std::string const& name, Make const& make) const {
    std::vector<NodeId> columns;
    for (PositionScale const* scale : scales_)
      columns.push_back(MakeColumn(graph_, NameOf(*scale) + " " + name, make(*scale), graph_.Int(1)));
    return Concatenate(graph_, name, columns);
  }
  NodeId Repeat(std::string const& name, NodeId value) const {
    return MakeColumn(graph_, name, value, graph_.Int(static_cast<int>(scales_.size())));
  }
  NodeId Turned() const {
    return Gather("turned", [&](PositionScale const& scale) { return graph_.Bool(IsTurned(scale)); });
  }
  NodeId Ranges() const {
    return Gather("domains", [&](PositionScale const& scale) {
      return MakeDomainRange(graph_, scale.field, scale.encoding.scale);
    });
  }
  void Set(NodeId ranges, std::string const& what) const {
    int row = 0;
    for (PositionScale* scale : scales_) {
      std::string const name = NameOf(*scale) + " " + what;
      SetDomain(graph_, scale->field, name, graph_.Call(name, "element", {ranges, graph_.Int(row++)}));
    }
  }

 private:
  GraphBuilder& graph_;
  std::span<PositionScale* const> scales_;
};

void RequireOneType(Compilation const& compilation, std::span<PositionScale* const> scales,
                    char const* what) {
  for (PositionScale const* scale : scales) {
    if (scale->scaleType == ScaleType::Ordinal) {
      ThrowDocumentError(compilation.document, scale->encoding.path + ".type",
                         fmt::format("has no {} to share; use \"quantitative\" or \"temporal\"", what));
    }
    if (scale->scaleType != scales.front()->scaleType) {
      ThrowDocumentError(compilation.document, scale->encoding.path + ".scale.type",
                         fmt::format("differs from that of {}, with which it shares its {}",
                                     scales.front()->encoding.path, what));
    }
  }
}

}  // namespace

void AlignZeros(Compilation& compilation, std::span<PositionScale* const> scales) {
  GraphBuilder& graph = compilation.graph;
  for (PositionScale const* scale : scales) {
    if (scale->scaleType == ScaleType::Linear) continue;
    ThrowDocumentError(compilation.document, scale->encoding.path + ".scale.type",
                       "has no zero to align; use \"linear\", or leave resolve.zero out");
  }
  ScaleColumns const columns(graph, scales);
  NodeId const ranges = columns.Gather(
      "domains", [&](PositionScale const& scale) { return MakeFreeRange(graph, scale.field); });
  columns.Set(graph.Call("aligned domains", "zeroAlignFoldedAxes",
                         {ranges, columns.Repeat("one pane", graph.Int(0)),
                          columns.Repeat("all axes", graph.Bool(true)), columns.Turned(), graph.Bool(true)}),
              "aligned");
}

void ShareDomain(Compilation& compilation, std::span<SharedScale const> shared) {
  GraphBuilder& graph = compilation.graph;
  std::vector<PositionScale*> scales;
  for (SharedScale const& scale : shared) scales.push_back(scale.scale);
  RequireOneType(compilation, scales, "domain");
  std::vector<NodeId> rooms;
  NodeId const none =
      graph.Constant("no overflow", factory::MakeSpecial(StoreTypeInfo::Tuple, SpecialKind::Missing));
  for (SharedScale const& scale : shared) {
    NodeId const room = scale.reach ? FindOverflow(compilation, *scale.scale, *scale.reach) : none;
    rooms.push_back(MakeColumn(graph, NameOf(*scale.scale) + " overflow", room, graph.Int(1)));
  }
  ScaleColumns const columns(graph, scales);
  NodeId const ids = graph.Call("axis numbers", "sequence",
                                {graph.Int(0), graph.Int(1), graph.Int(static_cast<int>(scales.size()))});
  NodeId const axes = graph.Call(
      "axes", "makeTable",
      {graph.Text("UniqueID"), ids, graph.Text("BarLabelsOverflow"), Concatenate(graph, "overflows", rooms)});
  columns.Set(
      graph.Call("shared domains", "syncFoldedAxes",
                 {axes, ids, columns.Ranges(), columns.Repeat("one pane", graph.Int(0)), ids,
                  graph.Real(scales.front()->space.length), graph.Real(kLargestShare), graph.Bool(false)}),
      "shared");
}

void ShareUnit(Compilation& compilation, std::string const& path, std::span<PositionScale* const> scales) {
  GraphBuilder& graph = compilation.graph;
  if (scales.size() < 2) {
    ThrowDocumentError(compilation.document, path,
                       "one scale has nothing to share its unit with; name x and y, or give panes scales of "
                       "their own");
  }
  RequireOneType(compilation, scales, "unit");
  ScaleColumns const columns(graph, scales);
  NodeId const ranges = columns.Ranges();
  NodeId const lengths =
      columns.Gather("lengths", [&](PositionScale const& scale) { return graph.Real(scale.space.length); });
  NodeId const isHorizontal = columns.Gather(
      "directions", [&](PositionScale const& scale) { return graph.Bool(scale.space.isHorizontal); });
  NodeId const noRanges = graph.Call("no limits", "head", {ranges, graph.Int(0)});
  NodeId const noPixels = graph.Call("no pixels", "head", {lengths, graph.Int(0)});
  NodeId const one = graph.Real(1);
  columns.Set(graph.Call("domains of one unit", "adjustAxesForLockedScales",
                         {ranges, lengths, columns.Repeat("all axes", graph.Bool(true)),
                          columns.Repeat("one group", graph.Int(0)), isHorizontal, columns.Turned(),
                          columns.Repeat("anchors", graph.Real(0.5)), one, graph.Real(0), graph.Bool(false),
                          noRanges, graph.Bool(true), noPixels, noPixels, graph.Real(kLargestShare)}),
              "of one unit");
}

}  // namespace ostrel::charts
