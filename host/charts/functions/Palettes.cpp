#include "charts/functions/Palettes.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <span>
#include <string>

#include "charts/functions/PaletteTables.h"
#include "ostrelrtcore/NearestName.h"
#include "ostrelrtcore/builtins/Columns.h"

namespace ostrel::charts {
namespace {

using ort::core::builtins::ThrowError;

constexpr int kMostColors = 1'000'000;
constexpr std::size_t kDigits = 6;

constexpr unsigned DigitOf(char digit) {
  return static_cast<unsigned>(digit <= '9' ? digit - '0' : digit - 'a' + 10);
}

constexpr bool IsWellFormed(std::span<PaletteRow const> rows) {
  return std::ranges::all_of(rows, [](PaletteRow const& row) {
    return !row.colors.empty() && row.colors.size() % kDigits == 0 &&
           row.colors.find_first_not_of("0123456789abcdef") == row.colors.npos;
  });
}
static_assert(IsWellFormed(kGeneralPalettes) && IsWellFormed(kBrewerPalettes) &&
              IsWellFormed(kSequentialPalettes) && IsWellFormed(kDivergingPalettes) &&
              IsWellFormed(kUniformPalettes));

using Tables = std::span<std::span<PaletteRow const> const>;
constexpr std::span<PaletteRow const> kUnordered[] = {kGeneralPalettes, kBrewerPalettes};
constexpr std::span<PaletteRow const> kRamps[] = {kSequentialPalettes, kDivergingPalettes, kUniformPalettes};

PaletteRow const* Find(Tables tables, std::string_view name) {
  for (auto const& table : tables) {
    auto const row = std::ranges::find(table, name, &PaletteRow::name);
    if (row != table.end()) return &*row;
  }
  return nullptr;
}

int MakeOpaque(unsigned red, unsigned green, unsigned blue) {
  return static_cast<int>(0xFF000000U | red << 16 | green << 8 | blue);
}

class Stops {
 public:
  explicit Stops(PaletteRow const& row) : colors_(row.colors) {}
  std::size_t GetCount() const { return colors_.size() / kDigits; }
  unsigned GetChannel(std::size_t stop, std::size_t channel) const {
    auto const at = stop * kDigits + channel * 2;
    return DigitOf(colors_[at]) * 16 + DigitOf(colors_[at + 1]);
  }
  int GetColor(std::size_t stop) const {
    return MakeOpaque(GetChannel(stop, 0), GetChannel(stop, 1), GetChannel(stop, 2));
  }
  /// The colour at `i` of `whole` even distances between the first stop and the last. The place is divided
  /// once, so that middles between stops are exact.
  int Interpolate(std::size_t i, std::size_t whole) const {
    auto const last = static_cast<double>(GetCount() - 1);
    double const along = static_cast<double>(i) * last / static_cast<double>(whole);
    auto const stop = std::min(static_cast<std::size_t>(along), GetCount() - 2);
    double const part = along - static_cast<double>(stop);
    auto const mix = [&](std::size_t channel) {
      double const first = GetChannel(stop, channel);
      return static_cast<unsigned>(std::lround(first + (GetChannel(stop + 1, channel) - first) * part));
    };
    return MakeOpaque(mix(0), mix(1), mix(2));
  }

 private:
  std::string_view colors_;
};

[[noreturn]] void ThrowUnknown(std::string_view name) {
  std::vector<std::string> names;
  for (std::string_view const known : ListPaletteNames()) names.emplace_back(known);
  std::string const nearest = ort::core::NearestName(name, names);
  ThrowError(ort::core::OrtError_InputKindNotAccepted,
             fmt::format("no colour scheme '{}'", name) +
                 (nearest.empty() ? std::string() : fmt::format("; did you mean '{}'?", nearest)));
}

std::string ToLowerCase(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) c = static_cast<char>(c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c);
  return lower;
}

}  // namespace

std::vector<std::string_view> ListPaletteNames() {
  std::vector<std::string_view> names;
  for (auto const& tables : {Tables(kUnordered), Tables(kRamps)}) {
    for (auto const& table : tables) {
      for (PaletteRow const& row : table) names.push_back(row.name);
    }
  }
  return names;
}

std::vector<int> MakePaletteColors(std::string_view name, int count, PaletteEnds ends) {
  if (count < 0 || count > kMostColors) {
    ThrowError(ort::core::OrtError_WrongValueKind, fmt::format("a palette of {} colours", count));
  }
  std::string const lower = ToLowerCase(name);
  std::vector<int> colors(static_cast<std::size_t>(count));
  if (PaletteRow const* row = Find(kUnordered, lower)) {
    Stops const stops(*row);
    for (std::size_t i = 0; i < colors.size(); ++i) colors[i] = stops.GetColor(i % stops.GetCount());
    return colors;
  }
  PaletteRow const* row = Find(kRamps, lower);
  if (row == nullptr) ThrowUnknown(name);
  Stops const stops(*row);
  // A single colour is the middle one in either way.
  std::size_t const first = ends == PaletteEnds::Left || count == 1 ? 1 : 0;
  std::size_t const whole = colors.size() + 2 * first - 1;
  for (std::size_t i = 0; i < colors.size(); ++i) colors[i] = stops.Interpolate(first + i, whole);
  return colors;
}

}  // namespace ostrel::charts
