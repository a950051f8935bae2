#include "ostreltransforms/wordle/CloudFunctions.h"

#include <array>

#include "ostrelrtcore/Factory.h"
#include "ostreltransforms/map/ColumnParameter.h"
#include "ostreltransforms/wordle/WordCloud.h"

namespace OstrelTransforms {
namespace {

using namespace ort::core;

// Real64 columns of one length, without the rows that are special in one of them.
template <std::size_t n>
class WordColumns {
 public:
  explicit WordColumns(std::array<Value, n> const& columns) {
    for (std::size_t i = 0; i < n; ++i) {
      detail::RequireColumnOf(StoreType::Real64, columns[i]);
      views_[i] = &columns[i]->template AsTypedArray<double>();
      if (views_[i]->GetCount() != views_[0]->GetCount()) {
        throw OrtRuntimeException(OrtError_LengthsDiffer,
                                  OStringCore(L"the columns of a word cloud differ in length"));
      }
    }
    for (int row = 0; row < GetCount(); ++row) {
      if (FindKind(row) != SpecialKind::None) continue;
      for (std::size_t i = 0; i < n; ++i) values_[i].push_back(views_[i]->GetElement(row));
    }
  }

  int GetCount() const { return views_[0]->GetCount(); }
  std::span<double const> GetValues(std::size_t column) const { return values_[column]; }

  // The kind of the first column that is special in a row.
  SpecialKind FindKind(int row) const {
    for (auto const* view : views_) {
      if (!view->HasSpecials()) continue;
      if (SpecialKind const kind = view->GetSpecialKind(row); kind != SpecialKind::None) return kind;
    }
    return SpecialKind::None;
  }

 private:
  std::array<ITypedArray<double> const*, n> views_;
  std::array<std::vector<double>, n> values_;
};

}  // namespace

Value LayOutWordCloudCells(Value const& widths, Value const& heights, Value const& starts, double width,
                           double height, double scale, double gap) {
  WordColumns<3> const columns({widths, heights, starts});
  WordCloud::Words const words{columns.GetValues(0), columns.GetValues(1), columns.GetValues(2)};
  std::vector<WordCloud::Place> const places = WordCloud::LayOut(words, {width, height}, gap);

  auto x = factory::MakeColumnBuilder<double>(StoreTypeInfo::Real64, columns.GetCount());
  auto y = factory::MakeColumnBuilder<double>(StoreTypeInfo::Real64, columns.GetCount());
  std::size_t word = 0;
  for (int row = 0; row < columns.GetCount(); ++row) {
    if (SpecialKind const kind = columns.FindKind(row); kind != SpecialKind::None) {
      x.SetSpecial(row, kind);
      y.SetSpecial(row, kind);
      continue;
    }
    WordCloud::Place const& place = places[word];
    auto const index = static_cast<std::size_t>(row);
    x.GetValues()[index] = place.isShown ? place.left * scale : -(words.widths[word] * scale);
    y.GetValues()[index] = place.isShown ? place.top * scale : 0;
    ++word;
  }
  return factory::MakeKeyMap({{L"x", x.Finish()}, {L"y", y.Finish()}});
}

double FindWordleScale(Value const& widths, Value const& heights, double width, double height) {
  WordColumns<2> const columns({widths, heights});
  return WordCloud::FindScale(columns.GetValues(0), columns.GetValues(1), {width, height});
}

}  // namespace OstrelTransforms
