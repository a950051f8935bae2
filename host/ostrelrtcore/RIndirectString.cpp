#include "ostrelrtcore/RIndirectString.h"

#include <algorithm>
#include <array>
#include <memory>
#include <mutex>
#include <new>
#include <vector>

#include "ostrelsys/Utf.h"

namespace ort::core {

/// The texts of the process: a hash table by open addressing, cut into shards that are locked apart.
class StringPool {
 public:
  using Entry = RIndirectString::Entry;

  // Never destroyed, since strings of static storage may outlive any static pool; the pointer keeps it
  // reachable.
  static StringPool& Get() {
    static auto* const pool = new StringPool;
    return *pool;
  }

  Entry* Intern(std::u16string_view text) { return Intern(text, StringHash::OfText(text)); }
  Entry* Intern(std::u16string_view text, std::uint64_t hash) { return GetShard(hash).Intern(text, hash); }

  /// Begins to fetch what Intern will look at first.
  void Prefetch(std::uint64_t hash) { GetShard(hash).Prefetch(hash); }

  void ReleaseLast(Entry* entry) noexcept {
    auto const dead = GetShard(entry->hash).ReleaseLast(entry);
    // Outside of the lock, where freeing memory keeps nobody waiting.
    delete dead;
  }

  RIndirectString::PoolStatistics GetStatistics() {
    RIndirectString::PoolStatistics sum{0, 0};
    for (auto& shard : m_shards) shard.AddTo(sum);
    return sum;
  }

 private:
  struct Slot {
    std::uint64_t hash;
    Entry* entry;
  };

  // A table with a byte beside each slot, 0 when the slot is free: a search reads the dense bytes, which
  // mostly are in a cache, and only the slot that it means. On a cache line of its own, so that a lock taken
  // in one shard doesn't slow down its neighbour.
  class alignas(64) Shard {
   public:
    Entry* Intern(std::u16string_view text, std::uint64_t hash) {
      std::lock_guard const guard(m_mutex);
      if (m_tags.empty()) Resize(kFewestSlots);
      auto index = Home(hash);
      for (; m_tags[index] != kFree; index = Next(index)) {
        if (m_tags[index] != Tag(hash)) continue;
        auto const& slot = m_slots[index];
        if (slot.hash == hash && slot.entry->text.view() == text) {
          slot.entry->references.fetch_add(1, std::memory_order_relaxed);
          return slot.entry;
        }
      }
      auto made = std::make_unique<Entry>(text, hash);
      if ((m_count + 1) * 4 > m_tags.size() * 3) {
        Resize(m_tags.size() * 2);
        index = FindFree(hash);
      }
      m_tags[index] = Tag(hash);
      m_slots[index] = {hash, made.get()};
      ++m_count;
      return made.release();
    }

    void Prefetch(std::uint64_t hash) {
      std::lock_guard const guard(m_mutex);
      if (m_tags.empty()) return;
      __builtin_prefetch(&m_tags[Home(hash)]);
      __builtin_prefetch(&m_slots[Home(hash)], 1);
    }

    /// Gives the entry back to be deleted when this was its last reference, and null otherwise.
    Entry* ReleaseLast(Entry* entry) noexcept {
      std::lock_guard const guard(m_mutex);
      if (entry->references.fetch_sub(1, std::memory_order_acq_rel) != 1) return nullptr;
      Erase(entry);
      return entry;
    }

    void AddTo(RIndirectString::PoolStatistics& sum) {
      std::lock_guard const guard(m_mutex);
      sum.entries += m_count;
      sum.slots += m_tags.size();
    }

   private:
    static constexpr std::size_t kFewestSlots = 16;
    static constexpr std::uint8_t kFree = 0;

    // The top bits of the hash choose the shard, the low ones the slot, some between the tag.
    static std::uint8_t Tag(std::uint64_t hash) noexcept { return static_cast<std::uint8_t>(hash >> 40 | 1); }
    std::size_t Home(std::uint64_t hash) const noexcept { return hash & (m_tags.size() - 1); }
    std::size_t Next(std::size_t index) const noexcept { return (index + 1) & (m_tags.size() - 1); }

    std::size_t FindFree(std::uint64_t hash) const noexcept {
      auto index = Home(hash);
      while (m_tags[index] != kFree) index = Next(index);
      return index;
    }

