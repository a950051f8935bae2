#pragma once

#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "charts/data/ImageFile.h"
#include "charts/document/ChartDocument.h"
#include "ostrelrtcore/OrtColor.h"
#include "ostrelrtcore/StoreValue.h"

/// What is to be drawn, in pixels, y downwards: groups of marks. Marks of one kind are kept as columns, one
/// row a mark, so that a hundred thousand of them cost their numbers and nothing more.
namespace ostrel::charts {

struct Point {
  double x = 0;
  double y = 0;
};

struct Rect {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;
  double Right() const { return x + width; }
  double Bottom() const { return y + height; }
};

/// A value for all rows, or a column with one for each row.
template <class T>
struct Varying {
  T constant{};
  std::shared_ptr<ort::core::StoreValue> column;  ///< null: the constant serves all rows
};

/// Transparent colours (alpha 0) are not painted.
struct Stroke {
  ort::core::OrtColor color;
  double width = 1;
  std::vector<double> dash;
};

/// Of marks with an inside and an outline: one of the two has the rows' own colours.
struct MarkPaint {
  bool isFilled = true;
  ort::core::OrtColor other{0};  ///< of the outline of what is filled, of the inside of what is outlined
  double fillOpacity = 1;        ///< beside the opacity of the whole mark
  double strokeOpacity = 1;
  double strokeWidth = 1;
  std::vector<double> strokeDash = {};

  ort::core::OrtColor GetFill(ort::core::OrtColor color) const { return isFilled ? color : other; }
  Stroke GetStroke(ort::core::OrtColor color) const {
    return {isFilled ? other : color, strokeWidth, strokeDash};
  }
};

/// One symbol for every row that is special in neither x nor y.
struct SymbolMarks {
  std::shared_ptr<ort::core::StoreValue> x;  ///< Real64 columns
  std::shared_ptr<ort::core::StoreValue> y;
  Varying<double> size;  ///< area in square pixels; Real64
  Varying<ort::core::OrtColor> color;
  Varying<double> opacity;     ///< 0 to 1; Real64
  Varying<SymbolShape> shape;  ///< an Int32 column of SymbolShape values
  MarkPaint paint;
  std::shared_ptr<ort::core::StoreValue> tooltips;  ///< String column or null
};

/// A line through points in order; it breaks where a point is missing (NaN).
struct LineMark {
  std::vector<Point> points;
  LineInterpolation interpolation = LineInterpolation::Linear;
  Stroke stroke;
  double opacity = 1;
  std::string tooltip;
};

/// A filled band between two lines of equally many points; it breaks where a point of either is missing
/// (NaN).
struct AreaMark {
  std::vector<Point> points;
  std::vector<Point> basePoints;
  LineInterpolation interpolation = LineInterpolation::Linear;
  ort::core::OrtColor fill;
  Stroke stroke{ort::core::OrtColor(0), 1, {}};  ///< around the whole band
  double opacity = 1;                            ///< of the fill
  double strokeOpacity = 1;
  std::string tooltip;
};

/// Rings in one element; what lies in an even number of them, a lake for instance, is not filled.
struct ShapeMark {
  std::vector<std::vector<Point>> rings;
  ort::core::OrtColor fill;
  Stroke stroke{ort::core::OrtColor(0), 1, {}};
  double opacity = 1;  ///< of the fill
  double strokeOpacity = 1;
};

struct RuleMarks {
  struct Rule {
    Point from;
    Point to;
  };
  std::vector<Rule> rules;
  Stroke stroke;
  std::vector<std::string> tooltips = {};  ///< one for each rule, or none
};

struct RectMark {
  Rect rect;
  ort::core::OrtColor fill;
  Stroke stroke{ort::core::OrtColor(0), 1, {}};
};

/// The radii of a rectangle's rounded corners in pixels.
struct CornerRadii {
  double topLeft = 0;
  double topRight = 0;
  double bottomRight = 0;
  double bottomLeft = 0;

  bool operator==(CornerRadii const&) const = default;
};

/// One rectangle for every row that has four numbers: x and x2, y and y2 are opposite sides, in either order.
struct RectMarks {
  std::shared_ptr<ort::core::StoreValue> x;  ///< Real64 columns
  std::shared_ptr<ort::core::StoreValue> x2;
  std::shared_ptr<ort::core::StoreValue> y;
  std::shared_ptr<ort::core::StoreValue> y2;
  Varying<ort::core::OrtColor> color;
  Varying<double> opacity;  ///< 0 to 1; Real64
  MarkPaint paint;
  std::vector<CornerRadii> corners;                 ///< one for each row, or none
  bool isSeamless = false;                          ///< neighbours show nothing between them
  std::shared_ptr<ort::core::StoreValue> tooltips;  ///< String column or null
};

/// A picture that fills a rectangle.
struct ImageMark {
  Rect rect;
  std::shared_ptr<ImageFile const> file;
  double opacity = 1;
  std::string tooltip;
};

/// A rectangle filled with a linear run of colours, evenly spaced, from its bottom to its top or from its
/// left to its right.
struct GradientMark {
  Rect rect;
  std::vector<ort::core::OrtColor> colors;
  bool isHorizontal = false;
};

/// The family of every text of a chart; where it is not installed, the fallbacks of the text services serve.
inline constexpr char const* kFontFamily = "DejaVu Sans";

struct TextFont {
  std::string family = kFontFamily;
  double size = 10;
  int weight = 400;
  bool isItalic = false;
};

enum class TextAnchor { Start, Middle, End };
/// Where the given y lies in the line of text.
enum class TextBaseline { Alphabetic, Top, Middle, Bottom };

struct TextMark {
  std::string text;  ///< UTF-8
  Point at;
  TextAnchor anchor = TextAnchor::Start;
  TextBaseline baseline = TextBaseline::Alphabetic;
  double angle = 0;  ///< degrees, clockwise, about `at`
  TextFont font;
  ort::core::OrtColor color{static_cast<int>(0xFF333333)};
  bool isRightToLeft = false;
  std::string tooltip;
};

struct Group;
using SceneNode = std::variant<SymbolMarks, LineMark, AreaMark, ShapeMark, RuleMarks, RectMarks, RectMark,
                               ImageMark, GradientMark, TextMark, std::unique_ptr<Group>>;

struct Group {
  std::string role;  ///< "axis x", "marks", "legend": the class of its SVG element
  Point origin;
  std::optional<Rect> clip;
  std::vector<SceneNode> nodes;
};

struct Scene {
  double width = 0;
  double height = 0;
  ort::core::OrtColor background{static_cast<int>(0xFFFFFFFF)};
  std::string title;  ///< of the SVG document, for readers and search
  std::string description;
  Group root;
};

}  // namespace ostrel::charts
