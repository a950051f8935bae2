#pragma once

#include "ostreltransforms/FamilyTable.h"
#include "ostreltransforms/TransformNames.h"
#include "ostreltransforms/setvaluemulti/FoldedAxisFunctions.h"
#include "ostreltransforms/setvaluemulti/LockedScales.h"
#include "ostreltransforms/setvaluemulti/OverflowFunctions.h"
#include "ostreltransforms/setvaluemulti/RangeExtensions.h"
#include "ostreltransforms/setvaluemulti/Stepping.h"

// The rows of the functions of ranges, in the order in which the set-value-multi family registers them.
namespace OstrelTransforms {

using ort::core::StoreType;

inline constexpr Row kExtendRangeColumn = Multinary<ExtendRangeColumn>(
    {.name = TransformNames::EXTEND_RANGE_COLUMN,
     .inputs = {{"ranges", ArrayOf(StoreType::Tuple)},
                {"least", ArrayOf(StoreType::Real64)},
                {"greatest", ArrayOf(StoreType::Real64)},
                "shareBelow",
                "shareAbove",
                "stopsAtZero",
                "keepsLogarithms"},
     .output = ArrayOf(StoreType::Tuple),
     .help = "Ranges widened to hold further values and then by a share at each end.",
     .details = R"(So that no mark stands on the edge of its pane.

0. `ranges`: range tuples: minimum, maximum, mode code, code of the field's type, whether the scale is logarithmic
1. `least`: the least further value of each range, in the field's units (dates as day numbers); special for none
2. `greatest`: the greatest one
3. `shareBelow`: of the extent, put below the minimum; finite and not negative (else 2)
4. `shareAbove`: of the extent, put above the maximum
5. `stopsAtZero`: a share carries no end past 0, as bars want it; a logarithmic scale has no 0
6. `keepsLogarithms`: the ends of logarithmic ranges are given as natural logarithms

On the range's scale (natural logarithms on a logarithmic one) minimum' = min(minimum, least, greatest) and
maximum' = max(maximum, least, greatest); one point is opened as by `extendPointRanges`; then the ends move
outwards by their shares of maximum' - minimum'.

The result is a column of range tuples, one a row: Real64 ends, DateTimes for temporal fields. Of modes 3 and 10
no end moves, of 4, 6 and 7 not the minimum, of 5, 8 and 9 not the maximum. An end that is special, not finite,
or not above 0 on a logarithmic scale is missing and counts as the other one; a range without ends and further
values, and one that does not change, comes back as it is. Ends in the wrong order are exchanged. Special rows
stay special, no rows give none; columns of unequal length throw 259.)",
     .example = R"("inputs": [{"Array": {"type": "Tuple", "values": [{"Tuple": [{"Real64": 0}, )"
                R"({"Real64": 10}, {"Int32": 0}, {"Int32": 4}, {"Bool": false}]}]}}, )"
                R"({"Array": {"type": "Real64", "values": [2]}}, )"
                R"({"Array": {"type": "Real64", "values": [20]}}, {"Real64": 0.05}, {"Real64": 0.05}, )"
                R"({"Bool": true}, {"Bool": false}])"});

