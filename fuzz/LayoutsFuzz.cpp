#include <bit>
#include <cmath>
#include <vector>

#include "Bytes.h"
#include "PlainPacking.h"
#include "ostrelrtcore/RuntimeCore.h"
#include "ostreltransforms/OstrelTransforms.h"

using namespace ort::core;

namespace {

using Value = factory::Value;
using Numbers = std::vector<double>;
constexpr std::size_t kMostRows = 48;

struct Registered : FunctionRegistry {
  Registered() { OstrelTransforms::RegisterAllRuntimeFunctions(*this); }
};

Value Call(wchar_t const* function, std::vector<Value> inputs) {
  static Registered const registry;
  FunctionCall call;
  call.function = OStringCore(function);
  call.mode = EvaluationMode::Call;
  call.inputs = std::move(inputs);
  return Engine(registry).Call(call);
}

Numbers MakeNumbers(std::size_t count, Bytes& bytes) {
  Numbers numbers(count);
  for (double& number : numbers) number = bytes.NextReal();
  return numbers;
}

Value MakeColumn(Numbers const& numbers) {
  return factory::MakeArray<double>(StoreTypeInfo::Real64, std::make_unique<Numbers>(numbers));
}

Numbers GetRows(Value const& layout, wchar_t const* name) {
  auto const rows = layout->AsNamedValues().Get(OStringCore(name))->AsTypedArray<double>().GetValues();
  return {rows.begin(), rows.end()};
}

bool IsSame(double a, double b) {
  return (std::isnan(a) && std::isnan(b)) ||
         std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

// The packing is that of the plain rule.
void CheckBubbles(Bytes& bytes) {
  Numbers const sizes = MakeNumbers(bytes.Next() % kMostRows, bytes);
  PlainPacking const expected(sizes);
  Value const layout = Call(L"layoutBubbles", {MakeColumn(sizes)});
  Numbers const x = GetRows(layout, L"x"), y = GetRows(layout, L"y");
  Check(x.size() == sizes.size() && y.size() == sizes.size());
  for (std::size_t i = 0; i < sizes.size(); ++i)
    Check(IsSame(x[i], expected.x[i]) && IsSame(y[i], expected.y[i]));
}

// Every word is hidden or has a place, the same one in every call.
void CheckCloud(Bytes& bytes) {
  std::size_t const count = bytes.Next() % 6;  // a word may have ten million candidates
  std::vector<Value> inputs;
  for (int i = 0; i < 3; ++i) inputs.push_back(MakeColumn(MakeNumbers(count, bytes)));
  Value const scale = Call(L"wordleScale", {inputs[0], inputs[1], factory::MakeReal64(bytes.NextReal()),
                                            factory::MakeReal64(bytes.NextReal())});
  Check(scale->GetReal64() >= 0);
  for (int i = 0; i < 4; ++i) inputs.push_back(factory::MakeReal64(bytes.NextReal()));
  Value const layout = Call(L"layoutWordCloudCells", inputs);
  Check(GetRows(layout, L"x").size() == count && GetRows(layout, L"y").size() == count);
}

struct Treemap {
  explicit Treemap(Value const& layout)
      : left(GetRows(layout, L"x")),
        top(GetRows(layout, L"y")),
        right(GetRows(layout, L"x1")),
        bottom(GetRows(layout, L"y1")) {}
  Numbers left, top, right, bottom;
};

// Any links between nodes: a node lies within its parent, or the links are refused.
void CheckTreemap(Bytes& bytes) {
  std::size_t const count = bytes.Next() % kMostRows;
  auto parents = std::make_unique<std::vector<int>>();
  for (std::size_t i = 0; i < count; ++i) parents->push_back(bytes.NextInteger<int>());
  std::vector<int> const links = *parents;
  std::vector<Value> const inputs = {factory::MakeArray<int>(StoreTypeInfo::Int32, std::move(parents)),
                                     MakeColumn(MakeNumbers(count, bytes)),
                                     factory::MakeReal64(bytes.NextReal()),
                                     factory::MakeReal64(bytes.NextReal()),
                                     MakeColumn(MakeNumbers(bytes.Next() % 3, bytes)),
                                     MakeColumn(MakeNumbers(bytes.Next() % 3, bytes))};
  try {
    Treemap const map(Call(L"computeTreemapNodesLayout", inputs));
    for (std::size_t i = 0; i < count; ++i) {
      Check(map.left[i] >= 0 && map.left[i] <= map.right[i] && map.top[i] >= 0 &&
            map.top[i] <= map.bottom[i]);
      if (links[i] < 0) continue;
      auto const parent = static_cast<std::size_t>(links[i]);
      Check(map.left[i] >= map.left[parent] && map.right[i] <= map.right[parent]);
      Check(map.top[i] >= map.top[parent] && map.bottom[i] <= map.bottom[parent]);
    }
  } catch (OrtRuntimeException const& error) {
    Check(error.GetError() == OrtError_WrongValueKind);
  }
}

}  // namespace

/// Bubbles, clouds and treemaps of any numbers.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  Bytes bytes(data, size);
  switch (bytes.Next() % 3) {
    case 0:
      CheckBubbles(bytes);
      break;
    case 1:
      CheckCloud(bytes);
      break;
    default:
      CheckTreemap(bytes);
  }
  return 0;
}
