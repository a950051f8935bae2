#include "charts/writer/SvgWriter.h"

#include <map>

#include "charts/writer/SvgPaint.h"
#include "charts/writer/SvgShapes.h"
#include "charts/writer/SvgStream.h"
#include "charts/writer/SvgTexts.h"

namespace ostrel::charts {

namespace {

TextMark const* FindFirstText(Group const& group) {
  for (SceneNode const& node : group.nodes) {
    if (auto const* const text = std::get_if<TextMark>(&node)) return text;
    auto const* const child = std::get_if<std::unique_ptr<Group>>(&node);
    if (child == nullptr) continue;
    if (auto const* const text = FindFirstText(**child)) return text;
  }
  return nullptr;
}

class SceneWriter {
 public:
  SceneWriter(services::TextMeasurer const& fonts, ByteSink& sink) : out_(sink), texts_(fonts, out_) {}

  void Write(Scene const& scene) {
    out_ << "<svg xmlns=\"http://www.w3.org/2000/svg\" version=\"1.1\" width=\"" << scene.width
         << "\" height=\"" << scene.height << "\" viewBox=\"0 0 " << scene.width << " " << scene.height
         << "\"";
    if (auto const* const text = FindFirstText(scene.root)) texts_.WriteDocumentFamily(text->font);
    out_ << ">\n";
    if (!scene.title.empty()) out_ << "<title>" << Escaped{scene.title} << "</title>\n";
    if (!scene.description.empty()) out_ << "<desc>" << Escaped{scene.description} << "</desc>\n";
    if (scene.background.GetA() != 0) {
      out_ << "<rect";
      WriteFill(scene.background, out_);
      out_ << " width=\"" << scene.width << "\" height=\"" << scene.height << "\"/>\n";
    }
    Write(scene.root);
    out_ << "</svg>\n";
    out_.Flush();
  }

 private:
  void Write(Group const& group) {
    if (group.nodes.empty() || !IsFinite(group.origin)) return;
    if (group.clip) WriteClip(*group.clip);
    bool const isMoved = group.origin.x != 0 || group.origin.y != 0;
    bool const isElement = isMoved || group.clip || !group.role.empty();
    if (isElement) {
      out_ << "<g";
      if (!group.role.empty()) out_ << " class=\"" << Escaped{group.role} << "\"";
      if (isMoved) out_ << " transform=\"translate(" << group.origin.x << "," << group.origin.y << ")\"";
      if (group.clip) out_ << " clip-path=\"url(#clip" << clips_ << ")\"";
      out_ << ">\n";
    }
    for (std::size_t i = 0; i < group.nodes.size();) i = WriteFrom(group.nodes, i);
    if (isElement) out_ << "</g>\n";
  }

  void WriteClip(Rect const& rect) {
    out_ << "<clipPath id=\"clip" << ++clips_ << "\">";
    // Nothing of what is clipped by no area at all is seen.
    if (IsFinite(rect)) {
      out_ << "<rect";
      WriteRectGeometry(rect, out_);
      out_ << "/>";
    }
    out_ << "</clipPath>\n";
  }

  /// Writes the node, or the run of like ones, at a position and gives the position behind.
  std::size_t WriteFrom(std::vector<SceneNode> const& nodes, std::size_t position) {
    return std::visit([&](auto const& node) { return WriteFrom(nodes, position, node); }, nodes[position]);
  }

  template <class Node>
  std::size_t WriteFrom(std::vector<SceneNode> const&, std::size_t position, Node const& node) {
    Write(node);
    return position + 1;
  }

  std::size_t WriteFrom(std::vector<SceneNode> const& nodes, std::size_t position, RectMark const& first) {
    return WriteRun(
        nodes, position, first, IsDrawn, IsSameStyle,
        [&](RectMark const& mark) { WriteRectStyle(mark, out_); },
        [&](RectMark const& mark, bool isStyled) { WriteRect(mark, isStyled); });
  }

  std::size_t WriteFrom(std::vector<SceneNode> const& nodes, std::size_t position, TextMark const& first) {
    return WriteRun(
        nodes, position, first, TextWriter::IsDrawn, TextWriter::IsSameStyle,
        [&](TextMark const& mark) { texts_.WriteStyle(mark); },
        [&](TextMark const& mark, bool isStyled) { texts_.WriteElement(mark, isStyled); });
  }

  /// Marks that follow one another in one style stand in a group that has it.
  template <class Mark, class Style, class Element>
  std::size_t WriteRun(std::vector<SceneNode> const& nodes, std::size_t position, Mark const& first,
                       bool (*isDrawn)(Mark const&), bool (*isSameStyle)(Mark const&, Mark const&),
                       Style const& writeStyle, Element const& writeElement) {
    if (!isDrawn(first)) return position + 1;
    std::vector<Mark const*> run;
    for (; position < nodes.size(); ++position) {
      auto const* const mark = std::get_if<Mark>(&nodes[position]);
      if (mark == nullptr) break;
      if (!isDrawn(*mark)) continue;
      if (!isSameStyle(first, *mark)) break;
      run.push_back(mark);
    }
    bool const isShared = run.size() > 1;
    if (isShared) {
      out_ << "<g";
      writeStyle(first);
      out_ << ">\n";
    }
    for (Mark const* const mark : run) writeElement(*mark, !isShared);
    if (isShared) out_ << "</g>\n";
    return position;
  }

  void WriteRect(RectMark const& mark, bool isStyled) {
    out_ << "<rect";
    if (isStyled) WriteRectStyle(mark, out_);
    WriteRectGeometry(mark.rect, out_);
    out_ << "/>\n";
  }

  void Write(SymbolMarks const& marks) { WriteSymbols(marks, out_); }
  void Write(RectMarks const& marks) { WriteRects(marks, out_); }
  void Write(LineMark const& line) { WriteLine(line, out_); }
  void Write(AreaMark const& area) { WriteArea(area, out_); }
  void Write(ShapeMark const& shape) { WriteShape(shape, out_); }
  void Write(RuleMarks const& rules) { WriteRules(rules, out_); }
  void Write(GradientMark const& gradient) { WriteGradient(gradient, ++gradients_, out_); }
  void Write(ImageMark const& image) {
    if (!IsDrawn(image)) return;
    auto const [entry, isNew] = images_.try_emplace(image.file.get(), static_cast<int>(images_.size()) + 1);
    if (isNew) WriteImageSymbol(*image.file, entry->second, out_);
    WriteImage(image, entry->second, out_);
  }
  void Write(std::unique_ptr<Group> const& group) { Write(*group); }

  SvgStream out_;
  TextWriter texts_;
  int clips_ = 0;
  int gradients_ = 0;
  std::map<ImageFile const*, int> images_;  // each written once
};

}  // namespace

void WriteSvg(Scene const& scene, services::TextMeasurer const& fonts, ByteSink& sink) {
  SceneWriter(fonts, sink).Write(scene);
}

}  // namespace ostrel::charts
