#include "charts/document/ViewReader.h"

#include <algorithm>
#include <iterator>

#include "charts/document/Readers.h"
#include "charts/document/TransformReaders.h"
#include "charts/marks/MarkTable.h"

namespace ostrel::charts {

namespace {

/// The rows themselves are read with the data; here the ways to name them.
void CheckData(JsonValue const& value) {
  auto const accept = [](JsonValue const&) {};
  std::string name;
  JsonObjectReader(value)
      .On("url", [](JsonValue const& url) { url.ReadText(); })
      .On("values", accept)
      .On("format", [](JsonValue const& format) { format.ReadObject(); })
      .Text("name", name)
      .Refuse("sequence", "generated data are not supported; use url or values")
      .Refuse("sphere", "generated data are not supported; use url or values")
      .Refuse("graticule", "generated data are not supported; use url or values")
      .Read();
  if (value.Has("url") && value.Has("values"))
    value.FailAt("values", "is given beside url; leave one of them out");
  if (!value.Has("url") && !value.Has("values")) value.Fail("expects url or values");
}

// One text for all rows.
void AddTooltipText(LayerSpec& layer) {
  Encoding& tooltip = layer.encodings.emplace_back();
  tooltip.channel = Channel::Tooltip;
  tooltip.path = layer.mark.path + ".tooltip";
  tooltip.value = layer.mark.tooltipText;
}

// The fields of the mark's channels.
void AddTooltips(LayerSpec& layer) {
  constexpr double kMaxBinsOfPositions = 10;
  std::vector<Encoding> tooltips;
  for (Encoding const& encoding : layer.encodings) {
    bool const isCount = encoding.aggregate == AggregateOperation::Count;
    auto const isSame = [&](Encoding const& other) {
      return other.field == encoding.field && other.aggregate == encoding.aggregate &&
             other.timeUnit == encoding.timeUnit;
    };
    bool const isTold = (!encoding.field.empty() || isCount) && std::ranges::none_of(tooltips, isSame);
    if (!isTold || encoding.channel == Channel::Order || IsFacet(encoding.channel)) continue;
    Encoding& tooltip = tooltips.emplace_back();
    tooltip.channel = Channel::Tooltip;
    tooltip.path = layer.mark.path + ".tooltip";
    tooltip.field = encoding.field;
    tooltip.type = encoding.type;
    tooltip.title = encoding.title;
    tooltip.format = encoding.format.empty() ? encoding.axis.format : encoding.format;
    if (tooltip.format.empty()) tooltip.format = encoding.legend.format;
    tooltip.aggregate = encoding.aggregate;
    tooltip.timeUnit = encoding.timeUnit;
    if (encoding.bin && !encoding.bin->isDone) tooltip.bin = encoding.bin;
    // The same bins as those that are drawn.
    if (tooltip.bin && !tooltip.bin->maxBins && IsPosition(encoding.channel))
      tooltip.bin->maxBins = kMaxBinsOfPositions;
  }
  std::ranges::move(tooltips, std::back_inserter(layer.encodings));
}

// Constants of channels that the mark does not have are its properties.
void TakeConstants(LayerSpec& layer) {
  MarkDefinition const& mark = GetDefinition(layer.mark);
  std::erase_if(layer.encodings, [&](Encoding const& encoding) {
    auto const* number = std::get_if<double>(&encoding.value);
    if (number == nullptr || std::ranges::find(mark.channels, encoding.channel) != mark.channels.end())
      return false;
    auto const property = encoding.channel == Channel::Size      ? mark.constantSize
                          : encoding.channel == Channel::Opacity ? &MarkSpec::opacity
                                                                 : nullptr;
    if (property != nullptr) layer.mark.*property = *number;
    return property != nullptr;
  });
}

}  // namespace

Encoding const* LayerSpec::Find(Channel channel) const {
  auto const found = std::ranges::find(encodings, channel, &Encoding::channel);
  return found != encodings.end() ? &*found : nullptr;
}

ViewReader::ViewReader(ViewReader const& parent, JsonValue const& view)
    : tree_(parent.tree_),
      view_(view),
      data_(parent.data_),
      dataPath_(parent.dataPath_),
      transforms_(parent.transforms_),
      encodings_(parent.encodings_) {}

void ViewReader::ReadData(JsonValue const& value) {
  CheckData(value);
  data_ = std::shared_ptr<nlohmann::json const>(tree_, &value.Get());
  dataPath_ = value.GetPath();
}

void ViewReader::AddTo(JsonObjectReader& reader) {
  reader.On("data", [this](JsonValue const& value) { ReadData(value); })
      .On("mark", [this](JsonValue const& value) { mark_ = ReadMark(value); })
      .On("encoding",
          [this](JsonValue const& value) {
            encodings_.push_back(value.ReadObject());
            // A view's own channels are checked where they stand; what it hands down may be part of one.
            if (!view_.Has("layer")) ReadEncodings(view_, encodings_);
          })
      .On("layer", [this](JsonValue const& value) { layers_ = value; })
      .On("transform", [this](JsonValue const& value) {
        for (TransformSpec& transform : ReadTransforms(value)) transforms_.push_back(std::move(transform));
      });
}

void ViewReader::AddPanesTo(JsonObjectReader& reader, ChartDocument& document) {
  document_ = &document;
  reader.On("facet", [this](JsonValue const& value) { ReadFacet(value); })
      .On("spec", [this](JsonValue const& value) { spec_ = value; })
      .Number("columns", document.paneColumns, {.minimum = 1, .maximum = 1'000})
      .On("spacing", [&document](JsonValue const& value) { document.spacing = ReadSpacing(value); })
      .On("resolve", [&document](JsonValue const& value) { document.resolvePanes = ReadResolve(value); });
}

// Its channels are those of an encoding; a single field is the channel facet.
void ViewReader::ReadFacet(JsonValue const& value) {
  static std::string const facet = "facet";
  facet_ = value;
  if (!value.Has("row") && !value.Has("column")) {
    encodings_.push_back({{&facet, value}});
  } else {
    auto const read = [](JsonValue const& channel) { channel.ReadObject(); };
    JsonObjectReader(value).On("row", read).On("column", read).Read();
    encodings_.push_back(value.ReadObject());
  }
  ReadEncodings(value, {encodings_.back()});
}

void ViewReader::Finish(std::vector<LayerSpec>& layers) const {
  if (facet_ || spec_) return FinishPanes(layers);
  if (layers_ && mark_) layers_->Fail("is given beside mark; leave one of them out");
  if (layers_) return FinishLayers(layers);
  if (!data_) view_.FailAt("data", "is missing; give {\"url\": ...} or {\"values\": [...]}");
  if (!mark_) view_.FailAt("mark", "is missing; use one of " + ListMarkNames());
  LayerSpec layer{view_.GetPath(), data_, dataPath_, transforms_, *mark_, ReadEncodings(view_, encodings_)};
  // What the document lists in the channel comes first.
  if (layer.Find(Channel::Tooltip) != nullptr) {
    layer.mark.tooltip = TooltipContent::None;
  } else if (!layer.mark.tooltipText.empty()) {
    AddTooltipText(layer);
  } else if (layer.mark.tooltip == TooltipContent::Encoding) {
    AddTooltips(layer);
  }
  TakeConstants(layer);
  CheckChannels(view_.GetFileName(), layer);
  CheckFacets(layer);
  layers.push_back(std::move(layer));
}

// All layers have the panes of the whole chart.
void ViewReader::CheckFacets(LayerSpec const& layer) const {
  auto const fail = [this](Encoding const& encoding, char const* cause) {
    throw DocumentError(view_.GetFileName() + ": " + encoding.path + ": " + cause);
  };
  for (Encoding const& encoding : layer.encodings) {
    if (!IsFacet(encoding.channel)) continue;
    bool const isOfChart = encoding.path.starts_with("$.encoding.") || encoding.path.starts_with("$.facet");
    if (!isOfChart) fail(encoding, "is for the whole chart; set it in $.encoding, or use facet with spec");
    if (encoding.channel != Channel::Facet && layer.Find(Channel::Facet) != nullptr)
      fail(encoding, "is given beside facet; leave one of them out");
  }
}

void ViewReader::FinishPanes(std::vector<LayerSpec>& layers) const {
  if (!facet_) view_.FailAt("facet", "is missing; give {\"field\": ...}, or row and column");
  if (!spec_) view_.FailAt("spec", "is missing; give {\"mark\": ..., \"encoding\": {...}}");
  if (mark_ || layers_) spec_->Fail("is given beside mark or layer; move these into spec");
  ViewReader view(*this, *spec_);
  JsonObjectReader reader(*spec_);
  auto const accept = [](JsonValue const& text) { text.ReadText(); };
  reader.On("name", accept)
      .On("description", accept)
      .On("width",
          [this](JsonValue const& value) { ReadSize(value, document_->width, document_->widthStep); })
      .On("height",
          [this](JsonValue const& value) { ReadSize(value, document_->height, document_->heightStep); })
      .On("resolve", [this](JsonValue const& value) { document_->resolveLayers = ReadResolve(value); })
      .Refuse("title", "is not supported; set the chart's title");
  view.AddTo(reader);
  reader.Read();
  view.Finish(layers);
}

void ViewReader::FinishLayers(std::vector<LayerSpec>& layers) const {
  auto const parts = layers_->ReadArray();
  if (parts.empty()) layers_->Fail("has no layers; give {\"mark\": ..., \"encoding\": {...}}");
  for (JsonValue const& part : parts) {
    constexpr auto kWhole = "is for the whole chart; set it beside layer";
    ViewReader view(*this, part);
    JsonObjectReader reader(part);
    auto const accept = [](JsonValue const& text) { text.ReadText(); };
    reader.On("name", accept)
        .On("description", accept)
        .Refuse("title", "is not supported; set the chart's title, or those of axes and legends")
        .Refuse("width", kWhole)
        .Refuse("height", kWhole)
        .Refuse("projection", kWhole)
        .Refuse("resolve", kWhole);
    view.AddTo(reader);
    reader.Read();
    view.Finish(layers);
  }
}

}  // namespace ostrel::charts
