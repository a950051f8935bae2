#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "ostreltransforms/Export.h"
#include "render/Composed.h"
#include "render/FormattedText.h"
#include "render/Token.h"

namespace runtime {

class LineGatherer;
class Tokenizer;

enum WrapMode : std::uint32_t {
  NoWrap = 0,    // lines end at line breaks alone
  Clip = 1,      // and tokens are cut at the box' edge
  WordWrap = 2,  // lines end where the next word would not fit
};

// Lays tokens out in lines: gathers them by the wrap mode, aligns each line and stacks the lines. What a
// token measures and how it is aligned, the concrete composers know. One thread's object; it may be used for
// any number of compositions.
//
// Lengths are 32-bit floats in pixels. A length exceeds another only when it is greater by more than the
// tolerance. Where words are broken between any characters, it counts what the characters measure together.
// No size and no measure makes a composition fail or run on: what is not a number exceeds nothing.
class OSTREL_API Composer {
 public:
  virtual ~Composer();
  // 0 horizontal, 1 turned clockwise (lines run downwards), 2 turned anticlockwise (lines run upwards).
  virtual std::uint32_t GetOrientation() const = 0;
  // A WrapMode; 3 counts as WordWrap. NoWrap until it is set.
  virtual void SetWrapMode(std::uint32_t mode);
  // Whether the first line that reaches beyond the bottom ends the composition, with status HeightCut.
  virtual void SetClipHeight(bool clip);
  // Whether each line is cut at its end: runs that begin beyond it are left out, and of the one across it the
  // whole characters stay that fit. The status tells of the line's own width in any case.
  virtual void SetClipWidth(bool clip);
  // Along the line: 0 begin, 1 middle, 2 end.
  virtual std::uint32_t GetHorizontalAlignment() const = 0;
  // Across the lines: 0 top, 1 middle, 2 bottom.
  virtual std::uint32_t GetVerticalAlignment() const = 0;
  // 1 when each line stands below the one before it, -1 when above.
  virtual float GetVerticalDirection() const = 0;

  Composer(Composer const&) = delete;
  Composer& operator=(Composer const&) = delete;

  std::uint32_t GetWrapMode() const noexcept { return wrapMode_; }
  bool GetClipHeight() const noexcept { return clipHeight_; }
  bool GetClipWidth() const noexcept { return clipWidth_; }
  bool AllowsFinerBreaks() const noexcept { return allowFinerBreaks_; }
  float GetTolerance() const noexcept { return tolerance_; }

  // The left upper corner of the box; (0, 0) until it is set.
  void SetOrigin(float x, float y) noexcept;
  // What is kept free at a line's begin and end; 0 until it is set. In a box that leaves nothing between
  // them, a line aligned at its begin starts at left + extraLeft, any other at the box' edge.
  void SetInsets(float left, float right, float extraLeft = 0) noexcept;
  // Whether neither of the two says anything but 0.
  bool HasPlainBox() const noexcept;

 protected:
  struct LineMetrics {
    double ascent = 0;  // from the baseline up to the line's top
    double height = 0;
    double leading = 0;  // between the line and the next
  };

  Composer(bool allowFinerBreaks, float tolerance) noexcept;

  // A composition begins with its first run's style (0 for an empty text) and ends, also when it fails.
  virtual void BeginComposition(std::uint32_t firstStyle) = 0;
  virtual void EndComposition() noexcept = 0;
  virtual float Measure(std::uint32_t style, OStringCore const& text) = 0;
  virtual LineMetrics GetMetrics(std::uint32_t style) const = 0;

  // Fills the result and gives its runs, which are valid until the next composition. A box of which a side is
  // 0 is unbounded on both; WordWrap counts as NoWrap then. An unbounded text that is not wrapped is moved so
  // that the origin is the point of its bounding box that the alignments name.
  std::vector<ComposedTextRun>& ComposeRuns(FormattedText const& text, Size const& size, Composed& result);

 private:
  friend class LineGatherer;
  struct Layout;

  bool Exceeds(double length, double limit) const noexcept {
    return static_cast<float>(length) - static_cast<float>(limit) > tolerance_;
  }
  std::size_t FindFittingLength(std::uint32_t style, OStringCore const& text, double begin, double limit);
  void ReadTokens(Tokenizer& tokenizer);
  void ComposePasses(Layout& layout, FormattedText const& text);
  std::uint32_t ComposePass(Layout& layout, bool inContext, bool finerPassFollows);
  void ClearLines(Layout& layout);
  bool AddLine(Layout& layout, LineGatherer const& gatherer);
  void AddRuns(LineGatherer const& gatherer);
  double ClipRuns(std::size_t firstRun, double available);
  double GetLineBegin(Layout const& layout, double width) const;
  void Finish(Layout const& layout, Composed& result);

  std::uint32_t wrapMode_ = NoWrap;
  bool clipHeight_ = false;
  bool clipWidth_ = false;
  bool allowFinerBreaks_;
  float tolerance_;
  float originX_ = 0;
  float originY_ = 0;
  float leftInset_ = 0;
  float rightInset_ = 0;
  float extraLeft_ = 0;
  // Kept from one composition to the next for their memory.
  std::vector<std::shared_ptr<Token>> tokens_;
  std::vector<ComposedTextRun> runs_;
};

}  // namespace runtime
