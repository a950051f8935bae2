#include "ostreltransforms/composer/TextStyleTable.h"

#include <cmath>
#include <optional>
#include <unordered_map>

#include "ostrelrtcore/Factory.h"
#include "ostreltransforms/CallbackAccess.h"
#include "ostreltransforms/VisualKey.h"
#include "ostreltransforms/map/ColumnParameter.h"

namespace OstrelTransforms {
namespace {

using namespace ort::core;
namespace VisualKey = runtime::VisualKey;

constexpr wchar_t const* kDefaultFamily = L"sans-serif";
constexpr double kDefaultSize = 11;
constexpr int kDefaultWeight = 400;
constexpr int kBlack = static_cast<int>(0xFF000000U);
// Of the font's size, where the host tells no metrics.
constexpr double kAscentShare = 0.8;
constexpr double kHeightShare = 1;
constexpr double kLeadingShare = 0.2;

// The columns of the given table, with one count of rows.
class StyleColumns {
 public:
  explicit StyleColumns(Value const& table) {
    if (table->GetStoreType() != StoreType::Table) {
      throw OrtRuntimeException(OrtError_WrongValueKind, StoreTypeToString(table->GetStoreType()));
    }
    IStoreNamedValues const& columns = table->AsNamedValues();
    for (OStringCore const& name : columns.GetNames()) {
      Value const column = columns.Get(name);
      if (columns_.empty()) count_ = column->AsColumn().GetCount();
      if (column->AsColumn().GetCount() != count_) throw OrtRuntimeException(OrtError_LengthsDiffer, name);
      columns_.emplace(name, column);
    }
  }

  int GetCount() const { return count_; }
  Value Find(OStringCore const& name) const {
    auto const found = columns_.find(name);
    return found == columns_.end() ? nullptr : found->second;
  }
  void Set(OStringCore const& name, Value column) { columns_[name] = std::move(column); }
  Value MakeTable() && { return factory::MakeTable(std::move(columns_)); }

 private:
  factory::NamedValues columns_;
  int count_ = 0;
};

// A column's rows, and for its special ones and where there is no column a default.
template <class T>
class StyleRows {
 public:
  StyleRows(StyleColumns const& columns, OStringCore const& name, T fallback)
      : column_(columns.Find(name)), fallback_(std::move(fallback)) {
    if (column_ == nullptr) return;
    detail::RequireColumnOf(ElementTraits<T>::kStoreType, column_);
    rows_ = &column_->AsTypedArray<T>();
  }

  bool Has(int row) const { return rows_ != nullptr && !rows_->IsSpecial(row); }
  T Get(int row) const { return Has(row) ? T(rows_->GetElement(row)) : fallback_; }
  // The column as it is when no row needs the default.
  Value GetWhole() const { return rows_ == nullptr || rows_->HasSpecials() ? nullptr : column_; }

 private:
  Value column_;
  ITypedArray<T> const* rows_ = nullptr;
  T fallback_;
};

void RequireFinite(double value, OStringCore const& name) {
  if (!std::isfinite(value)) throw OrtRuntimeException(OrtError_InputKindNotAccepted, name);
}
void RequireExtent(double value, OStringCore const& name) {
  RequireFinite(value, name);
  if (value < 0) throw OrtRuntimeException(OrtError_InputKindNotAccepted, name);
}

struct Metrics {
  double ascent = 0;
  double height = 0;
  double leading = 0;
};

// What the host's font value (family, size, weight, slant) names.
struct FontParts {
  RIndirectString family;
  double size = 0;
  int weight = 0;
  int slant = 0;
};

// A font as the host resolved it, and what its tuple tells.
struct ResolvedFont {
  Value font;
  std::optional<FontParts> parts;
  std::optional<Metrics> metrics;
};

bool HasMembers(IStoreTuple const& tuple, int first, std::initializer_list<StoreType> types) {
  if (tuple.GetCount() < first + static_cast<int>(types.size())) return false;
  for (StoreType const type : types) {
    Value const& member = tuple.GetMember(first++);
    if (member->GetStoreType() != type || member->IsSpecial()) return false;
  }
  return true;
}

ResolvedFont ResolveFont(Value const& font) {
  constexpr int kMetrics = 4;
  using enum StoreType;
  ResolvedFont resolved{ConvertHostValue(font), std::nullopt, std::nullopt};
  detail::RequireValue(resolved.font);
  MeasureTextWidth(OStringCore(), resolved.font);
  if (resolved.font->GetStoreType() != Tuple || resolved.font->IsSpecial()) return resolved;
  IStoreTuple const& tuple = resolved.font->AsTuple();
  if (HasMembers(tuple, 0, {String, Real64, Int32, Int32})) {
    resolved.parts = {tuple.GetMember(0)->GetString(), tuple.GetMember(1)->GetReal64(),
                      tuple.GetMember(2)->GetInt32(), tuple.GetMember(3)->GetInt32()};
  }
  if (HasMembers(tuple, kMetrics, {Real64, Real64, Real64})) {
    resolved.metrics = {tuple.GetMember(kMetrics)->GetReal64(), tuple.GetMember(kMetrics + 1)->GetReal64(),
                        tuple.GetMember(kMetrics + 2)->GetReal64()};
  }
  return resolved;
}

// The host's answers by the value that was asked for, compared by value.
template <class Answer>
class HostAnswers {
 public:
  template <class Ask>
  Answer const& Get(Value const& value, Ask const& ask) {
    auto const found = answers_.find(value);
    return found != answers_.end() ? found->second : answers_.emplace(value, ask(value)).first->second;
  }

