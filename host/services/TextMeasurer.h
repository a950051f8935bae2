#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "ostrelrtcore/StoreValue.h"
#include "ostrelsys/OStringCore.h"

namespace ostrel::services {

using Value = std::shared_ptr<ort::core::StoreValue>;

/// A font as a style asks for it.
struct FontRequest {
  /// Family names of falling preference, separated by commas as in CSS; they may be quoted, and
  /// "sans-serif", "serif" and "monospace" name the default fonts of that kind.
  OStringCore family;
  double size = 0;   ///< pixels
  int weight = 400;  ///< 100 to 900; 400 is normal, 700 bold
  int slant = 0;     ///< 0 normal, 1 italic

  friend bool operator==(FontRequest const&, FontRequest const&) = default;
};

/// The font value of measuring callbacks and style tables: a tuple (family String, size Real64, weight Int32,
/// slant Int32). Further members are passed over. Throws OrtRuntimeException 55 for another value.
FontRequest ReadFont(Value const& font);
Value MakeFont(FontRequest const& font);

/// Vertical measures in pixels.
struct FontMetrics {
  double ascent = 0;   ///< from the baseline up to the line's top
  double height = 0;   ///< ascent and descent
  double leading = 0;  ///< the blank between two lines
};

/// Widths and metrics of text for layout, trimming and drawing alike. Safe from many threads.
class TextMeasurer {
 public:
  virtual ~TextMeasurer() = default;

  /// The width in pixels of a text without line ends, measured as one string: kerning, ligatures, joined
  /// scripts and both directions. Control characters and U+200B are 0 wide. Throws OrtRuntimeException 55
  /// for a value that is no font, and std::runtime_error when there is no font at all.
  virtual float MeasureTextWidth(OStringCore const& text, Value const& font) const = 0;
  virtual double MeasureTextWidth(std::u16string_view text, FontRequest const& font) const = 0;
  virtual FontMetrics GetMetrics(FontRequest const& font) const = 0;
  /// The first family of the list that is there, the default family when none is.
  virtual OStringCore ResolveFamily(OStringCore const& family) const = 0;
  /// What font-family has to say for a browser to choose, character by character, the fonts that are
  /// measured with: the family that is there, then the fallback families in their order, quoted with single
  /// quotes and separated by commas, in UTF-8.
  virtual std::string GetCssFontFamilyList(OStringCore const& family) const = 0;
  /// The font value resolved: its family replaced by the one that is there, and ascent, height and leading
  /// (Real64) appended, seven members in all. A resolved value is resolved anew.
  virtual Value ResolveFont(Value const& font) const = 0;
};

/// Every UTF-16 unit is 10 wide in every font, so that a layout can be checked by counting. It has no metrics
/// of its own: ResolveFont gives the value as it is, so that those of the style table count, and GetMetrics
/// gives ascent 0.8, height 1 and leading 0.2 of the size.
std::shared_ptr<TextMeasurer const> MakeFixedMeasurer();

}  // namespace ostrel::services
