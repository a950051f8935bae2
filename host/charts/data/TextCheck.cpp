#include "charts/data/TextCheck.h"

#include <fmt/format.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <array>
#include <cstdint>

#include "charts/data/DataTable.h"

namespace ostrel::charts {

namespace {

constexpr std::size_t kBlock = 64;

[[noreturn]] void FailAt(std::string_view text, std::size_t offset, std::string const& sourceName) {
  auto const place = DescribePlace(text, offset, sourceName);
  auto const byte = static_cast<unsigned char>(text[offset]);
  if (byte == 0) throw DataError(fmt::format("{}: a NUL byte (offset {})", place, offset));
  throw DataError(fmt::format("{}: byte 0x{:02X} is not valid UTF-8 here (offset {})", place, byte, offset));
}

/// Decodes from `offset` until `end` is reached or passed.
std::size_t CheckCharacters(std::string_view text, std::size_t offset, std::size_t end,
                            std::string const& sourceName) {
  auto const* bytes = reinterpret_cast<std::uint8_t const*>(text.data());
  while (offset < end) {
    std::size_t const start = offset;
    UChar32 character = 0;
    U8_NEXT(bytes, offset, text.size(), character);
    if (character <= 0) FailAt(text, start, sourceName);
  }
  return offset;
}

/// What a block holds.
struct BlockFacts {
  std::uint8_t highBits = 0;
  std::uint8_t zeros = 0;
  std::uint8_t breaks = 0;
};

/// Byte-wide counters of its own and a loop of fixed length, which compilers turn into vector code.
BlockFacts LookAt(char const* bytes) {
  std::uint8_t highBits = 0;
  std::uint8_t zeros = 0;
  std::uint8_t breaks = 0;
  for (std::size_t i = 0; i < kBlock; ++i) {
    auto const byte = static_cast<std::uint8_t>(bytes[i]);
    highBits |= byte;
    zeros = static_cast<std::uint8_t>(zeros | (byte == 0 ? 1 : 0));
    breaks = static_cast<std::uint8_t>(breaks + (byte == '\n' ? 1 : 0) + (byte == '\r' ? 1 : 0));
  }
  return {highBits, zeros, breaks};
}

}  // namespace

std::size_t CheckText(std::string_view text, std::string const& sourceName) {
  std::size_t lineBreaks = 0;
  std::size_t checked = 0;
  for (std::size_t start = 0; start < text.size(); start += kBlock) {
    auto const count = std::min(kBlock, text.size() - start);
    BlockFacts facts;
    if (count == kBlock) {
      facts = LookAt(text.data() + start);
    } else {
      std::array<char, kBlock> padded;
      padded.fill(' ');
      text.copy(padded.data(), count, start);
      facts = LookAt(padded.data());
    }
    lineBreaks += facts.breaks;
    // The last character of the block before may reach into this one.
    if (facts.highBits >= 0x80 || facts.zeros != 0) {
      checked = CheckCharacters(text, std::max(checked, start), start + count, sourceName);
    }
  }
  return lineBreaks;
}

std::string DescribePlace(std::string_view text, std::size_t offset, std::string const& sourceName) {
  std::size_t line = 1;
  std::size_t column = 1;
  for (std::size_t i = 0; i < std::min(offset, text.size()); ++i) {
    bool const endsLine = text[i] == '\n' || (text[i] == '\r' && text.substr(i + 1, 1) != "\n");
    if (endsLine) {
      ++line;
      column = 1;
    } else if (!U8_IS_TRAIL(static_cast<std::uint8_t>(text[i]))) {
      ++column;
    }
  }
  return fmt::format("{}:{}:{}", sourceName, line, column);
}

std::string_view WithoutByteOrderMark(std::string_view text) {
  constexpr std::string_view mark = "\xEF\xBB\xBF";
  return text.starts_with(mark) ? text.substr(mark.size()) : text;
}

}  // namespace ostrel::charts