 private:
  struct Hash {
    std::size_t operator()(Value const& value) const { return value->GetHash(); }
  };
  struct Equal {
    bool operator()(Value const& a, Value const& b) const { return a == b || a->Equals(*b); }
  };
  std::unordered_map<Value, Answer, Hash, Equal> answers_;
};

// The columns of fonts and what follows from them.
class FontColumns {
 public:
  explicit FontColumns(StyleColumns const& columns)
      : count_(columns.GetCount()),
        font_(columns, VisualKey::TextFont, nullptr),
        family_(columns, VisualKey::Font, OStringCore(kDefaultFamily)),
        size_(columns, VisualKey::FontSize, kDefaultSize),
        weight_(columns, VisualKey::FontWeight, kDefaultWeight),
        slant_(columns, VisualKey::FontStyle, 0),
        ascent_(columns, VisualKey::Ascent, 0),
        height_(columns, VisualKey::FontHeight, 0),
        leading_(columns, VisualKey::Leading, 0) {}

  void Resolve(StyleColumns& columns) const {
    auto fonts = std::make_unique<std::vector<Value>>(static_cast<std::size_t>(count_));
    auto family = factory::MakeColumnBuilder<RIndirectString>(StoreTypeInfo::String, count_);
    auto weight = factory::MakeColumnBuilder<int>(StoreTypeInfo::Int32, count_);
    auto slant = factory::MakeColumnBuilder<int>(StoreTypeInfo::Int32, count_);
    auto const makeReals = [&] { return factory::MakeColumnBuilder<double>(StoreTypeInfo::Real64, count_); };
    auto size = makeReals(), ascent = makeReals(), height = makeReals(), leading = makeReals();

    HostAnswers<ResolvedFont> resolved;
    for (int row = 0; row < count_; ++row) {
      auto const i = static_cast<std::size_t>(row);
      bool const isGiven = font_.Has(row);
      ResolvedFont const& answer =
          resolved.Get(isGiven ? font_.Get(row) : MakeFont(GetParts(row)), ResolveFont);
      FontParts const parts = GetParts(row, isGiven ? answer.parts : std::nullopt);
      Metrics const metrics = answer.metrics ? *answer.metrics : GetMetrics(row, parts.size);
      RequireExtent(parts.size, VisualKey::FontSize);
      RequireFinite(metrics.ascent, VisualKey::Ascent);
      RequireExtent(metrics.height, VisualKey::FontHeight);
      RequireFinite(metrics.leading, VisualKey::Leading);
      (*fonts)[i] = answer.font;
      family.GetValues()[i] = parts.family;
      size.GetValues()[i] = parts.size;
      weight.GetValues()[i] = parts.weight;
      slant.GetValues()[i] = parts.slant;
      ascent.GetValues()[i] = metrics.ascent;
      height.GetValues()[i] = metrics.height;
      leading.GetValues()[i] = metrics.leading;
    }
    columns.Set(VisualKey::TextFont, MakeFontColumn(std::move(fonts)));
    columns.Set(VisualKey::Font, family.Finish());
    columns.Set(VisualKey::FontSize, size.Finish());
    columns.Set(VisualKey::FontWeight, weight.Finish());
    columns.Set(VisualKey::FontStyle, slant.Finish());
    columns.Set(VisualKey::Ascent, ascent.Finish());
    columns.Set(VisualKey::FontHeight, height.Finish());
    columns.Set(VisualKey::Leading, leading.Finish());
  }

