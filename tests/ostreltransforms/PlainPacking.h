#pragma once

#include <cmath>
#include <cstddef>
#include <vector>

// Circles packed around the origin by the rule as it is written, with walks along the whole ring. All that is
// clever must give these very doubles.
class PlainPacking {
 public:
  explicit PlainPacking(std::vector<double> const& sizes)
      : x(sizes.size()), y(sizes.size()), radius_(sizes), next_(sizes.size()), previous_(sizes.size()) {
    std::vector<std::size_t> circles;
    for (std::size_t i = 0; i < sizes.size(); ++i) {
      if (!(sizes[i] > 0)) radius_[i] = 0;
      if (sizes[i] > 0) circles.push_back(i);
    }
    if (circles.size() > 0) x[circles[0]] = -radius_[circles[0]];
    if (circles.size() > 1) x[circles[1]] = radius_[circles[1]];
    if (circles.size() > 2) Start(circles[0], circles[1], circles[2]);
    for (std::size_t i = 3; i < circles.size(); ++i) Add(circles[i - 1], circles[i]);
  }

  std::vector<double> x, y;

 private:
  using Index = std::size_t;

  void Start(Index a, Index b, Index c) {
    Place(a, b, c);
    Connect(a, c);
    Connect(c, b);
    Connect(b, a);
  }

  void Add(Index last, Index c) {
    Index a = last;
    for (Index j = next_[last]; j != last; j = next_[j]) {
      if (x[j] * x[j] + y[j] * y[j] < x[a] * x[a] + y[a] * y[a]) a = j;
    }
    Index b = next_[a];
    for (;;) {
      Place(a, b, c);
      int s1 = 0, s2 = 0;
      Index j = next_[b];
      for (; j != a && !Intersect(j, c); j = next_[j]) ++s1;
      if (j == a) break;
      Index k = previous_[a];
      for (; k != previous_[j] && !Intersect(k, c); k = previous_[k]) ++s2;
      if (s1 < s2 || (s1 == s2 && radius_[b] < radius_[a])) {
        b = j;
      } else {
        a = k;
      }
      Connect(a, b);
    }
    Connect(a, c);
    Connect(c, b);
  }

  void Place(Index a, Index b, Index c) {
    double const dab = radius_[a] + radius_[c], dbc = radius_[b] + radius_[c];
    double const dx = x[b] - x[a], dy = y[b] - y[a], d = std::sqrt(dx * dx + dy * dy);
    double cosine = (d * d + dab * dab - dbc * dbc) / (2.0 * dab * d);
    if (dab == 0 || d == 0) cosine = 1;
    if (cosine < -1) cosine = -1;
    if (cosine > 1) cosine = 1;
    double const k = dab / d, u = k * cosine, v = k * std::sin(std::acos(cosine));
    x[c] = x[a] + u * dx - v * dy;
    y[c] = y[a] + u * dy + v * dx;
  }

  bool Intersect(Index p, Index q) const {
    double const sum = radius_[p] + radius_[q], dx = x[q] - x[p], dy = y[q] - y[p];
    return sum * sum - dx * dx - dy * dy > 0.001;
  }

  void Connect(Index first, Index second) {
    next_[first] = second;
    previous_[second] = first;
  }

  std::vector<double> radius_;
  std::vector<Index> next_, previous_;
};