inline constexpr Row kExtendRangeWithOverflow = Multinary<ExtendRangeWithOverflow>(
    {.name = TransformNames::EXTEND_RANGE_WITH_OVERFLOW,
     .inputs = {{"range", StoreType::Tuple},
                {"lower", StoreType::Real64},
                {"upper", StoreType::Real64},
                "length",
                {"largestShare", StoreType::Real64}},
     .output = StoreType::Tuple,
     .help = "The range that leaves pixels free at the ends of a pane, for what would stick out of it.",
     .details =
         R"(Marks and their labels at the ends of a range stick out of the pane; this range takes them in.

0. `range`: the range tuple of the axis
1. `lower`: pixels to leave free at the minimum's end of the pane, as `calcPixelOverflow` and
   `calcReflineOverflow` give them; special for none
2. `upper`: pixels to leave free at the maximum's end; special for none
3. `length`: the pane's pixels along the axis
4. `largestShare`: how much of the pane may be left free, 0 to 1 (else 2; 1 itself is not reached); special for
   0.5. Both amounts are shortened alike to keep it

On the range's scale (natural logarithms on a logarithmic one), with rest = length - lower - upper, the minimum
moves down by lower * (maximum - minimum) / rest and the maximum up by upper * (maximum - minimum) / rest: what
was in the range fills the rest of the pane, and nothing moves more than that needs.

The result is a range tuple with Real64 ends, DateTimes for temporal fields. An end that the mode fixes does not
move, and its pixels count as 0; so do amounts that are NaN or negative. The range comes back as it is where
nothing is to be left free, an end is missing (special, not finite, not above 0 on a logarithmic scale) or the
length is not finite and above 0. Ends in the wrong order are exchanged, one point is opened first.)",
     .example = R"("inputs": [{"Tuple": [{"Real64": 0}, {"Real64": 10}, {"Int32": 0}, {"Int32": 4}, )"
                R"({"Bool": false}]}, {"Real64": 0}, {"Real64": 20}, {"Real64": 100}, {"Real64": 0.5}])"});

inline constexpr Row kCalcPixelOverflow = Multinary<CalcPixelOverflow>(
    {.name = TransformNames::CALC_PIXEL_OVERFLOW,
     .inputs = {{"values", ArrayOf(StoreType::Real64)},
                {"halfSizes", ArrayOf(StoreType::Real64)},
                {"labelSizes", ArrayOf(StoreType::Real64)},
                "labelSide",
                "gap",
                {"range", StoreType::Tuple},
                "length",
                "isReversed"},
     .output = StoreType::Tuple,
     .help = "The pixels that marks and their labels need free at the ends of a pane so as not to stick out.",
     .details = R"(To be handed to `extendRangeWithOverflow`, after which nothing sticks out.

0. `values`: where the marks stand, in the field's units (dates as day numbers)
1. `halfSizes`: half of each mark's size along the axis, in pixels
2. `labelSizes`: the size of each mark's label along the axis, in pixels; special for none
3. `labelSide`: the label stands before its mark, towards the pane's start (below 0), centred on it (0), or after
   it (above 0)
4. `gap`: pixels between a mark and its label
5. `range`: the range tuple of the axis
6. `length`: the pane's pixels along the axis
7. `isReversed`: the range's minimum is at the pane's end instead of its start

A mark at the fraction t of the range takes `before` pixels towards the minimum and `after` towards the maximum:
half its size, or half its size + gap + label to the label's side. The result is the least lower and upper for
which lower + t * rest >= before and upper + (1 - t) * rest >= after hold for every mark, with rest = length -
lower - upper. For marks at the range's ends that is what sticks out of the pane; marks further inside need more
than what sticks out, for the range's shrinking moves them to the end. Where no room is enough, it is what sticks
out at present, at most the length.

The result is the tuple (lower, upper) of Real64. Marks with a special value, or outside the range, don't count;
sizes that are special, not finite or negative are 0. An end that the mode fixes gets no room. No marks, a
missing end and a length that is not finite and above 0 give (0, 0). Columns of unequal length throw 259.)",
     .example = R"("inputs": [{"Array": {"type": "Real64", "values": [0, 5, 10]}}, )"
                R"({"Array": {"type": "Real64", "values": [4, 4, 4]}}, )"
                R"({"Array": {"type": "Real64", "values": [10, 30, 30]}}, {"Int32": 1}, {"Real64": 2}, )"
                R"({"Tuple": [{"Real64": 0}, {"Real64": 10}, {"Int32": 0}, {"Int32": 4}, )"
                R"({"Bool": false}]}, {"Real64": 200}, {"Bool": false}])"});