 private:
  static Value MakeFont(FontParts const& parts) {
    RequireExtent(parts.size, VisualKey::FontSize);
    return factory::MakeTuple({factory::MakeString(parts.family), factory::MakeReal64(parts.size),
                               factory::MakeInt32(parts.weight), factory::MakeInt32(parts.slant)});
  }

  // The host may have fonts of its own, which are whole values of some kind.
  static Value MakeFontColumn(std::unique_ptr<std::vector<Value>> fonts) {
    StoreType const type = fonts->empty() ? StoreType::Tuple : fonts->front()->GetStoreType();
    return factory::MakeArray<Value>(StoreTypeInfo(type, false), std::move(fonts), nullptr, nullptr);
  }

  FontParts GetParts(int row, std::optional<FontParts> const& resolved = std::nullopt) const {
    FontParts parts{family_.Get(row), size_.Get(row), weight_.Get(row), slant_.Get(row)};
    if (!resolved) return parts;
    if (!family_.Has(row)) parts.family = resolved->family;
    if (!size_.Has(row)) parts.size = resolved->size;
    if (!weight_.Has(row)) parts.weight = resolved->weight;
    if (!slant_.Has(row)) parts.slant = resolved->slant;
    return parts;
  }

  Metrics GetMetrics(int row, double size) const {
    return {ascent_.Has(row) ? ascent_.Get(row) : kAscentShare * size,
            height_.Has(row) ? height_.Get(row) : kHeightShare * size,
            leading_.Has(row) ? leading_.Get(row) : kLeadingShare * size};
  }

  int count_;
  StyleRows<Value> font_;
  StyleRows<RIndirectString> family_;
  StyleRows<double> size_;
  StyleRows<int> weight_, slant_;
  StyleRows<double> ascent_, height_, leading_;
};

template <class T>
Value FillColumn(StyleColumns const& columns, OStringCore const& name, StoreTypeInfo const& type,
                 T fallback) {
  StyleRows<T> const rows(columns, name, fallback);
  if (Value whole = rows.GetWhole()) return whole;
  if (columns.Find(name) == nullptr) return factory::MakeConstantArray<T>(type, fallback, columns.GetCount());
  auto column = factory::MakeColumnBuilder<T>(type, columns.GetCount());
  for (int row = 0; row < columns.GetCount(); ++row) {
    column.GetValues()[static_cast<std::size_t>(row)] = rows.Get(row);
  }
  return column.Finish();
}

OrtColor ConvertColor(Value const& text) { return FetchStoreValue<OrtColor>(ConvertHostValue(text)); }

Value FillColors(StyleColumns const& columns) {
  Value const given = columns.Find(VisualKey::TextStyleColor);
  if (given == nullptr || given->GetTypeInfo().GetElementType() != StoreType::String) {
    return FillColumn<OrtColor>(columns, VisualKey::TextStyleColor, StoreTypeInfo::Color, kBlack);
  }
  StyleRows<RIndirectString> const rows(columns, VisualKey::TextStyleColor, {});
  auto column = factory::MakeColumnBuilder<OrtColor>(StoreTypeInfo::Color, columns.GetCount());
  HostAnswers<OrtColor> colors;
  for (int row = 0; row < columns.GetCount(); ++row) {
    column.GetValues()[static_cast<std::size_t>(row)] =
        rows.Has(row) ? colors.Get(factory::MakeString(rows.Get(row)), ConvertColor) : OrtColor(kBlack);
  }
  return column.Finish();
}

}  // namespace

Value UpdateTextStyleTable(Value const& styles) {
  StyleColumns columns(styles);
  FontColumns(columns).Resolve(columns);
  columns.Set(VisualKey::TextStyleColor, FillColors(columns));
  // 0 is no decoration, horizontal, at the begin, at the top, and not wrapped.
  for (OStringCore const* const name :
       {&VisualKey::TextDecoration, &VisualKey::TextAlignment, &VisualKey::TextOrientation,
        &VisualKey::HAlign, &VisualKey::VAlign, &VisualKey::TextWrapMode}) {
    columns.Set(*name, FillColumn<int>(columns, *name, StoreTypeInfo::Int32, 0));
  }
  return std::move(columns).MakeTable();
}

}  // namespace OstrelTransforms
