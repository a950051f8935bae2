#include "render/TextComposition.h"

#include <bit>
#include <cstring>

#include "ostrelrtcore/RIndirectString.h"
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
  if (a.size() != b.size()) return false;
  return a.data() == b.data() || std::memcmp(a.data(), b.data(), a.size() * sizeof(char16_t)) == 0;
}

}  // namespace

struct TextComposition::Kept {
  std::shared_ptr<StyleKey const> firstStyle;
  ort::core::RIndirectString text;  // of one run
  FormattedText runs;               // of more
};

TextComposition::TextComposition(TextComposer& composer, FormattedText const& text, Size const& size)
    : hash_(0),
      size_(std::uint64_t{GetBits(size.width)} << 32U | GetBits(size.height)),
      settings_(PackSettings(composer)) {
  hash_ = Mix(size_, settings_);
  auto const& runs = text.GetRuns();
  if (runs.empty()) return;
  SetFirstRun(composer, runs.front().styleIndex, runs.front().text.view());
  if (runs.size() == 1) return;
  runs_ = &text;
  for (std::size_t i = 1; i < runs.size(); ++i) {
    hash_ = Mix(hash_, StringHash::OfText(runs[i].text.view()) + runs[i].styleIndex);
  }
  if (text.HasSingleStyle()) return;
  laterStyles_.reserve(runs.size() - 1);
  for (std::size_t i = 1; i < runs.size(); ++i) {
    laterStyles_.push_back(composer.GetStyleKeys().Get(runs[i].styleIndex));
    hash_ = Mix(hash_, laterStyles_.back()->layoutHash);
  }
}

TextComposition::TextComposition(TextComposer& composer, std::uint32_t styleIndex, std::u16string_view text,
                                 Size const& size)
    : hash_(0),
      size_(std::uint64_t{GetBits(size.width)} << 32U | GetBits(size.height)),
      settings_(PackSettings(composer)) {
  hash_ = Mix(size_, settings_);
  SetFirstRun(composer, styleIndex, text);
}

TextComposition::TextComposition(TextComposition const& other)
    : hash_(other.hash_),
      size_(other.size_),
      settings_(other.settings_),
      firstStyleIndex_(other.firstStyleIndex_),
      firstText_(other.firstText_),
      firstStyle_(other.firstStyle_),
      runs_(other.runs_),
      laterStyles_(other.laterStyles_),
      kept_(other.kept_) {
  if (kept_ != nullptr || firstStyle_ == nullptr) return;
  auto const kept = std::make_shared<Kept>();
  kept->firstStyle = firstStyle_->shared_from_this();
  if (runs_ == nullptr) {
    kept->text = ort::core::RIndirectString::FromView(firstText_);
    firstText_ = kept->text.Get().view();
  } else {
    kept->runs = *runs_;
    runs_ = &kept->runs;
    firstText_ = runs_->GetRuns().front().text.view();
  }
  kept_ = kept;
}

TextComposition::~TextComposition() = default;

void TextComposition::SetFirstRun(TextComposer& composer, std::uint32_t styleIndex,
                                  std::u16string_view text) {
  firstStyleIndex_ = styleIndex;
  firstText_ = text;
  firstStyle_ = composer.GetStyleKeys().Get(styleIndex).get();
  hash_ = Mix(Mix(hash_, firstStyle_->hash), StringHash::OfText(text) + styleIndex);
}

// Of keys that are equal in all that operator== compares itself.
bool TextComposition::HasEqualRuns(TextComposition const& other) const {
  if ((firstStyle_ == nullptr) != (other.firstStyle_ == nullptr)) return false;
  if (!AreEqual(firstText_, other.firstText_)) return false;
  if (firstStyle_ != other.firstStyle_ && !(*firstStyle_ == *other.firstStyle_)) return false;
  if (runs_ == nullptr || other.runs_ == nullptr) return runs_ == other.runs_;
  if (!(*runs_ == *other.runs_)) return false;
  for (std::size_t i = 0; i < laterStyles_.size(); ++i) {
    auto const& style = laterStyles_[i];
    auto const& otherStyle = other.laterStyles_[i];
    if (style != otherStyle && !style->HasEqualLayout(*otherStyle)) return false;
  }
  return true;
}

}  // namespace runtime
