#include "ostrelrtcore/RIndirectString.h"

#include <array>
#include <memory>
#include <mutex>
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

  Entry* Intern(std::u16string_view text) {
    auto const hash = StringHash::OfText(text);
    return GetShard(hash).Intern(text, hash);
  }

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
    std::uint64_t hash = 0;
    Entry* entry = nullptr;
  };

  // One cache line apart, so that a lock taken in one doesn't slow down its neighbour.
  class alignas(64) Shard {
   public:
    Entry* Intern(std::u16string_view text, std::uint64_t hash) {
      std::lock_guard const guard(m_mutex);
      if (m_slots.empty()) Resize(kFewestSlots);
      auto index = Home(hash);
      for (; m_slots[index].entry != nullptr; index = Next(index)) {
        auto const& slot = m_slots[index];
        if (slot.hash == hash && slot.entry->text.view() == text) {
          slot.entry->references.fetch_add(1, std::memory_order_relaxed);
          return slot.entry;
        }
      }
      auto made = std::make_unique<Entry>(text, hash);
      if ((m_count + 1) * 4 > m_slots.size() * 3) {
        Resize(m_slots.size() * 2);
        index = FindFree(hash);
      }
      m_slots[index] = {hash, made.get()};
      ++m_count;
      return made.release();
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
      sum.slots += m_slots.size();
    }

   private:
    static constexpr std::size_t kFewestSlots = 16;

    // The shard was chosen by the top bits, the place in it by the bits below.
    std::size_t Home(std::uint64_t hash) const noexcept { return hash & (m_slots.size() - 1); }
    std::size_t Next(std::size_t index) const noexcept { return (index + 1) & (m_slots.size() - 1); }

    std::size_t FindFree(std::uint64_t hash) const noexcept {
      auto index = Home(hash);
      while (m_slots[index].entry != nullptr) index = Next(index);
      return index;
    }

    void Resize(std::size_t slots) {
      std::vector<Slot> old(slots);
      m_slots.swap(old);
      for (auto const& slot : old) {
        if (slot.entry != nullptr) m_slots[FindFree(slot.hash)] = slot;
      }
    }

    void Erase(Entry* entry) noexcept {
      auto hole = Home(entry->hash);
      while (m_slots[hole].entry != entry) hole = Next(hole);
      // What follows moves up into the hole unless it would come to stand before its home.
      for (auto next = Next(hole); m_slots[next].entry != nullptr; next = Next(next)) {
        auto const mask = m_slots.size() - 1;
        if (((next - Home(m_slots[next].hash)) & mask) < ((next - hole) & mask)) continue;
        m_slots[hole] = m_slots[next];
        hole = next;
      }
      m_slots[hole] = {};
      --m_count;
      if (m_count * 8 < m_slots.size()) Shrink();
    }

    void Shrink() noexcept {
      if (m_count == 0) {
        std::vector<Slot>().swap(m_slots);
        return;
      }
      if (m_slots.size() <= kFewestSlots) return;
      try {
        Resize(m_slots.size() / 4 > kFewestSlots ? m_slots.size() / 4 : kFewestSlots);
      } catch (std::bad_alloc const&) {
        // The larger table serves as well.
      }
    }

    std::mutex m_mutex;
    std::vector<Slot> m_slots;
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

void RIndirectString::ReleaseLast(Entry* entry) noexcept { StringPool::Get().ReleaseLast(entry); }

OStringCore const& RIndirectString::GetEmptyText() noexcept {
  static auto const* const empty = new OStringCore;
  return *empty;
}

RIndirectString::PoolStatistics RIndirectString::GetPoolStatistics() {
  return StringPool::Get().GetStatistics();
}

}  // namespace ort::core
