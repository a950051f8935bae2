#pragma once

#include "charts/scene/Scene.h"
#include "charts/writer/SvgStream.h"

/// The elements of lines, rules and rectangles.
namespace ostrel::charts {

bool IsFinite(Point point);
bool IsFinite(Rect const& rect);

/// ` x="..." y="..." width="..." height="..."`, turned so that no extent is negative.
void WriteRectGeometry(Rect const& rect, SvgStream& out);

/// The path of a rectangle with rounded corners. Radii that two corners have no room for shrink together.
void WriteRoundedRect(Rect const& rect, CornerRadii const& radii, SvgStream& out);

bool IsDrawn(RectMark const& mark);
bool IsDrawn(ImageMark const& image);
bool IsSameStyle(RectMark const& left, RectMark const& right);
void WriteRectStyle(RectMark const& mark, SvgStream& out);

void WriteLine(LineMark const& line, SvgStream& out);
void WriteArea(AreaMark const& area, SvgStream& out);
void WriteShape(ShapeMark const& shape, SvgStream& out);
void WriteRules(RuleMarks const& rules, SvgStream& out);
/// `id` is the number of its gradient in the document.
void WriteGradient(GradientMark const& gradient, int id, SvgStream& out);

/// A picture as a symbol of the document; `id` is its number there.
void WriteImageSymbol(ImageFile const& file, int id, SvgStream& out);
/// A picture that a symbol has.
void WriteImage(ImageMark const& image, int id, SvgStream& out);

/// One element for each visible row, in a group with what they share.
void WriteSymbols(SymbolMarks const& marks, SvgStream& out);
void WriteRects(RectMarks const& marks, SvgStream& out);

}  // namespace ostrel::charts
