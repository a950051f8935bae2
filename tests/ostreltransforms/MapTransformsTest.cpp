#include <cmath>
#include <random>

#include "maps/MapUtil.h"
#include "ostrelsys/OLogicException.h"
#include "ostreltransforms/Registration.h"
#include "ostreltransforms/RowDriver.h"
#include "ostreltransforms/TestValues.h"
#include "ostreltransforms/TransformNames.h"

namespace {

using namespace TestValues;
using RowDriver::ErrorOf;

constexpr int kMercator = 0, kDegrees = 1;

struct View {
  double left, right, bottom, top;
  int projection = kDegrees;
  double eccentricity = 0, width = 360, height = 180, reach = 0;
};

struct Copy {
  double x, y;
  int row;
};
bool operator==(Copy const& a, Copy const& b) { return a.x == b.x && a.y == b.y && a.row == b.row; }
void PrintTo(Copy const& copy, std::ostream* out) {
  *out << "(" << copy.x << ", " << copy.y << ", row " << copy.row << ")";
}

class MapTransforms : public testing::Test {
 protected:
  MapTransforms() { OstrelTransforms::RegisterOstrelSetValueMultiFunctions(registry_); }

  Value Wrap(Value const& east, Value const& north, View const& view) {
    return Call(
        registry_, TransformNames::WRAP_MAPS,
        {east, north, R64(view.left), R64(view.right), R64(view.bottom), R64(view.top), I32(view.projection),
         R64(view.eccentricity), R64(view.width), R64(view.height), R64(view.reach)});
  }
  std::vector<Copy> ListCopies(Value const& east, Value const& north, View const& view) {
    Value const result = Wrap(east, north, view);
    auto const& members = result->AsNamedValues();
    auto const x = members.Get(L"x"), y = members.Get(L"y"), rows = members.Get(L"row");
    std::vector<Copy> copies;
    for (int i = 0; i < x->AsColumn().GetCount(); ++i) {
      copies.push_back({x->AsTypedArray<double>().GetElement(i), y->AsTypedArray<double>().GetElement(i),
                        rows->AsTypedArray<int>().GetElement(i)});
    }
    return copies;
  }
  Value Place(std::vector<Value> const& inputs) {
    return Call(registry_, TransformNames::UPDATE_TO_SIZE_FOR_MAPPED_IMAGES, inputs);
  }

