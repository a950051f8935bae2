#include "services/FontService.h"

#include <cmath>

#include "ostrelrtcore/Factory.h"
#include "services/FamilyList.h"
#include "services/FontCatalog.h"
#include "services/ThreadShaper.h"
#include "services/WidthCache.h"

namespace ostrel::services {

using namespace ort::core;

namespace {

bool IsInvisible(char16_t unit) {
  return unit < 0x20 || (unit >= 0x7F && unit < 0xA0) || unit == 0x200B || unit == 0xFEFF;
}

// What a thread asked last, so that no name is looked up twice in a row.
struct LastRequest {
  std::uint64_t catalog = 0;
  OStringCore family;
  int weight = 0;
  int slant = 0;
  FontSet const* fonts = nullptr;
};

constexpr std::size_t kRequestsKept = 4;

FontSet const& FindFontSet(FontCatalog const& catalog, OStringCore const& family, int weight, int slant) {
  thread_local LastRequest kept[kRequestsKept];
  thread_local std::size_t oldest = 0;
  for (LastRequest const& last : kept) {
    if (last.catalog == catalog.GetId() && last.weight == weight && last.slant == slant &&
        last.family == family) {
      return *last.fonts;
    }
  }
  FontSet const& fonts = catalog.GetFontSet(family.toUtf8(), weight, slant);
  kept[oldest] = {catalog.GetId(), family, weight, slant, &fonts};
  oldest = (oldest + 1) % kRequestsKept;
  return fonts;
}

void AppendQuoted(std::string& list, std::string_view name) {
  if (!list.empty()) list += ", ";
  list += '\'';
  for (char const c : name) {
    if (c == '\'' || c == '\\') list += '\\';
    list += c;
  }
  list += '\'';
}

}  // namespace

FontService::FontService(FontOptions const& options)
    : catalog_(std::make_unique<FontCatalog>(options.fontDirectories)),
      widths_(std::make_unique<WidthCache>()) {}

FontService::~FontService() = default;

double FontService::MeasureEms(std::u16string_view text, FontSet const& fonts) const {
  FontFace const& face = fonts.GetFace(0);
  if (auto const units = face.GetPairs().Measure(text)) {
    return static_cast<double>(*units) / face.GetUnitsPerEm();
  }
  if (auto const known = widths_->Find(fonts.GetId(), text)) return *known;
  std::u16string visible;
  for (char16_t const unit : text) {
    if (!IsInvisible(unit)) visible += unit;
  }
  auto const plain = visible.size() < text.size() ? face.GetPairs().Measure(visible) : std::nullopt;
  double const ems = plain ? static_cast<double>(*plain) / face.GetUnitsPerEm()
                           : ThreadShaper::Get().MeasureEms(visible, fonts);
  widths_->Insert(fonts.GetId(), text, ems);
  return ems;
}

double FontService::MeasureTextWidth(std::u16string_view text, FontRequest const& font) const {
  return MeasureEms(text, FindFontSet(*catalog_, font.family, font.weight, font.slant)) * font.size;
}

float FontService::MeasureTextWidth(OStringCore const& text, Value const& font) const {
  // A composition measures with few font values, so each thread knows the last ones by address; they are
  // held, so that no other value takes that address.
  struct LastFont {
    std::uint64_t catalog = 0;
    Value font;
    double size = 0;
    FontSet const* fonts = nullptr;
  };
  thread_local LastFont kept[kRequestsKept];
  thread_local std::size_t oldest = 0;
  LastFont const* found = nullptr;
  for (LastFont const& last : kept) {
    if (last.font == font && last.catalog == catalog_->GetId()) found = &last;
  }
  if (found == nullptr) {
    FontRequest const request = ReadFont(font);
    FontSet const& fonts = FindFontSet(*catalog_, request.family, request.weight, request.slant);
    kept[oldest] = {catalog_->GetId(), font, request.size, &fonts};
    found = &kept[oldest];
    oldest = (oldest + 1) % kRequestsKept;
  }
  return static_cast<float>(MeasureEms(text.view(), *found->fonts) * found->size);
}

FontMetrics FontService::GetMetrics(FontRequest const& font) const {
  FaceMetrics const& metrics =
      FindFontSet(*catalog_, font.family, font.weight, font.slant).GetFace(0).GetMetrics();
  return {metrics.ascent * font.size, (metrics.ascent + metrics.descent) * font.size,
          metrics.lineGap * font.size};
}

OStringCore FontService::ResolveFamily(OStringCore const& family) const {
  return OStringCore::fromUtf8(catalog_->ResolveFamily(family.toUtf8()));
}

std::string FontService::GetCssFontFamilyList(OStringCore const& family) const {
  std::string const own = catalog_->ResolveFamily(family.toUtf8());
  std::string list;
  AppendQuoted(list, own);
  for (std::string const& fallback : catalog_->GetFallbackFamilies()) {
    if (fallback != own) AppendQuoted(list, fallback);
  }
  return list + ", " + std::string(FamilyList::GetKind(own));
}

Value FontService::ResolveFont(Value const& font) const {
  FontRequest request = ReadFont(font);
  request.family = ResolveFamily(request.family);
  FontMetrics const metrics = GetMetrics(request);
  return factory::MakeTuple({factory::MakeString(request.family), factory::MakeReal64(request.size),
                             factory::MakeInt32(request.weight), factory::MakeInt32(request.slant),
                             factory::MakeReal64(metrics.ascent), factory::MakeReal64(metrics.height),
                             factory::MakeReal64(metrics.leading)});
}

}  // namespace ostrel::services
