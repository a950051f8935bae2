#include "ostreltransforms/bubble/CirclePacking.h"

#include <optional>

#include "ostreltransforms/bubble/FrontChain.h"

namespace OstrelTransforms::CirclePacking {

void Pack(std::span<double const> sizes, std::span<double> x, std::span<double> y) {
  Circle a, b;
  std::optional<FrontChain> chain;
  for (std::size_t i = 0; i < sizes.size(); ++i) {
    Circle circle{0, 0, RadiusOf(sizes[i])};
    if (circle.radius == 0) {
      // keeps its centre
    } else if (a.radius == 0) {
      circle.x = -circle.radius;
      a = circle;
    } else if (b.radius == 0) {
      circle.x = circle.radius;
      b = circle;
    } else if (!chain) {
      PlaceTouching(a, b, circle);
      chain.emplace(a, circle, b);
    } else {
      chain->Add(circle);
    }
    x[i] = circle.x;
    y[i] = circle.y;
  }
}

}  // namespace OstrelTransforms::CirclePacking
