#include "render/StyleKeys.h"

#include <bit>

#include "ostrelsys/StringHash.h"
#include "ostreltransforms/VisualKey.h"

namespace runtime {
namespace {

using namespace ort::core;
using Value = std::shared_ptr<StoreValue>;

std::uint64_t GetBits(double value) { return std::bit_cast<std::uint64_t>(value); }

bool EqualValues(Value const& a, Value const& b) {
  return a == b || (a != nullptr && b != nullptr && a->Equals(*b));
}

std::uint64_t Mix(std::uint64_t hash, std::uint64_t value) {
  return StringHash::Mix(hash ^ 0x9E3779B97F4A7C15U, value + 0xD1B54A32D192ED03U);
}
std::uint64_t Mix(std::uint64_t hash, int value) { return Mix(hash, static_cast<std::uint64_t>(value)); }
std::uint64_t Mix(std::uint64_t hash, double value) { return Mix(hash, GetBits(value)); }

template <class T>
ITypedArray<T> const* FindColumn(IStoreNamedValues const& columns, OStringCore const& name) {
  Value const column = columns.Find(name);
  return column == nullptr ? nullptr : &column->AsTypedArray<T>();
}

template <class T>
T Read(ITypedArray<T> const* column, std::uint32_t style) {
  return column == nullptr ? T() : T(column->GetElement(static_cast<int>(style)));
}

// Not taken back: a number must never stand for two values, however long one of them lives.
constinit std::atomic<std::uint64_t> g_lastNumber{0};

}  // namespace

SharedIdentity::SharedIdentity() noexcept
    : number_(g_lastNumber.fetch_add(1, std::memory_order_relaxed) + 1) {}

// Whatever the order in which threads write, each number that is written stands for this very value.
void SharedIdentity::Share(SharedIdentity const& other) const noexcept {
  std::uint64_t const own = Get();
  std::uint64_t const others = other.Get();
  if (own < others) other.number_.store(own, std::memory_order_relaxed);
  if (others < own) number_.store(others, std::memory_order_relaxed);
}

bool StyleKey::HasEqualLayout(StyleKey const& other) const {
  if (identity.IsShared(other.identity)) return true;
  return layoutHash == other.layoutHash && GetBits(ascent) == GetBits(other.ascent) &&
         GetBits(fontHeight) == GetBits(other.fontHeight) && GetBits(leading) == GetBits(other.leading) &&
         EqualValues(textFont, other.textFont);
}

bool operator==(StyleKey const& a, StyleKey const& b) {
  if (a.identity.IsShared(b.identity)) return true;
  bool const areEqual = a.hash == b.hash && a.font == b.font && GetBits(a.fontSize) == GetBits(b.fontSize) &&
                        a.color == b.color && a.fontStyle == b.fontStyle && a.fontWeight == b.fontWeight &&
                        a.textDecoration == b.textDecoration && a.textOrientation == b.textOrientation &&
                        a.hAlign == b.hAlign && a.vAlign == b.vAlign && a.HasEqualLayout(b);
  if (areEqual) a.identity.Share(b.identity);
  return areEqual;
}

struct StyleKeys::Columns {
  explicit Columns(IStoreNamedValues const& table)
      : textFont(FindColumn<Value>(table, VisualKey::TextFont)),
        ascent(FindColumn<double>(table, VisualKey::Ascent)),
        fontHeight(FindColumn<double>(table, VisualKey::FontHeight)),
        leading(FindColumn<double>(table, VisualKey::Leading)),
        font(FindColumn<RIndirectString>(table, VisualKey::Font)),
        fontSize(FindColumn<double>(table, VisualKey::FontSize)),
        color(FindColumn<int>(table, VisualKey::TextStyleColor)),
        fontStyle(FindColumn<int>(table, VisualKey::FontStyle)),
        fontWeight(FindColumn<int>(table, VisualKey::FontWeight)),
        textDecoration(FindColumn<int>(table, VisualKey::TextDecoration)),
        textOrientation(FindColumn<int>(table, VisualKey::TextOrientation)),
        hAlign(FindColumn<int>(table, VisualKey::HAlign)),
        vAlign(FindColumn<int>(table, VisualKey::VAlign)) {}

  std::shared_ptr<StyleKey const> MakeKey(std::uint32_t style) const {
    auto made = std::make_shared<StyleKey>();
    StyleKey& key = *made;
    key.textFont = Read(textFont, style);
    key.ascent = Read(ascent, style);
    key.fontHeight = Read(fontHeight, style);
    key.leading = Read(leading, style);
    key.layoutHash =
        Mix(Mix(Mix(key.textFont ? key.textFont->GetHash() : 0, key.ascent), key.fontHeight), key.leading);
    key.font = Read(font, style);
    key.fontSize = Read(fontSize, style);
    key.color = Read(color, style);
    key.fontStyle = Read(fontStyle, style);
    key.fontWeight = Read(fontWeight, style);
    key.textDecoration = Read(textDecoration, style);
    key.textOrientation = Read(textOrientation, style);
    key.hAlign = Read(hAlign, style);
    key.vAlign = Read(vAlign, style);
    key.hash = Mix(Mix(key.layoutHash, std::uint64_t{key.font.GetHash()}), key.fontSize);
    for (int const value : {key.color, key.fontStyle, key.fontWeight, key.textDecoration, key.textOrientation,
                            key.hAlign, key.vAlign}) {
      key.hash = Mix(key.hash, value);
    }
    return made;
  }

  ITypedArray<Value> const* textFont;
  ITypedArray<double> const *ascent, *fontHeight, *leading;
  ITypedArray<RIndirectString> const* font;
  ITypedArray<double> const* fontSize;
  ITypedArray<int> const *color, *fontStyle, *fontWeight, *textDecoration, *textOrientation, *hAlign, *vAlign;
};

StyleKeys::StyleKeys(Value table) : table_(std::move(table)) {}
StyleKeys::~StyleKeys() = default;

std::shared_ptr<StyleKey const> const& StyleKeys::Get(std::uint32_t style) {
  if (last_ != nullptr && style == lastStyle_) return *last_;
  if (columns_ == nullptr) columns_ = std::make_unique<Columns>(table_->AsNamedValues());
  auto& key = keys_[style];
  if (key == nullptr) key = columns_->MakeKey(style);
  lastStyle_ = style;
  last_ = &key;
  return key;
}

}  // namespace runtime
