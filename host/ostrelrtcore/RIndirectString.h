#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string_view>
#include <utility>

#include "ostrelrtcore/Export.h"
#include "ostrelsys/OStringCore.h"
#include "ostrelsys/StringHash.h"

namespace ort::core {

/// An interned string, the element of string columns: one pointer, and equal texts share one address for as
/// long as any of them lives, so that comparing and hashing never touch the text. Texts are counted by
/// reference and given back with the last of them. Safe from many threads, like a shared pointer: different
/// objects at will, one object by many readers or one writer.
class ORTCORE_API RIndirectString {
 public:
  /// The empty string; it takes no part in the pool.
  RIndirectString() noexcept = default;
  RIndirectString(OStringCore const& text) : RIndirectString(FromView(text.view())) {}
  RIndirectString(RIndirectString const& other) noexcept : m_entry(other.m_entry) { AddReference(m_entry); }
  RIndirectString(RIndirectString&& other) noexcept : m_entry(std::exchange(other.m_entry, nullptr)) {}
  RIndirectString& operator=(RIndirectString const& other) noexcept {
    RIndirectString(other).Swap(*this);
    return *this;
  }
  RIndirectString& operator=(RIndirectString&& other) noexcept {
    RIndirectString(std::move(other)).Swap(*this);
    return *this;
  }
  ~RIndirectString() {
    if (m_entry != nullptr) Release(m_entry);
  }

  /// These make a string only when the pool doesn't have it yet. Ill-formed UTF-8 becomes U+FFFD.
  static RIndirectString FromView(std::u16string_view text);
  static RIndirectString FromUtf8(std::string_view utf8);
  /// The same of many texts, into as many places: faster than one by one, since the pool's memory is fetched
  /// ahead of its use.
  static void FromUtf8(std::span<std::string_view const> texts, std::span<RIndirectString> strings);

  /// The text; valid while any reference to it lives.
  OStringCore const& Get() const noexcept { return m_entry != nullptr ? m_entry->text : GetEmptyText(); }
  operator OStringCore const&() const noexcept { return Get(); }
  bool IsEmpty() const noexcept { return m_entry == nullptr; }
  std::size_t GetHash() const noexcept {
    return StringHash::Mix(reinterpret_cast<std::uintptr_t>(m_entry), 0x9E3779B97F4A7C15U);
  }

  friend bool operator==(RIndirectString const& left, RIndirectString const& right) noexcept {
    return left.m_entry == right.m_entry;
  }
  /// Compares the texts; nothing is interned.
  friend bool operator==(RIndirectString const& left, OStringCore const& right) noexcept {
    return left.Get() == right;
  }

  /// The same text without a count of its own: another reference must live as long, and Forget must be called
  /// before this one ends. For many references to what one owner keeps alive.
  RIndirectString Borrow() const noexcept { return RIndirectString(m_entry); }
  /// Makes this the empty string without counting down.
  void Forget() noexcept { m_entry = nullptr; }

  /// What the pool of the process holds now.
  struct PoolStatistics {
    std::size_t entries;  ///< Different texts that are alive.
    std::size_t slots;    ///< Places in the pool's tables.
  };
  static PoolStatistics GetPoolStatistics();

 private:
  friend class StringPool;

  struct Entry {
    Entry(std::u16string_view view, std::uint64_t viewHash) : references(1), hash(viewHash), text(view) {}
    std::atomic<std::uint64_t> references;
    std::uint64_t hash;
    OStringCore text;
  };

  explicit RIndirectString(Entry* entry) noexcept : m_entry(entry) {}
  static void AddReference(Entry* entry) noexcept {
    // Another reference keeps the entry alive meanwhile, so nothing has to be ordered.
    if (entry != nullptr) entry->references.fetch_add(1, std::memory_order_relaxed);
  }
  static void Release(Entry* entry) noexcept {
    // The last reference is given back under the pool's lock, where nobody can find the entry in between.
    auto count = entry->references.load(std::memory_order_relaxed);
    while (count > 1) {
      if (entry->references.compare_exchange_weak(count, count - 1, std::memory_order_release,
                                                  std::memory_order_relaxed)) {
        return;
      }
    }
    ReleaseLast(entry);
  }
  static void ReleaseLast(Entry* entry) noexcept;
  static OStringCore const& GetEmptyText() noexcept;
  void Swap(RIndirectString& other) noexcept { std::swap(m_entry, other.m_entry); }

  Entry* m_entry = nullptr;
};

static_assert(sizeof(RIndirectString) == 8);

}  // namespace ort::core

template <>
struct std::hash<ort::core::RIndirectString> {
  std::size_t operator()(ort::core::RIndirectString const& text) const noexcept { return text.GetHash(); }
};
