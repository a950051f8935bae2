#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ostrelrtcore/NearestName.h"

namespace ort::core {
namespace {

TEST(NearestNameTest, FindsWhatWasMeant) {
  std::vector<std::string> const names = {"Horsepower", "Miles_per_Gallon", "Name", "Game", "x"};
  struct Case {
    char const* name;
    char const* nearest;
  };
  Case const cases[] = {{"Horsepwr", "Horsepower"},
                        {"horsepower", "Horsepower"},
                        {"Hosrepower", "Horsepower"},
                        {"Naem", "Name"},
                        {"ame", "Name"},
                        {"Miles per Gallon", "Miles_per_Gallon"},
                        {"Weight", ""},
                        {"y", "x"},
                        {"", "x"},
                        {"xyz", ""}};
  for (auto const& [name, nearest] : cases) EXPECT_EQ(NearestName(name, names), nearest) << name;
  EXPECT_EQ(NearestName("x", {}), "");
  EXPECT_EQ(NearestName(std::string(1'000'000, 'a'), std::vector<std::string>{std::string(1'000'000, 'b')}),
            "");
}

}  // namespace
}  // namespace ort::core
