#include "ostreltransforms/composer/RunColumns.h"

#include <limits>
#include <numeric>

#include "ostreltransforms/VisualKey.h"

namespace OstrelTransforms {
namespace {

using namespace ort::core;
namespace VisualKey = runtime::VisualKey;

double GetShare(std::uint32_t align) { return align == 1 ? 0.5 : align == 2 ? 1.0 : 0.0; }

int AddCounts(std::vector<std::size_t> const& counts) {
  std::size_t const total = std::accumulate(counts.begin(), counts.end(), std::size_t{0});
  if (total > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
    throw OrtRuntimeException(OrtError_WrongValueKind, OStringCore(L"more runs than a column has rows"));
  }
  return static_cast<int>(total);
}

}  // namespace

Anchor GetAnchor(runtime::Composed const& composed, std::uint32_t hAlign, std::uint32_t vAlign) {
  runtime::Rect const& box = composed.GetBounds();
  double const along = GetShare(hAlign);
  double const across = GetShare(vAlign);
  // Turned clockwise, lines run downwards and the next one stands to the left; turned the other way, they run
  // upwards and it stands to the right.
  switch (composed.GetOrientation()) {
    case 1:
      return {box.x + (1 - across) * box.width, box.y + along * box.height};
    case 2:
      return {box.x + across * box.width, box.y + (1 - along) * box.height};
    default:
      return {box.x + along * box.width, box.y + across * box.height};
  }
}

RunColumns::RunColumns(std::vector<std::size_t> const& runCounts)
    : runCount_(AddCounts(runCounts)),
      offset_(StoreTypeInfo::Int32, static_cast<int>(runCounts.size())),
      count_(StoreTypeInfo::Int32, static_cast<int>(runCounts.size())),
      style_(StoreTypeInfo::Int32, runCount_),
      width_(StoreTypeInfo::Real64, static_cast<int>(runCounts.size())),
      height_(StoreTypeInfo::Real64, static_cast<int>(runCounts.size())),
      x_(StoreTypeInfo::Real64, runCount_),
      y_(StoreTypeInfo::Real64, runCount_),
      remoteX_(StoreTypeInfo::Real64, runCount_),
      remoteY_(StoreTypeInfo::Real64, runCount_),
      rows_{offset_.GetValues().data(),  style_.GetValues().data(),  width_.GetValues().data(),
            height_.GetValues().data(),  x_.GetValues().data(),      y_.GetValues().data(),
            remoteX_.GetValues().data(), remoteY_.GetValues().data()} {
  int offset = 0;
  for (std::size_t text = 0; text < runCounts.size(); ++text) {
    offset_.GetValues()[text] = offset;
    count_.GetValues()[text] = static_cast<int>(runCounts[text]);
    offset += count_.GetValues()[text];
  }
}

factory::Value RunColumns::Finish(OStringCore const& contentName, factory::Value content) {
  factory::NamedValues columns;
  columns.emplace(contentName, std::move(content));
  columns.emplace(VisualKey::TextStyleID, style_.Finish());
  columns.emplace(VisualKey::TextRunOffset, offset_.Finish());
  columns.emplace(VisualKey::TextRunCount, count_.Finish());
  columns.emplace(VisualKey::TextRunX, x_.Finish());
  columns.emplace(VisualKey::TextRunY, y_.Finish());
  columns.emplace(VisualKey::TextRunXRemote, remoteX_.Finish());
  columns.emplace(VisualKey::TextRunYRemote, remoteY_.Finish());
  columns.emplace(VisualKey::Width, width_.Finish());
  columns.emplace(VisualKey::Height, height_.Finish());
  return factory::MakeKeyMap(std::move(columns));
}

}  // namespace OstrelTransforms
