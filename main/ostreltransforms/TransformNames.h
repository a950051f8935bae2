#pragma once

#include "ostreltransforms/Export.h"

// The names under which the functions are registered, as zero-terminated wide literals. They need no
// initialisation: they can be read before any code of the library has run.
//
// Ten of them are names only, under which this library registers nothing: FORMAT_NUMBER, MEASURE_BASELINE,
// MEASURE_EXTERNAL_LEADING, MEASURE_TEXT_RUN_HEIGHT, MEASURE_TEXT_RUN_WIDTH, PBAND_EXTEND_RANGE_COLUMN,
// SYNC_FOLDED_AXES_ID, TO_REAL64_SVM, LOOKUP_INT64 and LOOKUP_REAL64.
namespace TransformNames {

OSTREL_API extern wchar_t const* const ABS;
OSTREL_API extern wchar_t const* const ACCUMULATE;
OSTREL_API extern wchar_t const* const ADD_IF_LESS_THAN;
OSTREL_API extern wchar_t const* const ADD_TO_RIGHT;
OSTREL_API extern wchar_t const* const ADJUST_AXES_FOR_LOCKED_SCALES;
OSTREL_API extern wchar_t const* const ADJUST_DOMAIN_FOR_STEPPING;
OSTREL_API extern wchar_t const* const ADJUST_LEFT_WRAPPED;
OSTREL_API extern wchar_t const* const ADJUST_RIGHT_WRAPPED;
OSTREL_API extern wchar_t const* const ADJUST_TOTAL_COLOR;
OSTREL_API extern wchar_t const* const APPLY_STEPPING_FOR_DIVERGING_PALETTE;
OSTREL_API extern wchar_t const* const ARE_ROWS_DISTINCT;
OSTREL_API extern wchar_t const* const ARRAY_CONTAINS;
OSTREL_API extern wchar_t const* const ARRAY_LOOKUP_INT64;
OSTREL_API extern wchar_t const* const ARRAY_LOOKUP_REAL32;
OSTREL_API extern wchar_t const* const ARRAY_LOOKUP_REAL64;
OSTREL_API extern wchar_t const* const BITOR_REDUCE;
OSTREL_API extern wchar_t const* const BITOR_ZIPWITH;
OSTREL_API extern wchar_t const* const BUILD_INDEX_KEYSET_INT32;
OSTREL_API extern wchar_t const* const CALC_LOG_TICKS;
OSTREL_API extern wchar_t const* const CALC_MARK_HALF_SIZE;
OSTREL_API extern wchar_t const* const CALC_PIXEL_OVERFLOW;
OSTREL_API extern wchar_t const* const CALC_REFLINE_OVERFLOW;
OSTREL_API extern wchar_t const* const CINTERP;
OSTREL_API extern wchar_t const* const CLAMP_MAX;
OSTREL_API extern wchar_t const* const CLAMP_MIN;
OSTREL_API extern wchar_t const* const CLEAR_RANGES;
OSTREL_API extern wchar_t const* const COLUMN_NOT_EMPTY;
OSTREL_API extern wchar_t const* const COMBINE_ALPHA;
OSTREL_API extern wchar_t const* const COMPOSE_SHAPES;
OSTREL_API extern wchar_t const* const COMPOSE_TEXT;
OSTREL_API extern wchar_t const* const COMPUTE_AXIS_EXTENTS;
OSTREL_API extern wchar_t const* const COMPUTE_TREEMAP_NODES_LAYOUT;
OSTREL_API extern wchar_t const* const CONCAT_INTEGERS;
OSTREL_API extern wchar_t const* const CURR_STACK_VALUE;
OSTREL_API extern wchar_t const* const DAYS_DIFFERENCE;
OSTREL_API extern wchar_t const* const DAYS_TO_WEEK_START;
OSTREL_API extern wchar_t const* const DIVIDE_SPECIAL;
OSTREL_API extern wchar_t const* const END;
OSTREL_API extern wchar_t const* const EXCLUDE_HIDDEN_MARKS;
OSTREL_API extern wchar_t const* const EXPAND_AROUND_POINT;
OSTREL_API extern wchar_t const* const EXPAND_MIN_AND_MAX;
OSTREL_API extern wchar_t const* const EXP_SPECIAL;
OSTREL_API extern wchar_t const* const EXTEND_POINT_RANGES;
OSTREL_API extern wchar_t const* const EXTEND_RANGES_TO_INCLUDE_ZERO;
OSTREL_API extern wchar_t const* const EXTEND_RANGE_COLUMN;
OSTREL_API extern wchar_t const* const EXTEND_RANGE_WITH_OVERFLOW;
OSTREL_API extern wchar_t const* const EXTEND_X_RANGES_BY_DEGREE;
OSTREL_API extern wchar_t const* const EXTEND_Y_RANGES_BY_DEGREE;
OSTREL_API extern wchar_t const* const FIND_LARGEST_GAP;
OSTREL_API extern wchar_t const* const FISCAL_YEAR;
OSTREL_API extern wchar_t const* const FORMAT_NUMBER;
OSTREL_API extern wchar_t const* const GET_MONTH;
OSTREL_API extern wchar_t const* const GET_YEAR;
OSTREL_API extern wchar_t const* const GROUP_BY_RUNNING_SUM;
OSTREL_API extern wchar_t const* const HAS_TIME;
OSTREL_API extern wchar_t const* const HOURS_DIFFERENCE;
OSTREL_API extern wchar_t const* const IIF;
OSTREL_API extern wchar_t const* const INC_ON_NEW;
OSTREL_API extern wchar_t const* const INTERPOLATE;
OSTREL_API extern wchar_t const* const INTERPOLATE_INDEXED_RANGE;
OSTREL_API extern wchar_t const* const INVLERP3;
OSTREL_API extern wchar_t const* const INVLERP;
OSTREL_API extern wchar_t const* const INVLERP_MULTI_PANE;
OSTREL_API extern wchar_t const* const INVLERP_SPECIAL;
OSTREL_API extern wchar_t const* const IS_AXIS_LOCKED;
OSTREL_API extern wchar_t const* const IS_DISTINCT_PREV;
OSTREL_API extern wchar_t const* const IS_DIVERGING_AUTO;
OSTREL_API extern wchar_t const* const IS_PREV_VALUE_NULL_OR_MISSING;
OSTREL_API extern wchar_t const* const IS_REVERSED_AUTO;
OSTREL_API extern wchar_t const* const KEEP_ONLY_NON_EMPTY_RECT;
OSTREL_API extern wchar_t const* const KEEP_ONLY_UNIQUE;
OSTREL_API extern wchar_t const* const LAYOUT_BUBBLES;
OSTREL_API extern wchar_t const* const LAYOUT_WORDLE_CELLS;
OSTREL_API extern wchar_t const* const LN_SPECIAL;
OSTREL_API extern wchar_t const* const LOOKUP_INT64;
OSTREL_API extern wchar_t const* const LOOKUP_INT64_SPECIAL;
OSTREL_API extern wchar_t const* const LOOKUP_REAL64;
OSTREL_API extern wchar_t const* const LOOKUP_REAL64_SPECIAL;
OSTREL_API extern wchar_t const* const MAP_RANGE_INDICES;
OSTREL_API extern wchar_t const* const MAX_AXIS_SIZE;
OSTREL_API extern wchar_t const* const MAX_MULTI_DATETIME;
OSTREL_API extern wchar_t const* const MAX_MULTI_I64;
OSTREL_API extern wchar_t const* const MAX_MULTI_R64;
OSTREL_API extern wchar_t const* const MAX_ZIPWITH;
OSTREL_API extern wchar_t const* const MEASURE_BASELINE;
OSTREL_API extern wchar_t const* const MEASURE_EXTERNAL_LEADING;
OSTREL_API extern wchar_t const* const MEASURE_TEXT_RUN_HEIGHT;
OSTREL_API extern wchar_t const* const MEASURE_TEXT_RUN_WIDTH;
OSTREL_API extern wchar_t const* const MINUTES_DIFFERENCE;
OSTREL_API extern wchar_t const* const MIN_MULTI_DATETIME;
OSTREL_API extern wchar_t const* const MIN_MULTI_I64;
OSTREL_API extern wchar_t const* const MIN_MULTI_R64;
OSTREL_API extern wchar_t const* const MIN_ZIPWITH;
OSTREL_API extern wchar_t const* const NICE_NUM_ROUND;
OSTREL_API extern wchar_t const* const NICE_NUM_ROUND_UP;
OSTREL_API extern wchar_t const* const PAD_RANGE_TABLE;
OSTREL_API extern wchar_t const* const PBAND_EXTEND_RANGE_COLUMN;
OSTREL_API extern wchar_t const* const PIXELSCALE_BUBBLES;
OSTREL_API extern wchar_t const* const PREV_STACK_VALUE;
OSTREL_API extern wchar_t const* const RANGE_UNITS_PER_PIXEL;
OSTREL_API extern wchar_t const* const RESOLVE_MIN_MAX_DATA_TYPE_MISMATCH;
OSTREL_API extern wchar_t const* const RESOLVE_SIZE_ENCODING_PARAMETERS;
OSTREL_API extern wchar_t const* const ROUND;
OSTREL_API extern wchar_t const* const SECONDS_DIFFERENCE;
OSTREL_API extern wchar_t const* const SHOULD_ADJUST_FONT_SIZE;
OSTREL_API extern wchar_t const* const START_OF_PERIOD;
OSTREL_API extern wchar_t const* const STRADDLES_ZERO;
OSTREL_API extern wchar_t const* const SYNC_FOLDED_AXES;
OSTREL_API extern wchar_t const* const SYNC_FOLDED_AXES_ID;
OSTREL_API extern wchar_t const* const TEMPORAL_TICK_FREQUENCY;
OSTREL_API extern wchar_t const* const TO_COLOR;
OSTREL_API extern wchar_t const* const TO_KEYMAP;
OSTREL_API extern wchar_t const* const TO_REAL64;
OSTREL_API extern wchar_t const* const TO_REAL64_SVM;
OSTREL_API extern wchar_t const* const TO_UNIFORM_VALUE;
OSTREL_API extern wchar_t const* const UPDATE_TEXT_STYLE_TABLE;
OSTREL_API extern wchar_t const* const UPDATE_TO_SIZE_FOR_MAPPED_IMAGES;
OSTREL_API extern wchar_t const* const WORDLE_SCALE;
OSTREL_API extern wchar_t const* const WRAP_MAPS;
OSTREL_API extern wchar_t const* const WRAP_X_FOR_MAPS;
OSTREL_API extern wchar_t const* const ZERO_ALIGN_FOLDED_AXES;

}  // namespace TransformNames
