#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

#include "charts/data/LoadTable.h"
#include "charts/document/Transforms.h"
#include "ostrelrtcore/OrtColor.h"

/// A chart document as it was written, after its grammar was checked: names are resolved to enumerators,
/// nothing is defaulted and nothing depends on the data.
namespace ostrel::charts {

/// What is wrong with a chart document: "scatter.vl.json: $.encoding.x.scale.type: ...".
class DocumentError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

enum class FieldType { Quantitative, Temporal, Ordinal, Nominal };
enum class Channel {
  X,
  Y,
  X2,
  Y2,
  XOffset,
  YOffset,
  Color,
  Size,
  Shape,
  Opacity,
  Detail,
  Order,
  Text,
  Tooltip,
  Row,
  Column,
  Facet,
  Longitude,
  Latitude,
  Longitude2,
  Latitude2,
  Url
};
/// The last three give colours to intervals of numbers: equal ones, those between given numbers, and bins.
enum class ScaleType { Linear, Log, Sqrt, Time, Ordinal, Quantize, Threshold, BinOrdinal };
enum class SymbolShape {
  Circle,
  Square,
  Cross,
  Diamond,
  TriangleUp,
  TriangleDown,
  TriangleRight,
  TriangleLeft
};
enum class LineInterpolation { Linear, StepBefore, StepAfter, Step, Monotone };

/// Where a title stands along what it belongs to.
enum class TextPlace { Start, Middle, End };

/// A text that may be left out, switched off by null, or given.
struct TitleSpec {
  bool isGiven = false;
  std::string text;  ///< empty when switched off
};

struct ScaleSpec {
  std::optional<ScaleType> type;
  std::vector<Literal> domain;
  std::vector<Literal> unionWith;  ///< values that the data's domain is to hold
  std::optional<double> domainMin;
  std::optional<double> domainMax;
  std::optional<double> domainMid;  ///< the colours' middle; the value from which sizes grow both ways
  std::optional<bool> findsMid;     ///< "auto": 0 where the domain straddles it
  std::vector<Literal> range;
  std::optional<bool> zero;
  std::optional<bool> nice;
  std::optional<double> niceCount;
  std::optional<bool> reverse;
  std::optional<bool> clamp;
  std::optional<bool> fit;  ///< the domain has room for the texts and rules that stand on the scale
  std::optional<double> base;
  std::string scheme;
  std::optional<double> schemeCount;  ///< of steps
  std::optional<bool> isBand;         ///< "band" or "point"
  std::optional<double> padding;      ///< a share of a discrete step, or pixels at a continuous domain's ends
  std::optional<double> paddingInner;
  std::optional<double> paddingOuter;

  bool operator==(ScaleSpec const&) const = default;
};

/// Ticks of dates at the beginnings of a unit of time.
struct TickInterval {
  TimeUnitSpec unit;
  std::optional<int> step;  ///< so many units apart; else as many as the axis has room for

  bool operator==(TickInterval const&) const = default;
};

/// An axis or a legend: each has some of the members, as GuideMembers.h lists them.
struct GuideSpec {
  bool isHidden = false;  ///< "axis": null
  TitleSpec title;
  std::string format;
  std::optional<double> labelAngle;
  std::optional<double> labelLimit;  ///< of a label's lines, pixels; 0 for none
  std::optional<double> tickCount;
  std::optional<TickInterval> tickInterval;
  std::vector<Literal> values;
  std::optional<bool> grid;
  std::optional<bool> domain;  ///< the line along the axis
  std::optional<bool> labels;
  std::optional<bool> ticks;
  std::optional<bool> marksBandEnds;  ///< "tickBand": "extent"
  std::vector<Literal> hidden;        ///< values whose rows are not drawn; their entries stay, faded
  std::string orient;                 ///< the side of the chart; empty where it is left open
  std::optional<double> offset;       ///< pixels between the chart and the guide
  std::optional<double> labelFontSize;
  std::optional<double> labelPadding;  ///< pixels between ticks and labels
  std::optional<ort::core::OrtColor> labelColor;
  std::optional<double> titleFontSize;
  std::optional<double> titlePadding;  ///< pixels between labels and title
  std::optional<double> titleLimit;    ///< of the title's lines, pixels
  std::optional<bool> isTitleBold;
  std::optional<ort::core::OrtColor> titleColor;
  std::optional<double> tickMinStep;  ///< between two ticks of numbers
  std::optional<double> tickSize;     ///< pixels
  std::optional<double> tickWidth;
  std::optional<ort::core::OrtColor> tickColor;
  std::optional<double> domainWidth;
  std::optional<ort::core::OrtColor> domainColor;
  std::optional<double> gridWidth;
  std::optional<double> gridOpacity;
  std::vector<double> gridDash;
  std::optional<ort::core::OrtColor> gridColor;
  std::optional<bool> runsAcross;     ///< "direction" of a legend: "horizontal"
  std::optional<double> columns;      ///< of a legend's entries
  std::optional<SymbolShape> symbol;  ///< of a legend's entries
  std::optional<double> symbolSize;   ///< square pixels

