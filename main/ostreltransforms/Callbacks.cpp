#include "ostreltransforms/Callbacks.h"

#include <utility>

#include "ostreltransforms/CallbackAccess.h"
#include "render/MeasurerGeneration.h"

namespace OstrelTransforms {
namespace {

NumberFormatter g_numberFormatter;
TextWidthMeasurer g_textWidthMeasurer;
ValueConverter g_valueConverter;
StringTransformer g_stringTransformer;

template <typename Signature>
void Install(std::function<Signature>& slot, std::function<Signature>& callback) noexcept {
  if (&slot != &callback) {
    slot = std::move(callback);
  }
}

void InstallTextWidthMeasurer(TextWidthMeasurer& measurer) noexcept {
  Install(g_textWidthMeasurer, measurer);
  runtime::OnTextMeasurerChanged();
}

}  // namespace

void SetRuntimeFunctionCallbacks(NumberFormatter numberFormatter, TextWidthMeasurer textWidthMeasurer,
                                 ValueConverter valueConverter, StringTransformer stringTransformer) {
  Install(g_numberFormatter, numberFormatter);
  InstallTextWidthMeasurer(textWidthMeasurer);
  Install(g_valueConverter, valueConverter);
  Install(g_stringTransformer, stringTransformer);
}

TestCallbackScope::TestCallbackScope(TextWidthMeasurer saved) noexcept : saved_(std::move(saved)) {}

TestCallbackScope::TestCallbackScope(TestCallbackScope&& other) noexcept : saved_(std::move(other.saved_)) {
  other.saved_ = nullptr;
}

TestCallbackScope::~TestCallbackScope() {
  if (saved_) {
    InstallTextWidthMeasurer(saved_);
  }
}

TestCallbackScope SetMeasureTextWidthCallbackForTest(TextWidthMeasurer callback) {
  TestCallbackScope scope(g_textWidthMeasurer);
  InstallTextWidthMeasurer(callback);
  return scope;
}

OStringCore FormatNumber(double value, ort::core::IStoreTuple const& format) {
  auto const callback = g_numberFormatter;
  return callback(value, format);
}

float MeasureTextWidth(OStringCore const& text, std::shared_ptr<ort::core::StoreValue> const& font) {
  auto const callback = g_textWidthMeasurer;
  return callback(text, font);
}

std::shared_ptr<ort::core::StoreValue> ConvertHostValue(std::shared_ptr<ort::core::StoreValue> const& value) {
  auto const callback = g_valueConverter;
  return callback(value);
}

OStringCore TransformString(OStringCore const& text) {
  auto const callback = g_stringTransformer;
  return callback(text);
}

TextWidthMeasurer CurrentTextWidthMeasurer() { return g_textWidthMeasurer; }

}  // namespace OstrelTransforms
