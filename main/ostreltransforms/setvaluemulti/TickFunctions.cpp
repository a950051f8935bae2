#include "ostreltransforms/setvaluemulti/TickFunctions.h"

#include <algorithm>
#include <stdexcept>

#include "ostrelrtcore/Factory.h"
#include "ostreltransforms/CallbackAccess.h"
#include "ostreltransforms/map/ColumnParameter.h"
#include "ostreltransforms/setvaluemulti/LogTicks.h"
#include "ostreltransforms/setvaluemulti/SlotGaps.h"

namespace OstrelTransforms {
namespace {

using namespace ort::core;

// What the labels of an axis have room for.
struct LabelSpace {
  int length;
  bool isHorizontal;
  int gap;
  Value format;
  Value font;
};

// The height of a line in the host's font: of a resolved font (family, size, weight, slant, ascent, height,
// leading) its height, else the size.
double GetFontHeight(Value const& font) {
  constexpr int kSize = 1;
  constexpr int kHeight = 5;
  Value const resolved = ConvertHostValue(font);
  IStoreTuple const& members = resolved->AsTuple();
  return FetchStoreValue<double>(members.GetMember(members.GetCount() > kHeight ? kHeight : kSize));
}

// Every two neighbouring labels inside the domain are at least the gap apart.
class LabelFit {
 public:
  LabelFit(LogTicks::Domain const& domain, LabelSpace const& space) : domain_(domain), space_(space) {}

  bool operator()(std::span<double const> ticks) {
    bool isFirst = true;
    double lastCentre = 0;
    double lastExtent = 0;
    for (double const tick : ticks) {
      if (tick > domain_.maximum) break;
      double const centre = LogTicks::GetPosition(domain_, tick) * space_.length;
      double const extent = GetExtent(tick);
      double const room = centre - lastCentre - (extent + lastExtent) * 0.5;
      if (!isFirst && !(room >= space_.gap)) return false;
      isFirst = false;
      lastCentre = centre;
      lastExtent = extent;
    }
    return true;
  }

 private:
  double GetExtent(double tick) {
    if (space_.isHorizontal)
      return MeasureTextWidth(FormatNumber(tick, space_.format->AsTuple()), space_.font);
    if (height_ < 0) height_ = GetFontHeight(space_.font);
    return height_;
  }

  LogTicks::Domain const& domain_;
  LabelSpace const& space_;
  double height_ = -1;
};

std::optional<std::vector<double>> FindTicks(LogTicks::Domain const& domain, LabelSpace const& space) {
  if (space.length >= 1 && space.format->GetStoreType() == StoreType::Tuple) {
    return LogTicks::ChooseTicks(domain, LabelFit(domain, space));
  }
  return LogTicks::MakeTicks(domain, std::span(&domain.base, 1));
}

}  // namespace

Value CalcLogTicks(std::vector<Value> const& inputs) {
  constexpr std::size_t kInputCount = 9;
  if (inputs.size() < kInputCount) throw std::out_of_range("invalid vector<T> subscript");
  detail::RequireValue(inputs[5]);
  detail::RequireValue(inputs[6]);
  LogTicks::Domain const domain{FetchStoreValue<double>(inputs[0]), FetchStoreValue<double>(inputs[1]),
                                FetchStoreValue<double>(inputs[7]), FetchStoreValue<double>(inputs[8])};
  LabelSpace const space{FetchStoreValue<int>(inputs[2]), FetchStoreValue<bool>(inputs[3]),
                         FetchStoreValue<int>(inputs[4]), inputs[5], inputs[6]};
  if (!LogTicks::IsValid(domain)) {
    throw OrtRuntimeException(
        OrtError_InputKindNotAccepted,
        OStringCore(L"ticks of a log axis need finite ends, a scale above 0 and a base above 1"));
  }
  auto const ticks = FindTicks(domain, space);
  if (!ticks)
    throw OrtRuntimeException(OrtError_InputKindNotAccepted, OStringCore(L"there are more than 10000 ticks"));

  auto column = factory::MakeColumnBuilder<double>(StoreTypeInfo::Real64, static_cast<int>(ticks->size()));
  std::span<double> const positions = column.GetValues();
  for (std::size_t i = 0; i < ticks->size(); ++i) positions[i] = LogTicks::GetPosition(domain, (*ticks)[i]);
  return column.Finish();
}

int TemporalTickFrequency(int a, float factor, int b, Value const& candidates) {
  detail::RequireColumnOf(StoreType::Int32, candidates);
  auto const limit = static_cast<float>(std::max(a, b));
  auto const& column = candidates->AsTypedArray<int>();
  for (int row = 0; row < column.GetCount(); ++row) {
    int const candidate = column.GetElement(row);
    if (static_cast<float>(candidate) * factor > limit && !column.IsSpecial(row)) return candidate;
  }
  return 0;
}

Value FindLargestGap(Value const& slots) {
  detail::RequireColumnOf(StoreType::Int32, slots);
  auto const [first, last] = SlotGaps::FindLargest(slots->AsTypedArray<int>().GetValues());
  return factory::MakeTuple(std::vector{factory::MakeInt32(first), factory::MakeInt32(last)});
}

}  // namespace OstrelTransforms
