#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "ostrelrtcore/ErrorOf.h"
#include "ostrelrtcore/Factory.h"

namespace ort::core {
namespace {

using factory::MakeInt32;
using factory::MakeInt64;
using factory::MakeReal32;
using factory::MakeReal64;
using factory::Value;
using Steps = std::vector<std::vector<Value>>;

// Values of one step are equal by the order; those of an earlier step are less.
void CheckOrder(Steps const& steps) {
  for (std::size_t i = 0; i < steps.size(); ++i) {
    for (std::size_t j = 0; j < steps.size(); ++j) {
      for (std::size_t a = 0; a < steps[i].size(); ++a) {
        for (std::size_t b = 0; b < steps[j].size(); ++b) {
          EXPECT_EQ(steps[i][a]->IsLessThan(*steps[j][b]), i < j)
              << "step " << i << "/" << a << " and " << j << "/" << b;
        }
      }
    }
  }
}

TEST(ValueOrder, ComparesNumbersExactlyAcrossTypes) {
  constexpr int64 kMost = std::numeric_limits<int64>::max();
  constexpr int64 kLeast = std::numeric_limits<int64>::min();
  double const infinity = std::numeric_limits<double>::infinity();
  Steps steps = {{MakeReal64(-infinity), MakeReal32(-std::numeric_limits<float>::infinity())},
                 {MakeReal64(std::nextafter(-0x1p63, -infinity))},
                 {MakeInt64(kLeast), MakeReal64(-0x1p63), MakeReal32(-0x1p63F)},
                 {MakeInt64(kLeast + 1)}};
  // Around 2^53 doubles lose every second integer, around 2^62 most of them.
  for (int64 const base : {-(int64{1} << 62), -(int64{1} << 53)}) {
    auto const gap = static_cast<int64>(std::nextafter(static_cast<double>(-base), infinity)) + base;
    steps.push_back({MakeReal64(static_cast<double>(base - gap)), MakeInt64(base - gap)});
    if (gap > 1) steps.push_back({MakeInt64(base - 1)});
    steps.push_back({MakeReal64(static_cast<double>(base)), MakeInt64(base)});
  }
  for (double const real : {-2.5, -1.5, -0.5}) {
    steps.push_back({MakeReal64(real), MakeReal32(static_cast<float>(real))});
    int const above = static_cast<int>(std::ceil(real));
    steps.push_back(
        {MakeInt32(above), MakeInt64(above), MakeReal64(above), MakeReal32(static_cast<float>(above))});
  }
  steps.back().push_back(MakeReal64(-0.0));
  for (Value const& value :
       {MakeReal64(5e-324), MakeReal32(1e-45F), MakeReal32(0.1F), MakeInt32(1), MakeReal64(1.5)})
    steps.push_back({value});
  steps.insert(steps.end() - 2, {MakeReal64(std::nextafter(1.0, 0.0))});
  steps.push_back({MakeInt64((int64{1} << 53) - 1), MakeReal64(0x1p53 - 1)});
  steps.push_back({MakeInt64(int64{1} << 53), MakeReal64(0x1p53), MakeReal32(0x1p53F)});
  steps.push_back({MakeInt64((int64{1} << 53) + 1)});
  steps.push_back({MakeInt64((int64{1} << 53) + 2), MakeReal64(0x1p53 + 2)});
  steps.push_back({MakeInt64(kMost - 1)});
  steps.push_back({MakeInt64(kMost)});
  steps.push_back({MakeReal64(0x1p63), MakeReal32(0x1p63F)});
  steps.push_back({MakeReal64(infinity)});
  CheckOrder(steps);
  for (auto const& step : steps) {
    for (auto const& nan : {MakeReal64(std::nan("")), MakeReal32(std::nanf(""))}) {
      EXPECT_FALSE(step.front()->IsLessThan(*nan));
      EXPECT_FALSE(nan->IsLessThan(*step.front()));
    }
  }
}

TEST(ValueOrder, ComparesInstantsAndTexts) {
  auto const at = [](uint64 ticks) {
    auto const instant = OrtDateTime::FromValue(ticks);
    return std::vector<Value>{factory::MakeDate(instant), factory::MakeDateTime(instant)};
  };
  CheckOrder({at(0), at(1), at(uint64{1} << 63), at(~uint64{0})});
  auto const text = [](wchar_t const* t) { return std::vector<Value>{factory::MakeString(OStringCore(t))}; };
  CheckOrder(
      {text(L""), text(L"B"), text(L"a"), text(L"ab"), text(L"b"), text(L"\U0001F600"), text(L"\xFF00")});
}

TEST(ValueOrder, RefusesEverythingElse) {
  auto const special = factory::MakeSpecial(StoreTypeInfo::Int32, SpecialKind::Null);
  auto const specialText = factory::MakeSpecial(StoreTypeInfo::String, SpecialKind::Null);
  auto const tuple = factory::MakeTuple(std::vector<Value>{});
  std::vector<Value> const values = {MakeInt32(1),
                                     factory::MakeDate(OrtDateTime()),
                                     factory::MakeString(OStringCore(L"a")),
                                     factory::MakeBool(true),
                                     factory::MakeColor(OrtColor()),
                                     tuple,
                                     special,
                                     specialText};
  for (std::size_t i = 0; i < values.size(); ++i) {
    for (std::size_t j = 0; j < values.size(); ++j) {
      if (i == j && i < 3) continue;
      std::string const message = StoreTypeToString(values[i]->GetStoreType()).toUtf8() +
                                  " ordered against " + StoreTypeToString(values[j]->GetStoreType()).toUtf8();
      EXPECT_EQ(ErrorOf([&] { values[i]->IsLessThan(*values[j]); }), Error(220, message));
    }
  }
}

}  // namespace
}  // namespace ort::core
