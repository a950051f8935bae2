#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

#include "charts/functions/Palettes.h"
#include "ostrelrtcore/ErrorOf.h"

namespace {

using namespace ostrel::charts;
using ort::core::Error;
using ort::core::ErrorOf;
using Colors = std::vector<int>;

Colors Argb(std::initializer_list<unsigned> rgb) {
  Colors colors;
  for (unsigned const color : rgb) colors.push_back(static_cast<int>(0xFF000000U | color));
  return colors;
}

TEST(Palettes, GiveThePublishedColours) {
  struct {
    char const* name;
    int count;
    Colors colors;
  } const cases[] = {
      {"tableau10", 3, Argb({0x4c78a8, 0xf58518, 0xe45756})},
      {"Tableau10", 1, Argb({0x4c78a8})},
      {"category10", 4, Argb({0x1f77b4, 0xff7f0e, 0x2ca02c, 0xd62728})},
      {"set2", 10,
       Argb({0x66c2a5, 0xfc8d62, 0x8da0cb, 0xe78ac3, 0xa6d854, 0xffd92f, 0xe5c494, 0xb3b3b3, 0x66c2a5,
             0xfc8d62})},
      {"viridis", 2, Argb({0x440154, 0xfde725})},
      {"viridis", 3, Argb({0x440154, 0x21918d, 0xfde725})},
      {"viridis", 1, Argb({0x21918d})},
      {"redblue", 2, Argb({0x8c0d25, 0x134b85})},
      {"set1", 0, {}},
      {"viridis", 0, {}},
  };
  for (auto const& [name, count, colors] : cases) {
    EXPECT_EQ(MakePaletteColors(name, count), colors) << name << ", " << count;
  }
}

TEST(Palettes, OfEveryNameHaveTheAskedLengthAreOpaqueAndRepeatable) {
  auto const names = ListPaletteNames();
  EXPECT_EQ(std::set(names.begin(), names.end()).size(), names.size());
  for (std::string_view const name : names) {
    for (int const count : {0, 1, 2, 5, 300}) {
      Colors const colors = MakePaletteColors(name, count);
      EXPECT_EQ(static_cast<int>(colors.size()), count) << name;
      EXPECT_TRUE(std::ranges::all_of(colors, [](int color) {
        return static_cast<unsigned>(color) >> 24 == 0xFF;
      })) << name;
    }
    // A shorter palette begins as a longer one does, in lists and in ramps.
    EXPECT_EQ(MakePaletteColors(name, 2)[0], MakePaletteColors(name, 300)[0]) << name;
  }
}

TEST(Palettes, OfDiscreteValuesLeaveTheEndsOfRamps) {
  for (std::string_view const name : ListPaletteNames()) {
    for (int const count : {0, 1, 2, 5, 8}) {
      Colors whole = MakePaletteColors(name, count + 2);
      bool const isRamp = whole.back() != MakePaletteColors(name, count + 3)[whole.size() - 1];
      if (isRamp) whole.erase(whole.begin());
      whole.resize(static_cast<std::size_t>(count));
      EXPECT_EQ(MakePaletteColors(name, count, PaletteEnds::Left), whole) << name << ", " << count;
    }
  }
}

TEST(Palettes, RampsTakeMiddlesLinearly) {
  for (char const* name : {"viridis", "magma", "blues", "redblue", "cividis"}) {
    Colors const coarse = MakePaletteColors(name, 3);
    Colors const fine = MakePaletteColors(name, 5);
    EXPECT_EQ(coarse, (Colors{fine[0], fine[2], fine[4]})) << name;
    EXPECT_EQ(MakePaletteColors(name, 1)[0], coarse[1]) << name;
  }
  // Eleven stops: twenty-one colours hold one between every two.
  Colors const stops = MakePaletteColors("blues", 11);
  Colors const both = MakePaletteColors("blues", 21);
  for (std::size_t i = 0; i + 1 < stops.size(); ++i) {
    EXPECT_EQ(both[2 * i], stops[i]);
    for (int shift : {0, 8, 16}) {
      int const sum = (stops[i] >> shift & 0xFF) + (stops[i + 1] >> shift & 0xFF);
      EXPECT_EQ(both[2 * i + 1] >> shift & 0xFF, (sum + 1) / 2) << i;
    }
  }
}

TEST(Palettes, RefuseWhatIsNone) {
  struct {
    char const* name;
    int count;
    Error error;
  } const cases[] = {
      {"viridsi", 3, {2, "no colour scheme 'viridsi'; did you mean 'viridis'?"}},
      {"TABLEAU1", 3, {2, "no colour scheme 'TABLEAU1'; did you mean 'tableau10'?"}},
      {"something", 3, {2, "no colour scheme 'something'"}},
      {"", 3, {2, "no colour scheme ''"}},
      {"viridis", -1, {55, "a palette of -1 colours"}},
      {"viridis", 1'000'001, {55, "a palette of 1000001 colours"}},
      {"something", -1, {55, "a palette of -1 colours"}},
  };
  for (auto const& row : cases) {
    EXPECT_EQ(ErrorOf([&] { MakePaletteColors(row.name, row.count); }), row.error);
  }
  EXPECT_EQ(MakePaletteColors("set1", 1'000'000).size(), 1'000'000U);
}

}  // namespace
