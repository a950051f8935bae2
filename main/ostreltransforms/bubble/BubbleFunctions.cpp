// Packed bubbles: circles laid out around the origin so that they touch and do not overlap, and their way to
// pixels.
//
// A size is a radius; sizes of 0 and below, NaN and special rows are circles without a radius, which stand at
// the origin and are in nobody's way.

#include "ostreltransforms/FamilyTable.h"
#include "ostreltransforms/FamilyTables.h"
#include "ostreltransforms/Registration.h"
#include "ostreltransforms/TransformNames.h"
#include "ostreltransforms/bubble/BubbleLayout.h"

namespace OstrelTransforms {
namespace {

constexpr Slot kSizes = {"sizes", ArrayOf(StoreType::Real64)};

constexpr Row kRows[] = {
    Multinary<LayoutBubbles>(
        {.name = TransformNames::LAYOUT_BUBBLES,
         .inputs = {kSizes},
         .output = StoreType::KeyMap,
         .help = "Packs circles around the origin so that they touch and do not overlap; their centres.",
         .details =
             "- `sizes`: the radii, in any unit. Sizes of 0 and below, NaN and special rows are circles "
             "without "
             "a radius: they stand at (0, 0) and are in nobody's way.\n"
             "- The result has the Real64 columns `x` and `y`, of the input's length and in its unit.\n"
             "\n"
             "The first circle stands left of the origin and the second right of it. Each further one, in "
             "the "
             "order given, is put where it touches the circle of the outer ring whose centre is nearest the "
             "origin, and that circle's successor; circles of the ring that are in its way leave the ring "
             "until it fits. Two circles count as overlapping when the square of the sum of their radii "
             "exceeds "
             "the square of their distance by more than 0.001. That bound is absolute: scale sizes so that "
             "it is small beside their squares, for circles whose radii add up to less than its root are "
             "not kept apart. Time grows nearly linearly with the number of circles. Radii whose squares are "
             "beyond Real64 give centres that are not numbers.\n"
             "\n"
             "Source: Weixin Wang, Hui Wang, Guozhong Dai, Hongan Wang, \"Visualization of Large "
             "Hierarchical "
             "Data by Circle Packing\", 2006.",
         .example = R"("inputs": [{"Array": {"type": "Real64", "values": [1, 1, 0, 0.5]}}])"}),
    Multinary<PixelScaleBubbles>(
        {.name = TransformNames::PIXELSCALE_BUBBLES,
         .inputs = {{"layout", StoreType::KeyMap}, kSizes, {"scale", StoreType::KeyMap}},
         .output = StoreType::KeyMap,
         .help = "The centres and diameters of packed circles in pixels.",
         .details = "- `layout`: what `layoutBubbles` gave: the Real64 columns `x` and `y`.\n"
                    "- `sizes`: what it was given.\n"
                    "- `scale`: the Real64 values `xScale` and `yScale`, pixels for a unit. A negative one "
                    "mirrors.\n"
                    "- The result has the Real64 columns `x` and `y`, and `size`, the diameters by the scale "
                    "that is "
                    "nearer 0. Special rows stay special, each in its column.",
         .example = R"("inputs": [{"KeyMap": {"x": {"Array": {"type": "Real64", "values": [-1, 0.5]}}, )"
                    R"("y": {"Array": {"type": "Real64", "values": [0.25, 0.75]}}}}, )"
                    R"({"Array": {"type": "Real64", "values": [1, 0.5]}}, )"
                    R"({"KeyMap": {"xScale": {"Real64": 10}, "yScale": {"Real64": -20}}}])"}),
};

}  // namespace

FamilyTable GetBubbleTable() { return {"bubble", kRows}; }

void RegisterOstrelBubbleFunctions(ort::core::FunctionRegistry& registry) {
  RegisterRows(registry, GetBubbleTable());
}

}  // namespace OstrelTransforms
