#include "ostreltransforms/wordle/WordCloud.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <optional>

#include "ostreltransforms/wordle/PlacedWords.h"
#include "ostreltransforms/wordle/SizeClasses.h"
#include "ostreltransforms/wordle/Spiral.h"

namespace OstrelTransforms::WordCloud {
namespace {

constexpr std::size_t kMostCandidatesInAll = 10'000'000'000;

struct Word {
  double width, height;
  double x0, yc, reach;

  // The rectangle of a candidate.
  Rectangle MakeRectangle(Spiral::Offset const& offset) const {
    double const left = x0 + offset.x, top = yc + offset.y - height;
    return {left, top, left + width, top + height};
  }
};

// The distance to the farthest corner of the widened bounds; not finite where one of the distances is not.
double FindReach(Word const& word, Bounds const& bounds) {
  double reach = 0;
  for (double const x : {-word.width, bounds.width}) {
    for (double const y : {0.0, bounds.height + word.height}) {
      double const distance = std::hypot(x - word.x0, y - word.yc);
      if (!std::isfinite(distance)) return distance;
      reach = std::max(reach, distance);
    }
  }
  return reach;
}

// The usual width or height of the words.
double FindMean(std::span<double const> sizes, double bound) {
  double sum = 0;
  std::size_t count = 0;
  for (double const size : sizes) {
    if (!(size > 0 && size <= bound)) continue;
    sum += size;
    ++count;
  }
  return count == 0 ? bound : sum / static_cast<double>(count);
}

class Layout {
 public:
  Layout(Words const& words, Bounds const& bounds, double gap)
      : words_(words),
        bounds_(bounds),
        margin_(gap / 2),
        placed_(bounds.width, bounds.height, 1.5 * FindMean(words.widths, bounds.width),
                1.5 * FindMean(words.heights, bounds.height), words.widths.size()),
        sizes_(words, bounds, gap) {}

  Place PlaceWord(std::size_t index) {
    std::optional<Rectangle> const found = FindPlace(index);
    if (found) {
      grown_.push_back(found->Grow(margin_));
      placed_.Add(grown_.back());
    }
    sizes_.Leave(index);
    if (!found) return {0, 0, false};
    sizes_.Add(grown_.back());
    return {found->left, found->top, true};
  }

 private:
  // Candidates from one to before another, as far as they lie within the word's reach.
  struct Stretch {
    std::size_t first, end;
  };

  std::optional<Rectangle> FindPlace(std::size_t index) {
    if (tried_ >= kMostCandidatesInAll) return {};
    Word word{words_.widths[index], words_.heights[index], 0, 0, 0};
    word.x0 = (bounds_.width - word.width) * words_.starts[index];
    word.yc = (bounds_.height + word.height) / 2;
    word.reach = FindReach(word, bounds_);
    if (!std::isfinite(word.reach)) return {};

    Stretch stretch{0, Spiral::kMostCandidates};
    if (!(word.width > bounds_.width || word.height > bounds_.height)) {
      if (auto const found = Search<Phase::Whole>(index, word, stretch)) return found;
      // Of the candidates that one word may try the first phase has taken some.
      std::size_t const left = Spiral::kMostCandidates - stretch.end;
      stretch.first = FindFirstClipped(word, stretch.end);
      stretch.end = std::min(stretch.end, stretch.first + left);
      if (stretch.first == stretch.end) return {};
    }
    return Search<Phase::PartlyVisible>(index, word, stretch);
  }

  // The first candidate of a stretch that is accepted. Where there is none, the stretch ends afterwards with
  // the word's reach.
  template <Phase phase>
  std::optional<Rectangle> Search(std::size_t index, Word const& word, Stretch& stretch) {
    SizeClasses::Knowledge const known = sizes_.Look(index, phase, word.reach, grown_);
    for (std::size_t block = stretch.first / Spiral::kBlockSize;; ++block) {
      std::size_t const begin = block * Spiral::kBlockSize;
      if (begin >= stretch.end) break;
      Spiral::Offset const* const offsets = spiral_.GetBlock(block);
      std::uint64_t open = ~std::uint64_t{0};
      if (stretch.first > begin) open <<= stretch.first - begin;
      if (!spiral_.IsWithin(block, word.reach)) {
        stretch.end = std::min(stretch.end, begin + spiral_.CountWithin(block, word.reach));
      }
      if (stretch.end <= begin) break;
      if (RejectsAll<phase>(word, spiral_.GetExtent(block))) continue;
      if (stretch.end - begin < Spiral::kBlockSize) open &= ~(~std::uint64_t{0} << (stretch.end - begin));
      if (auto const found = SearchBlock<phase>(known, block, open, word, offsets)) {
        tried_ += begin + *found + 1 - stretch.first;
        return word.MakeRectangle(offsets[*found]);
      }
    }
    tried_ += stretch.end - stretch.first;
    return {};
  }

