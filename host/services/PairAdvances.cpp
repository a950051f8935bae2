#include "services/PairAdvances.h"

#include <hb-ot.h>

#include "services/FontFace.h"
#include "services/ThreadShaper.h"

namespace ostrel::services {

namespace PairSlots {

namespace {

constexpr int kFirstBorrowed = 0x80;
constexpr char16_t kBorrowed[] = {u'\u2010', u'\u2011', u'\u2012', u'\u2013', u'\u2014', u'\u2018',
                                  u'\u2019', u'\u201A', u'\u201C', u'\u201D', u'\u201E', u'\u2020',
                                  u'\u2021', u'\u2022', u'\u2026', u'\u2030', u'\u2032', u'\u2033',
                                  u'\u2039', u'\u203A', u'\u20AC', u'\u2122', u'\u2190', u'\u2192',
                                  u'\u2212', u'\u2248', u'\u2264', u'\u2265'};
constexpr int kBorrowedCount = sizeof(kBorrowed) / sizeof(kBorrowed[0]);
static_assert(kFirstBorrowed + kBorrowedCount <= 0xA0);

constexpr char16_t kBorrowedFrom = 0x2000;
constexpr char16_t kBorrowedTo = 0x2280;

constexpr auto MakeBorrowedSlots() {
  std::array<std::uint8_t, kBorrowedTo - kBorrowedFrom> slots{};
  for (int i = 0; i < kBorrowedCount; ++i) {
    slots[static_cast<std::size_t>(kBorrowed[i] - kBorrowedFrom)] =
        static_cast<std::uint8_t>(kFirstBorrowed + i);
  }
  return slots;
}

constexpr auto kBorrowedSlots = MakeBorrowedSlots();

constexpr bool IsPlain(int unit) { return (unit >= 0x20 && unit < 0x7F) || (unit >= 0xA0 && unit != 0xAD); }

}  // namespace

int Find(char16_t unit) noexcept {
  if (unit < kCount) return IsPlain(unit) ? unit : -1;
  if (unit < kBorrowedFrom || unit >= kBorrowedTo) return -1;
  int const slot = kBorrowedSlots[static_cast<std::size_t>(unit - kBorrowedFrom)];
  return slot != 0 ? slot : -1;
}

char16_t GetCharacter(int slot) noexcept {
  if (slot < 0 || slot >= kCount) return 0;
  if (IsPlain(slot)) return static_cast<char16_t>(slot);
  bool const borrowed = slot >= kFirstBorrowed && slot < kFirstBorrowed + kBorrowedCount;
  return borrowed ? kBorrowed[slot - kFirstBorrowed] : u'\0';
}

bool IsLetter(int slot) noexcept {
  int const lower = slot | 0x20;
  if (lower >= 'a' && lower <= 'z') return true;
  return slot == 0xAA || slot == 0xBA || (slot >= 0xC0 && slot != 0xD7 && slot != 0xF7);
}

}  // namespace PairSlots

namespace {

struct SlotClass {
  std::int16_t slot;
  bool letter;
};

constexpr std::size_t kClassified = 0x2280;

// One look-up a unit for what Find and IsLetter tell.
std::array<SlotClass, kClassified> const& GetClasses() {
  static auto const classes = [] {
    std::array<SlotClass, kClassified> result{};
    for (std::size_t unit = 0; unit < kClassified; ++unit) {
      int const slot = PairSlots::Find(static_cast<char16_t>(unit));
      result[unit] = {static_cast<std::int16_t>(slot), slot >= 0 && PairSlots::IsLetter(slot)};
    }
    return result;
  }();
  return classes;
}

}  // namespace

void PairAdvances::Prepare() const {
  std::call_once(prepared_, [this] { limits_ = FindPairLimits(face_, owner_.MakeFont().get()); });
}

PairAdvances::Table& PairAdvances::GetTable(bool letters) const {
  auto const index = static_cast<std::size_t>(letters);
  std::call_once(made_[index], [&] { tables_[index] = std::make_unique<Table>(); });
  return *tables_[index];
}

std::optional<std::int64_t> PairAdvances::Measure(std::u16string_view text) const {
  if (text.empty()) return 0;
  auto const& classes = GetClasses();
  bool letters = false;
  for (char16_t const unit : text) {
    if (unit >= kClassified || classes[unit].slot < 0) return std::nullopt;
    letters |= classes[unit].letter;
  }
  Prepare();
  Table& table = GetTable(letters);
  std::int64_t width = 0;
  int first = classes[text[0]].slot;
  for (std::size_t i = 1; i <= text.size(); ++i) {
    int const second = i < text.size() ? classes[text[i]].slot : kEnd;
    auto& entry = table.entries[static_cast<std::size_t>(first)][static_cast<std::size_t>(second)];
    std::int32_t value = entry.load(std::memory_order_relaxed);
    if (value == kUnknown) {
      // Threads that meet here find the same value.
      value = Shape(letters, first, second);
      entry.store(value, std::memory_order_relaxed);
    }
    if (value == kToBeShaped) return std::nullopt;
    width += value >> 1;
    first = second;
  }
  return width;
}

std::int32_t PairAdvances::Shape(bool letters, int first, int second) const {
  auto const at = [](int slot) { return static_cast<std::size_t>(slot); };
  if (limits_.toBeShaped[at(first)]) return kToBeShaped;
  char16_t const pair[2] = {PairSlots::GetCharacter(first), PairSlots::GetCharacter(second)};
  hb_script_t const script = letters ? HB_SCRIPT_LATIN : HB_SCRIPT_COMMON;
  ThreadShaper& shaper = ThreadShaper::Get();
  auto const alone = shaper.ShapePlain(owner_, script, {pair, 1});
  if (alone.count != 1) return kToBeShaped;
  if (second == kEnd) return alone.advance * 2 + 1;
  if (limits_.toBeShaped[at(second)]) return kToBeShaped;
  if (limits_.ligatureStarts[at(first)] && limits_.ligatureParts[at(second)]) return kToBeShaped;
  auto const next = shaper.ShapePlain(owner_, script, {pair + 1, 1});
  auto const both = shaper.ShapePlain(owner_, script, {pair, 2});
  if (next.count != 1 || both.count != 2) return kToBeShaped;
  // A positioning pair that also moves the second glyph uses that glyph up: the next pair has no say.
  bool const uses = both.lastAdvance != next.lastAdvance && hb_ot_layout_has_positioning(face_);
  if (uses) return kToBeShaped;
  return (both.advance - next.advance) * 2 + 1;
}

}  // namespace ostrel::services
