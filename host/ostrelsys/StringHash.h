#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

/// Hashing of UTF-16 text for tables in memory. Values hold for one run of a program on one machine; they are
/// not to be stored.
namespace StringHash {

/// The high and low halves of the 128-bit product, folded into one word: each bit of the result depends on
/// all bits of both factors.
inline std::uint64_t Mix(std::uint64_t a, std::uint64_t b) noexcept {
  __extension__ using Product = unsigned __int128;
  auto const product = static_cast<Product>(a) * b;
  return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
}

/// The hash of a text's code units, good in all 64 bits.
inline std::uint64_t OfText(std::u16string_view text) noexcept {
  constexpr std::uint64_t kFirst = 0x9E3779B97F4A7C15U;
  constexpr std::uint64_t kSecond = 0xD1B54A32D192ED03U;
  auto const load = [](char16_t const* from, std::size_t units) {
    std::uint64_t word = 0;
    std::memcpy(&word, from, units * sizeof(char16_t));
    return word;
  };
  auto const* at = text.data();
  auto left = text.size();
  std::uint64_t hash = Mix(left ^ kFirst, kSecond);
  for (; left > 8; left -= 8, at += 8) hash = Mix(load(at, 4) ^ kSecond, load(at + 4, 4) ^ hash);
  // The last 1 to 8 units as two words that may overlap; the length in the seed tells such texts apart.
  if (left >= 4) return Mix(load(at, 4) ^ kSecond, load(at + left - 4, 4) ^ hash) ^ hash;
  if (left == 0) return hash;
  std::uint64_t const word =
      std::uint64_t{at[0]} | std::uint64_t{at[left / 2]} << 16 | std::uint64_t{at[left - 1]} << 32;
  return Mix(word ^ kSecond, kFirst ^ hash) ^ hash;
}

}  // namespace StringHash
