#include "ostreltransforms/composer/RunTexts.h"

#include <utility>

namespace OstrelTransforms {

using namespace ort::core;

RunTexts::RunTexts(std::vector<std::size_t> runCounts, int runCount) : rows_(std::make_shared<Rows>()) {
  rows_->runCounts = std::move(runCounts);
  rows_->shared.resize(rows_->runCounts.size());
  rows_->texts.resize(static_cast<std::size_t>(runCount));
}

void RunTexts::WriteShared(std::size_t text, std::size_t firstRun,
                           std::shared_ptr<runtime::ComposedText const> composed) {
  RIndirectString* at = &rows_->texts[firstRun];
  for (runtime::ComposedText::Row const& row : composed->GetRows()) *at++ = row.text.Borrow();
  rows_->shared[text] = std::move(composed);
}

RunTexts::Rows::~Rows() {
  RIndirectString* at = texts.data();
  for (std::size_t text = 0; text < runCounts.size(); ++text) {
    RIndirectString* const end = at + runCounts[text];
    for (; at != end; ++at) {
      if (shared[text] != nullptr) at->Forget();
    }
  }
}

factory::Value RunTexts::Finish() {
  std::shared_ptr<Rows> rows = std::move(rows_);
  RIndirectString* const first = rows->texts.data();
  std::size_t const count = rows->texts.size();
  return factory::detail::MakeColumn(StoreTypeInfo::String, StorageClass::String, first, count,
                                     std::move(rows), nullptr, nullptr);
}

}  // namespace OstrelTransforms
