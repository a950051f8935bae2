#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <vector>

#include "ostrelrtcore/Factory.h"
#include "render/Composed.h"

namespace OstrelTransforms {

// The column of the runs' texts. The texts of a composition that others hold too are not counted one by one:
// the column holds the composition instead. Different texts may be written by different threads.
class RunTexts {
 public:
  // As many runs in all as the column has rows.
  RunTexts(std::vector<std::size_t> runCounts, int runCount);

  // The rows from `firstRun` on of a composition that has its rows; it must stay as it is.
  void WriteShared(std::size_t text, std::size_t firstRun,
                   std::shared_ptr<runtime::ComposedText const> composed);
  void Write(std::size_t run, ort::core::RIndirectString const& text) { rows_->texts[run] = text; }

  // The column; to be called once.
  ort::core::factory::Value Finish();

 private:
  struct Rows {
    ~Rows();

    std::vector<std::size_t> runCounts;
    std::vector<std::shared_ptr<runtime::ComposedText const>> shared;  // null where the rows count themselves
    std::vector<ort::core::RIndirectString> texts;
  };

  std::shared_ptr<Rows> rows_;
};

}  // namespace OstrelTransforms
