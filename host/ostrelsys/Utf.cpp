#include "ostrelsys/Utf.h"

#include <unicode/ustring.h>
#include <unicode/utf16.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <stdexcept>

#include "ostrelsys/ThrowLogicException.h"

namespace {

constexpr UChar32 kReplacement = 0xFFFD;

int32_t CheckedLength(std::size_t length) {
  if (length > static_cast<std::size_t>(std::numeric_limits<int32_t>::max())) {
    throw std::length_error("a text of more than 2^31-1 units can't be converted");
  }
  return static_cast<int32_t>(length);
}

void CheckDone(UErrorCode status) {
  if (U_FAILURE(status)) ThrowLogicException("Utf", __LINE__, u_errorName(status));
}

// Widens leading ASCII, most texts' whole, and gives its length.
std::size_t WidenAscii(std::string_view utf8, char16_t* units) {
  constexpr std::uint64_t kHighBits = 0x8080808080808080U;
  std::size_t done = 0;
  for (; done + 8 <= utf8.size(); done += 8) {
    std::uint64_t word;
    std::memcpy(&word, utf8.data() + done, 8);
    if ((word & kHighBits) != 0) break;
    for (std::size_t i = 0; i < 8; ++i) units[done + i] = static_cast<unsigned char>(utf8[done + i]);
  }
  while (done < utf8.size() && static_cast<unsigned char>(utf8[done]) < 0x80) {
    units[done] = static_cast<unsigned char>(utf8[done]);
    ++done;
  }
  return done;
}

}  // namespace

std::size_t Utf::Utf8ToUtf16(std::string_view utf8, char16_t* units) {
  auto const size = CheckedLength(utf8.size());
  auto const ascii = static_cast<int32_t>(WidenAscii(utf8, units));
  if (ascii == size) return utf8.size();
  int32_t length = 0;
  auto status = U_ZERO_ERROR;
  u_strFromUTF8WithSub(units + ascii, size - ascii, &length, utf8.data() + ascii, size - ascii, kReplacement,
                       nullptr, &status);
  CheckDone(status);
  return static_cast<std::size_t>(ascii + length);
}

std::string Utf::Utf16ToUtf8(std::u16string_view units) {
  // In pieces, so that no count of bytes is near the converter's limit and most of the result is written
  // once.
  constexpr std::size_t kPiece = 1 << 16;
  constexpr std::size_t kMostBytesPerUnit = 3;
  std::string result;
  while (!units.empty()) {
    auto count = std::min(units.size(), kPiece);
    if (count < units.size() && U16_IS_LEAD(units[count - 1])) --count;
    auto const done = result.size();
    result.resize(done + count * kMostBytesPerUnit);
    int32_t length = 0;
    auto status = U_ZERO_ERROR;
    u_strToUTF8WithSub(result.data() + done, static_cast<int32_t>(count * kMostBytesPerUnit), &length,
                       units.data(), static_cast<int32_t>(count), kReplacement, nullptr, &status);
    CheckDone(status);
    result.resize(done + static_cast<std::size_t>(length));
    units.remove_prefix(count);
  }
  return result;
}
