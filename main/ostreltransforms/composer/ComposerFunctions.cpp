// Text composition: texts and shapes in, positioned runs out; and what prepares their inputs.

#include "ostreltransforms/FamilyTable.h"
#include "ostreltransforms/FamilyTables.h"
#include "ostreltransforms/Registration.h"
#include "ostreltransforms/TransformNames.h"
#include "ostreltransforms/composer/ComposeShapes.h"
#include "ostreltransforms/composer/ComposeText.h"
#include "ostreltransforms/composer/IndexKeySet.h"
#include "ostreltransforms/composer/TextStyleTable.h"

namespace OstrelTransforms {
namespace {

using namespace ort::core;

constexpr SlotType kIntegers = ArrayOf(StoreType::Int32);
constexpr SlotType kReals = ArrayOf(StoreType::Real64);

constexpr Row kRows[] = {
    Multinary<ComposeShapes>(
        {.name = TransformNames::COMPOSE_SHAPES,
         .inputs = {{"firstShapes", kIntegers},
                    {"counts", kIntegers},
                    {"ids", kIntegers},
                    {"widths", kReals},
                    {"heights", kReals},
                    "width",
                    "height",
                    "orientation",
                    "hAlign"},
         .output = StoreType::KeyMap,
         .help = "Lays out rows of shapes, such as the symbols of a legend, in boxes of one size.",
         .details =
             "- `firstShapes`, `counts`: one row a list, the row of its first shape and how many it has; a "
             "special row makes an empty list.\n"
             "- `ids`, `widths`, `heights`: one row a shape, its number and its size in pixels.\n"
             "- `width`, `height`: of the box in pixels; when either is 0 it is unbounded, otherwise a line "
             "ends where the next shape would not fit.\n"
             "- `orientation`: 0 lines run to the right, 1 downwards, 2 upwards; `hAlign`: along a line 0 "
             "begin, 1 middle, 2 end.\n\n"
             "A line is as high as its highest shape, shapes stand on its lower edge, and lines are stacked "
             "upwards from the lower edge of the box. The result has `text_run_offset`, `text_run_count`, "
             "`width` and `height`, one row a list, and `shape_id`, `text_style_id` (the row of the shape), "
             "`text_run_x`, `text_run_y`, `text_run_x_remote` and `text_run_y_remote`, one row a shape, as "
             "in composeText.",
         .example = R"("inputs": [{"Array": {"type": "Int32", "values": [0]}}, )"
                    R"({"Array": {"type": "Int32", "values": [3]}}, )"
                    R"({"Array": {"type": "Int32", "values": [7, 8, 9]}}, )"
                    R"({"Array": {"type": "Real64", "values": [10, 10, 10]}}, )"
                    R"({"Array": {"type": "Real64", "values": [8, 12, 8]}}, )"
                    R"({"Real64": 25}, {"Real64": 40}, {"Int32": 0}, {"Int32": 1}])"}),
    Multinary<ComposeText>(
        {.name = TransformNames::COMPOSE_TEXT,
         .inputs = {{"firstRuns", kIntegers},
                    {"runCounts", kIntegers},
                    {"texts", ArrayOf(StoreType::String)},
                    {"styles", kIntegers},
                    {"styleTable", StoreType::Table},
                    {"width", StoreType::Real64},
                    {"height", StoreType::Real64},
                    {"fitStyle", StoreType::Int32},
                    {"wrapMode", StoreType::Int32}},
         .output = StoreType::KeyMap,
         .help = "Lays out texts of styled runs in boxes of one size and shortens those that do not fit.",
         .details =
             "- `firstRuns`, `runCounts`: one row a text, the row of its first run and how many it has; a "
             "special row makes an empty text.\n"
             "- `texts`, `styles`: one row a run, its text and a row of `styleTable`.\n"
             "- `width`, `height`: of the box in pixels; when either is 0 it is unbounded.\n"
             "- `fitStyle`: a text that does not fit is 0 shown all the same, 1 not shown, 2 or 5 cut at its "
             "end, 3 cut at its beginning, which two full stops replace, 4 cut at its end likewise, 6 "
             "replaced by number signs.\n"
             "- `wrapMode`: lines end 0 at line breaks, 1 there and are cut at the edge of the box, 2 or 3 "
             "there and where the next word would not fit; -1 takes `text_wrap_mode` of the first style.\n\n"
             "The result has one row a text in `text_run_offset` and `text_run_count` (its rows in the "
             "columns of runs), `width` and `height` (the box around its lines), and one row a run in "
             "`text_run`, `text_style_id`, `text_run_x` and `text_run_y` (where it begins on its baseline), "
             "`text_run_x_remote` and `text_run_y_remote` (the same from the anchor, the point of the box "
             "around the lines that `hAlign` and `vAlign` of the first style name). A run stands on one "
             "line. An empty text, and one that fits in no form, has no runs.",
         .example = R"("inputs": [{"Array": {"type": "Int32", "values": [0]}}, )"
                    R"({"Array": {"type": "Int32", "values": [1]}}, )"
                    R"({"Array": {"type": "String", "values": ["one two"]}}, )"
                    R"({"Array": {"type": "Int32", "values": [0]}}, )"
                    R"({"Table": {"text_font": {"Array": {"type": "Tuple", "values": [{"Tuple": [)"
                    R"({"String": "DejaVu Sans"}, {"Real64": 10}, {"Int32": 400}, {"Int32": 0}]}]}}, )"
                    R"("ascent": {"Array": {"type": "Real64", "values": [8]}}, )"
                    R"("font_height": {"Array": {"type": "Real64", "values": [10]}}, )"
                    R"("leading": {"Array": {"type": "Real64", "values": [2]}}, )"
                    R"("text_orientation": {"Array": {"type": "Int32", "values": [0]}}, )"
                    R"("hAlign": {"Array": {"type": "Int32", "values": [1]}}, )"
                    R"("vAlign": {"Array": {"type": "Int32", "values": [0]}}}}, )"
                    R"({"Real64": 45}, {"Real64": 100}, {"Int32": 4}, {"Int32": 2}])"}),
    Multinary<BuildIndexKeySet>(
        {.name = TransformNames::BUILD_INDEX_KEYSET_INT32,
         .inputs = {{"numbers", kIntegers}},
         .output = KeySetOf(StoreType::Int32, StoreType::Array),
         .help = "The rows at which each number of a column occurs.",
         .details = "Rows are counted from 0 and ascend. Special rows stand under their kind among the "
                    "special entries.",
         .example = R"("inputs": [{"Array": {"type": "Int32", "values": [3, 1, 3, 3]}}])"}),
    Multinary<UpdateTextStyleTable>(
        {.name = TransformNames::UPDATE_TEXT_STYLE_TABLE,
         .inputs = {{"styles", StoreType::Table}},
         .output = StoreType::Table,
         .help = "The complete text style table with resolved fonts, from any of its columns.",
         .details =
             "A style is a row. A column that is missing, and a special row, takes the default: `font` "
             "\"sans-serif\", `font_size` 11 pixels, `font_weight` 400, `font_style` 0 (1 is italic), "
             "`text_style_color` black (a colour or its name), `text_decoration`, `text_alignment`, "
             "`text_orientation` (0 horizontal, 2 turned anticlockwise, 3 clockwise), `hAlign` (0 begin, 1 "
             "middle, 2 end), `vAlign` (0 top, 1 middle, 2 bottom) and `text_wrap_mode` 0. `text_font` is "
             "the font of those four columns as the host resolves it, or a given font resolved; the "
             "resolved font tells `ascent`, `font_height` and `leading` in pixels, else they stay as given "
             "or are 0.8, 1 and 0.2 of the size. Other columns pass through.",
         .example = R"("inputs": [{"Table": {"font_size": {"Array": {"type": "Real64", )"
                    R"("values": [10, 14]}}}}])"}),
};

}  // namespace

FamilyTable GetComposerTable() { return {"composer", kRows}; }

void RegisterOstrelComposerFunctions(FunctionRegistry& registry) {
  RegisterRows(registry, GetComposerTable());
}

}  // namespace OstrelTransforms
