#include "ostreltransforms/setvaluemulti/WrappedMaps.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "maps/LongitudeWrap.h"
#include "maps/MapUtil.h"
#include "ostrelrtcore/Factory.h"
#include "ostreltransforms/VisualKey.h"
#include "ostreltransforms/map/ColumnParameter.h"

namespace OstrelTransforms {
namespace {

using namespace ort::core;

constexpr double kDegreesOfWorld = 360;
// A map with more than this shows nothing that could be told apart, and its copies would fill the memory.
constexpr double kMostWorlds = 64;
constexpr wchar_t const* kTooManyWorlds = L"the map shows more than 64 worlds";

void Require(bool isMet, wchar_t const* what) {
  if (!isMet) throw OrtRuntimeException(OrtError_InputKindNotAccepted, OStringCore(what));
}

struct View {
  double left, right, bottom, top;  // degrees
  double width, height, reach;      // pixels
};

void RequireDrawable(View const& view) {
  for (double const number :
       {view.left, view.right, view.bottom, view.top, view.width, view.height, view.reach}) {
    Require(std::isfinite(number), L"an edge, a size or the reach of the map is not finite");
  }
  Require(view.width > 0 && view.height > 0, L"the map has no width or no height");
}

// The degrees from the left to the right edge.
double GetStretch(View const& view) {
  double stretch = view.right - view.left;
  if (stretch <= 0) stretch += (std::floor(-stretch / kDegreesOfWorld) + 1) * kDegreesOfWorld;
  Require(stretch > 0 && stretch <= kMostWorlds * kDegreesOfWorld, kTooManyWorlds);
  return stretch;
}

// The map in projected coordinates, with the copies of the world side by side. Its left edge is in the first.
class Plane {
 public:
  Plane(MapProjectorHelper const& projector, View const& view)
      : projector_(projector),
        width_(view.width),
        height_(view.height),
        reach_(std::max(view.reach, 0.0)),
        world_(projector.GetX(180) - projector.GetX(-180)),
        left_(projector.GetX(view.left)),
        xExtent_(Unwrap(WrapLongitude(view.left) + GetStretch(view)) - left_),
        top_(projector.GetY(view.top)),
        yExtent_(top_ - projector.GetY(view.bottom)),
        reachAcross_(reach_ / width_ * xExtent_) {
    Require(xExtent_ > 0, L"the map has no width or no height");
    Require(yExtent_ > 0 && std::isfinite(yExtent_), L"the bottom of the map is not below its top");
    Require(xExtent_ + 2 * reachAcross_ <= kMostWorlds * world_, kTooManyWorlds);
  }

  int CountWorlds() const {
    double const begin = (left_ + world_ / 2) / world_;
    double const end = (left_ + xExtent_ + world_ / 2) / world_;
    return static_cast<int>(std::ceil(end) - std::floor(begin));
  }

  // Calls visit(x, y) with each copy of a place that reaches into the map, from left to right.
  template <class Visit>
  void ForEachCopy(double longitude, double latitude, Visit const& visit) const {
    double const y = (top_ - projector_.GetY(latitude)) / yExtent_ * height_;
    if (!(y >= -reach_ && y <= height_ + reach_)) return;
    double const place = projector_.GetX(longitude) - left_;
    if (!std::isfinite(place)) return;
    // Begins a copy early, which rounding might have left out.
    for (double k = std::floor((-reachAcross_ - place) / world_);; ++k) {
      double const x = (place + k * world_) / xExtent_ * width_;
      if (!(x <= width_ + reach_)) return;
      if (x >= -reach_) visit(x, y);
    }
  }

 private:
  double Unwrap(double longitude) const {
    double const turns = std::round((longitude - WrapLongitude(longitude)) / kDegreesOfWorld);
    return projector_.GetX(longitude) + turns * world_;
  }

  MapProjectorHelper const& projector_;
  double width_, height_, reach_;  // pixels
  double world_;
  double left_, xExtent_;
  double top_, yExtent_;
  double reachAcross_;
};

template <class T>
Value MakeColumn(StoreTypeInfo const& type, std::vector<T>&& values) {
  return factory::MakeArray<T>(type, std::make_unique<std::vector<T>>(std::move(values)));
}

}  // namespace

Value WrapMaps(Value const& longitudes, Value const& latitudes, double left, double right, double bottom,
               double top, int projection, double eccentricity, double width, double height, double reach) {
  ColumnParameter<double> const east(longitudes), north(latitudes);
  if (east.GetCount() != north.GetCount()) throw OrtRuntimeException(OrtError_LengthsDiffer);
  View const view{left, right, bottom, top, width, height, reach};
  RequireDrawable(view);
  auto const projector = MapUtil::MakeProjector(projection, eccentricity);
  Plane const plane(*projector, view);

  ColumnView const& eastView = longitudes->AsColumn();
  ColumnView const& northView = latitudes->AsColumn();
  bool const hasSpecials = eastView.HasSpecials() || northView.HasSpecials();
  std::vector<double> x, y;
  std::vector<int> rows;
  for (auto* const column : {&x, &y}) column->reserve(east.GetCount());
  rows.reserve(east.GetCount());
  for (int row = 0; row < eastView.GetCount(); ++row) {
    if (hasSpecials && (eastView.IsSpecial(row) || northView.IsSpecial(row))) continue;
    auto const index = static_cast<std::size_t>(row);
    plane.ForEachCopy(east.GetData()[index], north.GetData()[index], [&](double copyX, double copyY) {
      x.push_back(copyX);
      y.push_back(copyY);
      rows.push_back(row);
    });
  }
  namespace Key = runtime::VisualKey;
  return factory::MakeKeyMap({{Key::X, MakeColumn(StoreTypeInfo::Real64, std::move(x))},
                              {Key::Y, MakeColumn(StoreTypeInfo::Real64, std::move(y))},
                              {L"row", MakeColumn(StoreTypeInfo::Int32, std::move(rows))},
                              {Key::WrapCount, factory::MakeInt32(plane.CountWorlds())}});
}

}  // namespace OstrelTransforms
