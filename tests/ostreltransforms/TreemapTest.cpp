#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>

#include "ostreltransforms/Registration.h"
#include "ostreltransforms/RowDriver.h"
#include "ostreltransforms/TestValues.h"
#include "ostreltransforms/TransformNames.h"

namespace {

using namespace TestValues;
using RowDriver::ErrorOf;

struct Rectangle {
  double left, top, right, bottom;
  double GetWidth() const { return right - left; }
  double GetHeight() const { return bottom - top; }
  double GetArea() const { return GetWidth() * GetHeight(); }
};

bool operator==(Rectangle const& a, Rectangle const& b) {
  return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}
void PrintTo(Rectangle const& r, std::ostream* out) {
  *out << "(" << r.left << ", " << r.top << ", " << r.right << ", " << r.bottom << ")";
}

struct Treemap {
  std::vector<Rectangle> nodes;
  std::vector<double> headers, sizes;
  std::vector<int> levels;
};

class TreemapFunction : public testing::Test {
 protected:
  TreemapFunction() { OstrelTransforms::RegisterOstrelSetValueMultiFunctions(registry_); }

  Value Ask(std::vector<Value> const& inputs) {
    return Call(registry_, TransformNames::COMPUTE_TREEMAP_NODES_LAYOUT, inputs);
  }
  Treemap Lay(Value const& parents, Value const& sizes, double width, double height,
              std::vector<double> const& headers = {}, std::vector<double> const& paddings = {}) {
    Value const result = Ask({parents, sizes, R64(width), R64(height), Reals(headers), Reals(paddings)});
    auto const reals = [&](wchar_t const* name) {
      auto const rows = result->AsNamedValues().Get(name)->AsTypedArray<double>().GetValues();
      return std::vector<double>(rows.begin(), rows.end());
    };
    auto const left = reals(L"x"), top = reals(L"y"), right = reals(L"x1"), bottom = reals(L"y1");
    auto const levels = result->AsNamedValues().Get(L"level")->AsTypedArray<int>().GetValues();
    Treemap treemap{{}, reals(L"header_height"), reals(L"size"), {levels.begin(), levels.end()}};
    for (std::size_t i = 0; i < left.size(); ++i)
      treemap.nodes.push_back({left[i], top[i], right[i], bottom[i]});
    return treemap;
  }

  FunctionRegistry registry_;
};

// The published procedure, plainly: a row takes the next rectangle as long as its worst ratio does not grow.
double GetWorst(std::vector<double> const& row, double side) {
  double const sum = std::accumulate(row.begin(), row.end(), 0.0);
  double worst = 0;
  for (double const area : row) {
    worst = std::max({worst, side * side * area / (sum * sum), sum * sum / (side * side * area)});
  }
  return worst;
}

std::vector<Rectangle> Squarify(std::vector<double> areas, Rectangle room) {
  std::vector<Rectangle> laid;
  for (std::size_t first = 0; first < areas.size();) {
    double const side = std::min(room.GetWidth(), room.GetHeight());
    std::vector<double> row = {areas[first]};
    for (std::size_t next = first + 1; next < areas.size(); ++next) {
      auto grown = row;
      grown.push_back(areas[next]);
      if (GetWorst(grown, side) > GetWorst(row, side)) break;
      row = grown;
    }
    double const thickness = std::accumulate(row.begin(), row.end(), 0.0) / side;
    bool const isUpright = room.GetWidth() >= room.GetHeight();
    double at = isUpright ? room.top : room.left;
    for (double const area : row) {
      double const end = at + area / thickness;
      laid.push_back(isUpright ? Rectangle{room.left, at, room.left + thickness, end}
                               : Rectangle{at, room.top, end, room.top + thickness});
      at = end;
    }
    (isUpright ? room.left : room.top) += thickness;
    first += row.size();
  }
  return laid;
}

TEST_F(TreemapFunction, TakesTheStripsOfThePublishedExample) {
  auto const nodes = Lay(Ints({-1, -1, -1, -1, -1, -1, -1}), Reals({6, 6, 4, 3, 2, 2, 1}), 6, 4).nodes;
  std::vector<Rectangle> const expected = Squarify({6, 6, 4, 3, 2, 2, 1}, {0, 0, 6, 4});
  EXPECT_EQ(expected[0], (Rectangle{0, 0, 3, 2}));
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    EXPECT_NEAR(nodes[i].left, expected[i].left, 1e-12) << i;
    EXPECT_NEAR(nodes[i].bottom, expected[i].bottom, 1e-12) << i;
  }
}

