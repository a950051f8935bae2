#include <gtest/gtest.h>

#include <string_view>

#include "ostreltransforms/TransformNames.h"

namespace {

// Names are read before any initialiser has run: this one runs before the names' own file could.
std::wstring_view const g_early = TransformNames::INVLERP3;

TEST(TransformNames, NeedNoInitialisation) { EXPECT_EQ(g_early, L"3-invlerp"); }

TEST(TransformNames, KeepTheirHistoricalSpellings) {
  struct {
    wchar_t const* name;
    std::wstring_view expected;
  } const cases[] = {
      {TransformNames::DIVIDE_SPECIAL, L"/special"},
      {TransformNames::BITOR_REDUCE, L"bitor"},
      {TransformNames::BITOR_ZIPWITH, L"BitOr"},
      {TransformNames::MAX_ZIPWITH, L"Max"},
      {TransformNames::MIN_ZIPWITH, L"Min"},
      {TransformNames::CURR_STACK_VALUE, L"tc_curr_stack_value"},
      {TransformNames::PREV_STACK_VALUE, L"tc_prev_stack_value"},
      {TransformNames::WRAP_X_FOR_MAPS, L"wrap_x_for_maps"},
      {TransformNames::LOOKUP_INT64, L"lookup_Int64"},
      {TransformNames::LOOKUP_INT64_SPECIAL, L"lookupSpecial_Int64"},
      {TransformNames::IS_PREV_VALUE_NULL_OR_MISSING, L"isPreviousValueNull"},
      {TransformNames::PIXELSCALE_BUBBLES, L"pixelScaleBubbles"},
      {TransformNames::LAYOUT_WORDLE_CELLS, L"layoutWordCloudCells"},
  };
  for (auto const& [name, expected] : cases) EXPECT_EQ(name, expected);
}

}  // namespace
