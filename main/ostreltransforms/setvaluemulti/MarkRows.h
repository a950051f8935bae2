#pragma once

#include "ostreltransforms/FamilyTable.h"
#include "ostreltransforms/TransformNames.h"
#include "ostreltransforms/setvaluemulti/HiddenMarks.h"
#include "ostreltransforms/setvaluemulti/KeyMaps.h"
#include "ostreltransforms/setvaluemulti/SizeEncoding.h"
#include "ostreltransforms/setvaluemulti/TreemapFunctions.h"

// The family's rows about marks and their legends.
namespace OstrelTransforms {

inline constexpr Row kResolveSizeEncodingParameters = Multinary<ResolveSizeEncodingParameters>(
    {.name = TransformNames::RESOLVE_SIZE_ENCODING_PARAMETERS,
     .inputs = {{"minimum", StoreType::Real64},
                {"maximum", StoreType::Real64},
                {"legendMinimum", StoreType::Real64},
                {"legendMaximum", StoreType::Real64},
                {"fixedMinimum", StoreType::Real64},
                {"fixedMaximum", StoreType::Real64},
                {"center", StoreType::Real64},
                "mode",
                "isReversed",
                "isLog",
                "fieldType"},
     .output = StoreType::KeyMap,
     .help =
         "Which numbers the smallest and the largest mark of a chart stand for, for scaling the marks and "
         "for their legend.",
     .details =
         R"(- `minimum`, `maximum`: the least and greatest value of the field; special where there is none
- `legendMinimum`, `legendMaximum`: the ends that the legend shows; special for those of the sizes
- `fixedMinimum`, `fixedMaximum`: ends of the sizes that are fixed; special for those of the marks
- `center`: a value from which sizes grow both ways; special for none
- `mode`: 0 chooses, 1 goes from the least to the greatest value, 2 from zero
- `isReversed`: large values get small marks; `isLog`: sizes follow the logarithm
- `fieldType`: the store type code of the field

Ends are numbers or dates of any type; one that is not finite is none. The size of a value v is its position from
`encodingMin` to `encodingMax`, that of encodingMin + |v - encodingMin| where `isFromCenter`, counted from the
other end where `reversed`. With low and high for the least and greatest value, or what is fixed in their
place, the first of these rules that fits holds:

1. A logarithmic field goes from low to high; an end not above 0 counts as 1.
2. With a centre, sizes go from there to as far as the farther of low and high lies from it, `isFromCenter`.
3. Dates, and mode 1, go from low to high; so does mode 0 where the least value is fixed.
4. Mode 2, and mode 0 without values below 0, go from 0 to high, in mode 2 from the least value where it is
   fixed above 0.
5. Anything else is as with the centre 0: -5 and 5 are marks of one size.

`inputPositiveValuesOnly` holds under rules 1 and 4. Where low is above high, they are exchanged and `reversed`
is turned over. `encodingRangeIsEmpty` tells that all marks have one size; without a least or greatest value
both ends are 0. `legendMinMaxNotEqual` tells that the legend has two ends and that they differ. Another mode
throws 2, an end that is no number or date 178.)",
     .example = R"("inputs": [{"Real64": -3}, {"Real64": 5}, {"Special": {"type": "Real64", "kind": 1}}, )"
                R"({"Special": {"type": "Real64", "kind": 1}}, {"Special": {"type": "Real64", "kind": 1}}, )"
                R"({"Special": {"type": "Real64", "kind": 1}}, {"Special": {"type": "Real64", "kind": 1}}, )"
                R"({"Int32": 0}, {"Bool": false}, {"Bool": false}, {"Int32": 4}])"});

