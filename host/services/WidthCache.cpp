#include "services/WidthCache.h"

#include <utility>

#include "ostrelsys/StringHash.h"

namespace ostrel::services {

static_assert(WidthCache::kShards == 16, "a shard is named by the hash's first four bits");

WidthCache::View WidthCache::MakeView(std::uint64_t fontSet, std::u16string_view text) {
  return {fontSet, text, StringHash::Mix(StringHash::OfText(text), fontSet + 0x9E3779B97F4A7C15U)};
}

void WidthCache::Shard::Insert(View const& key, double ems) {
  if (recent.size() >= kGeneration) {
    std::swap(older, recent);
    recent.clear();
  }
  recent.try_emplace(Key{key.fontSet, std::u16string(key.text), key.hash}, ems);
}

std::optional<double> WidthCache::Find(std::uint64_t fontSet, std::u16string_view text) {
  if (text.size() > kLongestText) return std::nullopt;
  View const key = MakeView(fontSet, text);
  Shard& shard = GetShard(key);
  std::lock_guard const lock(shard.lock);
  auto const recent = shard.recent.find(key);
  if (recent != shard.recent.end()) return recent->second;
  auto const older = shard.older.find(key);
  if (older == shard.older.end()) return std::nullopt;
  double const ems = older->second;
  shard.older.erase(older);
  shard.Insert(key, ems);
  return ems;
}

void WidthCache::Insert(std::uint64_t fontSet, std::u16string_view text, double ems) {
  if (text.size() > kLongestText) return;
  View const key = MakeView(fontSet, text);
  Shard& shard = GetShard(key);
  std::lock_guard const lock(shard.lock);
  shard.Insert(key, ems);
}

std::size_t WidthCache::GetSize() const {
  std::size_t size = 0;
  for (Shard const& shard : shards_) {
    std::lock_guard const lock(shard.lock);
    size += shard.recent.size() + shard.older.size();
  }
  return size;
}

}  // namespace ostrel::services
