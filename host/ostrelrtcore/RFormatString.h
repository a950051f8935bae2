#pragma once

#include <cstdint>
#include <vector>

#include "ostrelrtcore/Export.h"
#include "ostrelsys/OStringCore.h"

namespace ort::core {

/// A message with places `%1` to `%9` for arguments:
///
///     OStringCore text = RFormatString(L"row %1 of %2").arg(3, 0, 10, L' ').arg(7, 0, 10, L' ');
///
/// Each call of `arg` gives the message with the lowest-numbered open place filled, wherever it occurs.
/// Filled-in text is never searched for places. An argument without a place is dropped; a place without an
/// argument stays as it is written.
class ORTCORE_API RFormatString {
 public:
  explicit RFormatString(wchar_t const* format);
  explicit RFormatString(OStringCore const& format);

  /// The number in a base from 2 to 36 (10 for any other), with a sign when negative and small letters as
  /// digits, filled up to `fieldWidth` characters: on the left, or on the right when the width is negative. A
  /// fill of '0' on the left stands between sign and digits. Widths beyond 4096 count as 4096.
  [[nodiscard]] RFormatString arg(int value, int fieldWidth = 0, int base = 10, wchar_t fill = L' ') const;
  [[nodiscard]] RFormatString arg(std::uint64_t value, int fieldWidth = 0, int base = 10,
                                  wchar_t fill = L' ') const;
  [[nodiscard]] RFormatString arg(OStringCore const& value) const;

  OStringCore ToString() const;
  operator OStringCore() const { return ToString(); }

 private:
  struct Part {
    OStringCore text;
    int place;  // 0 for text that stands.
  };

  std::vector<Part> m_parts;
};

}  // namespace ort::core
