#include <fmt/format.h>

#include <cmath>

#include "charts/marks/Marks.h"
#include "charts/marks/WordCloudNodes.h"

// The mark wordCloud: the texts of a field, as large as the values of another have it, side by side from the
// middle of the plot outwards.
namespace ostrel::charts {
namespace {

using ort::core::OrtColor;
using ort::core::RIndirectString;

// So many words without room are named.
constexpr int kMostNamed = 10;

OrtColor Fade(OrtColor color, double opacity) {
  auto const alpha = static_cast<unsigned>(std::lround(color.GetA() * opacity));
  return OrtColor(static_cast<int>((static_cast<unsigned>(color.GetValue()) & 0xFFFFFFU) | alpha << 24U));
}

class WordCloudPlan final : public MarkPlan {
 public:
  explicit WordCloudPlan(MarkContext& context)
      : nodes_(PlanWordCloudNodes(context)),
        look_(context.GetLook()),
        textField_(context.GetSpec().Find(Channel::Text)->field) {
    if (Encoding const* const size = context.GetSpec().Find(Channel::Size)) sizeField_ = size->field;
    for (NodeId const node : {nodes_.text, nodes_.x, nodes_.y, nodes_.size, nodes_.angle, nodes_.color,
                              nodes_.isShown, nodes_.words, nodes_.hasSize}) {
      if (node >= 0) context.GetGraph().Keep(node);
    }
  }

  void Build(MarkScene const& scene) const override {
    if (nodes_.text < 0) return;
    Results const& results = scene.results;
    auto const read = [&](NodeId node) { return results[node]->AsTypedArray<double>().GetValues(); };
    auto const x = read(nodes_.x), y = read(nodes_.y), sizes = read(nodes_.size), angles = read(nodes_.angle);
    auto const* const colors = nodes_.color < 0 ? nullptr : &results[nodes_.color]->AsTypedArray<OrtColor>();
    Extent extent(Rect{});
    for (std::size_t i = 0; i < x.size(); ++i) {
      auto const row = static_cast<int>(i);
      TextMark word;
      word.text = ReadWord(results[nodes_.text], row);
      word.at = {x[i], y[i]};
      word.anchor = TextAnchor::Middle;
      word.baseline = TextBaseline::Middle;
      word.angle = angles[i];
      word.font = scene.setter.MakeFont(sizes[i]);
      word.color = Fade(colors == nullptr ? look_.color : colors->GetElement(row), look_.opacity);
      scene.setter.Add(scene.group, word, extent);
    }
  }

  void DescribeLeftOut(Results const& results, std::vector<std::string>& sentences) const override {
    if (nodes_.hasSize >= 0) DescribeSizeless(results, sentences);
    if (nodes_.isShown < 0) return;
    auto const& isShown = results[nodes_.isShown]->AsTypedArray<bool>();
    std::string names;
    int hidden = 0;
    for (int row = 0; row < isShown.GetCount(); ++row) {
      if (isShown.GetElement(row) || ++hidden > kMostNamed) continue;
      names += fmt::format("{}'{}'", names.empty() ? "" : ", ", ReadWord(results[nodes_.words], row));
    }
    if (hidden == 0) return;
    if (hidden > kMostNamed) names += " and others";
    sentences.push_back(fmt::format("{} of {} words of '{}' have no room, however small: {}; not drawn",
                                    hidden, isShown.GetCount(), textField_, names));
  }

 private:
  // On one line.
  static std::string ReadWord(Value const& column, int row) {
    std::string text = column->AsTypedArray<RIndirectString>().GetElement(row).Get().toUtf8();
    for (char& byte : text) {
      if (byte == '\n' || byte == '\r') byte = ' ';
    }
    return text;
  }

  void DescribeSizeless(Results const& results, std::vector<std::string>& sentences) const {
    auto const& hasSize = results[nodes_.hasSize]->AsTypedArray<bool>();
    int missing = 0;
    for (int row = 0; row < hasSize.GetCount(); ++row) {
      if (hasSize.IsSpecial(row) || !hasSize.GetElement(row)) ++missing;
    }
    if (missing == 0) return;
    sentences.push_back(fmt::format("{} of {} rows have no number above 0 in '{}' for the words; not drawn",
                                    missing, hasSize.GetCount(), sizeField_));
  }

  WordCloudNodes nodes_;
  MarkLook look_;
  std::string textField_;
  std::string sizeField_;
};

void CheckEncodings(MarkContext& context) {
  ChartDocument const& document = context.GetCompilation().document;
  LayerSpec const& spec = context.GetSpec();
  if (spec.Find(Channel::Text) == nullptr) {
    ThrowDocumentError(document, spec.path + ".encoding", "a word cloud needs a field in the channel text");
  }
  Encoding const* const size = spec.Find(Channel::Size);
  if (size == nullptr) return;
  if (size->field.empty())
    ThrowDocumentError(document, size->path + ".value", "words of one size need no size; leave it out");
  if (size->type != FieldType::Quantitative)
    ThrowDocumentError(document, size->path + ".type", "a word's area is a number; use \"quantitative\"");
  if (size->scale != ScaleSpec()) {
    ThrowDocumentError(document, size->path + ".scale",
                       "words are as large as the plot has room for; leave it out");
  }
}

std::unique_ptr<MarkPlan> Plan(MarkContext& context) {
  CheckEncodings(context);
  return std::make_unique<WordCloudPlan>(context);
}

}  // namespace

MarkDefinition DefineWordCloud() {
  return {.name = "wordCloud",
          .properties = {"orientations"},
          .channels = {Channel::Text, Channel::Size, Channel::Color},
          .plan = Plan,
          .isFilled = true,
          .shape = SymbolShape::Square,
          .scalesSize = false};
}

}  // namespace ostrel::charts
