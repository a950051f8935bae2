#include "charts/document/ViewReader.h"

#include <algorithm>

#include "charts/document/Readers.h"

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
            encodings_.push_back(value);
            // A view's own channels are checked where they stand; what it hands down may be part of one.
            if (!view_.Has("layer")) ReadEncodings(encodings_);
          })
      .On("layer", [this](JsonValue const& value) { layers_ = value; })
      .Refuse("transform", "transforms are not supported; transform the data beforehand");
}

void ViewReader::Finish(std::vector<LayerSpec>& layers) const {
  if (layers_ && mark_) layers_->Fail("is given beside mark; leave one of them out");
  if (layers_) return FinishLayers(layers);
  if (!data_) view_.FailAt("data", "is missing; give {\"url\": ...} or {\"values\": [...]}");
  if (!mark_) view_.FailAt("mark", "is missing; use one of " + ListMarkNames());
  LayerSpec layer{view_.GetPath(), data_, dataPath_, *mark_, ReadEncodings(encodings_)};
  CheckChannels(view_.GetFileName(), layer);
  layers.push_back(std::move(layer));
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