TEST_F(TreemapFunction, LaysAsThePlainProcedureDoes) {
  std::mt19937 random(7);
  std::lognormal_distribution<double> number(0, 1);
  for (int round = 0; round < 200; ++round) {
    std::vector<double> sizes(1 + random() % 40);
    for (double& size : sizes) size = number(random);
    double const width = 1 + number(random) * 100, height = 1 + number(random) * 100;
    auto const nodes = Lay(Ints(std::vector<int>(sizes.size(), -1)), Reals(sizes), width, height).nodes;

    std::vector<std::size_t> order(sizes.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(), [&](auto a, auto b) { return sizes[a] > sizes[b]; });
    double const scale = width * height / std::accumulate(sizes.begin(), sizes.end(), 0.0);
    std::vector<double> areas;
    for (std::size_t const row : order) areas.push_back(sizes[row] * scale);
    auto const expected = Squarify(areas, {0, 0, width, height});
    double const tolerance = 1e-9 * (width + height);
    for (std::size_t i = 0; i < order.size(); ++i) {
      Rectangle const& got = nodes[order[i]];
      ASSERT_NEAR(got.left, expected[i].left, tolerance) << "round " << round << ", child " << i;
      ASSERT_NEAR(got.top, expected[i].top, tolerance) << "round " << round << ", child " << i;
      ASSERT_NEAR(got.GetArea(), areas[i], tolerance * (width + height)) << "round " << round;
    }
  }
}

bool Overlap(Rectangle const& a, Rectangle const& b) {
  return std::max(a.left, b.left) < std::min(a.right, b.right) &&
         std::max(a.top, b.top) < std::min(a.bottom, b.bottom);
}

// Every inner edge is another's to the last bit, or the room's.
void ExpectExactTiling(Rectangle const& room, std::vector<Rectangle> const& tiles) {
  double area = 0;
  for (std::size_t i = 0; i < tiles.size(); ++i) {
    Rectangle const& tile = tiles[i];
    area += tile.GetArea();
    EXPECT_TRUE(tile.left >= room.left && tile.right <= room.right && tile.top >= room.top &&
                tile.bottom <= room.bottom);
    for (std::size_t k = 0; k < i; ++k) EXPECT_FALSE(Overlap(tile, tiles[k])) << i << " and " << k;
    auto const meets = [&](double edge, double end, double Rectangle::*other) {
      return edge == end ||
             std::any_of(tiles.begin(), tiles.end(), [&](auto const& tile2) { return tile2.*other == edge; });
    };
    EXPECT_TRUE(meets(tile.right, room.right, &Rectangle::left)) << i;
    EXPECT_TRUE(meets(tile.bottom, room.bottom, &Rectangle::top)) << i;
  }
  EXPECT_NEAR(area, room.GetArea(), 1e-9 * room.GetArea());
}

