#include "ostreltransforms/setvaluemulti/MappedImages.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "ostrelrtcore/Factory.h"
#include "ostreltransforms/StoreValueOperators.h"
#include "ostreltransforms/VisualKey.h"
#include "ostreltransforms/map/ColumnParameter.h"

namespace OstrelTransforms {
namespace {

using namespace ort::core;

enum Edge { Left, Top, Right, Bottom };
constexpr std::size_t kEdges = 4;
using Edges = std::array<double, kEdges>;

Edges ReadEdges(Value const& tuple) {
  IStoreTuple const& members = tuple->AsTuple();
  Edges edges;
  for (std::size_t i = 0; i < kEdges; ++i) {
    Value const& member = members.GetMember(static_cast<int>(i));
    if (member->IsSpecial()) {
      throw OrtRuntimeException(OrtError_WrongValueKind, OStringCore(L"an edge of the map is special"));
    }
    edges[i] = StoreValueOperators::ConvertToDouble(*member);
  }
  return edges;
}

// From map units to pixels along one direction.
class Direction {
 public:
  Direction(double shownLow, double shownHigh, double paneLow, double paneHigh, bool usesWholePixels)
      : shownLow_(shownLow),
        shownExtent_(shownHigh - shownLow),
        paneLow_(paneLow),
        paneExtent_(paneHigh - paneLow),
        usesWholePixels_(usesWholePixels) {}

  double GetPixel(double edge) const {
    double const pixel = paneLow_ + (edge - shownLow_) / shownExtent_ * paneExtent_;
    if (!usesWholePixels_) return pixel;
    double const below = std::floor(pixel);
    return pixel - below >= 0.5 ? below + 1 : below;
  }

 private:
  double shownLow_, shownExtent_, paneLow_, paneExtent_;
  bool usesWholePixels_;
};

// The columns of the images' edges.
class Images {
 public:
  explicit Images(std::array<Value, kEdges> columns) : columns_(std::move(columns)) {
    count_ = ColumnParameter<double>(columns_[Left]).GetCount();
    for (std::size_t i = 0; i < kEdges; ++i) {
      ColumnParameter<double> const column(columns_[i]);
      if (column.GetCount() != count_) throw OrtRuntimeException(OrtError_LengthsDiffer);
      edges_[i] = column.GetData();
      hasSpecials_ = hasSpecials_ || columns_[i]->AsColumn().HasSpecials();
    }
  }

  std::size_t GetCount() const { return count_; }
  double GetEdge(Edge edge, std::size_t row) const { return edges_[edge][row]; }
  // The kind of an image's first special edge.
  SpecialKind GetSpecialKind(std::size_t row) const {
    if (!hasSpecials_) return SpecialKind::None;
    for (Value const& column : columns_) {
      SpecialKind const kind = column->AsColumn().GetSpecialKind(static_cast<int>(row));
      if (kind != SpecialKind::None) return kind;
    }
    return SpecialKind::None;
  }

 private:
  std::array<Value, kEdges> columns_;
  std::array<double const*, kEdges> edges_;
  std::size_t count_ = 0;
  bool hasSpecials_ = false;
};

Value PlaceImages(Images const& images, Direction const& across, Direction const& down) {
  auto const makeColumn = [&] {
    return factory::MakeColumnBuilder<double>(StoreTypeInfo::Real64, static_cast<int>(images.GetCount()));
  };
  auto x = makeColumn(), y = makeColumn(), width = makeColumn(), height = makeColumn();
  for (std::size_t row = 0; row < images.GetCount(); ++row) {
    double const left = across.GetPixel(images.GetEdge(Left, row));
    double const right = across.GetPixel(images.GetEdge(Right, row));
    double const top = down.GetPixel(images.GetEdge(Top, row));
    double const bottom = down.GetPixel(images.GetEdge(Bottom, row));
    x.GetValues()[row] = std::min(left, right);
    y.GetValues()[row] = std::min(top, bottom);
    width.GetValues()[row] = std::fabs(right - left);
    height.GetValues()[row] = std::fabs(bottom - top);
    SpecialKind kind = images.GetSpecialKind(row);
    if (kind == SpecialKind::None && !std::isfinite((right - left) + (bottom - top)))
      kind = SpecialKind::Missing;
    if (kind == SpecialKind::None) continue;
    for (auto* const column : {&x, &y, &width, &height}) column->SetSpecial(static_cast<int>(row), kind);
  }
  namespace Key = runtime::VisualKey;
  return factory::MakeKeyMap({{Key::X, x.Finish()},
                              {Key::Y, y.Finish()},
                              {Key::Width, width.Finish()},
                              {Key::Height, height.Finish()}});
}

}  // namespace

Value UpdateToSizeForMappedImages(Value const& lefts, Value const& tops, Value const& rights,
                                  Value const& bottoms, Value const& shown, Value const& pane,
                                  bool usesWholePixels) {
  Images const images({lefts, tops, rights, bottoms});
  Edges const from = ReadEdges(shown), to = ReadEdges(pane);
  return PlaceImages(images, Direction(from[Left], from[Right], to[Left], to[Right], usesWholePixels),
                     Direction(from[Top], from[Bottom], to[Top], to[Bottom], usesWholePixels));
}

}  // namespace OstrelTransforms
