#include "ostreltransforms/setvaluemulti/TreemapFunctions.h"

#include "ostrelrtcore/Factory.h"
#include "ostreltransforms/VisualKey.h"
#include "ostreltransforms/map/ColumnParameter.h"
#include "ostreltransforms/setvaluemulti/TreemapLayout.h"

namespace OstrelTransforms {

using namespace ort::core;

Value ComputeTreemapNodesLayout(Value const& parents, Value const& sizes, double width, double height,
                                Value const& headers, Value const& paddings) {
  ColumnParameter<int> const parentRows(parents);
  ColumnParameter<double> const sizeRows(sizes), headerRows(headers), paddingRows(paddings);
  int const count = parents->AsColumn().GetCount();
  if (sizeRows.GetCount() != parentRows.GetCount()) throw OrtRuntimeException(OrtError_LengthsDiffer);

  // The slot of a special row is 0, which would be a parent.
  std::span<int const> rows(parentRows.GetData(), parentRows.GetCount());
  std::vector<int> withoutSpecials;
  if (parents->AsColumn().HasSpecials()) {
    withoutSpecials.assign(rows.begin(), rows.end());
    for (int const row : parents->AsColumn().GetSpecialRows())
      withoutSpecials[static_cast<std::size_t>(row)] = -1;
    rows = withoutSpecials;
  }

  auto const makeColumn = [&] { return factory::MakeColumnBuilder<double>(StoreTypeInfo::Real64, count); };
  auto left = makeColumn(), top = makeColumn(), right = makeColumn(), bottom = makeColumn();
  auto headerHeights = makeColumn(), totals = makeColumn();
  auto levels = factory::MakeColumnBuilder<int>(StoreTypeInfo::Int32, count);
  TreemapLayout::Compute(rows, {sizeRows.GetData(), sizeRows.GetCount()},
                         {.width = width,
                          .height = height,
                          .headers = {headerRows.GetData(), headerRows.GetCount()},
                          .paddings = {paddingRows.GetData(), paddingRows.GetCount()}},
                         {.left = left.GetValues(),
                          .top = top.GetValues(),
                          .right = right.GetValues(),
                          .bottom = bottom.GetValues(),
                          .headerHeights = headerHeights.GetValues(),
                          .sizes = totals.GetValues(),
                          .levels = levels.GetValues()});
  namespace Key = runtime::VisualKey;
  return factory::MakeKeyMap({{Key::X, left.Finish()},
                              {Key::Y, top.Finish()},
                              {Key::X1, right.Finish()},
                              {Key::Y1, bottom.Finish()},
                              {Key::Size, totals.Finish()},
                              {L"header_height", headerHeights.Finish()},
                              {L"level", levels.Finish()}});
}

}  // namespace OstrelTransforms
