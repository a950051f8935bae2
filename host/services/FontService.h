#pragma once

#include <memory>
#include <string>
#include <vector>

#include "services/TextMeasurer.h"

namespace ostrel::services {

class FontCatalog;
class WidthCache;
class FontSet;

struct FontOptions {
  /// Folders whose fonts come before all others. When there are any, no other fonts are used.
  std::vector<std::string> fontDirectories;
};

/// Measures with the fonts of the machine or of given folders: HarfBuzz shapes, in font units and without
/// hinting, so that the widths are those of a browser that draws with text-rendering geometricPrecision.
///
/// A text is cut by direction and script. What the family's font does not have is set in the fallback fonts,
/// which follow one another in a fixed order; what none has is as wide as the first font's empty box. Only
/// names, weights and slants of the font files decide: neither the machine's font rules nor its locale do.
class FontService final : public TextMeasurer {
 public:
  /// Throws std::runtime_error when a folder can't be read or no font is found.
  explicit FontService(FontOptions const& options = {});
  ~FontService() override;
  FontService(FontService const&) = delete;
  FontService& operator=(FontService const&) = delete;

  float MeasureTextWidth(OStringCore const& text, Value const& font) const override;
  double MeasureTextWidth(std::u16string_view text, FontRequest const& font) const override;
  FontMetrics GetMetrics(FontRequest const& font) const override;
  OStringCore ResolveFamily(OStringCore const& family) const override;
  std::string GetCssFontFamilyList(OStringCore const& family) const override;
  Value ResolveFont(Value const& font) const override;

 private:
  double MeasureEms(std::u16string_view text, FontSet const& fonts) const;

  std::unique_ptr<FontCatalog> catalog_;
  std::unique_ptr<WidthCache> widths_;
};

}  // namespace ostrel::services
