#include "render/TokenPassIterator.h"

namespace runtime {

bool TokenPassIterator::advance() noexcept {
  if (!started_) {
    started_ = true;
    bool const isOneWord = !tokenizer_->usesBreakHints() && !tokenizer_->HasBlank() && allowFinerBreaks_;
    mode_ = !isOneWord ? SpacesOnly : tokenizer_->HasPunctuation() ? AfterPunctuation : AnyCharacter;
    return true;
  }
  switch (mode_) {
    case SpacesOnly:
      if (!allowFinerBreaks_) return false;
      if (!tokenizer_->HasPunctuation()) return StepToAnyCharacter();
      mode_ = AfterPunctuation;
      return true;
    case AfterPunctuation:
      return StepToAnyCharacter();
    default:
      return false;
  }
}

bool TokenPassIterator::StepToAnyCharacter() noexcept {
  mode_ = AnyCharacter;
  return shortText_ && !tokenizer_->usesBreakHints();
}

}  // namespace runtime
