#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "charts/document/JsonObjectReader.h"
#include "charts/document/Readers.h"

namespace ostrel::charts {

/// Reads what a view is drawn from, a mark with its channels or layers, each of which is such a view again
/// and inherits data and channels:
///
///     ViewReader view(tree, root);
///     view.AddTo(reader);
///     reader.Read();
///     view.Finish(document.layers);
class ViewReader {
 public:
  ViewReader(std::shared_ptr<JsonTree const> tree, JsonValue const& view)
      : tree_(std::move(tree)), view_(view) {}

  /// Adds the view's members to its reader, which must not outlive this.
  void AddTo(JsonObjectReader& reader);
  /// Adds what only the whole chart says: panes and scales of their own.
  void AddPanesTo(JsonObjectReader& reader, ChartDocument& document);
  /// Appends the view's layers: itself, or those that it lists. Throws DocumentError for what is missing, or
  /// what a mark and its channels say of each other.
  void Finish(std::vector<LayerSpec>& layers) const;

 private:
  ViewReader(ViewReader const& parent, JsonValue const& view);

  void ReadData(JsonValue const& value);
  void ReadFacet(JsonValue const& value);
  void FinishLayers(std::vector<LayerSpec>& layers) const;
  void FinishPanes(std::vector<LayerSpec>& layers) const;
  void CheckFacets(LayerSpec const& layer) const;

  std::shared_ptr<JsonTree const> tree_;
  JsonValue view_;
  std::shared_ptr<nlohmann::json const> data_;
  std::string dataPath_;
  std::vector<TransformSpec> transforms_;
  std::optional<MarkSpec> mark_;
  std::vector<ChannelMembers> encodings_;  // the outermost view's first
  std::optional<JsonValue> layers_;
  std::optional<JsonValue> facet_;
  std::optional<JsonValue> spec_;
  ChartDocument* document_ = nullptr;  // of the whole chart alone
};

}  // namespace ostrel::charts