inline constexpr Row kCalcReflineOverflow = Multinary<CalcReflineOverflow>(
    {.name = TransformNames::CALC_REFLINE_OVERFLOW,
     .inputs = {{"values", ArrayOf(StoreType::Real64)},
                {"thicknesses", ArrayOf(StoreType::Real64)},
                {"labelSizes", ArrayOf(StoreType::Real64)},
                {"labelSides", ArrayOf(StoreType::Int32)},
                "gap",
                "includesLines",
                {"range", StoreType::Tuple},
                "length",
                "isReversed"},
     .output = StoreType::KeyMap,
     .help = "The pixels that reference lines and their labels need free at the ends of a pane.",
     .details = R"(To be handed to `extendRangeWithOverflow`, after which nothing sticks out.

0. `values`: where the lines stand, in the field's units (dates as day numbers)
1. `thicknesses`: of the lines, in pixels
2. `labelSizes`: the size of each line's label along the axis, in pixels; special for none
3. `labelSides`: a label stands before its line, towards the pane's start (below 0), centred on it (0), or after
   it (above 0)
4. `gap`: pixels between a line and its label
5. `includesLines`: lines outside the range are to be taken in; otherwise they are not drawn
6. `range`: the range tuple of the axis
7. `length`: the pane's pixels along the axis
8. `isReversed`: the range's minimum is at the pane's end instead of its start

A line takes half its thickness to either side, and gap + label more to its label's side. The rule is that of
`calcPixelOverflow`; the fraction t of a line that is taken in is below 0 or above 1.

The result is a key map of the Real64 `lower` and `upper`. Special values and sizes, empty columns, missing ends
and errors are as in `calcPixelOverflow`.)",
     .example = R"("inputs": [{"Array": {"type": "Real64", "values": [12]}}, )"
                R"({"Array": {"type": "Real64", "values": [2]}}, )"
                R"({"Array": {"type": "Real64", "values": [11]}}, )"
                R"({"Array": {"type": "Int32", "values": [1]}}, {"Real64": 3}, {"Bool": true}, )"
                R"({"Tuple": [{"Real64": 0}, {"Real64": 10}, {"Int32": 0}, {"Int32": 4}, )"
                R"({"Bool": false}]}, {"Real64": 200}, {"Bool": false}])"});

inline constexpr Row kExtendXRangesByDegree = Multinary<ExtendXRangesByDegree>(
    {.name = TransformNames::EXTEND_X_RANGES_BY_DEGREE,
     .inputs = {{"ranges", ArrayOf(StoreType::Tuple)},
                "degrees",
                {"latitudes", ArrayOf(StoreType::Tuple)},
                "wraps"},
     .output = ArrayOf(StoreType::Tuple),
     .help = "Ranges of longitude widened by degrees, so that the marks of a map have land around them.",
     .details = R"(0. `ranges`: range tuples in degrees of longitude
1. `degrees`: put below each minimum and above each maximum; finite and not negative (else 2)
2. `latitudes`: range tuples in degrees of latitude, one for each range (else 259), or none
3. `wraps`: the map goes on past 180 degrees

With a range of latitudes the degrees are divided by the cosine of its middle (up to 85.05112878 degrees): they
are as long there, on the ground and on a Mercator map, as the same degrees of latitude, so that the padding of
both directions looks equal.

On a map that wraps, a minimum above the maximum is a range across the 180th meridian, whose maximum counts 360
more; ends may pass 180, and what would exceed 360 degrees becomes 360 around its middle. Elsewhere no end moves
past -180 or 180.

The result is a column of range tuples with Real64 ends, one a row. Ranges with a missing end and logarithmic
ones come back as they are, ends that the mode fixes do not move, missing latitudes leave the degrees. Special
rows stay special, no rows give none.)",
     .example = R"("inputs": [{"Array": {"type": "Tuple", "values": [{"Tuple": [{"Real64": 5}, )"
                R"({"Real64": 15}, {"Int32": 0}, {"Int32": 4}, {"Bool": false}]}]}}, {"Real64": 2}, )"
                R"({"Array": {"type": "Tuple", "values": [{"Tuple": [{"Real64": 55}, {"Real64": 65}, )"
                R"({"Int32": 0}, {"Int32": 4}, {"Bool": false}]}]}}, {"Bool": false}])"});

