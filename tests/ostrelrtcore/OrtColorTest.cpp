#include <gtest/gtest.h>

#include <limits>
#include <type_traits>

#include "ostrelrtcore/OrtColor.h"

namespace ort::core {
namespace {

static_assert(sizeof(OrtColor) == 4 && std::is_trivially_copyable_v<OrtColor>);
static_assert(OrtColor() == OrtColor(0) && OrtColor(1) != OrtColor(2));

TEST(OrtColor, ChannelsAreBytesInArgbOrder) {
  struct Case {
    unsigned argb;
    int a, r, g, b;
  };
  for (auto const& [argb, a, r, g, b] :
       {Case{0x12345678u, 0x12, 0x34, 0x56, 0x78}, Case{0xFF00FF00u, 255, 0, 255, 0},
        Case{0x80000000u, 128, 0, 0, 0}, Case{0x00FF00FFu, 0, 255, 0, 255}}) {
    OrtColor const color(static_cast<int>(argb));
    EXPECT_EQ(color.GetA(), a);
    EXPECT_EQ(color.GetR(), r);
    EXPECT_EQ(color.GetG(), g);
    EXPECT_EQ(color.GetB(), b);
    OrtColor built;
    built.SetA(a);
    built.SetR(r);
    built.SetG(g);
    built.SetB(b);
    EXPECT_EQ(built, color);
    EXPECT_EQ(static_cast<unsigned>(built.GetValue()), argb);
  }
}

TEST(OrtColor, SettersTakeTheLowByteAndLeaveTheOtherChannels) {
  struct Case {
    int given;
    unsigned argb;
  };
  for (auto const& [given, argb] :
       {Case{0, 0x00FFFEFDu}, Case{255, 0xFFFFFEFDu}, Case{256, 0x00FFFEFDu}, Case{-1, 0xFFFFFEFDu},
        Case{-256, 0x00FFFEFDu}, Case{std::numeric_limits<int>::max(), 0xFFFFFEFDu}}) {
    OrtColor color(static_cast<int>(0x42FFFEFDu));
    color.SetA(given);
    EXPECT_EQ(static_cast<unsigned>(color.GetValue()), argb) << given;
  }
}

}  // namespace
}  // namespace ort::core