  FunctionRegistry registry_;
};

TEST_F(MapTransforms, MarksStandInEveryCopyOfTheWorld) {
  struct {
    char const* what;
    View view;
    std::vector<double> east;
    std::vector<Copy> copies;  // of marks on the equator
    int worlds;
  } const cases[] = {
      {"one world", {-180, 180, -90, 90}, {-90, 0, 90}, {{90, 90, 0}, {180, 90, 1}, {270, 90, 2}}, 1},
      {"its seam is at both ends",
       {-180, 180, -90, 90},
       {180, -180},
       {{0, 90, 0}, {360, 90, 0}, {0, 90, 1}, {360, 90, 1}},
       1},
      {"across the date line", {90, 270, -90, 90}, {175, -175, 0}, {{170, 90, 0}, {190, 90, 1}}, 2},
      {"an edge west of the other", {90, -90, -90, 90}, {175, -175, 0}, {{170, 90, 0}, {190, 90, 1}}, 2},
      {"other turns",
       {90 - 3600, 270 - 3600, -90, 90},
       {175, 535, -895},
       {{170, 90, 0}, {170, 90, 1}, {170 + 20, 90, 2}},
       2},
      {"a world and a half", {-180, 360, -90, 90}, {-90, 90}, {{60, 90, 0}, {300, 90, 0}, {180, 90, 1}}, 2},
      {"equal edges are a world", {20, 20, -90, 90}, {30}, {{10, 90, 0}}, 2},
      {"three worlds", {-540, 540, -90, 90}, {0}, {{60, 90, 0}, {180, 90, 0}, {300, 90, 0}}, 3},
      {"out of view", {0, 90, -90, 90}, {-1, 91}, {}, 1},
      {"reaching into view",
       {0, 90, -90, 90, kDegrees, 0, 90, 180, 4},
       {-4, 94, 95, 0},
       {{-4, 90, 0}, {94, 90, 1}, {0, 90, 3}},
       1},
      {"no place", {-180, 180, -90, 90}, {kNaN, kInfinity, 0}, {{180, 90, 2}}, 1},
  };
  for (auto const& [what, view, east, copies, worlds] : cases) {
    Value const north = Reals(std::vector<double>(east.size(), 0));
    EXPECT_EQ(ListCopies(Reals(east), north, view), copies) << what;
    EXPECT_EQ(Wrap(Reals(east), north, view)->AsNamedValues().Get(L"WrapCount")->GetInt32(), worlds) << what;
  }
}

TEST_F(MapTransforms, MarksWithoutAPlaceInViewStandNowhere) {
  View const view{-180, 180, -45, 45, kDegrees, 0, 360, 90, 2};
  EXPECT_EQ(ListCopies(Reals({1, 2, 3, 4}), Reals({45, 47, 47.5, -48}), view),
            (std::vector<Copy>{{181, 0, 0}, {182, -2, 1}}));
  EXPECT_EQ(ListCopies(Reals({1, 2, 3}, {kNull}), Reals({0, 0, 0}, {kNone, kMissing}), view),
            (std::vector<Copy>{{183, 45, 2}}));
  EXPECT_EQ(ListCopies(Reals({1}), Reals({kNaN}), view), std::vector<Copy>{});
  ExpectEqual(Wrap(Reals({}), Reals({}), view),
              factory::MakeKeyMap(
                  {{L"x", Reals({})}, {L"y", Reals({})}, {L"row", Ints({})}, {L"WrapCount", I32(1)}}));
}

// Every copy, sought one by one over more worlds than the map can show.
TEST_F(MapTransforms, CopiesAreThoseOfThePlainRule) {
  std::mt19937 random(3);
  std::uniform_real_distribution<double> longitude(-200, 200), latitude(-80, 80), edge(-700, 700);
  for (int round = 0; round < 100; ++round) {
    View view{edge(random), edge(random), -60, 70, static_cast<int>(random() % 2), 0.08, 500, 300, 20};
    if (view.left > view.right) std::swap(view.left, view.right);
    auto const projector = MapUtil::MakeProjector(view.projection, view.eccentricity);
    double const world = 2 * projector->GetX(180);
    auto const unwrap = [&](double degrees) {
      return projector->GetX(degrees) + std::floor((degrees + 180) / 360) * world;
    };
    double const low = unwrap(view.left), extent = unwrap(view.right) - low;
    double const top = projector->GetY(view.top), down = top - projector->GetY(view.bottom);
    std::vector<double> east(20), north(20);
    std::vector<Copy> expected;
    for (std::size_t row = 0; row < east.size(); ++row) {
      east[row] = longitude(random);
      north[row] = latitude(random);
      double const y = (top - projector->GetY(north[row])) / down * view.height;
      if (y < -view.reach || y > view.height + view.reach) continue;
      for (int k = -8; k <= 8; ++k) {
        double const x = (projector->GetX(east[row]) + k * world - low) / extent * view.width;
        if (x >= -view.reach && x <= view.width + view.reach)
          expected.push_back({x, y, static_cast<int>(row)});
      }
    }
    auto const got = ListCopies(Reals(east), Reals(north), view);
    ASSERT_EQ(got.size(), expected.size()) << "round " << round;
    for (std::size_t i = 0; i < got.size(); ++i) {
      EXPECT_EQ(got[i].row, expected[i].row);
      EXPECT_NEAR(got[i].x, expected[i].x, 1e-6);
      EXPECT_NEAR(got[i].y, expected[i].y, 1e-9);
    }
  }
}

TEST_F(MapTransforms, MapsThatCannotBeShownAreRefused) {
  struct {
    View view;
    wchar_t const* message;
  } const cases[] = {
      {{kNaN, 1, 0, 1}, L"an edge, a size or the reach of the map is not finite"},
      {{0, 1, 0, 1, kDegrees, 0, 100, 100, kInfinity},
       L"an edge, a size or the reach of the map is not finite"},
      {{0, 1, 0, 1, kDegrees, 0, 0, 100}, L"the map has no width or no height"},
      {{0, 1, 0, 1, kDegrees, 0, 100, -1}, L"the map has no width or no height"},
      {{0, 5e-324, 0, 1, kMercator}, L"the map has no width or no height"},
      {{0, 1, 1, 1}, L"the bottom of the map is not below its top"},
      {{0, 1, 86, 87, kMercator}, L"the bottom of the map is not below its top"},
      {{0, 1, 0, 1, kMercator, kNaN}, L"the bottom of the map is not below its top"},
      {{-180, 65 * 360, 0, 1}, L"the map shows more than 64 worlds"},
      {{-1e308, 1e308, 0, 1}, L"the map shows more than 64 worlds"},
      {{1e308, -1e308, 0, 1}, L"the map shows more than 64 worlds"},
      {{1e300, 0, 0, 1}, L"the map shows more than 64 worlds"},
      {{0, 1, 0, 1, kDegrees, 0, 1, 1, 1e9}, L"the map shows more than 64 worlds"},
  };
  for (auto const& [view, message] : cases) {
    try {
      Wrap(Reals({0}), Reals({0}), view);
      ADD_FAILURE() << "not refused: " << OStringCore(message).toUtf8();
    } catch (OrtRuntimeException const& exception) {
      EXPECT_EQ(exception.GetError(), 2);
      EXPECT_EQ(exception.GetMessage(), OStringCore(message));
    }
  }
  View const good{-180, 180, -90, 90};
  EXPECT_EQ(ErrorOf([&] { Wrap(Reals({0}), Reals({}), good); }), 259);
  EXPECT_EQ(ErrorOf([&] { Wrap(Ints({0}), Reals({0}), good); }), 55);
  EXPECT_EQ(ErrorOf([&] { Call(registry_, TransformNames::WRAP_MAPS, {Reals({}), Reals({})}); }), 219);
  EXPECT_THROW(Wrap(Reals({0}), Reals({0}), {-180, 180, -90, 90, 2}), OLogicException);
}

Value Result(Value x, Value y, Value width, Value height) {
  return factory::MakeKeyMap({{L"x", x}, {L"y", y}, {L"width", width}, {L"height", height}});
}
Value Edges(double left, double top, double right, double bottom) {
  return Tuple({R64(left), R64(top), R64(right), R64(bottom)});
}

TEST_F(MapTransforms, ImagesKeepTheirPlaceOnTheMap) {
  Value const lefts = Reals({0, 10, 0, 0, 0}, {kNone, kNone, kNone, kNull, kNone});
  Value const tops = Reals({10, 10, 10, 10, kNaN}),
              rights = Reals({10, 0, 10, 10, 10}, {kNone, kNone, kMissing, kMissing, kNone});
  Value const bottoms = Reals({0, 0, 0, 0, 0});
  std::vector<SpecialKind> const kinds = {kNone, kNone, kMissing, kNull, kMissing};
  auto const column = [&](double first, double second) { return Reals({first, second, 0, 0, 0}, kinds); };
  ExpectEqual(
      Place({lefts, tops, rights, bottoms, Edges(-10, 20, 30, 0), Edges(100, 50, 300, 150), Flag(false)}),
      Result(column(150, 150), column(100, 100), column(50, 50), column(50, 50)));
  Value const all = Reals({0, 0, 0, 0, 0}, {kMissing, kMissing, kMissing, kNull, kMissing});
  ExpectEqual(Place({lefts, tops, rights, bottoms, Edges(5, 20, 5, 0), Edges(0, 0, 1, 1), Flag(true)}),
              Result(all, all, all, all), "nothing is shown");
  ExpectEqual(
      Place({Reals({}), Reals({}), Reals({}), Reals({}), Edges(5, 20, 5, 0), Edges(0, 0, 1, 1), Flag(true)}),
      Result(Reals({}), Reals({}), Reals({}), Reals({})));
  ExpectEqual(Place({Reals({0}), Reals({0}), Reals({1}), Reals({1}), Edges(0, 0, 1, 1),
                     Tuple({I32(0), I64(0), R32(0.5), R64(-1.5), R64(7)}), Flag(true)}),
              Result(Reals({0}), Reals({-1}), Reals({1}), Reals({1})), "halves go up");
}

// Tiles that meet on the map meet in whole pixels, whatever the zoom.
TEST_F(MapTransforms, TilesLeaveNoSeams) {
  std::mt19937 random(5);
  std::uniform_real_distribution<double> number(0.1, 9);
  constexpr int kTiles = 40;
  std::vector<double> lefts, rights;
  double edge = -20;
  for (int i = 0; i < kTiles; ++i) {
    lefts.push_back(edge);
    rights.push_back(edge += number(random));
  }
  for (int round = 0; round < 50; ++round) {
    double const left = -20 + number(random), right = left + 10 * number(random);
    Value const result = Place({Reals(lefts), Reals(rights), Reals(rights), Reals(lefts),
                                Edges(left, right, right, left), Edges(3.3, 7.7, 640.2, 480.9), Flag(true)});
    auto const get = [&](wchar_t const* name, int row) {
      return result->AsNamedValues().Get(name)->AsTypedArray<double>().GetElement(row);
    };
    for (int i = 0; i + 1 < kTiles; ++i) {
      EXPECT_EQ(get(L"x", i) + get(L"width", i), get(L"x", i + 1));
      EXPECT_EQ(get(L"y", i + 1) + get(L"height", i + 1), get(L"y", i));
      EXPECT_EQ(get(L"x", i), std::round(get(L"x", i)));
    }
  }
}

TEST_F(MapTransforms, ImagesOfOtherInputsAreRefused) {
  Value const one = Reals({1}), edges = Edges(0, 0, 1, 1), flag = Flag(true);
  struct {
    std::vector<Value> inputs;
    int error;
  } const cases[] = {
      {{one, one, one, one, edges, edges}, 219},
      {{one, one, one, Reals({}), edges, edges, flag}, 259},
      {{one, Ints({1}), one, one, edges, edges, flag}, 55},
      {{one, one, one, one, Tuple({R64(0), R64(1), R64(1)}), edges, flag}, 219},
      {{one, one, one, one, edges, Tuple({R64(0), R64(1), R64(1), Special(StoreTypeInfo::Real64)}), flag},
       55},
      {{one, one, one, one, edges, Tuple({R64(0), R64(1), R64(1), Text(L"1")}), flag}, 178},
      {{one, one, one, one, R64(1), edges, flag}, 55},
      {{one, one, one, one, edges, edges, I32(1)}, 55},
  };
  int place = 0;
  for (auto const& [inputs, error] : cases) {
    EXPECT_EQ(ErrorOf([&, &given = inputs] { Place(given); }), error) << "case " << place++;
  }
}

}  // namespace
