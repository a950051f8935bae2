// A host's module: installs callbacks, registers all functions, composes a text on several threads (which
// makes the process-wide cache), and takes its callbacks back.
#include <exception>
#include <string>
#include <thread>
#include <vector>

#include "ostrelrtcore/RuntimeCore.h"
#include "ostreltransforms/OstrelTransforms.h"

namespace {

using namespace ort::core;
using Value = std::shared_ptr<StoreValue>;

template <class T>
Value Column(StoreTypeInfo const& type, T value) {
  return factory::MakeArray<T>(type, std::make_unique<std::vector<T>>(1, std::move(value)));
}

Value Integers(int value) { return Column<int>(StoreTypeInfo::Int32, value); }
Value Reals(double value) { return Column<double>(StoreTypeInfo::Real64, value); }
Value Strings(wchar_t const* text) {
  return Column<RIndirectString>(StoreTypeInfo::String, OStringCore(text));
}

Value OneStyle() {
  Value const font = factory::MakeTuple(
      std::vector<Value>{factory::MakeString(OStringCore(L"Sans")), factory::MakeReal64(12.0)});
  return factory::MakeTable(
      {{OStringCore(L"text_font"), Column<Value>(StoreTypeInfo::Tuple, font)},
       {OStringCore(L"font"), Strings(L"Sans")},
       {OStringCore(L"font_size"), Reals(12.0)},
       {OStringCore(L"font_weight"), Integers(400)},
       {OStringCore(L"font_style"), Integers(0)},
       {OStringCore(L"text_decoration"), Integers(0)},
       {OStringCore(L"text_orientation"), Integers(0)},
       {OStringCore(L"hAlign"), Integers(0)},
       {OStringCore(L"vAlign"), Integers(0)},
       {OStringCore(L"text_wrap_mode"), Integers(0)},
       {OStringCore(L"text_alignment"), Integers(0)},
       {OStringCore(L"text_style_color"), Column<OrtColor>(StoreTypeInfo::Color, OrtColor(-16777216))},
       {OStringCore(L"ascent"), Reals(9.0)},
       {OStringCore(L"font_height"), Reals(12.0)},
       {OStringCore(L"leading"), Reals(0.0)}});
}

double WidthOfThreeUnits() {
  Value const result = OstrelTransforms::ComposeText(
      {Integers(0), Integers(1), Strings(L"abc"), Integers(0), OneStyle(), factory::MakeReal64(0.0),
       factory::MakeReal64(0.0), factory::MakeInt32(0), factory::MakeInt32(-1)});
  Value const widths = result->AsNamedValues().Get(OStringCore(L"width"));
  return widths->AsTypedArray<double>().GetElement(0);
}

void UseEverything() {
  OstrelTransforms::SetRuntimeFunctionCallbacks(
      [](double, IStoreTuple const&) { return OStringCore(); },
      [](OStringCore const& text, Value const&) { return 10.0F * static_cast<float>(text.length()); },
      [](Value const& value) { return value; }, [](OStringCore const& text) { return text; });
  FunctionRegistry registry;
  OstrelTransforms::RegisterAllRuntimeFunctions(registry);

  std::vector<double> widths(4);
  std::vector<std::thread> threads;
  for (double& width : widths) {
    threads.emplace_back([&width] {
      try {
        width = WidthOfThreeUnits();
      } catch (std::exception const&) {
        width = -1.0;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (double const width : widths) {
    if (width != WidthOfThreeUnits() || width < 30.0) throw std::runtime_error("the text was not composed");
  }
}

}  // namespace

extern "C" __attribute__((visibility("default"))) char const* UsePlugin() {
  static std::string fault;
  fault.clear();
  try {
    UseEverything();
  } catch (std::exception const& error) {
    fault = error.what();
  }
  OstrelTransforms::SetRuntimeFunctionCallbacks({}, {}, {}, {});
  return fault.c_str();
}
