#include "ostreltransforms/composer/ComposeText.h"

#include <algorithm>

#include "ostrelrtcore/ParallelLoop.h"
#include "ostrelrtcore/RFormatString.h"
#include "ostreltransforms/FunctorInputs.h"
#include "ostreltransforms/VisualKey.h"
#include "ostreltransforms/composer/RunColumns.h"
#include "ostreltransforms/composer/RunLists.h"
#include "ostreltransforms/map/ColumnParameter.h"
#include "render/CompositionCache.h"
#include "string/InternalTrim.h"

namespace OstrelTransforms {
namespace {

using namespace ort::core;
using namespace runtime;

constexpr std::size_t kInputCount = 9;
constexpr int kStyleWrapMode = -1;
constexpr int kLastWrapMode = 3;

// Texts composed by one composer, one after the other.
constexpr std::size_t kChunk = 128;

template <class Body>
void ForEachChunk(std::size_t count, Body const& body) {
  std::size_t const chunks = (count + kChunk - 1) / kChunk;
  auto const run = [&](std::size_t chunk) { body(chunk * kChunk, std::min((chunk + 1) * kChunk, count)); };
  if (chunks > 1) return ParallelFor(chunks, run);
  if (chunks == 1) run(0);
}

class StyledTexts {
 public:
  explicit StyledTexts(std::vector<Value> const& inputs) : table_(inputs[4]) {
    detail::RequireColumnOf(StoreType::String, inputs[2]);
    texts_ = &inputs[2]->AsTypedArray<RIndirectString>();
    RequireRows(inputs[3], StoreType::Int32, texts_->GetCount(), L"the styles");
    styles_ = &inputs[3]->AsTypedArray<int>();
    lists_ = ReadRunLists(inputs[0], inputs[1], texts_->GetCount());
    if (table_->GetStoreType() != StoreType::Table) {
      throw OrtRuntimeException(OrtError_WrongValueKind, StoreTypeToString(table_->GetStoreType()));
    }
    CheckStyles(table_->AsNamedValues().Get(VisualKey::TextFont)->AsColumn().GetCount());
  }

  std::size_t GetCount() const { return lists_.size(); }
  Value const& GetStyleTable() const { return table_; }

  void Read(std::size_t text, FormattedText& result) const {
    RunList const list = lists_[text];
    if (list.count == 1) return result.assign(GetStyle(list.first), texts_->GetElement(list.first));
    result.clear();
    for (int run = list.first; run < list.first + list.count; ++run) {
      result.append({GetStyle(run), texts_->GetElement(run)});
    }
  }

 private:
  std::uint32_t GetStyle(int run) const { return static_cast<std::uint32_t>(styles_->GetElement(run)); }

  void CheckStyles(int styleCount) const {
    for (int run = 0; run < styles_->GetCount(); ++run) {
      int const style = styles_->GetElement(run);
      if (style >= 0 && style < styleCount && !styles_->IsSpecial(run)) continue;
      throw OrtRuntimeException(OrtError_WrongValueKind,
                                RFormatString(L"run %1 names a style that is none of the %2 of the table")
                                    .arg(run, 0, 10, L' ')
                                    .arg(styleCount, 0, 10, L' '));
    }
  }

  Value table_;
  ITypedArray<RIndirectString> const* texts_;
  ITypedArray<int> const* styles_;
  std::vector<RunList> lists_;
};

// Makes texts fit and composes them; one thread's object.
class TextFitter {
 public:
  TextFitter(Value const& styleTable, Size const& size, TextFitStyle fitStyle, int wrapMode)
      : composer_(styleTable), cached_(composer_, size), fitTest_(cached_), fitStyle_(fitStyle) {
    // Refuses a fit style that is none, whatever the texts are.
    ShortenToFit(FormattedText(), fitTest_, fitStyle, trimmed_);
    // Lines beyond the bottom are what does not fit; a text that may overflow shows them all.
    composer_.SetClipHeight(fitStyle != Overflow);
    if (wrapMode == kStyleWrapMode) {
      Value const modes = styleTable->AsNamedValues().Get(VisualKey::TextWrapMode);
      detail::RequireColumnOf(StoreType::Int32, modes);
      wrapModes_ = &modes->AsTypedArray<int>();
    } else {
      composer_.SetWrapMode(static_cast<std::uint32_t>(wrapMode));
    }
  }

  struct Fitted {
    std::shared_ptr<ComposedText> composed;  // null for an empty text
    std::uint32_t firstStyle = 0;
  };

