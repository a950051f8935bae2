#pragma once

#include <hb.h>

#include <array>
#include <atomic>
#include <bitset>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string_view>

namespace ostrel::services {

class FontFace;

/// The characters whose pairs are kept: those of Latin-1 and, in the places of its control characters, the
/// punctuation that labels use beside it. A character's place is its slot.
namespace PairSlots {
inline constexpr int kCount = 256;
/// -1 for a character without a slot, such as control characters and the soft hyphen.
int Find(char16_t unit) noexcept;
/// 0 for a slot that no character has.
char16_t GetCharacter(int slot) noexcept;
bool IsLetter(int slot) noexcept;
}  // namespace PairSlots

/// The slots of which a face's layout tables know more than kerning by pairs; texts with them are shaped.
struct PairLimits {
  std::bitset<PairSlots::kCount> toBeShaped;
  /// A ligature may begin with a character of the first set that is followed by one of the second.
  std::bitset<PairSlots::kCount> ligatureStarts;
  std::bitset<PairSlots::kCount> ligatureParts;
};

PairLimits FindPairLimits(hb_face_t* face, hb_font_t* font);

/// The widths of plain Latin text without shaping it. For characters to which a face's tables can do nothing
/// but kern neighbours, the width of a text is a sum over its pairs of characters; each pair is shaped once,
/// when it is first met. Safe from many threads.
class PairAdvances {
 public:
  PairAdvances(FontFace const& owner, hb_face_t* face) : owner_(owner), face_(face) {}

  /// The width in font units; nothing when the text has to be shaped.
  std::optional<std::int64_t> Measure(std::u16string_view text) const;

 private:
  static constexpr std::int32_t kUnknown = 0;
  static constexpr std::int32_t kToBeShaped = INT32_MIN;
  static constexpr int kEnd = PairSlots::kCount;

  // A pair's entry is what its first character adds to the width beside the second, made odd (twice the
  // advance and one) so that fresh zeroed memory reads as unknown; column kEnd stands for a text's end.
  struct Table {
    std::array<std::array<std::atomic<std::int32_t>, kEnd + 1>, kEnd> entries;
  };

  void Prepare() const;
  Table& GetTable(bool letters) const;
  std::int32_t Shape(bool letters, int first, int second) const;

  FontFace const& owner_;
  hb_face_t* face_;
  mutable std::once_flag prepared_;
  mutable PairLimits limits_;
  // Kerning may differ by script, and a text without a letter has none of its own.
  mutable std::array<std::once_flag, 2> made_;
  mutable std::array<std::unique_ptr<Table>, 2> tables_;
};

}  // namespace ostrel::services
