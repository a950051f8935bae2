#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "ostrelrtcore/RIndirectString.h"
#include "ostrelsys/OStringCore.h"
#include "ostreltransforms/Export.h"

namespace runtime {

// Pixels; y grows downwards.
struct Size {
  float width = 0;
  float height = 0;

  friend bool operator==(Size const&, Size const&) = default;
};

struct Rect {
  float x = 0;
  float y = 0;
  float width = 0;
  float height = 0;

  friend bool operator==(Rect const&, Rect const&) = default;
};

// Whether a composition shows all of its text.
enum ComposedStatus : std::uint32_t {
  AllPlaced = 0,
  WidthExceeded = 1,  // a line is wider than the box, or was cut at its edge
  HeightCut = 2,      // the lines reach beyond the bottom; those after the first that does are left out
};

// What stands in one style on one line. x and y are where it begins on its line's baseline; from there it
// extends to the right for orientation 0, downwards for 1 and upwards for 2, for as long as its width.
struct ComposedRun {
  std::uint32_t styleIndex = 0;
  float x = 0;
  float y = 0;
  float width = 0;
};

struct ComposedTextRun : ComposedRun {
  OStringCore text;
};

// A shape; styleIndex is its place in the list that was composed. Its baseline is its lower edge.
struct ComposedShapeRun : ComposedRun {
  std::uint32_t shapeId = 0;
};

// A text or a list of shapes laid out in lines.
class OSTREL_API Composed {
 public:
  std::uint32_t GetStatus() const noexcept { return status_; }
  // 0 horizontal, 1 turned clockwise (lines run downwards), 2 turned anticlockwise (lines run upwards).
  std::uint32_t GetOrientation() const noexcept { return orientation_; }
  // The bounding box of the lines, in the coordinates of the runs: along a line from the first run's begin
  // to the last one's end, across it from the first line's top to the last one's bottom. All 0 without lines.
  Rect const& GetBounds() const noexcept { return bounds_; }
  // The extent of the bounding box.
  Size GetSize() const noexcept { return {bounds_.width, bounds_.height}; }
  std::size_t GetLineCount() const noexcept { return lineCount_; }

 protected:
  Composed() = default;
  Composed(Composed const&) = default;
  Composed& operator=(Composed const&) = default;
  ~Composed() = default;

 private:
  friend class Composer;

  std::uint32_t status_ = AllPlaced;
  std::uint32_t orientation_ = 0;
  Rect bounds_;
  std::size_t lineCount_ = 0;
};

class OSTREL_API ComposedText final : public Composed {
 public:
  // In reading order.
  std::vector<ComposedTextRun> const& GetRuns() const noexcept { return runs_; }
  // A run as it goes into columns.
  struct Row {
    ort::core::RIndirectString text;
    float x = 0;
    float y = 0;
    std::uint32_t styleIndex = 0;
  };
  // One a run; none unless they were made (see CachedComposer).
  std::vector<Row> const& GetRows() const noexcept { return rows_; }
  std::vector<Row> MakeRows() const;

 private:
  friend class TextComposer;
  friend class CachedComposer;

  std::vector<ComposedTextRun> runs_;
  std::vector<Row> rows_;
};

class OSTREL_API ComposedShapes final : public Composed {
 public:
  // In the order of the list.
  std::vector<ComposedShapeRun> const& GetRuns() const noexcept { return runs_; }

 private:
  friend class ShapeComposer;

  std::vector<ComposedShapeRun> runs_;
};

}  // namespace runtime
