#include "services/FamilyList.h"
#include "services/TextMeasurer.h"

namespace ostrel::services {

namespace {

class FixedMeasurer final : public TextMeasurer {
 public:
  float MeasureTextWidth(OStringCore const& text, Value const&) const override {
    return kUnitWidth * static_cast<float>(text.length());
  }
  double MeasureTextWidth(std::u16string_view text, FontRequest const&) const override {
    return kUnitWidth * static_cast<double>(text.size());
  }
  FontMetrics GetMetrics(FontRequest const& font) const override {
    return {0.8 * font.size, font.size, 0.2 * font.size};
  }
  OStringCore ResolveFamily(OStringCore const& family) const override { return family; }
  std::string GetCssFontFamilyList(OStringCore const& family) const override {
    std::string list;
    for (std::string const& name : FamilyList::Split(family.toUtf8())) list += "'" + name + "', ";
    return list + std::string(FamilyList::GetKind(list));
  }
  Value ResolveFont(Value const& font) const override { return font; }

 private:
  static constexpr int kUnitWidth = 10;
};

}  // namespace

std::shared_ptr<TextMeasurer const> MakeFixedMeasurer() { return std::make_shared<FixedMeasurer const>(); }

}  // namespace ostrel::services