  // Whether the word that is in the way, or the bounds, tell for all candidates of a block at once. Rounding
  // keeps the order of numbers, so that what holds for the outermost offsets holds for those between.
  template <Phase phase>
  bool RejectsAll(Word const& word, Spiral::Extent const& extent) const {
    Rectangle const first = word.MakeRectangle(extent.least), last = word.MakeRectangle(extent.greatest);
    bool const isOutside =
        phase == Phase::Whole
            ? last.left < 0 || last.top < 0 || first.right > bounds_.width || first.bottom > bounds_.height
            : last.right <= 0 || last.bottom <= 0 || first.left >= bounds_.width ||
                  first.top >= bounds_.height;
    Rectangle const least = first.Grow(margin_), greatest = last.Grow(margin_);
    Rectangle const& blocker = placed_.GetBlocker();
    return isOutside || (greatest.left < blocker.right && blocker.left < least.right &&
                         greatest.top < blocker.bottom && blocker.top < least.bottom);
  }

  template <Phase phase>
  std::optional<std::size_t> SearchBlock(SizeClasses::Knowledge const& known, std::size_t block,
                                         std::uint64_t open, Word const& word,
                                         Spiral::Offset const* offsets) {
    std::uint64_t* rejected = nullptr;
    if (known.rejected != nullptr && sizes_.MakeRoom(*known.rejected, block)) {
      rejected = known.rejected->data() + block;
      open &= ~*rejected;
    }
    if (known.map != nullptr) {
      std::uint64_t const blocked = FindBlocked(known, open, offsets);
      if (rejected != nullptr) *rejected |= blocked;
      open &= ~blocked;
    }
    for (; open != 0; open &= open - 1) {
      auto const candidate = static_cast<std::size_t>(std::countr_zero(open));
      if (Accepts<phase>(word.MakeRectangle(offsets[candidate]))) return candidate;
    }
    return {};
  }

  static std::uint64_t FindBlocked(SizeClasses::Knowledge const& known, std::uint64_t open,
                                   Spiral::Offset const* offsets) {
    std::uint64_t blocked = 0;
    PositionMap const& map = *known.map;
    auto const scale = map.GetScale();
    for (; open != 0; open &= open - 1) {
      auto const candidate = static_cast<std::size_t>(std::countr_zero(open));
      Spiral::Offset const offset = offsets[candidate];
      if (map.Rejects(known.x + offset.x * scale.x, known.y + offset.y * scale.y)) {
        blocked |= std::uint64_t{1} << candidate;
      }
    }
    return blocked;
  }

  template <Phase phase>
  bool Accepts(Rectangle const& rectangle) {
    bool const isInside = phase == Phase::Whole ? rectangle.IsWithin(bounds_.width, bounds_.height)
                                                : rectangle.IsVisibleWithin(bounds_.width, bounds_.height);
    return isInside && !placed_.Overlaps(rectangle.Grow(margin_));
  }

  // The first of so many candidates that does not lie within the bounds; their count if all do.
  std::size_t FindFirstClipped(Word const& word, std::size_t count) {
    // As far as the nearest edge, rounding apart, none is.
    double const clear =
        std::min({word.x0, bounds_.width - word.width - word.x0, (bounds_.height - word.height) / 2}) -
        1e-9 * word.reach;
    std::size_t candidate = spiral_.FindBlock(clear) * Spiral::kBlockSize;
    for (; candidate < count; ++candidate) {
      Spiral::Offset const* const offsets = spiral_.GetBlock(candidate / Spiral::kBlockSize);
      if (!word.MakeRectangle(offsets[candidate % Spiral::kBlockSize])
               .IsWithin(bounds_.width, bounds_.height)) {
        return candidate;
      }
    }
    return count;
  }

  Words words_;
  Bounds bounds_;
  double margin_;
  Spiral spiral_;
  PlacedWords placed_;
  SizeClasses sizes_;
  std::vector<Rectangle> grown_;
  std::size_t tried_ = 0;
};

}  // namespace

std::vector<Place> LayOut(Words const& words, Bounds const& bounds, double gap) {
  Layout layout(words, bounds, gap);
  std::vector<Place> places;
  places.reserve(words.widths.size());
  for (std::size_t i = 0; i < words.widths.size(); ++i) places.push_back(layout.PlaceWord(i));
  return places;
}

double FindScale(std::span<double const> widths, std::span<double const> heights, Bounds const& bounds) {
  constexpr double kMostFilled = 0.6;
  auto const clean = [](double size) { return size > 0 && std::isfinite(size) ? size : 0.0; };
  double widest = 0, highest = 0;
  for (double const width : widths) widest = std::max(widest, clean(width));
  for (double const height : heights) highest = std::max(highest, clean(height));
  // In parts of the largest, so that no area is too large or too small for a number.
  double area = 0;
  for (std::size_t i = 0; i < widths.size(); ++i) {
    area += clean(widths[i]) / widest * (clean(heights[i]) / highest);
  }
  if (!(bounds.width > 0 && bounds.height > 0)) return widths.empty() ? 1 : 0;
  double scale = std::numeric_limits<double>::infinity();
  if (widest > 0) scale = std::min(scale, bounds.width / widest);
  if (highest > 0) scale = std::min(scale, bounds.height / highest);
  if (area > 0) {
    scale =
        std::min(scale, std::sqrt(kMostFilled * (bounds.width / widest) * (bounds.height / highest) / area));
  }
  return std::isfinite(scale) ? scale : 1;
}

}  // namespace OstrelTransforms::WordCloud
