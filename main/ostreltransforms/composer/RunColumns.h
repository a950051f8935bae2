#pragma once

#include <cstddef>
#include <vector>

#include "ostrelrtcore/Factory.h"
#include "render/Composed.h"

namespace OstrelTransforms {

// A point of a composition in pixels.
struct Anchor {
  double x = 0;
  double y = 0;
};

// The point of the box around the lines that the alignments name, along the lines and across them: 0 where
// they begin, 1 the middle, 2 where they end.
Anchor GetAnchor(runtime::Composed const& composed, std::uint32_t hAlign, std::uint32_t vAlign);

// The columns that tell of composed texts or rows of shapes where their runs stand. Different texts may be
// written by different threads.
class RunColumns {
 public:
  // `runCounts` has the number of runs of each text; their rows follow each other in the texts' order. Throws
  // 55 when there are more than a column holds.
  explicit RunColumns(std::vector<std::size_t> const& runCounts);

  int GetRunCount() const { return runCount_; }
  // The row of a text's first run.
  std::size_t GetFirstRun(std::size_t text) { return static_cast<std::size_t>(rows_.offset[text]); }

  void WriteSize(std::size_t text, runtime::Size const& size) {
    rows_.width[text] = size.width;
    rows_.height[text] = size.height;
  }
  void WriteRun(std::size_t row, int styleId, double x, double y, Anchor const& anchor) {
    rows_.style[row] = styleId;
    rows_.x[row] = x;
    rows_.y[row] = y;
    rows_.remoteX[row] = x - anchor.x;
    rows_.remoteY[row] = y - anchor.y;
  }

  // A key map of all columns; what stands in the runs is the caller's, under a name of its own.
  ort::core::factory::Value Finish(OStringCore const& contentName, ort::core::factory::Value content);

 private:
  template <class T>
  using Builder = ort::core::ColumnBuilder<T>;
  struct Rows {
    int* offset;
    int* style;
    double *width, *height, *x, *y, *remoteX, *remoteY;
  };

  int runCount_;
  Builder<int> offset_, count_, style_;
  Builder<double> width_, height_, x_, y_, remoteX_, remoteY_;
  Rows rows_;
};

}  // namespace OstrelTransforms
