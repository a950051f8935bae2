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
// alive what it needs.
class OSTREL_API TextComposition {
 public:
  // Throws 55 for a style that the composer's table does not have.
  TextComposition(TextComposer& composer, FormattedText const& text, Size const& size);
  TextComposition(TextComposition const& other);
  TextComposition(TextComposition&&) noexcept = default;
  TextComposition& operator=(TextComposition const&) = delete;
  ~TextComposition();

  std::uint64_t GetHash() const noexcept { return hash_; }
  OSTREL_API friend bool operator==(TextComposition const& a, TextComposition const& b);

 private:
  bool HasEqualRuns(TextComposition const& other) const;

  void SetText(FormattedText const& text);

  // What a look-up reads stands together; a text of one run is compared without a step through text_.
  std::uint64_t hash_;
  std::uint64_t size_;  // the bits of both sides
  std::uint32_t settings_;
  std::uint32_t firstStyleIndex_ = 0;
  std::u16string_view firstText_;
  std::size_t runCount_ = 0;
  FormattedText const* text_ = nullptr;
  // Null for a text without runs. A look-up takes no reference, whose count other threads' look-ups would
  // wait for.
  StyleKey const* firstStyle_ = nullptr;
  std::shared_ptr<StyleKey const> ownFirstStyle_;
  std::shared_ptr<FormattedText const> ownText_;
  std::vector<std::shared_ptr<StyleKey const>> laterStyles_;  // of the second run on; none for a single style
};

}  // namespace runtime

template <>
struct std::hash<runtime::TextComposition> {
  std::size_t operator()(runtime::TextComposition const& key) const noexcept { return key.GetHash(); }
};