  /// Of a legend or an axis that runs along the chart's width.
  bool IsHorizontal() const { return orient == "top" || orient == "bottom"; }
  /// Whether a legend's entries, or its colours, follow one another to the right.
  bool RunsAcross() const { return runsAcross.value_or(IsHorizontal()); }
};

/// Of panes: what stands beside or above them.
struct HeaderSpec {
  bool isHidden = false;  ///< "header": null
  TitleSpec title;
  std::optional<bool> labels;
  std::string format;
  std::optional<double> labelAngle;  ///< 0, 90 or -90 degrees
};

/// Pixels between panes with their axes.
struct PaneSpacing {
  std::optional<double> rows;
  std::optional<double> columns;
};

struct Encoding {
  Channel channel = Channel::X;
  std::string path;   ///< "$.encoding.x"
  std::string field;  ///< empty for a constant
  FieldType type = FieldType::Nominal;
  Literal value;  ///< of a constant in the channel's own terms: a colour, pixels
  Literal datum;  ///< of a constant in terms of the scale's domain
  TitleSpec title;
  std::string format;
  ScaleSpec scale;
  GuideSpec axis;
  GuideSpec legend;
  HeaderSpec header;
  std::optional<double> columns;  ///< panes in a row of channel facet
  PaneSpacing spacing;
  std::vector<Literal> sort;  ///< an explicit order of the values
  std::optional<bool> isDescending;
  bool keepsDataOrder = false;  ///< "sort": null
  std::optional<SortSpec> sortBy;
  std::optional<AggregateOperation> aggregate;
  std::optional<BinSpec> bin;
  TimeUnitSpec timeUnit;
  std::optional<StackOffset> stack;
  /// What was derived, once the channel's field is a column of rows to be drawn: where a bin or a unit of
  /// time ends, where a bin begins whose middle is the field, the numbers that order the values, and what
  /// guides are called.
  std::string endField;
  std::string startField;
  std::string sortField;
  std::string derivedTitle;  ///< "Sum of people"
};

/// What a mark tells of each row where no channel tooltip does: the fields of its channels, or all fields.
enum class TooltipContent { None, Encoding, Data };

/// How wide a mark is across its measure, or a rectangle in one direction.
struct BreadthSpec {
  std::optional<double> pixels;
  std::optional<double> band;  ///< a share of a discrete value's band, or of an interval

  bool IsGiven() const { return pixels || band; }
};

struct MarkSpec {
  std::string type;  ///< a name of the table of marks
  std::string path = "$.mark";
  std::string color;
  std::string fill;
  std::string stroke;
  std::optional<double> size;  ///< area in square pixels
  std::optional<double> opacity;
  std::optional<double> fillOpacity;
  std::optional<double> strokeOpacity;
  std::optional<double> strokeWidth;
  std::vector<double> strokeDash;
  std::optional<bool> filled;
  BreadthSpec width;
  BreadthSpec height;
  std::optional<double> thickness;     ///< of a tick along its measure, pixels
  std::optional<double> bandSize;      ///< and across it
  std::optional<double> cornerRadius;  ///< of all corners that have none of their own, pixels
  std::optional<double> cornerRadiusTopLeft;
  std::optional<double> cornerRadiusTopRight;
  std::optional<double> cornerRadiusBottomRight;
  std::optional<double> cornerRadiusBottomLeft;
  std::optional<double> cornerRadiusEnd;  ///< of those at the end of a bar's measure
  std::optional<SymbolShape> shape;
  LineInterpolation interpolation = LineInterpolation::Linear;
  std::vector<double> orientations;       ///< of words, degrees clockwise: multiples of 90
  std::shared_ptr<MarkSpec const> point;  ///< a symbol at every row of a line or an area; null for none
  std::shared_ptr<MarkSpec const> line;   ///< along the upper end of an area; null for none
  TooltipContent tooltip = TooltipContent::None;
  std::string tooltipText;  ///< of all rows
  std::optional<bool> clip;
  std::optional<bool> isHorizontal;  ///< "orient"
  std::optional<double> dx;          ///< of a text, pixels
  std::optional<double> dy;
  std::optional<double> angle;  ///< degrees, clockwise
  std::string align;            ///< "left", "center", "right"
  std::string baseline;         ///< "top", "middle", "bottom", "alphabetic"
  std::optional<double> fontSize;
  bool isBold = false;
  std::string text;
  std::optional<double> limit;        ///< of a text's lines, pixels; 0 for none
  std::string fit;                    ///< what becomes of a text that its cell has no room for
  std::optional<bool> isRightToLeft;  ///< "dir"; else by each text's first letter
};

/// A mark and its channels: a part of a view that is drawn over the parts before it.
struct LayerSpec {
  std::string path = "$";  ///< "$.layer[1]"
  std::shared_ptr<nlohmann::json const>
      data;  ///< a data object, as LoadTable reads it: its own or the view's
  std::string dataPath = "$.data";
  std::vector<TransformSpec> transforms;  ///< those of the view come first
  MarkSpec mark;
  std::vector<Encoding> encodings;  ///< those of the view come first

