#include "render/CompositionCache.h"

#include <boost/any.hpp>
#include <utility>

#include "ostrelsys/InitOnce.h"

namespace runtime {
namespace {

using SharedCache = std::shared_ptr<CompositionCache>;

constexpr std::uint32_t kCapacity = 2048;

// All of this is there before any code runs and is never destroyed, so that the cache can be asked for from
// anywhere while the library's other statics come and go.
union Holder {
  constexpr Holder() : slot() {}
  ~Holder() {}
  boost::any slot;  // of a SharedCache
};
constinit Holder g_holder;
constinit InitOnce g_once;
constinit OReadWriteLock g_lock;  // of what follows, and of emptying the slot
constinit bool g_isClosed = false;

SharedCache GetCache() {
  auto const make = [] {
    SetComposedTextsClearer([]() noexcept {
      if (SharedCache const cache = GetCompositionCache()) cache->clear();
    });
    return std::make_shared<CompositionCache>(OStringCore(L"Runtime Composition Cache"), kCapacity);
  };
  return *boost::any_cast<SharedCache>(&g_once.Fill(g_holder.slot, make));
}

// Lets go of the cache when the library is unloaded.
class Closer {
 public:
  ~Closer() {
    SetComposedTextsClearer(nullptr);
    boost::any last;
    OWriteLocker const lock(g_lock);
    g_isClosed = true;
    last.swap(g_holder.slot);
  }
};
Closer const g_closer;

}  // namespace

std::vector<ComposedText::Row> ComposedText::MakeRows() const {
  std::vector<Row> rows;
  rows.reserve(runs_.size());
  for (ComposedTextRun const& run : runs_) rows.push_back({run.text, run.x, run.y, run.styleIndex});
  return rows;
}

SharedCache GetCompositionCache() {
  OReadLocker const lock(g_lock);
  return g_isClosed ? nullptr : GetCache();
}

std::shared_ptr<ComposedText> CachedComposer::Compose(FormattedText const& text) const {
  auto const compose = [&] {
    auto composed = std::make_shared<ComposedText>();
    composer_->compose(text, size_, *composed);
    if (composed->GetStatus() == AllPlaced) composed->rows_ = composed->MakeRows();
    return composed;
  };
  if (!IsKept(text.GetCharacterCount())) return compose();
  return cache_->get(TextComposition(*composer_, text, size_), compose);
}

}  // namespace runtime
