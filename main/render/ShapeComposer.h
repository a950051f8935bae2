#pragma once

#include <cstdint>
#include <span>

#include "render/Composer.h"

namespace runtime {

// What a ShapeComposer lays out: a box, sized in pixels, with a number that the caller knows it by.
struct Shape {
  std::uint32_t id = 0;
  float width = 0;
  float height = 0;
};

// Lays shapes out like characters. A line is as high as its highest shape, all of its shapes stand on its
// lower edge, and the lines are stacked upwards from the lower edge of the box; the tolerance is 0. With
// finer breaks a line may end behind any shape; without them all shapes are one word.
class OSTREL_API ShapeComposer final : public Composer {
 public:
  ShapeComposer(std::uint32_t orientation, std::uint32_t hAlign, bool allowFinerBreaks) noexcept;
  ~ShapeComposer() override;

  std::uint32_t GetOrientation() const override { return orientation_; }
  // Shapes are not cut: Clip counts as NoWrap.
  void SetWrapMode(std::uint32_t mode) override;
  std::uint32_t GetHorizontalAlignment() const override { return hAlign_; }
  std::uint32_t GetVerticalAlignment() const override { return 2; }
  float GetVerticalDirection() const override { return -1.0F; }

  // Lays shapes out in a box of this size; when a side is 0, the box is unbounded on both.
  void compose(std::span<Shape const> shapes, Size const& size, ComposedShapes& result);

 private:
  void BeginComposition(std::uint32_t firstStyle) override;
  void EndComposition() noexcept override;
  float Measure(std::uint32_t style, OStringCore const& text) override;
  LineMetrics GetMetrics(std::uint32_t style) const override;

  std::uint32_t orientation_;
  std::uint32_t hAlign_;
  // Those of the composition that runs.
  std::span<Shape const> shapes_;
};

}  // namespace runtime