TEST_F(TreemapFunction, ChildrenTileWhatStripAndMarginLeave) {
  std::mt19937 random(11);
  std::vector<double> const headers = {14, 9, 0}, paddings = {3, 1.5, 0.25};
  for (int round = 0; round < 30; ++round) {
    int const count = 60;
    std::vector<int> parents(count);
    std::vector<double> sizes(count);
    for (int row = 0; row < count; ++row) {
      // A third of equal sizes, some of none.
      parents[static_cast<std::size_t>(row)] = static_cast<int>(random() % 12) - 1;
      if (row < 12)
        parents[static_cast<std::size_t>(row)] =
            row == 0 ? -1 : static_cast<int>(random() % unsigned(row)) - 1;
      sizes[static_cast<std::size_t>(row)] = static_cast<double>(random() % 7);
    }
    auto const treemap = Lay(Ints(parents), Reals(sizes), 900, 700, headers, paddings);
    for (int parent = -1; parent < count; ++parent) {
      std::vector<Rectangle> children;
      double sum = 0;
      for (int row = 0; row < count; ++row) {
        auto const child = static_cast<std::size_t>(row);
        if (parents[child] != parent) continue;
        sum += treemap.sizes[child];
        if (treemap.sizes[child] > 0) children.push_back(treemap.nodes[child]);
      }
      Rectangle room{0, 0, 900, 700};
      if (parent >= 0) {
        auto const row = static_cast<std::size_t>(parent);
        if (std::find(parents.begin(), parents.end(), parent) == parents.end()) continue;
        EXPECT_EQ(treemap.sizes[row], sum);
        auto const level = std::min<std::size_t>(static_cast<std::size_t>(treemap.levels[row]), 2);
        room = treemap.nodes[row];
        double const middle = room.left + room.GetWidth() / 2, padding = paddings[level];
        if (2 * headers[level] <= room.GetHeight()) {
          EXPECT_EQ(treemap.headers[row], headers[level]);
        } else {
          EXPECT_EQ(treemap.headers[row], 0);
        }
        room.top += treemap.headers[row];
        double const centre = room.top + room.GetHeight() / 2;
        room = {std::min(middle, room.left + padding), std::min(centre, room.top + padding),
                std::max(middle, room.right - padding), std::max(centre, room.bottom - padding)};
      }
      if (!(room.GetArea() > 0) || children.empty()) continue;
      SCOPED_TRACE("round " + std::to_string(round) + ", parent " + std::to_string(parent));
      ExpectExactTiling(room, children);
      for (Rectangle const& child : children) EXPECT_GT(child.GetArea(), 0);
    }
  }
}

TEST_F(TreemapFunction, EqualSizesKeepTheOrderOfRows) {
  auto const nodes = Lay(Ints({-1, -1, -1, -1}), Reals({2, 2, 2, 2}), 40, 40).nodes;
  EXPECT_EQ(nodes,
            (std::vector<Rectangle>{{0, 0, 20, 20}, {0, 20, 20, 40}, {20, 0, 40, 20}, {20, 20, 40, 40}}));
}

TEST_F(TreemapFunction, ScaledSizesGiveTheSamePicture) {
  std::vector<double> const sizes = {5, 3, 8, 1, 1, 2, 13};
  auto const plain = Lay(Ints({-1, -1, -1, -1, -1, -1, -1}), Reals(sizes), 320, 200).nodes;
  for (double const factor : {0x1p-900, 0x1p-3, 0x1p900, 0x1p1019}) {
    auto scaled = sizes;
    for (double& size : scaled) size *= factor;
    auto const treemap = Lay(Ints({-1, -1, -1, -1, -1, -1, -1}), Reals(scaled), 320, 200);
    EXPECT_EQ(treemap.nodes, plain) << factor;
    EXPECT_EQ(treemap.sizes, scaled) << factor;
  }
}

TEST_F(TreemapFunction, NoSizeIsAnEmptyCorner) {
  Rectangle const whole{0, 0, 60, 40}, corner{60, 40, 60, 40};
  for (double const none : {0.0, -3.0, kNaN, kInfinity, -kInfinity}) {
    EXPECT_EQ(Lay(Ints({-1, -1}), Reals({none, 5}), 60, 40).nodes, (std::vector{corner, whole})) << none;
  }
  EXPECT_EQ(Lay(Ints({-1, -1}), Reals({5, 1}, {kNull}), 60, 40).nodes, (std::vector{corner, whole}));
  EXPECT_EQ(Lay(Ints({-1, 0, 0}), Reals({9, 0, 0}), 60, 40).nodes, (std::vector{corner, corner, corner}));
  EXPECT_EQ(Lay(Ints({}), Reals({}), 60, 40).nodes, std::vector<Rectangle>{});
  // A special parent is none, and an inner node's own size is not read.
  EXPECT_EQ(Lay(Ints({7, 0}, {kMissing}), Reals({-9, 3}), 60, 40).nodes, (std::vector{whole, whole}));
  for (double const bound : {0.0, -4.0, kNaN, kInfinity}) {
    EXPECT_EQ(Lay(Ints({-1, 0}), Reals({1, 3}), bound, 40).nodes[1], (Rectangle{0, 40, 0, 40})) << bound;
  }
}

