#include "render/TextComposition.h"

#include <bit>
#include <cstring>

#include "ostrelsys/StringHash.h"
#include "render/TextComposer.h"

namespace runtime {
namespace {

// Both zeros mean an unbounded size.
std::uint32_t GetBits(float side) { return std::bit_cast<std::uint32_t>(side == 0 ? 0.0F : side); }

std::uint32_t PackSettings(TextComposer const& composer) {
  return composer.GetWrapMode() << 3U | (composer.GetClipHeight() ? 4U : 0U) |
         (composer.GetClipWidth() ? 2U : 0U) | (composer.AllowsFinerBreaks() ? 1U : 0U);
}

std::uint64_t Mix(std::uint64_t hash, std::uint64_t value) {
  return StringHash::Mix(hash ^ 0x9E3779B97F4A7C15U, value + 0xD1B54A32D192ED03U);
}

// The library compares 16-bit units one by one.
bool AreEqual(std::u16string_view a, std::u16string_view b) {
  return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(char16_t)) == 0;
}

}  // namespace

TextComposition::TextComposition(TextComposer& composer, FormattedText const& text, Size const& size)
    : size_(std::uint64_t{GetBits(size.width)} << 32U | GetBits(size.height)),
      settings_(PackSettings(composer)) {
  SetText(text);
  hash_ = Mix(size_, settings_);
  auto const& runs = text.GetRuns();
  if (runs.empty()) return;
  firstStyle_ = composer.GetStyleKeys().Get(runs.front().styleIndex).get();
  hash_ = Mix(hash_, firstStyle_->hash);
  for (TextRun const& run : runs) {
    hash_ = Mix(hash_, StringHash::OfText(run.text.view()) + run.styleIndex);
  }
  if (text.HasSingleStyle()) return;
  laterStyles_.reserve(runs.size() - 1);
  for (std::size_t i = 1; i < runs.size(); ++i) {
    laterStyles_.push_back(composer.GetStyleKeys().Get(runs[i].styleIndex));
    hash_ = Mix(hash_, laterStyles_.back()->layoutHash);
  }
}

TextComposition::TextComposition(TextComposition const& other)
    : hash_(other.hash_),
      size_(other.size_),
      settings_(other.settings_),
      firstStyle_(other.firstStyle_),
      ownFirstStyle_(firstStyle_ == nullptr ? nullptr : firstStyle_->shared_from_this()),
      ownText_(other.ownText_ ? other.ownText_ : std::make_shared<FormattedText const>(*other.text_)),
      laterStyles_(other.laterStyles_) {
  SetText(*ownText_);
}

TextComposition::~TextComposition() = default;

void TextComposition::SetText(FormattedText const& text) {
  text_ = &text;
  auto const& runs = text.GetRuns();
  runCount_ = runs.size();
  if (runs.empty()) return;
  firstStyleIndex_ = runs.front().styleIndex;
  firstText_ = runs.front().text.view();
}

bool TextComposition::HasEqualRuns(TextComposition const& other) const {
  if (runCount_ != other.runCount_ || firstStyleIndex_ != other.firstStyleIndex_) return false;
  if (!AreEqual(firstText_, other.firstText_)) return false;
  if (runCount_ > 1 && !(*text_ == *other.text_)) return false;
  for (std::size_t i = 0; i < laterStyles_.size(); ++i) {
    auto const& style = laterStyles_[i];
    auto const& otherStyle = other.laterStyles_[i];
    if (style != otherStyle && !style->HasEqualLayout(*otherStyle)) return false;
  }
  return true;
}

bool operator==(TextComposition const& a, TextComposition const& b) {
  if (a.hash_ != b.hash_ || a.size_ != b.size_ || a.settings_ != b.settings_) return false;
  if (!a.HasEqualRuns(b)) return false;
  return a.firstStyle_ == b.firstStyle_ || *a.firstStyle_ == *b.firstStyle_;
}

}  // namespace runtime