  /// Null when the channel is not encoded.
  Encoding const* Find(Channel channel) const;
};

/// Which scales and axes panes or layers have each for themselves.
struct ResolveSpec {
  std::string path;  ///< "$.resolve"
  std::vector<Channel> independentScales;
  std::vector<Channel> independentAxes;
  std::vector<Channel> sharedZeros;    ///< the zeros of independent scales stand at one height
  std::vector<Channel> sharedDomains;  ///< independent scales have axes of their own for one domain
  std::vector<Channel> sharedUnits;    ///< a pixel is one amount on all of their scales

  bool HasOwnScale(Channel channel) const;
  bool HasOwnAxis(Channel channel) const;
  bool SharesZero(Channel channel) const;
  bool SharesDomain(Channel channel) const;
  bool SharesUnit(Channel channel) const;
};

/// How degrees become places of a map.
enum class Projection { Mercator, Identity };

/// How long a pane is in one direction where the chart does not say; pixels.
struct LengthSpec {
  std::optional<double> continuous;
  std::optional<double> discrete;
  std::optional<double> discreteStep;  ///< of one value, in place of the length
};

/// A pane's ground and the line around it.
struct ViewSpec {
  std::optional<ort::core::OrtColor> stroke;
  std::optional<double> strokeWidth;
  std::optional<ort::core::OrtColor> fill;
};

/// How the title and the subtitle of a chart look.
struct ChartTitleSpec {
  std::optional<TextPlace> anchor;
  std::optional<double> offset;  ///< pixels between the chart and the titles
  std::optional<double> fontSize;
  std::optional<bool> isBold;
  std::optional<ort::core::OrtColor> color;
  std::optional<double> subtitleFontSize;
  std::optional<bool> isSubtitleBold;
  std::optional<ort::core::OrtColor> subtitleColor;
  std::optional<double> subtitlePadding;
};

/// Pixels around a whole picture.
struct PaddingSpec {
  double left = 0;
  double top = 0;
  double right = 0;
  double bottom = 0;
};

/// What holds for all axes, legends and panes that do not say otherwise.
struct ConfigSpec {
  GuideSpec axis;
  GuideSpec axisX;  ///< before those of all axes
  GuideSpec axisY;
  GuideSpec legend;
  LengthSpec width;
  LengthSpec height;
  ViewSpec view;
  ChartTitleSpec title;
  std::optional<PaddingSpec> padding;
  std::optional<ort::core::OrtColor> background;
};

struct ChartDocument {
  std::filesystem::path path;  ///< as given on the command line, for messages
  std::string name;
  std::string title;  ///< lines are separated by line feeds, here and in all titles
  std::string subtitle;
  std::string description;
  std::optional<double> width;       ///< of the plotting area, in pixels
  std::optional<double> height;      ///< of the plotting area, in pixels
  std::optional<double> widthStep;   ///< of one value of a discrete x, in pixels; in place of the width
  std::optional<double> heightStep;  ///< of one value of a discrete y
  std::optional<PaddingSpec> padding;
  std::optional<ort::core::OrtColor> background;
  ConfigSpec config;
  std::vector<LayerSpec> layers;      ///< in drawing order, at least one
  std::optional<double> paneColumns;  ///< panes in a row, beside facet
  PaneSpacing spacing;                ///< beside facet
  Projection projection = Projection::Mercator;
  ResolveSpec resolveLayers;
  ResolveSpec resolvePanes;

  /// Whether layers have longitude and latitude, or outlines, instead of x and y.
  bool IsMap() const;
  /// The channel row, column or facet, which all layers share; null when it is not encoded.
  Encoding const* FindFacet(Channel channel) const { return layers.front().Find(channel); }
};

/// Reads and checks a document. Throws DocumentError with the file, the JSON path and what to use instead for
/// what is malformed or not supported; nothing is ever passed over silently.
ChartDocument ReadChartDocument(std::filesystem::path const& path);
ChartDocument ParseChartDocument(std::string_view json, std::filesystem::path const& path);

}  // namespace ostrel::charts