inline constexpr Row kExtendYRangesByDegree = Multinary<ExtendYRangesByDegree>(
    {.name = TransformNames::EXTEND_Y_RANGES_BY_DEGREE,
     .inputs = {{"ranges", ArrayOf(StoreType::Tuple)}, "degrees"},
     .output = ArrayOf(StoreType::Tuple),
     .help = "Ranges of latitude widened by degrees, so that the marks of a map have land around them.",
     .details = R"(0. `ranges`: range tuples in degrees of latitude
1. `degrees`: taken off each minimum and put on each maximum; finite and not negative (else 2)

No end moves past -90 or 90. The result is a column of range tuples with Real64 ends, one a row. Ranges with a
missing end and logarithmic ones come back as they are, ends that the mode fixes do not move. Special rows stay
special, no rows give none.)",
     .example = R"("inputs": [{"Array": {"type": "Tuple", "values": [{"Tuple": [{"Real64": 55}, )"
                R"({"Real64": 89}, {"Int32": 0}, {"Int32": 4}, {"Bool": false}]}]}}, {"Real64": 2}])"});

inline constexpr Row kZeroAlignFoldedAxes = Multinary<ZeroAlignFoldedAxes>(
    {.name = TransformNames::ZERO_ALIGN_FOLDED_AXES,
     .inputs = {{"ranges", ArrayOf(StoreType::Tuple)},
                {"panes", ArrayOf(StoreType::Int32)},
                {"isFolded", ArrayOf(StoreType::Bool)},
                {"reversed", ArrayOf(StoreType::Bool)},
                "includesZero"},
     .output = ArrayOf(StoreType::Tuple),
     .help = "Widens the ranges of axes that share a pane so that their zeros stand at one height.",
     .details =
         R"(Two measures on one pane are compared by eye: their zeros must meet, and neither may be cut.

0. `ranges`: range tuples, one an axis
1. `panes`: axes with one number share a pane (Int32 or Int64)
2. `isFolded`: the axis takes part; others keep their ranges
3. `reversed`: the axis' minimum is at the pane's end
4. `includesZero`: a range without 0 is first widened to it; otherwise its axis takes no part

With the zeros at the fraction z of the pane, an axis that reaches b below its zero and a above it becomes as long
as max(b / z, a / (1 - z)). The z is taken for which the product of the shares of the pane that the axes' own
ranges keep is greatest, so that the least room is wasted. Of two axes it is the position between both zeros that
is nearest to the middle: one of the axes stays as it is unless their zeros lie to both sides of it.

The result is a column of range tuples with Real64 ends, one a row. Axes with a missing end, a logarithmic scale
or a temporal field take no part; one point is opened first. Where ends that modes fix leave no common height,
the pane's ranges stay. Special rows stay special, no rows give none; columns of unequal length throw 259.)",
     .example = R"("inputs": [{"Array": {"type": "Tuple", "values": [{"Tuple": [{"Real64": 0}, )"
                R"({"Real64": 100}, {"Int32": 0}, {"Int32": 4}, {"Bool": false}]}, {"Tuple": [)"
                R"({"Real64": -5}, {"Real64": 15}, {"Int32": 0}, {"Int32": 4}, {"Bool": false}]}]}}, )"
                R"({"Array": {"type": "Int32", "values": [0, 0]}}, )"
                R"({"Array": {"type": "Bool", "values": [true, true]}}, )"
                R"({"Array": {"type": "Bool", "values": [false, false]}}, {"Bool": true}])"});

