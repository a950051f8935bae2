#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>
#include <vector>

#include "ostreltransforms/Export.h"
#include "render/Composed.h"
#include "render/FormattedText.h"
#include "render/StyleKeys.h"

namespace runtime {

class TextComposer;

// All that a composition depends on, as the key of finished ones: the text; its first run's style (font,
// font_size, text_style_color, font_style, font_weight, text_decoration, text_orientation, hAlign, vAlign);
// what every run's style says to the layout (text_font, ascent, font_height, leading); the size; and the
// composer's settings, with the wrap mode that is in force.
//
// A key refers to the text and the composer it was made for, which must live as long; a copy of it keeps
// alive what it needs. The copy has the text of a single run interned: a key of the same interned text is
// compared with it by address.
class OSTREL_API TextComposition {
 public:
  // Throws 55 for a style that the composer's table does not have.
  TextComposition(TextComposer& composer, FormattedText const& text, Size const& size);
  // Of a text of one run.
  TextComposition(TextComposer& composer, std::uint32_t styleIndex, std::u16string_view text,
                  Size const& size);
  TextComposition(TextComposition const& other);
  TextComposition(TextComposition&&) noexcept = default;
  TextComposition& operator=(TextComposition const&) = delete;
  ~TextComposition();

  std::uint64_t GetHash() const noexcept { return hash_; }
  friend bool operator==(TextComposition const& a, TextComposition const& b) {
    return a.hash_ == b.hash_ && a.size_ == b.size_ && a.settings_ == b.settings_ &&
           a.firstStyleIndex_ == b.firstStyleIndex_ && a.HasEqualRuns(b);
  }

 private:
  // What a copy keeps alive.
  struct Kept;

  bool HasEqualRuns(TextComposition const& other) const;
  void SetFirstRun(TextComposer& composer, std::uint32_t styleIndex, std::u16string_view text);

  // What a look-up reads stands together; a text of one run is compared without a step through runs_.
  std::uint64_t hash_;
  std::uint64_t size_;  // the bits of both sides
  std::uint32_t settings_;
  std::uint32_t firstStyleIndex_ = 0;
  std::u16string_view firstText_;
  // Null for a text without runs. A look-up takes no reference, whose count other threads' look-ups would
  // wait for.
  StyleKey const* firstStyle_ = nullptr;
  FormattedText const* runs_ = nullptr;                       // of a text of more than one run
  std::vector<std::shared_ptr<StyleKey const>> laterStyles_;  // of the second run on; none for a single style
  std::shared_ptr<Kept const> kept_;
};

}  // namespace runtime

template <>
struct std::hash<runtime::TextComposition> {
  std::size_t operator()(runtime::TextComposition const& key) const noexcept { return key.GetHash(); }
};
