#include "ostreltransforms/wordle/SizeClasses.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>

namespace OstrelTransforms::WordCloud {
namespace {

constexpr std::uint32_t kNoClass = std::numeric_limits<std::uint32_t>::max();
constexpr std::size_t kMostClasses = 128, kWordsForClass = 8;
// The finest classes divide each doubling of a size by these.
constexpr double kStepsForDoubling = 16;
// Cells of a map for the width or height of a usual word, and at most across the bounds.
constexpr double kCellsForWord = 8, kMostCellsAcross = 1024;
// Few words are looked through faster than a map is made.
constexpr std::size_t kFewestWords = 16;
// A word so many times as large as the bounds leaves nothing to look for.
constexpr double kMostTimesBounds = 4;
// What all maps may take, and what all kept answers may; beyond it a search asks more often.
constexpr std::size_t kMostMapBytes = std::size_t{64} << 20;
constexpr std::size_t kMostRejectedBlocks = (std::size_t{64} << 20) / sizeof(std::uint64_t);
constexpr double kFarMargin = 1e250;

// Where a size stands among the classes; sizes that are not above 0 have logarithms that are not finite.
int FindStep(double logarithm, double steps) {
  return std::isfinite(logarithm) ? static_cast<int>(std::floor(logarithm * steps)) : INT32_MIN;
}

double FindMiddle(std::vector<double> values) {
  auto const middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

double FindCellSize(std::vector<double> const& sizes, double bound, double bounds) {
  double const most = std::min(kMostCellsAcross, 64 * std::sqrt(static_cast<double>(sizes.size())));
  // The last keeps all positions of the spiral within what a map takes.
  return std::max({FindMiddle(sizes) / kCellsForWord, bound / most, bounds * 0x1p-20});
}

}  // namespace

SizeClasses::SizeClasses(Words const& words, Bounds const& bounds, double gap)
    : words_(words),
      bounds_(bounds),
      classOf_(words.widths.size(), kNoClass),
      mapBytesLeft_(kMostMapBytes),
      rejectedBlocksLeft_(kMostRejectedBlocks) {
  // An infinite gap blocks all positions, or none.
  margin_ = std::clamp(gap / 2, -kFarMargin, kFarMargin);
  slack_ = std::abs(margin_) * 1e-12;
  if (bounds.width > 0 && bounds.height > 0) Divide();
}

bool SizeClasses::IsUsable(double width, double height) const {
  return std::abs(width) <= kMostTimesBounds * bounds_.width &&
         std::abs(height) <= kMostTimesBounds * bounds_.height;
}

void SizeClasses::Divide() {
  std::vector<std::uint32_t> usable;
  std::vector<double> widths, heights;
  for (std::uint32_t i = 0; i < classOf_.size(); ++i) {
    if (!IsUsable(words_.widths[i], words_.heights[i])) continue;
    usable.push_back(i);
    widths.push_back(words_.widths[i]);
    heights.push_back(words_.heights[i]);
  }
  if (usable.size() < kFewestWords) return;
  double const sum = bounds_.width + bounds_.height;
  scale_ = {1 / FindCellSize(widths, bounds_.width, sum), 1 / FindCellSize(heights, bounds_.height, sum)};
  if (!std::isfinite(scale_.x) || !std::isfinite(scale_.y)) return;

  for (double& width : widths) width = std::log2(width);
  for (double& height : heights) height = std::log2(height);
  std::size_t const most = std::clamp(usable.size() / kWordsForClass, std::size_t{1}, kMostClasses);
  std::map<std::pair<int, int>, std::uint32_t> ids;
  std::vector<std::uint32_t> idOf(usable.size());
  double steps = kStepsForDoubling;
  for (bool isDivided = false; !isDivided; steps /= 2) {
    ids.clear();
    isDivided = true;
    for (std::size_t i = 0; i < usable.size() && isDivided; ++i) {
      auto const id = static_cast<std::uint32_t>(ids.size());
      idOf[i] = ids.try_emplace({FindStep(widths[i], steps), FindStep(heights[i], steps)}, id).first->second;
      // With few steps all that is left apart are signs and the two sides of 1.
      isDivided = ids.size() <= most || steps < 0x1p-12;
    }
  }
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  classes_.resize(ids.size());
  for (Class& sizes : classes_) {
    sizes.width = sizes.height = kInfinity;
    sizes.mostWidth = sizes.mostHeight = -kInfinity;
  }
  for (std::size_t i = 0; i < usable.size(); ++i) {
    Class& sizes = classes_[classOf_[usable[i]] = idOf[i]];
    double const width = words_.widths[usable[i]], height = words_.heights[usable[i]];
    sizes.width = std::min(sizes.width, width);
    sizes.height = std::min(sizes.height, height);
    sizes.mostWidth = std::max(sizes.mostWidth, width);
    sizes.mostHeight = std::max(sizes.mostHeight, height);
    ++sizes.wordsLeft;
  }
}

SizeClasses::Knowledge SizeClasses::Look(std::size_t word, Phase phase, double reach,
                                         std::vector<Rectangle> const& placed) {
  if (classOf_[word] == kNoClass) return {};
  Class& sizes = classes_[classOf_[word]];
  double const width = words_.widths[word], start = words_.starts[word];
  double const x0 = (bounds_.width - width) * start;
  if (!(std::max((std::abs(x0) + reach) * scale_.x, reach * scale_.y) < PositionMap::kMostCells / 4)) {
    return {};
  }
  PositionMap const* const map = FindMap(sizes, phase, placed);
  if (map == nullptr) return {};
  double const fraction = std::clamp(start, 0.0, 1.0);
  double const left = x0 + (width - sizes.width) * fraction, top = (bounds_.height - sizes.height) / 2;
  Knowledge known{map, map->FindX(left), map->FindY(top), nullptr};
  if (fraction == start) {
    known.rejected = &FindStart(sizes, start).rejected[static_cast<std::size_t>(phase)];
  }
  return known;
}

bool SizeClasses::MakeRoom(std::vector<std::uint64_t>& rejected, std::size_t block) {
  if (block < rejected.size()) return true;
  std::size_t const former = rejected.capacity();
  if (block >= former) {
    std::size_t const wanted = std::max(block + 1, 2 * former);
    if (wanted - former > rejectedBlocksLeft_) return false;
    rejected.reserve(wanted);
    rejectedBlocksLeft_ -= std::min(rejectedBlocksLeft_, rejected.capacity() - former);
  }
  rejected.resize(block + 1);
  return true;
}

SizeClasses::SharedStart& SizeClasses::FindStart(Class& sizes, double start) {
  for (SharedStart& shared : sizes.starts) {
    if (shared.start == start) return shared;
  }
  SharedStart& shared = sizes.starts[sizes.nextStart++ % sizes.starts.size()];
  shared.start = start;
  for (auto& rejected : shared.rejected) rejected.clear();
  return shared;
}

PositionMap const* SizeClasses::FindMap(Class& sizes, Phase phase, std::vector<Rectangle> const& placed) {
  PositionMap& map = sizes.maps[static_cast<std::size_t>(phase)];
  if (map.IsMade()) return &map;
  Rectangle area = {0, 0, bounds_.width - sizes.width, bounds_.height - sizes.height};
  if (phase == Phase::PartlyVisible) {
    // Where the class' rectangle may stand when any word of it is visible; a cell on each side for rounding.
    double const cellWidth = 1 / scale_.x, cellHeight = 1 / scale_.y;
    area = {-sizes.mostWidth - cellWidth, -sizes.mostHeight - cellHeight,
            bounds_.width + sizes.mostWidth - sizes.width + cellWidth,
            bounds_.height + sizes.mostHeight - sizes.height + cellHeight};
  }
  std::size_t const bytes = PositionMap::CountBytes(area, scale_);
  if (bytes > mapBytesLeft_) return nullptr;
  mapBytesLeft_ -= bytes;
  map = PositionMap(area, scale_);
  for (Rectangle const& rectangle : placed) Block(map, sizes, rectangle);
  if (std::find(active_.begin(), active_.end(), &sizes) == active_.end()) active_.push_back(&sizes);
  return &map;
}

void SizeClasses::Block(PositionMap& map, Class const& sizes, Rectangle const& placed) const {
  map.Block({placed.left - margin_ - sizes.width, placed.top - margin_ - sizes.height, placed.right + margin_,
             placed.bottom + margin_},
            slack_);
}

void SizeClasses::Add(Rectangle const& placed) {
  for (Class* const sizes : active_) {
    for (PositionMap& map : sizes->maps) {
      if (map.IsMade()) Block(map, *sizes, placed);
    }
  }
}

void SizeClasses::Leave(std::size_t word) {
  if (classOf_[word] == kNoClass) return;
  Class& sizes = classes_[classOf_[word]];
  if (--sizes.wordsLeft != 0) return;
  std::erase(active_, &sizes);
  for (SharedStart const& shared : sizes.starts) {
    for (auto const& rejected : shared.rejected) rejectedBlocksLeft_ += rejected.capacity();
  }
  sizes = Class{};
}

}  // namespace OstrelTransforms::WordCloud