inline constexpr Row kSyncFoldedAxes = Multinary<SyncFoldedAxes>(
    {.name = TransformNames::SYNC_FOLDED_AXES,
     .inputs = {{"axes", StoreType::Table},
                {"ids", ArrayOf(StoreType::Int32)},
                {"ranges", ArrayOf(StoreType::Tuple)},
                {"panes", ArrayOf(StoreType::Int32)},
                {"folded", ArrayOf(StoreType::Int32)},
                "length",
                {"largestShare", StoreType::Real64},
                "includesZero"},
     .output = ArrayOf(StoreType::Tuple),
     .help = "Gives axes that are folded onto a pane one range, with room for the labels of all their bars.",
     .details =
         R"(0. `axes`: a table, one row an axis: `UniqueID`, its number (Int32 or Int64), and `BarLabelsOverflow`, the
   tuple (lower, upper) of Real64 pixels that the labels of its bars need free at the ends of its own range, as
   `calcPixelOverflow` gives it; special for none
1. `ids`: the `UniqueID` of each range's axis
2. `ranges`: range tuples
3. `panes`: ranges with one number share a pane (Int32 or Int64)
4. `folded`: the `UniqueID` of the axes that are folded together; ranges of others stay as they are
5. `length`: the pane's pixels along the axes
6. `largestShare`: how much of the pane labels may be given, 0 to 1 (else 2); special for 0.5
7. `includesZero`: the common range holds 0 (1 on a logarithmic scale)

The common range goes from the least minimum to the greatest maximum of a pane's folded ranges. An axis' labels
stand at its own ends in that range, where they may have room already; what is added is the least that all of
them need, by the rule of `calcPixelOverflow` and `extendRangeWithOverflow`.

The result is a column of range tuples with Real64 ends (DateTimes for temporal fields), one a row, each with its
own mode and types. An end that any mode fixes is the common one and gets no room. Ranges with a missing end get
the common one as well; a pane of such alone stays. Special rows stay special, no rows give none. An axis that the
table does not list needs no room. A table without one of the columns throws 219, a logarithmic range folded with
another, or dates with numbers, 220, columns of unequal length 259.)",
     .example = R"("inputs": [{"Table": {"UniqueID": {"Array": {"type": "Int32", "values": [7, 8]}}, )"
                R"("BarLabelsOverflow": {"Array": {"type": "Tuple", "values": [{"Tuple": [{"Real64": 0}, )"
                R"({"Real64": 20}]}, {"Tuple": [{"Real64": 0}, {"Real64": 50}]}]}}}}, )"
                R"({"Array": {"type": "Int32", "values": [7, 8]}}, {"Array": {"type": "Tuple", "values": )"
                R"([{"Tuple": [{"Real64": 0}, {"Real64": 80}, {"Int32": 0}, {"Int32": 4}, )"
                R"({"Bool": false}]}, {"Tuple": [{"Real64": 0}, {"Real64": 40}, {"Int32": 0}, )"
                R"({"Int32": 4}, {"Bool": false}]}]}}, {"Array": {"type": "Int32", "values": [0, 0]}}, )"
                R"({"Array": {"type": "Int32", "values": [7, 8]}}, {"Real64": 100}, {"Real64": 0.5}, )"
                R"({"Bool": true}])"});

