#include <fmt/format.h>

#include <algorithm>

#include "charts/document/Readers.h"
#include "charts/marks/Marks.h"
#include "charts/marks/Tooltips.h"
#include "charts/scales/ScaledField.h"
#include "ostrelsys/Utf.h"

// The mark image: pictures of parts of a map, in every copy of the world that a pane shows.
namespace ostrel::charts {
namespace {

using ort::core::RIndirectString;

class ImagePlan final : public MarkPlan {
 public:
  explicit ImagePlan(MarkContext& context)
      : opacity_(context.GetLook().opacity), url_(*context.GetSpec().Find(Channel::Url)) {
    PlacePictures(context);
    tooltips_ = PlanTooltips(context);
    if (tooltips_ >= 0) context.GetGraph().Keep(tooltips_);
    ReadPictures(context);
  }

  void Build(MarkScene const& scene) const override {
    auto const read = [&](NodeId node) -> auto& { return scene.results[node]->AsTypedArray<double>(); };
    auto const& x = read(x_);
    auto const& y = read(y_);
    auto const& width = read(width_);
    auto const& height = read(height_);
    auto const& rows = scene.results[rows_]->AsTypedArray<int>();
    TooltipReader const tooltips(scene.results, tooltips_);
    for (int copy = 0; copy < rows.GetCount(); ++copy) {
      if (x.IsSpecial(copy)) continue;
      ImageMark image;
      image.rect = {x.GetElement(copy) - GuideStyle::kPixelShift,
                    y.GetElement(copy) - GuideStyle::kPixelShift, width.GetElement(copy),
                    height.GetElement(copy)};
      image.file = pictures_[static_cast<std::size_t>(rows.GetElement(copy))];
      image.opacity = opacity_;
      image.tooltip = tooltips.Read(rows.GetElement(copy));
      if (image.file) scene.group.nodes.emplace_back(std::move(image));
    }
  }

  void DescribeLeftOut(Results const&, std::vector<std::string>& sentences) const override {
    auto const missing = std::ranges::count(pictures_, nullptr);
    if (missing > 0) {
      sentences.push_back(fmt::format("{} of {} rows have no value in '{}' for the image; not drawn", missing,
                                      pictures_.size(), url_.field));
    }
  }

 private:
  void PlacePictures(MarkContext& context) {
    GraphBuilder& graph = context.GetGraph();
    MapPlan const& map = *context.GetMap();
    auto const degrees = [&](Channel channel) {
      FieldUse const use{context.GetSpec().Find(channel), &context.GetRows(), ""};
      return FieldNumbers(context.GetCompilation(), use, NameOf(channel));
    };
    auto const view = [&](char const* member) {
      return graph.Call(std::string("map ") + member, "member", {map.view, graph.Text(member)});
    };
    NodeId const left = view("west");
    NodeId const top = graph.Zip("upper edge in worlds", "multiply", view("north"), graph.Real(-1));
    auto const end = [&](char const* name, NodeId start, double pixels) {
      return graph.Zip(name, "add", start,
                       graph.Zip("length in worlds", "divide", graph.Real(pixels), map.world));
    };
    NodeId const shown = graph.Call("shown part in worlds", "makeTuple",
                                    {left, top, end("right edge in worlds", left, context.GetWidth()),
                                     end("lower edge in worlds", top, context.GetHeight())});
    // Counted in pixels of the picture, on which edges are rounded.
    NodeId const start = graph.Real(GuideStyle::kPixelShift);
    NodeId const pane = graph.Call("pane", "makeTuple",
                                   {start, start, graph.Real(GuideStyle::kPixelShift + context.GetWidth()),
                                    graph.Real(GuideStyle::kPixelShift + context.GetHeight())});
    NodeId const copies =
        graph.Call("images on the map", "mapSpans",
                   {degrees(Channel::Longitude), degrees(Channel::Latitude), degrees(Channel::Longitude2),
                    degrees(Channel::Latitude2), map.projection, shown});
    auto const member = [&](NodeId values, char const* name) {
      return graph.Call(std::string("image ") + name, "member", {values, graph.Text(name)});
    };
    NodeId const placed = graph.Call("images in pixels", "updateToSizeForMappedImages",
                                     {member(copies, "left"), member(copies, "top"), member(copies, "right"),
                                      member(copies, "bottom"), shown, pane, graph.Bool(true)});
    rows_ = graph.Keep(member(copies, "row"));
    x_ = graph.Keep(member(placed, "x"));
    y_ = graph.Keep(member(placed, "y"));
    width_ = graph.Keep(member(placed, "width"));
    height_ = graph.Keep(member(placed, "height"));
  }

  void ReadPictures(MarkContext& context) {
    Compilation& compilation = context.GetCompilation();
    auto const read = [&](std::string const& path) {
      try {
        return compilation.images.Get(path);
      } catch (DataError const& error) {
        ThrowDocumentError(compilation.document, url_.path, error.what());
      }
    };
    auto const rowCount = static_cast<std::size_t>(context.GetRows().GetRowCount());
    if (auto const* const path = std::get_if<std::string>(&url_.value)) {
      pictures_.assign(rowCount, read(*path));
      return;
    }
    Value const& values = context.GetRows().GetTexts(context.GetGraph(), url_.field).values;
    auto const& paths = values->AsTypedArray<RIndirectString>();
    pictures_.resize(rowCount);
    for (int row = 0; row < paths.GetCount(); ++row) {
      if (paths.IsSpecial(row)) continue;
      pictures_[static_cast<std::size_t>(row)] = read(Utf::Utf16ToUtf8(paths.GetElement(row).Get().view()));
    }
  }

  double opacity_;
  Encoding const& url_;
  std::vector<std::shared_ptr<ImageFile const>> pictures_;  // one for each row, null where none is named
  NodeId rows_ = -1;                                        // Int32 column, the row of each copy
  NodeId x_ = -1;                                           // Real64 columns of the copies, pixels
  NodeId y_ = -1;
  NodeId width_ = -1;
  NodeId height_ = -1;
  NodeId tooltips_ = -1;  // String column of the rows, or -1
};

std::unique_ptr<MarkPlan> Plan(MarkContext& context) { return std::make_unique<ImagePlan>(context); }

}  // namespace

MarkDefinition DefineImage() {
  return {.name = "image",
          .properties = {},
          .channels = {Channel::Longitude, Channel::Latitude, Channel::Longitude2, Channel::Latitude2,
                       Channel::Url, Channel::Tooltip},
          .plan = Plan,
          .coversMap = true};
}

}  // namespace ostrel::charts
