#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "charts/document/ChartDocument.h"
#include "charts/document/JsonObjectReader.h"
#include "charts/document/JsonValue.h"

/// One reader for each object of the grammar. All throw DocumentError with the place.
namespace ostrel::charts {

/// A mark's name or object.
MarkSpec ReadMark(JsonValue const& value);
/// "point, circle, square".
std::string ListMarkNames();
/// Channels by their names.
using ChannelMembers = std::vector<std::pair<std::string const*, JsonValue>>;

/// All channels of a view, in the order of the document. Channels of a later list get those of their
/// properties that it leaves open from the lists before.
std::vector<Encoding> ReadEncodings(JsonValue const& view, std::vector<ChannelMembers> const& lists);
ResolveSpec ReadResolve(JsonValue const& value);
HeaderSpec ReadHeader(JsonValue const& value);
/// A number of pixels, or one for rows and one for columns.
PaneSpacing ReadSpacing(JsonValue const& value);
ScaleSpec ReadScale(JsonValue const& value);
GuideSpec ReadAxis(JsonValue const& value);
GuideSpec ReadLegend(JsonValue const& value);
/// The defaults of all axes and of all legends.
GuideSpec ReadAxisConfig(JsonValue const& value);
GuideSpec ReadLegendConfig(JsonValue const& value);
ConfigSpec ReadConfig(JsonValue const& value);
/// The ground of the panes of one chart and the line around them.
void ReadView(JsonValue const& value, ViewSpec& view);
/// A colour; transparent for null.
ort::core::OrtColor ReadColorOrNone(JsonValue const& value);
/// Lengths of dashes and gaps.
std::vector<double> ReadDashes(JsonValue const& value);
/// Whether a weight, a number or a word, is bold.
bool ReadFontWeight(JsonValue const& value);
/// One number for all sides, or an object.
PaddingSpec ReadPadding(JsonValue const& value);
/// Adds what a title's object and the defaults of titles may say of its look.
void AddTitleLook(JsonObjectReader& reader, ChartTitleSpec& title);
inline constexpr NumberRange kPictureSize{.minimum = 0, .maximum = 20'000, .isAboveMinimum = true};
/// A width or height in pixels.
void ReadSize(JsonValue const& value, std::optional<double>& size, std::optional<double>& step);
/// The chart's title and subtitle.
void ReadChartTitle(JsonValue const& value, ChartDocument& document, ChartTitleSpec& look);

/// The column's name that an accessor means: "a\\.b" is column "a.b"; "outer.inner" and "outer['inner']" are
/// "outer.inner", and "outer[0]" stays, as nested data are named when they are loaded.
std::string ReadFieldName(JsonValue const& value);

/// What a field is where the document does not say. The grammar looks at the encoding alone, never at data.
FieldType DefaultFieldType(Encoding const& encoding);

/// What no single property tells: a scale, an axis and a legend must suit the field's type and the channel.
/// `value` is the encoding's object.
void CheckScale(JsonValue const& value, Encoding const& encoding);
void CheckGuides(JsonValue const& value, Encoding const& encoding);
void CheckSort(JsonValue const& value, Encoding const& encoding);
/// Refuses channels that the layer's mark would pass over.
void CheckChannels(std::string const& fileName, LayerSpec const& layer);

/// The symbols by their names.
std::span<NamedValue<SymbolShape> const> SymbolShapeNames();

bool IsPosition(Channel channel);
/// Row, column or facet.
bool IsFacet(Channel channel);
/// x2 or y2.
bool IsSecondPosition(Channel channel);
/// Longitudes and latitudes.
bool IsDegrees(Channel channel);
/// Ends of domains beyond this are refused: no domain's length may exceed the range of doubles.
inline constexpr double kLargestNumber = 1e307;

/// Nominal or ordinal.
bool IsDiscrete(FieldType type);
/// Quantize, threshold or bin-ordinal.
bool IsStepped(ScaleType type);
char const* NameOf(FieldType type);
char const* NameOf(Channel channel);

}  // namespace ostrel::charts