inline constexpr Row kAdjustAxesForLockedScales = Multinary<AdjustAxesForLockedScales>(
    {.name = TransformNames::ADJUST_AXES_FOR_LOCKED_SCALES,
     .inputs = {{"ranges", ArrayOf(StoreType::Tuple)},
                {"lengths", ArrayOf(StoreType::Real64)},
                {"isLocked", ArrayOf(StoreType::Bool)},
                {"groups", ArrayOf(StoreType::Int32)},
                {"isHorizontal", ArrayOf(StoreType::Bool)},
                {"reversed", ArrayOf(StoreType::Bool)},
                {"anchors", ArrayOf(StoreType::Real64)},
                {"ratio", StoreType::Real64},
                {"leastUnits", StoreType::Real64},
                {"roundsUp", StoreType::Bool},
                {"limits", ArrayOf(StoreType::Tuple)},
                {"stopsAtZero", StoreType::Bool},
                {"lower", ArrayOf(StoreType::Real64)},
                {"upper", ArrayOf(StoreType::Real64)},
                {"largestShare", StoreType::Real64}},
     .output = ArrayOf(StoreType::Tuple),
     .help = "Widens the ranges of axes that are locked together to one number of units a pixel.",
     .details = R"(Equal lengths in their panes are equal amounts then. Each column has a row an axis.

0. `ranges`: range tuples
1. `lengths`: the panes' pixels along the axes
2. `isLocked`: axes that are not locked keep their ranges
3. `groups`: axes with one number are locked together (Int32 or Int64)
4. `isHorizontal`: the axis' direction
5. `reversed`: the axis' minimum is at the pane's end
6. `anchors`: where in the pane, from its start, what is added is parted: 0 leaves the range at the start, 1 at
   the end; special for 0.5; others than 0 to 1 throw 2
7. `ratio`: units a pixel of a vertical axis for one of a horizontal axis; finite and above 0 (else 2)
8. `leastUnits`: the least units a pixel of horizontal axes, finite and not negative (else 2); special for none
9. `roundsUp`: units a pixel become the next 1, 2 or 5 times a power of ten
10. `limits`: range tuples, or no rows: a range that is not longer than its limits slides to lie within them
11. `stopsAtZero`: an end on one side of 0 is not moved past it; the other one moves instead
12. `lower`: pixels to leave free at the minimum's end of the pane, or no rows; special for none
13. `upper`: the same at the maximum's end
14. `largestShare`: how much of a pane may be left free, 0 to 1 (else 2); special for 0.5

An axis needs (maximum - minimum) / (length - lower - upper) units a pixel, divided by the ratio if vertical. A
group's units are the greatest need of its axes and the least units, rounded up where wanted; each axis becomes
units (times the ratio if vertical) * length long, around its own range and the pixels to leave free: none is cut,
and the axis that needs most stays as it is. Units are those of the scale: days for dates, natural logarithms
on a logarithmic one. Sliding keeps what the axis must hold.

The result is a column of range tuples with Real64 ends (DateTimes for temporal fields), one a row. An end that
the mode fixes stays and the other one moves; of two fixed ends the axis counts for its group but keeps its range.
Axes with a missing end or without a finite length above 0 keep theirs; one point is opened first. Special rows
stay special, no rows give none; columns of unequal length throw 259.)",
     .example = R"("inputs": [{"Array": {"type": "Tuple", "values": [{"Tuple": [{"Real64": 0}, )"
                R"({"Real64": 10}, {"Int32": 0}, {"Int32": 4}, {"Bool": false}]}, {"Tuple": [)"
                R"({"Real64": 0}, {"Real64": 10}, {"Int32": 0}, {"Int32": 4}, {"Bool": false}]}]}}, )"
                R"({"Array": {"type": "Real64", "values": [200, 100]}}, )"
                R"({"Array": {"type": "Bool", "values": [true, true]}}, )"
                R"({"Array": {"type": "Int32", "values": [0, 0]}}, )"
                R"({"Array": {"type": "Bool", "values": [true, false]}}, )"
                R"({"Array": {"type": "Bool", "values": [false, false]}}, )"
                R"({"Array": {"type": "Real64", "values": [0.5, 0.5]}}, {"Real64": 1}, {"Real64": 0}, )"
                R"({"Bool": false}, {"Array": {"type": "Tuple", "values": []}}, {"Bool": false}, )"
                R"({"Array": {"type": "Real64", "values": []}}, )"
                R"({"Array": {"type": "Real64", "values": []}}, {"Real64": 0.5}])"});

