#include "ostreltransforms/composer/ComposeShapes.h"

#include "ostrelrtcore/ParallelLoop.h"
#include "ostreltransforms/VisualKey.h"
#include "ostreltransforms/composer/RunColumns.h"
#include "ostreltransforms/composer/RunLists.h"
#include "ostreltransforms/map/ColumnParameter.h"
#include "render/ShapeComposer.h"

namespace OstrelTransforms {
namespace {

using namespace ort::core;
using namespace runtime;

std::vector<Shape> ReadShapes(Value const& ids, Value const& widths, Value const& heights) {
  detail::RequireColumnOf(StoreType::Int32, ids);
  auto const& idRows = ids->AsTypedArray<int>();
  RequireRows(widths, StoreType::Real64, idRows.GetCount(), L"widths");
  RequireRows(heights, StoreType::Real64, idRows.GetCount(), L"heights");
  auto const& widthRows = widths->AsTypedArray<double>();
  auto const& heightRows = heights->AsTypedArray<double>();
  std::vector<Shape> shapes;
  shapes.reserve(static_cast<std::size_t>(idRows.GetCount()));
  for (int row = 0; row < idRows.GetCount(); ++row) {
    shapes.push_back({static_cast<std::uint32_t>(idRows.GetElement(row)),
                      ReadLength(widthRows.GetElement(row), L"widths"),
                      ReadLength(heightRows.GetElement(row), L"heights")});
  }
  return shapes;
}

}  // namespace

Value ComposeShapes(Value const& firstShapes, Value const& counts, Value const& ids, Value const& widths,
                    Value const& heights, double width, double height, int orientation, int hAlign) {
  constexpr int kLastOrientation = 2;
  constexpr int kLastAlignment = 2;
  std::vector<Shape> const shapes = ReadShapes(ids, widths, heights);
  std::vector<RunList> const lists = ReadRunLists(firstShapes, counts, static_cast<int>(shapes.size()));
  Size const size{ReadLength(width, L"width"), ReadLength(height, L"height")};
  RequireWithin(orientation, 0, kLastOrientation, L"orientation");
  RequireWithin(hAlign, 0, kLastAlignment, L"hAlign");

  std::vector<std::size_t> runCounts;
  runCounts.reserve(lists.size());
  for (RunList const& list : lists) runCounts.push_back(static_cast<std::size_t>(list.count));
  RunColumns columns(runCounts);
  auto runIds = factory::MakeColumnBuilder<int>(StoreTypeInfo::Int32, columns.GetRunCount());
  std::span<int> const runIdRows = runIds.GetValues();

  ParallelFor(lists.size(), [&](std::size_t row) {
    RunList const list = lists[row];
    ShapeComposer composer(static_cast<std::uint32_t>(orientation), static_cast<std::uint32_t>(hAlign), true);
    composer.SetWrapMode(WordWrap);
    ComposedShapes composed;
    composer.compose(std::span(shapes).subspan(static_cast<std::size_t>(list.first), runCounts[row]), size,
                     composed);
    columns.WriteSize(row, composed.GetSize());
    Anchor const anchor =
        GetAnchor(composed, composer.GetHorizontalAlignment(), composer.GetVerticalAlignment());
    std::size_t runRow = columns.GetFirstRun(row);
    for (ComposedShapeRun const& run : composed.GetRuns()) {
      columns.WriteRun(runRow, list.first + static_cast<int>(run.styleIndex), run.x, run.y, anchor);
      runIdRows[runRow++] = static_cast<int>(run.shapeId);
    }
  });
  return columns.Finish(VisualKey::ShapeId, runIds.Finish());
}

}  // namespace OstrelTransforms
