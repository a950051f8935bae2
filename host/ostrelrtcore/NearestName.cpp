#include "ostrelrtcore/NearestName.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace ort::core {

namespace {

/// Longer names are compared by their beginnings, so that a hostile one costs no time.
constexpr std::size_t kComparedBytes = 64;

char FoldCase(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

/// The optimal string alignment distance (R. A. Wagner and M. J. Fischer, "The string-to-string correction
/// problem", Journal of the ACM 21 (1974), with neighbours' swaps).
std::size_t Distance(std::string_view from, std::string_view to) {
  using Row = std::array<std::size_t, kComparedBytes + 1>;
  Row beforeLast{};
  Row last{};
  Row current{};
  for (std::size_t j = 0; j <= to.size(); ++j) last[j] = j;
  for (std::size_t i = 1; i <= from.size(); ++i) {
    current[0] = i;
    for (std::size_t j = 1; j <= to.size(); ++j) {
      bool const same = FoldCase(from[i - 1]) == FoldCase(to[j - 1]);
      current[j] = std::min({last[j] + 1, current[j - 1] + 1, last[j - 1] + (same ? 0U : 1U)});
      bool const swapped = i > 1 && j > 1 && FoldCase(from[i - 1]) == FoldCase(to[j - 2]) &&
                           FoldCase(from[i - 2]) == FoldCase(to[j - 1]);
      if (swapped) current[j] = std::min(current[j], beforeLast[j - 2] + 1);
    }
    beforeLast = last;
    last = current;
  }
  return last[to.size()];
}

}  // namespace

std::string NearestName(std::string_view name, std::span<std::string const> candidates) {
  auto const wanted = name.substr(0, kComparedBytes);
  std::size_t least = std::max<std::size_t>(1, wanted.size() / 3) + 1;
  std::string const* nearest = nullptr;
  for (auto const& candidate : candidates) {
    auto const distance = Distance(wanted, std::string_view(candidate).substr(0, kComparedBytes));
    if (distance >= least) continue;
    least = distance;
    nearest = &candidate;
  }
  return nearest != nullptr ? *nearest : std::string();
}

}  // namespace ort::core
