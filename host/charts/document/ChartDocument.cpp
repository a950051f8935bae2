#include "charts/document/ChartDocument.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "charts/document/JsonObjectReader.h"
#include "charts/document/Readers.h"
#include "charts/document/ViewReader.h"
#include "charts/marks/MarkTable.h"

namespace ostrel::charts {

namespace {

/// "v5.json", "v6.1.0.json": any release of the two versions.
bool IsSupportedSchema(std::string_view url) {
  constexpr std::string_view kAddress = "://vega.github.io/schema/vega-lite/v";
  constexpr std::string_view kEnding = ".json";
  for (std::string_view const scheme : {"https", "http"}) {
    if (!url.starts_with(scheme) || !url.substr(scheme.size()).starts_with(kAddress)) continue;
    auto version = url.substr(scheme.size() + kAddress.size());
    if (!version.ends_with(kEnding)) return false;
    version.remove_suffix(kEnding.size());
    auto const isPart = [](char letter) {
      return (letter >= '0' && letter <= '9') || (letter >= 'a' && letter <= 'z') || letter == '.' ||
             letter == '-';
    };
    bool const isMajor = version.starts_with("5") || version.starts_with("6");
    bool const isWhole = version.size() == 1 || (version.size() > 2 && version[1] == '.');
    return isMajor && isWhole && std::all_of(version.begin(), version.end(), isPart);
  }
  return false;
}

void CheckSchema(JsonValue const& value) {
  if (IsSupportedSchema(value.ReadText())) return;
  value.Fail(value.Describe() +
             " is not supported; use \"https://vega.github.io/schema/vega-lite/v6.json\" or v5");
}

template <class T>
void TakeGiven(std::optional<T> const& own, std::optional<T>& target) {
  if (own) target = own;
}

// What the chart says itself comes before the defaults.
void JoinLooks(ViewSpec const& view, ChartTitleSpec const& title, ChartDocument& document) {
  ConfigSpec& config = document.config;
  TakeGiven(view.stroke, config.view.stroke);
  TakeGiven(view.strokeWidth, config.view.strokeWidth);
  TakeGiven(view.fill, config.view.fill);
  TakeGiven(title.anchor, config.title.anchor);
  TakeGiven(title.offset, config.title.offset);
  TakeGiven(title.fontSize, config.title.fontSize);
  TakeGiven(title.isBold, config.title.isBold);
  TakeGiven(title.color, config.title.color);
  TakeGiven(title.subtitleFontSize, config.title.subtitleFontSize);
  TakeGiven(title.isSubtitleBold, config.title.isSubtitleBold);
  TakeGiven(title.subtitleColor, config.title.subtitleColor);
  TakeGiven(title.subtitlePadding, config.title.subtitlePadding);
  if (!document.padding) document.padding = config.padding;
  if (!document.background) document.background = config.background;
}

void RefuseCompositions(JsonObjectReader& reader) {
  for (auto const* composition : {"hconcat", "vconcat", "concat", "repeat"}) {
    reader.Refuse(composition, "several plots in one document are not supported; write a document for each");
  }
  reader.Refuse("params", "interaction is not supported; leave it out")
      .Refuse("selection", "interaction is not supported; leave it out")
      .Refuse("datasets", "named data are not supported; use data.values")
      .Refuse("autosize", "is not supported; use width and height, which measure the plotting area");
}

Projection ReadProjection(JsonValue const& value) {
  static constexpr NamedValue<Projection> kNames[] = {{"mercator", Projection::Mercator},
                                                      {"identity", Projection::Identity}};
  Projection projection = Projection::Mercator;
  JsonObjectReader reader(value);
  reader.OneOf("type", projection, std::span<NamedValue<Projection> const>(kNames));
  for (auto const* part :
       {"scale", "translate", "center", "rotate", "clipAngle", "clipExtent", "fit", "extent", "size",
        "parallels", "precision", "pointRadius", "reflectX", "reflectY"}) {
    reader.Refuse(part, "is not supported; a map shows the part of the world that its points lie in");
  }
  reader.Read();
  return projection;
}

bool IsMapLayer(LayerSpec const& layer) {
  MarkDefinition const& mark = GetDefinition(layer.mark);
  return mark.isMap || mark.coversMap || layer.Find(Channel::Longitude) != nullptr ||
         layer.Find(Channel::Latitude) != nullptr;
}

/// A map's layers have places on it and no axes.
void CheckMap(JsonValue const& root, ChartDocument const& document) {
  auto const fail = [&](std::string const& path, std::string const& cause) {
    throw DocumentError(fmt::format("{}: {}: {}", document.path.string(), path, cause));
  };
  if (!document.IsMap()) {
    if (root.Has("projection"))
      root.FailAt("projection", "is for maps; use longitude and latitude, or the mark geoshape");
    return;
  }
  for (LayerSpec const& layer : document.layers) {
    for (Channel const channel : {Channel::X, Channel::Y}) {
      if (Encoding const* const encoding = layer.Find(channel))
        fail(encoding->path, "a map has no axes; use longitude and latitude");
    }
    MarkDefinition const& mark = GetDefinition(layer.mark);
    if (mark.isMap) continue;
    auto const require = [&](Channel channel, char const* what) {
      if (layer.Find(channel) == nullptr)
        fail(layer.path + ".encoding", fmt::format("{} is missing, which {} needs", NameOf(channel), what));
    };
    for (Channel const channel : {Channel::Longitude, Channel::Latitude}) require(channel, "a map");
    if (!mark.coversMap) continue;
    for (Channel const channel : {Channel::Longitude2, Channel::Latitude2, Channel::Url})
      require(channel, "an image");
  }
}

/// Without panes the chart's resolve tells of its layers.
void CheckResolve(ChartDocument& document) {
  bool const hasPanes = document.FindFacet(Channel::Row) != nullptr ||
                        document.FindFacet(Channel::Column) != nullptr ||
                        document.FindFacet(Channel::Facet) != nullptr;
  ResolveSpec& panes = document.resolvePanes;
  if (!hasPanes) document.resolveLayers = std::exchange(panes, {});
  for (Channel const channel : panes.sharedZeros) {
    throw DocumentError(
        fmt::format("{}: {}.zero.{}: panes have their zeros where their scales have them; leave it out",
                    document.path.string(), panes.path, NameOf(channel)));
  }
  for (Channel const channel : panes.sharedDomains) {
    throw DocumentError(fmt::format("{}: {}.domain.{}: panes of one domain share their scale; set scale",
                                    document.path.string(), panes.path, NameOf(channel)));
  }
  ResolveSpec const& layers = document.resolveLayers;
  auto const requireOwnScales = [&](std::vector<Channel> const& channels, char const* what) {
    for (Channel const channel : channels) {
      if (layers.HasOwnScale(channel)) continue;
      throw DocumentError(fmt::format("{}: {}.{}.{}: layers of one scale share its {}; set resolve.scale",
                                      document.path.string(), layers.path, what, NameOf(channel), what));
    }
  };
  requireOwnScales(layers.sharedZeros, "zero");
  requireOwnScales(layers.sharedDomains, "domain");
  for (Channel const channel : layers.independentAxes) {
    if (layers.HasOwnScale(channel)) continue;
    throw DocumentError(fmt::format("{}: {}.axis.{}: layers share an axis with its scale; set resolve.scale",
                                    document.path.string(), layers.path, NameOf(channel)));
  }
}

}  // namespace

bool ChartDocument::IsMap() const { return std::ranges::any_of(layers, IsMapLayer); }

void ReadSize(JsonValue const& value, std::optional<double>& size, std::optional<double>& step) {
  if (value.IsObject()) {
    JsonObjectReader(value)
        .Number("step", step, kPictureSize)
        .Refuse("for", "is not supported; the step is that of the innermost places")
        .Read();
    if (!step) value.FailAt("step", "is missing");
    return;
  }
  if (value.Get().is_string()) value.Fail(value.Describe() + " is not supported; use a number of pixels");
  size = value.ReadNumber(kPictureSize);
}

void ReadChartTitle(JsonValue const& value, ChartDocument& document, ChartTitleSpec& look) {
  if (!value.IsObject()) {
    document.title = value.ReadLines();
    return;
  }
  JsonObjectReader reader(value);
  reader.On("text", [&document](JsonValue const& text) { document.title = text.ReadLines(); })
      .On("subtitle", [&document](JsonValue const& text) { document.subtitle = text.ReadLines(); });
  AddTitleLook(reader, look);
  reader.Read();
  if (!value.Has("text")) value.FailAt("text", "is missing");
}

ChartDocument ParseChartDocument(std::string_view json, std::filesystem::path const& path) {
  auto const fileName = path.string();
  auto const tree = std::make_shared<JsonTree const>(json, fileName);
  JsonValue const root(*tree, fileName);
  ChartDocument document;
  ConfigSpec& config = document.config;
  ViewSpec ownView;
  ChartTitleSpec title;
  document.path = path;
  JsonObjectReader reader(root);
  reader.On("$schema", CheckSchema)
      .Text("name", document.name)
      .On("title", [&](JsonValue const& value) { ReadChartTitle(value, document, title); })
      .Text("description", document.description)
      .On("width", [&](JsonValue const& value) { ReadSize(value, document.width, document.widthStep); })
      .On("height", [&](JsonValue const& value) { ReadSize(value, document.height, document.heightStep); })
      .On("background", [&](JsonValue const& value) { document.background = ReadColorOrNone(value); })
      .On("padding", [&](JsonValue const& value) { document.padding = ReadPadding(value); })
      .On("projection", [&](JsonValue const& value) { document.projection = ReadProjection(value); })
      .On("config", [&](JsonValue const& value) { config = ReadConfig(value); })
      .On("view", [&](JsonValue const& value) { ReadView(value, ownView); });
  RefuseCompositions(reader);
  ViewReader view(tree, root);
  view.AddTo(reader);
  view.AddPanesTo(reader, document);
  reader.Read();
  JoinLooks(ownView, title, document);
  view.Finish(document.layers);
  CheckResolve(document);
  CheckMap(root, document);
  return document;
}

ChartDocument ReadChartDocument(std::filesystem::path const& path) {
  return ParseChartDocument(ReadDocumentFile(path), path);
}

}  // namespace ostrel::charts