    void Resize(std::size_t slots) {
      std::vector<std::uint8_t> oldTags(slots, kFree);
      // Left as it comes: a slot is read only where its tag says so.
      auto oldSlots = std::make_unique_for_overwrite<Slot[]>(slots);
      m_tags.swap(oldTags);
      m_slots.swap(oldSlots);
      for (std::size_t i = 0; i < oldTags.size(); ++i) {
        if (oldTags[i] == kFree) continue;
        auto const index = FindFree(oldSlots[i].hash);
        m_tags[index] = oldTags[i];
        m_slots[index] = oldSlots[i];
      }
    }

    void Erase(Entry* entry) noexcept {
      auto hole = Home(entry->hash);
      while (m_tags[hole] != Tag(entry->hash) || m_slots[hole].entry != entry) hole = Next(hole);
      // What follows moves up into the hole unless it would come to stand before its home.
      for (auto next = Next(hole); m_tags[next] != kFree; next = Next(next)) {
        auto const mask = m_tags.size() - 1;
        if (((next - Home(m_slots[next].hash)) & mask) < ((next - hole) & mask)) continue;
        m_tags[hole] = m_tags[next];
        m_slots[hole] = m_slots[next];
        hole = next;
      }
      m_tags[hole] = kFree;
      --m_count;
      if (m_count * 8 < m_tags.size()) Shrink();
    }

    void Shrink() noexcept {
      if (m_count == 0) {
        std::vector<std::uint8_t>().swap(m_tags);
        m_slots.reset();
        return;
      }
      if (m_tags.size() <= kFewestSlots) return;
      try {
        Resize(std::max(m_tags.size() / 4, kFewestSlots));
      } catch (std::bad_alloc const&) {
        // The larger table serves as well.
      }
    }

    std::mutex m_mutex;
    std::vector<std::uint8_t> m_tags;
    std::unique_ptr<Slot[]> m_slots;
    std::size_t m_count = 0;
  };

  static constexpr int kShardBits = 8;

  Shard& GetShard(std::uint64_t hash) noexcept { return m_shards[hash >> (64 - kShardBits)]; }

  std::array<Shard, std::size_t{1} << kShardBits> m_shards;
};

RIndirectString RIndirectString::FromView(std::u16string_view text) {
  return text.empty() ? RIndirectString() : RIndirectString(StringPool::Get().Intern(text));
}

RIndirectString RIndirectString::FromUtf8(std::string_view utf8) {
  std::array<char16_t, 256> nearby;
  if (utf8.size() <= nearby.size()) {
    return FromView({nearby.data(), Utf::Utf8ToUtf16(utf8, nearby.data())});
  }
  auto const text = OStringCore::fromUtf8(utf8);
  return FromView(text.view());
}

void RIndirectString::FromUtf8(std::span<std::string_view const> texts, std::span<RIndirectString> strings) {
  struct Waiting {
    std::u16string_view text;
    std::uint64_t hash;
  };
  std::array<char16_t, 2048> nearby;
  std::array<Waiting, 32> group;
  for (std::size_t done = 0; done < texts.size();) {
    std::size_t count = 0;
    for (std::size_t used = 0; count < group.size() && done + count < texts.size(); ++count) {
      auto const utf8 = texts[done + count];
      if (utf8.size() > nearby.size() - used) break;
      std::u16string_view const text(nearby.data() + used, Utf::Utf8ToUtf16(utf8, nearby.data() + used));
      group[count] = {text, StringHash::OfText(text)};
      if (!text.empty()) StringPool::Get().Prefetch(group[count].hash);
      used += text.size();
    }
    for (std::size_t i = 0; i < count; ++i) {
      auto const& [text, hash] = group[i];
      strings[done + i] =
          text.empty() ? RIndirectString() : RIndirectString(StringPool::Get().Intern(text, hash));
    }
    done += count;
    if (count > 0) continue;
    strings[done] = FromUtf8(texts[done]);
    ++done;
  }
}

void RIndirectString::ReleaseLast(Entry* entry) noexcept { StringPool::Get().ReleaseLast(entry); }

OStringCore const& RIndirectString::GetEmptyText() noexcept {
  static auto const* const empty = new OStringCore;
  return *empty;
}

RIndirectString::PoolStatistics RIndirectString::GetPoolStatistics() {
  return StringPool::Get().GetStatistics();
}

}  // namespace ort::core