inline constexpr Row kExcludeHiddenMarks = Multinary<ExcludeHiddenMarks>(
    {.name = TransformNames::EXCLUDE_HIDDEN_MARKS,
     .inputs = {{"colors", ArrayOf(StoreType::Int32)},
                {"hiddenColors", ArrayOf(StoreType::Bool)},
                {"shapes", ArrayOf(StoreType::Int32)},
                {"hiddenShapes", ArrayOf(StoreType::Bool)},
                {"sizes", ArrayOf(StoreType::Int32)},
                {"hiddenSizes", ArrayOf(StoreType::Bool)},
                {"hiddenMarks", ArrayOf(StoreType::Bool)},
                "keepsUnlisted"},
     .output = ArrayOf(StoreType::Bool),
     .help = "Which marks stay when entries of the chart's legends, or marks one by one, are hidden.",
     .details =
         R"(- `colors`, `hiddenColors`: the entry of the colour legend that each mark stands for, and of each entry, from 0
  on, whether it is hidden
- `shapes`, `hiddenShapes` and `sizes`, `hiddenSizes`: likewise of the shape and the size legend
- `hiddenMarks`: of each mark whether it is hidden; special rows are not
- `keepsUnlisted`: marks stay that stand for no entry of a legend, with a row that is special, negative, or at or past
  the entries

A mark stays when none of these hides it; the result has a row a mark, to filter the marks with before they are
stacked and scaled. A legend that there is not is a column of entries without rows, which hides nothing. Columns of
marks that have rows and differ in length throw 259.)",
     .example = R"("inputs": [{"Array": {"type": "Int32", "values": [0, 1, 2, 1]}}, )"
                R"({"Array": {"type": "Bool", "values": [false, true, false]}}, )"
                R"({"Array": {"type": "Int32", "values": []}}, {"Array": {"type": "Bool", "values": []}}, )"
                R"({"Array": {"type": "Int32", "values": []}}, {"Array": {"type": "Bool", "values": []}}, )"
                R"({"Array": {"type": "Bool", "values": [false, false, true, false]}}, {"Bool": true}])"});

inline constexpr Row kToKeyMap = Multinary<ToKeyMap>(
    {.name = TransformNames::TO_KEYMAP,
     .inputs = {{"members", StoreType::Table}},
     .output = StoreType::KeyMap,
     .help = "A table, or a tuple or column of pairs of name and value, as a key map.",
     .details =
         R"(- `members`: a table or key map, whose columns or members become the members; or a tuple or column of pairs, each a
  tuple of a name and a value of any kind

Of pairs with one name the later holds; special rows of a column are passed over, special values keep their kind.
Nothing gives a key map without members. Further inputs are not read; none throws "invalid vector<T> subscript",
anything else than a pair 55.)",
     .example = R"("inputs": [{"Table": {"x": {"Array": {"type": "Real64", "values": [1, 2]}}, )"
                R"("y": {"Array": {"type": "Real64", "values": [3, 4]}}}}])"});

inline constexpr Row kComputeTreemapNodesLayout = Multinary<ComputeTreemapNodesLayout>(
    {.name = TransformNames::COMPUTE_TREEMAP_NODES_LAYOUT,
     .inputs = {{"parents", ArrayOf(StoreType::Int32)},
                {"sizes", ArrayOf(StoreType::Real64)},
                "width",
                "height",
                {"headers", ArrayOf(StoreType::Real64)},
                {"paddings", ArrayOf(StoreType::Real64)}},
     .output = StoreType::KeyMap,
     .help = "The rectangles of a squarified treemap's nodes.",
     .details =
         R"(- `parents`: the row of each node's parent; negative or special for none
- `sizes`: the size of each node without children; special, not finite or not above 0 is 0. Those of other nodes are not
  read
- `width`, `height`: of the whole, in pixels
- `headers`, `paddings`: the height of the strip at the top of an inner node and the margin around its children in
  pixels, a row a level from the outermost; the last serves all deeper levels, no rows are 0

The result holds columns with a row a node: `x`, `y`, `x1`, `y1` (left, top, right and bottom edge in pixels),
`header_height`, `size` (a leaf's own, else the sum of its leaves') and `level` (0 for the outermost). The children
of a node fill what strip and margin leave, with areas in proportion to their sizes, largest first, equal
ones by row; neighbours share a coordinate to the last bit. A strip of more than half a node's height is left
out. Nodes of size 0 are empty at the bottom right corner. Bounds and amounts that are not finite or below 0
count as 0. A parent's row at or past the end and nodes that are their own ancestors throw 55, columns of different
lengths 259. After M. Bruls, K. Huizing, J. J. van Wijk, "Squarified Treemaps", 2000.)",
     .example =
         R"("inputs": [{"Array": {"type": "Int32", "values": [-1, 0, 0, -1]}}, )"
         R"({"Array": {"type": "Real64", "values": [0, 6, 2, 4]}}, {"Real64": 60}, {"Real64": 40}, )"
         R"({"Array": {"type": "Real64", "values": [8]}}, {"Array": {"type": "Real64", "values": []}}])"});

}  // namespace OstrelTransforms
