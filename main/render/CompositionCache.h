#pragma once

#include <memory>
#include <span>
#include <string_view>

#include "ostreltransforms/Export.h"
#include "render/RandomCache.h"
#include "render/TextComposer.h"
#include "render/TextComposition.h"

namespace runtime {

using CompositionCache = RandomCache<TextComposition, ComposedText>;

// The "Runtime Composition Cache", which all threads share: made when it is first asked for, with room for
// 2048 compositions, and emptied when another text measurer is installed. It belongs to the library: whoever
// holds it may go on using it while the library is unloaded or the program ends, and whoever asks from then
// on gets null.
OSTREL_API std::shared_ptr<CompositionCache> GetCompositionCache();

// Composes texts in boxes of one size, through the cache. The composer must outlive it; its settings may
// change between compositions.
class OSTREL_API CachedComposer {
 public:
  // Longer texts are composed anew each time, so that the cache's memory stays bounded.
  static constexpr std::uint32_t kLongestText = 2048;

  CachedComposer(TextComposer& composer, Size const& size)
      : composer_(&composer), size_(size), cache_(GetCompositionCache()) {}

  // The composition, which others share: not to be changed. Where all was placed it has its rows, whose texts
  // are so interned once and not with every use.
  std::shared_ptr<ComposedText> Compose(FormattedText const& text) const;

  // Whether a text of so many characters may be found in the cache at all.
  bool IsKept(std::size_t characterCount) const {
    return cache_ != nullptr && characterCount <= kLongestText && composer_->HasPlainBox();
  }
  // The key of a text of one run, with the composer's settings of now.
  TextComposition MakeKey(std::uint32_t styleIndex, std::u16string_view text) const {
    return {*composer_, styleIndex, text, size_};
  }
  // Those of the compositions that are in the cache, null for the others, which are then to be composed.
  void FindHeld(std::span<TextComposition const> keys, std::span<std::shared_ptr<ComposedText>> found) const {
    if (!keys.empty()) cache_->FindHeld(keys, found);
  }

 private:
  TextComposer* composer_;
  Size size_;
  std::shared_ptr<CompositionCache> cache_;
};

}  // namespace runtime