  Fitted Fit(FormattedText const& text) {
    if (text.IsEmpty()) return {};
    std::uint32_t const style = text.GetRuns().front().styleIndex;
    if (wrapModes_ != nullptr) SetStyleWrapMode(style);
    std::shared_ptr<ComposedText> whole = cached_.Compose(text);
    if (fitStyle_ == Overflow || whole->GetStatus() == AllPlaced) return {std::move(whole), style};
    ShortenToFit(text, fitTest_, fitStyle_, trimmed_);
    if (trimmed_.IsEmpty()) return {};
    return {cached_.Compose(trimmed_), trimmed_.GetRuns().front().styleIndex};
  }

  Anchor GetAnchor(Fitted const& text) const {
    TextStyles const& styles = composer_.GetStyles();
    return OstrelTransforms::GetAnchor(*text.composed, styles.GetHorizontalAlignment(text.firstStyle),
                                       styles.GetVerticalAlignment(text.firstStyle));
  }

 private:
  void SetStyleWrapMode(std::uint32_t style) {
    int const mode = wrapModes_->GetElement(static_cast<int>(style));
    RequireWithin(mode, 0, kLastWrapMode, L"text_wrap_mode");
    composer_.SetWrapMode(static_cast<std::uint32_t>(mode));
  }

  TextComposer composer_;
  CachedComposer cached_;
  RectFitTest fitTest_;
  TextFitStyle fitStyle_;
  ITypedArray<int> const* wrapModes_ = nullptr;
  FormattedText trimmed_;
};

// How many texts before their use the rows of a composition are fetched from memory, where those of many
// cached compositions lie far apart.
constexpr std::size_t kAhead = 3;

void FetchRows(ComposedText const* composed) {
  if (composed == nullptr) return;
  for (ComposedText::Row const& row : composed->GetRows()) __builtin_prefetch(&row.text.Get(), 1);
}

}  // namespace

Value ComposeText(std::vector<Value> const& inputs) {
  detail::RequireInputCount(inputs.size(), kInputCount);
  for (Value const& input : inputs) detail::RequireValue(input);
  StyledTexts const texts(inputs);
  Size const size{ReadLength(FetchStoreValue<double>(inputs[5]), L"width"),
                  ReadLength(FetchStoreValue<double>(inputs[6]), L"height")};
  auto const fitStyle = static_cast<TextFitStyle>(FetchStoreValue<int>(inputs[7]));
  auto const wrapMode = FetchStoreValue<int>(inputs[8]);
  RequireWithin(wrapMode, kStyleWrapMode, kLastWrapMode, L"wrapMode");

  std::vector<TextFitter::Fitted> fitted(texts.GetCount());
  std::vector<Anchor> anchors(texts.GetCount());
  std::vector<std::size_t> runCounts(texts.GetCount());
  ForEachChunk(texts.GetCount(), [&](std::size_t begin, std::size_t end) {
    TextFitter fitter(texts.GetStyleTable(), size, fitStyle, wrapMode);
    FormattedText formatted;
    for (std::size_t text = begin; text < end; ++text) {
      texts.Read(text, formatted);
      fitted[text] = fitter.Fit(formatted);
      if (fitted[text].composed == nullptr) continue;
      anchors[text] = fitter.GetAnchor(fitted[text]);
      runCounts[text] = fitted[text].composed->GetRuns().size();
    }
  });

  RunColumns columns(runCounts);
  auto runTexts = factory::MakeColumnBuilder<RIndirectString>(StoreTypeInfo::String, columns.GetRunCount());
  std::span<RIndirectString> const runTextRows = runTexts.GetValues();
  ForEachChunk(texts.GetCount(), [&](std::size_t begin, std::size_t end) {
    for (std::size_t text = begin; text < end; ++text) {
      if (text + kAhead < end) FetchRows(fitted[text + kAhead].composed.get());
      auto const& composed = fitted[text].composed;
      columns.WriteSize(text, composed == nullptr ? Size{} : composed->GetSize());
      if (composed == nullptr) continue;
      std::vector<ComposedText::Row> made;
      if (composed->GetRows().empty()) made = composed->MakeRows();
      std::size_t run = columns.GetFirstRun(text);
      for (ComposedText::Row const& row : made.empty() ? composed->GetRows() : made) {
        columns.WriteRun(run, static_cast<int>(row.styleIndex), row.x, row.y, anchors[text]);
        runTextRows[run++] = row.text;
      }
    }
  });
  return columns.Finish(VisualKey::TextRun, runTexts.Finish());
}

}  // namespace OstrelTransforms