inline constexpr Row kAdjustDomainForStepping = Multinary<AdjustDomainForStepping>(
    {.name = TransformNames::ADJUST_DOMAIN_FOR_STEPPING,
     .inputs = {{"minimum", StoreType::Real64},
                {"maximum", StoreType::Real64},
                {"centre", StoreType::Real64},
                "steps"},
     .output = StoreType::KeyMap,
     .help = "The domain and the steps of a palette that shows numbers in steps of equal width.",
     .details = R"(0. `minimum`: of the numbers or dates, of any numeric or temporal type
1. `maximum`: of them
2. `centre`: where the halves of a diverging palette meet; special: 0 where the numbers straddle 0, else none
3. `steps`: how many the palette has in all; 1 or more (else 2)

`nStepsLeft` and `nStepsRight` are together all steps, both whole or both with a half (the middle step then lies
to both sides of the centre, as `applySteppingForDivergingPalette` takes it). Of all such splits it is the one with
the narrowest step w for which nStepsLeft * w >= centre - minimum and nStepsRight * w >= maximum - centre; of two
with one width the one with more on the right. `colorMin` is centre - nStepsLeft * w and `colorMax` is centre +
nStepsRight * w: all steps are of one width, no number is outside. Numbers to one side of the centre have all
steps there, and the domain ends at the centre. Without a centre all steps are on the right, from the minimum to
the maximum.

The result is a key map of four Real64 (dates as day numbers). Ends in the wrong order are exchanged. Where an end
is special or not finite, or a given centre is not finite, the colours' ends are special of kind 1 and all steps
are on the right. Ends that are neither numbers nor dates throw 178.)",
     .example = R"("inputs": [{"Real64": -3}, {"Real64": 10}, {"Real64": 0}, {"Int32": 5}])"});

inline constexpr Row kRangeUnitsPerPixel = Multinary<RangeUnitsPerPixel>(
    {.name = TransformNames::RANGE_UNITS_PER_PIXEL,
     .inputs = {{"ranges", ArrayOf(StoreType::Tuple)},
                {"isHorizontal", ArrayOf(StoreType::Bool)},
                {"widths", ArrayOf(StoreType::Real64)},
                {"heights", ArrayOf(StoreType::Real64)},
                "scale"},
     .output = ArrayOf(StoreType::Real64),
     .help = "How much of its range a pixel of a pane shows.",
     .details = R"(Each column has a row a range.

0. `ranges`: range tuples
1. `isHorizontal`: the pane's width counts, otherwise its height
2. `widths`: of the panes, in pixels
3. `heights`: of the panes, in pixels
4. `scale`: the device's pixels for one of these (2 on a screen of double density); finite and above 0 (else 2)

The result is the Real64 column (maximum - minimum) / (pixels * scale), in the units of the range's scale: days
for dates, natural logarithms on a logarithmic scale; ends in the wrong order are exchanged. A row is special of
kind 1 where its range is, where an end is missing (special, not finite, not above 0 on a logarithmic scale), and
where the pane has no finite number of pixels above 0. No rows give none; columns of unequal length throw 259.)",
     .example = R"("inputs": [{"Array": {"type": "Tuple", "values": [{"Tuple": [{"Real64": 0}, )"
                R"({"Real64": 10}, {"Int32": 0}, {"Int32": 4}, {"Bool": false}]}]}}, )"
                R"({"Array": {"type": "Bool", "values": [true]}}, )"
                R"({"Array": {"type": "Real64", "values": [200]}}, )"
                R"({"Array": {"type": "Real64", "values": [100]}}, {"Real64": 1}])"});

inline constexpr Row kResolveMinMaxDataTypeMismatch = Multinary<ResolveMinMaxDataTypeMismatch>(
    {.name = TransformNames::RESOLVE_MIN_MAX_DATA_TYPE_MISMATCH,
     .inputs = {{"minimum", StoreType::Real64}, {"maximum", StoreType::Real64}, "fieldType"},
     .output = StoreType::Tuple,
     .help = "The two ends of a domain as values of one type that holds both.",
     .details = R"(0. `minimum`: of any numeric or temporal type, or special
1. `maximum`: the same
2. `fieldType`: the code of the field's type

The result is the tuple (minimum, maximum). Ends of one type stay as they are. Int32 and Int64 become Int64, a real
and any other number Real64, Date and DateTime become DateTime. Of a date and a number the field decides: both
become DateTimes for a temporal field (6 or 7), the number being a day number, and Real64 for any other. An Int64
that Real64 does not hold becomes the next Real64 outside the domain: below for the minimum, above for the maximum.
A special end takes the other's type and keeps its kind. Other types throw 178.)",
     .example = R"("inputs": [{"Int32": 2}, {"Real64": 7.5}, {"Int32": 4}])"});

}  // namespace OstrelTransforms
