#pragma once

#include <array>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace ostrel::services {

/// Widths of texts in ems. Bounded: a shard that is full forgets its older half. Safe from many threads.
class WidthCache {
 public:
  std::optional<double> Find(std::uint64_t fontSet, std::u16string_view text);
  void Insert(std::uint64_t fontSet, std::u16string_view text, double ems);
  /// Texts held now; at most kMostTexts.
  std::size_t GetSize() const;

  static constexpr std::size_t kShards = 16;
  static constexpr std::size_t kGeneration = 2048;
  static constexpr std::size_t kMostTexts = kShards * 2 * kGeneration;
  /// Longer texts are not kept.
  static constexpr std::size_t kLongestText = 256;

 private:
  struct View {
    std::uint64_t fontSet;
    std::u16string_view text;
    std::uint64_t hash;
  };
  struct Key {
    std::uint64_t fontSet;
    std::u16string text;
    std::uint64_t hash;
    operator View() const { return {fontSet, text, hash}; }
  };
  struct Hash {
    using is_transparent = void;
    std::size_t operator()(View const& key) const { return key.hash; }
  };
  struct Equal {
    using is_transparent = void;
    bool operator()(View const& a, View const& b) const { return a.fontSet == b.fontSet && a.text == b.text; }
  };
  using Widths = std::unordered_map<Key, double, Hash, Equal>;

  struct alignas(64) Shard {
    mutable std::mutex lock;
    Widths recent;
    Widths older;
    void Insert(View const& key, double ems);
  };

  static View MakeView(std::uint64_t fontSet, std::u16string_view text);
  Shard& GetShard(View const& key) { return shards_[key.hash >> 60U]; }

  std::array<Shard, kShards> shards_;
};

}  // namespace ostrel::services
