#include "render/FormattedText.h"

#include <stdexcept>
#include <utility>

namespace runtime {

FormattedText::FormattedText(std::vector<TextRun> runs) {
  runs_.reserve(runs.size());
  for (TextRun& run : runs) append(std::move(run));
}

void FormattedText::append(TextRun run) {
  constexpr std::uint32_t most = 0x7FFFFFFF;
  auto const length = static_cast<std::uint32_t>(run.text.length());
  if (length > most - count_) throw std::length_error("a text of more than 2^31-1 units can't be made");
  bool const sameStyle = runs_.empty() || runs_.back().styleIndex == run.styleIndex;
  runs_.push_back(std::move(run));
  count_ += length;
  singleStyle_ = singleStyle_ && sameStyle;
}

void FormattedText::clear() noexcept {
  runs_.clear();
  count_ = 0;
  singleStyle_ = true;
}

void FormattedText::assign(std::uint32_t styleIndex, OStringCore const& text) {
  runs_.resize(1);
  runs_.front().styleIndex = styleIndex;
  runs_.front().text = text;
  count_ = static_cast<std::uint32_t>(text.length());
  singleStyle_ = true;
}

OStringCore FormattedText::GetText() const {
  if (runs_.size() == 1) return runs_.front().text;
  std::u16string text;
  text.reserve(count_);
  for (TextRun const& run : runs_) text += run.text.view();
  return OStringCore(std::move(text));
}

}  // namespace runtime
