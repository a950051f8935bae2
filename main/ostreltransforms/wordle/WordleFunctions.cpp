// Word clouds: words placed along a spiral so that they do not overlap, and the scale at which they fit.

#include "ostreltransforms/FamilyTable.h"
#include "ostreltransforms/FamilyTables.h"
#include "ostreltransforms/Registration.h"
#include "ostreltransforms/TransformNames.h"
#include "ostreltransforms/wordle/CloudFunctions.h"

namespace OstrelTransforms {
namespace {

constexpr SlotType kReals = ArrayOf(StoreType::Real64);

constexpr char kLayoutDetails[] =
    "- `widths`, `heights`, `width`, `height` and `gap` are in the same unit, of which the turns of the "
    "spiral are 5 apart; `scale` is applied to the positions alone.\n"
    "- A word starts at the fraction `starts` of the way that it has from the left to the right edge, and "
    "halfway up: 0.5 starts in the middle. Words are placed in the order of the rows; a placed word stays.\n"
    "- The first place on the spiral that lies within the bounds is taken, failing that the first with a "
    "visible part. Words that are wider or higher than the bounds need a visible part only.\n"
    "- Words are kept `gap` apart; without a gap they may touch.\n"
    "- The result has the Real64 columns \"x\" and \"y\", the left top corners. A word without a place has "
    "the x of minus its scaled width and the y 0: out of sight at the left. So has a word of which a number "
    "is not finite, that has tried 10,000,000 candidates, or that comes after 10,000,000,000 in all.\n"
    "- A word that is special in one of the columns is special in both results and takes no room.\n"
    "- Errors: 55 for an input of another kind, 219 for another number of inputs, 259 for columns of "
    "different lengths.";

constexpr char kScaleDetails[] =
    "- The area of all words, each of its width times its height, comes to at most 60 percent of the bounds, "
    "and the widest and the highest word fit into them.\n"
    "- Sizes that are not above 0 or not finite count as none, as do words with a special size. The scale is "
    "1 where nothing limits it and 0 where the bounds have no area.\n"
    "- Errors: 55 for an input of another kind, 219 for another number of inputs, 259 for columns of "
    "different lengths.";

constexpr Row kRows[] = {
    Multinary<LayOutWordCloudCells>(
        {.name = TransformNames::LAYOUT_WORDLE_CELLS,
         .inputs =
             {{"widths", kReals}, {"heights", kReals}, {"starts", kReals}, "width", "height", "scale", "gap"},
         .output = StoreType::KeyMap,
         .help = "Where the words of a cloud go, each at the first free place along a spiral.",
         .details = kLayoutDetails,
         .example = R"("inputs": [{"Array": {"type": "Real64", "values": [40, 30, 20]}}, )"
                    R"({"Array": {"type": "Real64", "values": [16, 12, 8]}}, )"
                    R"({"Array": {"type": "Real64", "values": [0.5, 0.5, 0.5]}}, )"
                    R"({"Real64": 100}, {"Real64": 60}, {"Real64": 1}, {"Real64": 1}])"}),
    Multinary<FindWordleScale>(
        {.name = TransformNames::WORDLE_SCALE,
         .inputs = {{"widths", kReals}, {"heights", kReals}, "width", "height"},
         .help =
             "The scale at which the words of a cloud fill 60 percent of its bounds, or the largest fits.",
         .details = kScaleDetails,
         .example = R"("inputs": [{"Array": {"type": "Real64", "values": [40, 30, 20]}}, )"
                    R"({"Array": {"type": "Real64", "values": [16, 12, 8]}}, )"
                    R"({"Real64": 100}, {"Real64": 60}])"}),
};

}  // namespace

FamilyTable GetWordleTable() { return {"wordle", kRows}; }

void RegisterOstrelWordleFunctions(ort::core::FunctionRegistry& registry) {
  RegisterRows(registry, GetWordleTable());
}

}  // namespace OstrelTransforms