TEST_F(TreemapFunction, StripsAndMarginsFollowTheLevel) {
  auto const treemap = Lay(Ints({-1, 0, 1, 2}), Reals({0, 0, 0, 1}), 100, 100, {10, kNaN, 90}, {2, 5});
  EXPECT_EQ(treemap.levels, (std::vector{0, 1, 2, 3}));
  EXPECT_EQ(treemap.headers, (std::vector<double>{10, 0, 0, 0}));
  EXPECT_EQ(treemap.nodes,
            (std::vector<Rectangle>{{0, 0, 100, 100}, {2, 12, 98, 98}, {7, 17, 93, 93}, {12, 22, 88, 88}}));
  auto const squeezed = Lay(Ints({-1, 0}), Reals({0, 1}), 6, 20, {8}, {4}).nodes;
  EXPECT_EQ(squeezed[1], (Rectangle{3, 16, 3, 16})) << "a margin ends in the middle";
}

TEST_F(TreemapFunction, DeepAndWideHierarchiesEnd) {
  int const count = 100'000;
  std::vector<int> chain(count);
  std::iota(chain.begin(), chain.end(), -1);
  auto const deep = Lay(Ints(chain), Reals(std::vector<double>(count, 1)), 800, 600, {16}, {1});
  EXPECT_EQ(deep.levels.back(), count - 1);
  EXPECT_EQ(deep.sizes.front(), 1);
  EXPECT_EQ(deep.nodes.back().GetArea(), 0);
  std::reverse(chain.begin(), chain.end());
  for (int& parent : chain) parent = parent < 0 ? -1 : count - 1 - parent;
  EXPECT_EQ(Lay(Ints(chain), Reals(std::vector<double>(count, 1)), 800, 600).levels.front(), count - 1);
}

TEST_F(TreemapFunction, RefusesCyclesAndOtherInputs) {
  Value const sizes = Reals({1, 1, 1}), none = Reals({}), ten = R64(10);
  struct {
    std::vector<Value> inputs;
    int error;
    wchar_t const* message;
  } const cases[] = {
      {{Ints({-1, 0, 1}), sizes, ten, ten, none}, 219, L"5 inputs given, 6 needed"},
      {{Ints({-1, 0}), sizes, ten, ten, none, none}, 259, L""},
      {{Ints({-1, 3, 0}), sizes, ten, ten, none, none},
       55,
       L"row 1 names row 3 as its parent, which there is not"},
      {{Ints({-1, 2, 1}), sizes, ten, ten, none, none},
       55,
       L"row 1 with the parent 2 is below a node that is its own ancestor"},
      {{Ints({0, -1, -1}), sizes, ten, ten, none, none},
       55,
       L"row 0 with the parent 0 is below a node that is its own ancestor"},
      {{Reals({-1, 0, 0}), sizes, ten, ten, none, none},
       55,
       L"a column of Int32 is needed, one of Real64 was given"},
      {{Ints({-1, 0, 0}), Ints({1, 2, 3}), ten, ten, none, none},
       55,
       L"a column of Real64 is needed, one of Int32 was given"},
  };
  for (auto const& [inputs, error, message] : cases) {
    try {
      Ask(inputs);
      ADD_FAILURE() << "not refused: " << OStringCore(message).toUtf8();
    } catch (OrtRuntimeException const& exception) {
      EXPECT_EQ(exception.GetError(), error);
      EXPECT_EQ(exception.GetMessage(), OStringCore(message));
    }
  }
  EXPECT_EQ(ErrorOf([&] { Ask({Ints({-1}), Reals({1}), I32(10), ten, none, none}); }), 55);
  EXPECT_EQ(ErrorOf([&] { Ask({nullptr, Reals({1}), ten, ten, none, none}); }), 55);
}

}  // namespace
