#include "ostreltransforms/composer/ComposeText.h"

#include <algorithm>
#include <array>
#include <span>
#include <string_view>

#include "ostrelrtcore/ParallelLoop.h"
#include "ostrelrtcore/RFormatString.h"
#include "ostreltransforms/FunctorInputs.h"
#include "ostreltransforms/VisualKey.h"
#include "ostreltransforms/composer/RunColumns.h"
#include "ostreltransforms/composer/RunLists.h"
#include "ostreltransforms/composer/RunTexts.h"
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

  // The run of a text that has one alone; -1 for any other text.
  int GetSingleRun(std::size_t text) const { return lists_[text].count == 1 ? lists_[text].first : -1; }
  std::u16string_view GetText(int run) const { return texts_->GetElement(run).Get().view(); }
  std::uint32_t GetStyle(int run) const { return static_cast<std::uint32_t>(styles_->GetElement(run)); }

  void Read(std::size_t text, FormattedText& result) const {
    RunList const list = lists_[text];
    if (list.count == 1) return result.assign(GetStyle(list.first), texts_->GetElement(list.first));
    result.clear();
    for (int run = list.first; run < list.first + list.count; ++run) {
      result.append({GetStyle(run), texts_->GetElement(run)});
    }
  }

 private:
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
    bool isHeld = false;  // by the cache when it was looked up, so that others hold it too
  };

  // Finds those of up to kGroup texts that are in the cache as they stand and leaves the others null.
  static constexpr std::size_t kGroup = 32;
  void FindHeld(StyledTexts const& texts, std::size_t begin, std::span<Fitted> fitted) {
    keys_.clear();
    std::array<std::size_t, kGroup> places;
    for (std::size_t i = 0; i < fitted.size(); ++i) {
      int const run = texts.GetSingleRun(begin + i);
      if (run < 0) continue;
      std::u16string_view const text = texts.GetText(run);
      if (text.empty() || !cached_.IsKept(text.size())) continue;
      std::uint32_t const style = texts.GetStyle(run);
      if (wrapModes_ != nullptr) SetStyleWrapMode(style);
      places[keys_.size()] = i;
      keys_.push_back(cached_.MakeKey(style, text));
      fitted[i].firstStyle = style;
    }
    std::array<std::shared_ptr<ComposedText>, kGroup> found;
    cached_.FindHeld(keys_, {found.data(), keys_.size()});
    for (std::size_t i = 0; i < keys_.size(); ++i) {
      fitted[places[i]].composed = std::move(found[i]);
      fitted[places[i]].isHeld = true;
    }
  }

  Fitted Fit(FormattedText const& text, std::shared_ptr<ComposedText> whole) {
    if (text.IsEmpty()) return {};
    std::uint32_t const style = text.GetRuns().front().styleIndex;
    if (wrapModes_ != nullptr) SetStyleWrapMode(style);
    if (whole == nullptr) whole = cached_.Compose(text);
    if (IsShown(*whole)) return {std::move(whole), style};
    ShortenToFit(text, fitTest_, fitStyle_, trimmed_);
    if (trimmed_.IsEmpty()) return {};
    return {cached_.Compose(trimmed_), trimmed_.GetRuns().front().styleIndex};
  }

  // Whether a text is shown as it is.
  bool IsShown(ComposedText const& whole) const {
    return fitStyle_ == Overflow || whole.GetStatus() == AllPlaced;
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
  std::vector<TextComposition> keys_;
};

// How many texts before their use the rows of a composition are fetched from memory, where those of many
// cached compositions lie far apart.
constexpr std::size_t kAhead = 3;

void FetchRows(ComposedText const* composed) {
  if (composed == nullptr) return;
  auto const& rows = composed->GetRows();
  __builtin_prefetch(rows.data());
  __builtin_prefetch(rows.data() + rows.size());
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
      if ((text - begin) % TextFitter::kGroup == 0) {
        fitter.FindHeld(texts, text,
                        std::span(fitted).subspan(text, std::min(TextFitter::kGroup, end - text)));
      }
      auto& whole = fitted[text].composed;
      if (whole == nullptr || !fitter.IsShown(*whole)) {
        texts.Read(text, formatted);
        fitted[text] = fitter.Fit(formatted, std::move(whole));
      }
      if (fitted[text].composed == nullptr) continue;
      anchors[text] = fitter.GetAnchor(fitted[text]);
      runCounts[text] = fitted[text].composed->GetRuns().size();
    }
  });

  RunColumns columns(runCounts);
  RunTexts runTexts(std::move(runCounts), columns.GetRunCount());
  ForEachChunk(texts.GetCount(), [&](std::size_t begin, std::size_t end) {
    for (std::size_t text = begin; text < end; ++text) {
      if (text + kAhead < end) FetchRows(fitted[text + kAhead].composed.get());
      auto& composed = fitted[text].composed;
      columns.WriteSize(text, composed == nullptr ? Size{} : composed->GetSize());
      if (composed == nullptr) continue;
      std::vector<ComposedText::Row> made;
      if (composed->GetRows().empty()) made = composed->MakeRows();
      bool const isShared = fitted[text].isHeld && made.empty();
      std::size_t const firstRun = columns.GetFirstRun(text);
      std::size_t run = firstRun;
      for (ComposedText::Row const& row : made.empty() ? composed->GetRows() : made) {
        columns.WriteRun(run, static_cast<int>(row.styleIndex), row.x, row.y, anchors[text]);
        if (!isShared) runTexts.Write(run, row.text);
        ++run;
      }
      if (isShared) runTexts.WriteShared(text, firstRun, std::move(composed));
    }
  });
  return columns.Finish(VisualKey::TextRun, runTexts.Finish());
}

}  // namespace OstrelTransforms
