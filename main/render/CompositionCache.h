#pragma once

#include <memory>

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

 private:
  TextComposer* composer_;
  Size size_;
  std::shared_ptr<CompositionCache> cache_;
};

}  // namespace runtime
