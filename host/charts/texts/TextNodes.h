#pragma once

#include <optional>
#include <vector>

#include "charts/graph/GraphBuilder.h"
#include "charts/scene/Scene.h"
#include "render/Composer.h"
#include "string/TextFitStyle.h"

/// Texts that are composed by nodes of the graph: wrapped, shortened, aligned and turned.
namespace ostrel::charts {

/// How lines run, as the style table's column text_orientation numbers it.
enum class TextTurn { None = 0, Anticlockwise = 2, Clockwise = 3 };

/// The share of a length that stands before an anchor.
inline double GetShare(TextAnchor anchor) {
  return anchor == TextAnchor::Start ? 0 : anchor == TextAnchor::Middle ? 0.5 : 1;
}

/// The look of texts, and which point of the box around a text's lines is its place: along the lines and
/// across them.
struct TextStyle {
  double fontSize = 10;
  bool isBold = false;
  TextTurn turn = TextTurn::None;
  TextAnchor along = TextAnchor::Start;  ///< where lines of unequal length are flush, too
  TextAnchor across = TextAnchor::Start;
  std::optional<bool> isRightToLeft = std::nullopt;  ///< of all texts; else by each text's first letter

  TextFont MakeFont() const;
};

/// The box that each text has, and what becomes of one that does not fit.
struct TextBox {
  NodeId width = -1;  ///< Real64 scalars, pixels
  NodeId height = -1;
  runtime::TextFitStyle fit = runtime::DotsRight;
  runtime::WrapMode wrap = runtime::NoWrap;
};

/// The text style table: one row a style.
NodeId MakeTextStyles(GraphBuilder& graph, std::vector<TextStyle> const& styles);

/// A box for so many lines of a style, of a length in pixels, as they are turned.
TextBox MakeBox(GraphBuilder& graph, TextStyle const& style, double length, int lineCount,
                runtime::WrapMode wrap = runtime::NoWrap);

/// A node of composeText over a String column, each row of which is a text in one style; a special row is
/// empty. Texts that wrap are to have the hints of hintBreaks.
NodeId ComposeTexts(GraphBuilder& graph, std::string const& name, NodeId texts, TextStyle const& style,
                    TextBox const& box);

/// A text of a chart's own that wraps: a title.
struct TitleText {
  NodeId composed = -1;  ///< of composeText, over one text; -1 for none
  TextStyle style;
};

/// Lines as long as given, in pixels, and at most so many; then the text is shortened. Kept.
TitleText ComposeTitle(GraphBuilder& graph, std::string const& name, std::string const& text,
                       TextStyle const& style, double length, int mostLines = 3);

/// How lines are turned by an angle in degrees, clockwise, and what is left of it to slant them by.
struct TextDirection {
  TextTurn turn = TextTurn::None;
  double slant = 0;
};
TextDirection FindDirection(double angle);

/// The runs of texts that are alike in number and style: rows of composeText's inputs.
struct TextRuns {
  NodeId firstRuns = -1;  ///< Int32 columns with a row for each text
  NodeId counts = -1;
  NodeId texts = -1;   ///< String column with a row for each run
  NodeId styles = -1;  ///< Int32 column likewise
  NodeId styleTable = -1;
};

/// Texts of one run each.
TextRuns MakeSingleRuns(GraphBuilder& graph, std::string const& name, NodeId texts, TextStyle const& style);

/// Texts of one style of whose lines each fits the box. Lines from the right are cut by the direction of
/// their text, as ComposeByDirection does.
NodeId ShortenLines(GraphBuilder& graph, std::string const& name, NodeId texts, TextStyle const& style,
                    bool linesFromRight, TextBox const& box);

/// Nodes of composeText, each text being empty in all but one. A text that is shortened with dots loses what
/// is read last; but in lines from the right, texts that are read from the left lose their beginning: the
/// dots stand where such a line ends. `fromRight` is a Bool column of where texts are read from the right,
/// for lines from the right; -1 for others.
std::vector<NodeId> ComposeByDirection(GraphBuilder& graph, std::string const& name, TextRuns const& runs,
                                       NodeId fromRight, TextBox const& box);

/// The shapes within which texts stand, one for each.
struct TextShapes {
  NodeId widths = -1;  ///< Real64 columns, pixels
  NodeId heights = -1;
  bool isRound = false;  ///< ellipses, else rectangles
};

/// A node over a String column as of composeText, each row set within its shape as fitTextBoxes finds: in the
/// first of the styles and the fewest lines, up to the most, that have room for all of it, else in the last
/// style by the fit style. A style is tried where its font is at most a share of the shape's height.
NodeId ComposeInShapes(GraphBuilder& graph, std::string const& name, NodeId texts, TextShapes const& shapes,
                       std::vector<TextStyle> const& styles, int mostLines, double share,
                       runtime::TextFitStyle fit);

/// How high so many lines of a style are, in pixels.
double MeasureLines(GraphBuilder& graph, TextStyle const& style, int lineCount);

/// From the baseline of a style's lines up to their top, in pixels.
double MeasureAscent(GraphBuilder& graph, TextStyle const& style);

/// The font tuple of functions that measure: family, size, weight, slant.
NodeId MakeLabelFont(GraphBuilder& graph, double size, bool isBold = false);

}  // namespace ostrel::charts
