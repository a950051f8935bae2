#include <gtest/gtest.h>

#include "ostreltransforms/TransformNames.h"
#include "ostreltransforms/VisualKey.h"

namespace {

using namespace runtime;

TEST(VisualKey, SeveralSymbolsShareOneColumn) {
  struct {
    OStringCore const& first;
    OStringCore const& second;
    wchar_t const* text;
  } const cases[] = {
      {VisualKey::DomainExtentsBottom, VisualKey::PaneDomainBottom, L"pane_domain_bottom"},
      {VisualKey::DomainExtentsLeft, VisualKey::PaneDomainLeft, L"pane_domain_left"},
      {VisualKey::DomainExtentsRight, VisualKey::PaneDomainRight, L"pane_domain_right"},
      {VisualKey::DomainExtentsTop, VisualKey::PaneDomainTop, L"pane_domain_top"},
      {VisualKey::MapDomainExtentsBottom, VisualKey::PaneMapDomainBottom, L"pane_map_bottom"},
      {VisualKey::MapDomainExtentsLeft, VisualKey::PaneMapDomainLeft, L"pane_map_left"},
      {VisualKey::MapDomainExtentsRight, VisualKey::PaneMapDomainRight, L"pane_map_right"},
      {VisualKey::MapDomainExtentsTop, VisualKey::PaneMapDomainTop, L"pane_map_top"},
      {VisualKey::PixelExtentsBottom, VisualKey::PanePxBottom, L"pane_px_bottom"},
      {VisualKey::PixelExtentsLeft, VisualKey::PanePxLeft, L"pane_px_left"},
      {VisualKey::PixelExtentsRight, VisualKey::PanePxRight, L"pane_px_right"},
      {VisualKey::PixelExtentsTop, VisualKey::PanePxTop, L"pane_px_top"},
  };
  for (auto const& [first, second, text] : cases) {
    EXPECT_EQ(first, OStringCore(text)) << OStringCore(text).toUtf8();
    EXPECT_EQ(second, OStringCore(text)) << OStringCore(text).toUtf8();
  }
  EXPECT_EQ(VisualKey::CurrStackedVal, OStringCore(TransformNames::CURR_STACK_VALUE));
  EXPECT_EQ(VisualKey::PrevStackedVal, OStringCore(TransformNames::PREV_STACK_VALUE));
}

}  // namespace
