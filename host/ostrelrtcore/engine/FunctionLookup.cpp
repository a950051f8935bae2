#include "ostrelrtcore/engine/FunctionLookup.h"

#include <algorithm>

#include "ostrelrtcore/NearestName.h"
#include "ostrelrtcore/engine/Operand.h"

namespace ort::core::engine {
namespace {

bool IsFold(EvaluationMode mode) {
  return mode == EvaluationMode::Scan || mode == EvaluationMode::ScanBackward || mode == EvaluationMode::Fold;
}

bool IsSpecialShape(UnaryFunctionType type) {
  return type == UnaryFunctionType::Special || type == UnaryFunctionType::SpecialOperation;
}
bool IsSpecialShape(BinaryFunctionType type) { return type == BinaryFunctionType::SpecialOperation; }
bool IsSpecialShape(MultinaryFunctionType) { return false; }

// The segment that a whole value has in a call.
KeySegmentType GetSegment(StoreValue const& value) {
  StoreTypeInfo const& type = value.GetTypeInfo();
  if (value.GetStoreType() == StoreType::Array) {
    return {StoreTypeInfo::Array, StoreTypeInfo::Empty, type.GetElementType(), StoreTypeInfo::Empty};
  }
  if (value.GetStoreType() == StoreType::KeySet && !value.IsSpecial()) {
    KeySetTypes const& types = value.GetKeySetTypes();
    return {StoreTypeInfo::KeySet, types.keyType, types.valueType, types.indexType};
  }
  return {StoreTypeInfo(value.GetStoreType(), false)};
}

bool SuitsWhole(KeySegmentType const& slot, StoreValue const& value) {
  StoreType const main = slot.GetMainType().GetStoreType();
  return (main == value.GetStoreType() || main == StoreType::Empty) && Matches(slot, GetSegment(value));
}

bool SuitsRows(KeySegmentType const& slot, StoreValue const& value) {
  if (!IsColumn(value)) return SuitsWhole(slot, value);
  return slot.GetMainType().GetStoreType() == GetRowType(value);
}

bool HasSpecialRows(StoreValue const& value) {
  return IsColumn(value) ? value.AsColumn().HasSpecials() : value.IsSpecial();
}

template <class Entry>
FoundFunction Describe(Entry const& entry) {
  return {&entry.GetKey(), &entry.GetOutput(), &entry.GetFactory(), entry.IsOrderDependent()};
}

bool Suits(std::vector<KeySegmentType> const& slots, CallView const& call) {
  auto const& inputs = call.inputs;
  if (IsFold(call.mode)) return SuitsRows(slots[1], *inputs[0]);
  if (slots.size() != inputs.size()) return false;
  for (std::size_t i = 0; i < slots.size(); ++i) {
    bool const suits = call.mode == EvaluationMode::Call ? SuitsWhole(slots[i], *inputs[i])
                                                         : SuitsRows(slots[i], *inputs[i]);
    if (!suits) return false;
  }
  return true;
}

// Of the entries that suit, the latest one of the wanted shape, else the latest one of the other shape.
template <class Entry>
Entry const* Choose(std::span<Entry const> entries, CallView const& call) {
  bool const wantsSpecial = call.mode != EvaluationMode::Call &&
                            std::any_of(call.inputs.begin(), call.inputs.end(),
                                        [](auto const& input) { return HasSpecialRows(*input); });
  Entry const* other = nullptr;
  for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry) {
    if (!Suits(entry->GetKey().GetInputTypes(), call)) continue;
    if (IsSpecialShape(entry->GetType()) == wantsSpecial) return &*entry;
    if (other == nullptr) other = &*entry;
  }
  return other;
}

std::string Quote(OStringCore const& name) { return "'" + name.toUtf8() + "'"; }

template <class Segments, class Write>
std::string Join(Segments const& segments, Write const& write) {
  std::string text;
  for (auto const& segment : segments) {
    if (!text.empty()) text += ", ";
    text += write(segment);
  }
  return text;
}

std::string DescribeValue(Value const& value) { return GetSegment(*value).ToString().toUtf8(); }

template <class Entry>
std::string DescribeMismatch(std::span<Entry const> entries, CallView const& call) {
  auto const describeSlot = [](KeySegmentType const& slot) { return slot.ToString().toUtf8(); };
  std::string const inputs = Join(call.inputs, DescribeValue);
  return Quote(call.function) + " can't " + EvaluationModeToString(call.mode) + " (" + inputs + "); " +
         (IsFold(call.mode) ? "it takes, after the type of its accumulator: " : "it takes: ") +
         Join(entries, [&](Entry const& entry) {
           return "(" + Join(entry.GetKey().GetInputTypes(), describeSlot) + ")";
         });
}

char const* DescribeForms(Engine::Forms const& forms) {
  if (forms.isUnary) return forms.isBinary ? "map, zip, scan, scanBackward or fold" : "map";
  return forms.isBinary ? "zip, scan, scanBackward or fold" : "call";
}

[[noreturn]] void ThrowNoForm(FunctionRegistry const& registry, CallView const& call) {
  auto const forms = Engine(registry).GetForms(call.function);
  if (!forms.IsKnown()) throw InvalidCall(DescribeUnknownFunction(registry, call.function));
  throw InvalidCall("mode " + std::string(EvaluationModeToString(call.mode)) + " does not suit " +
                    Quote(call.function) + "; use " + DescribeForms(forms));
}

template <class Functions>
FoundFunction Find(FunctionRegistry const& registry, Functions const& functions, CallView const& call,
                   std::size_t inputCount) {
  auto const entries = functions.GetEntries(call.function);
  if (entries.empty()) ThrowNoForm(registry, call);
  bool const isCall = call.mode == EvaluationMode::Call;
  if (!isCall && call.inputs.size() != inputCount) {
    throw InvalidCall(std::string(EvaluationModeToString(call.mode)) + " takes " +
                      std::to_string(inputCount) + (inputCount == 1 ? " input, " : " inputs, ") +
                      Quote(call.function) + " was given " + std::to_string(call.inputs.size()));
  }
  if (auto const* entry = Choose(entries, call)) return Describe(*entry);
  // A multinary function's own check says best what is wrong.
  if (isCall && entries.size() == 1) return Describe(entries.front());
  throw InvalidCall(DescribeMismatch(entries, call));
}

void RequireValues(std::span<Value const> values, CallView const& call, char const* what) {
  for (auto const& value : values) {
    if (value != nullptr) continue;
    auto const text = "null as " + std::string(what) + " of " + Quote(call.function);
    throw OrtRuntimeException(OrtError_WrongValueKind, OStringCore::fromUtf8(text));
  }
}

void RequireUsedValues(CallView const& call) {
  RequireValues(call.inputs, call, "input");
  RequireValues(call.parameters, call, "parameter");
  std::string const mode = EvaluationModeToString(call.mode);
  if (!IsFold(call.mode) && (call.initial != nullptr || call.groups != nullptr)) {
    throw InvalidCall("mode " + mode + " takes no " + (call.initial != nullptr ? "initial value" : "groups"));
  }
  if (call.mode == EvaluationMode::Call && !call.parameters.empty()) {
    throw InvalidCall("mode call takes no parameters; all values are inputs of " + Quote(call.function));
  }
}

void RequireInitial(FoundFunction const& found, CallView const& call) {
  KeySegmentType const& slot = found.key->GetInputTypes()[0];
  if (call.initial == nullptr || SuitsWhole(slot, *call.initial)) return;
  throw InvalidCall("the initial value of " + Quote(call.function) + " is " + DescribeValue(call.initial) +
                    ", it must be " + slot.ToString().toUtf8());
}

template <class Functions>
void AppendNames(Functions const& functions, std::vector<std::string>& names) {
  for (auto const& entry : functions.GetEntries()) names.push_back(entry.GetKey().GetName().toUtf8());
}

}  // namespace

FoundFunction FindFunction(FunctionRegistry const& registry, CallView const& call) {
  RequireUsedValues(call);
  switch (call.mode) {
    case EvaluationMode::Map:
      return Find(registry, registry.GetUnaryFunctions(), call, 1);
    case EvaluationMode::Zip:
      return Find(registry, registry.GetBinaryFunctions(), call, 2);
    case EvaluationMode::Call:
      return Find(registry, registry.GetMultinaryFunctions(), call, 0);
    case EvaluationMode::Scan:
    case EvaluationMode::ScanBackward:
    case EvaluationMode::Fold:
      break;
  }
  auto const found = Find(registry, registry.GetBinaryFunctions(), call, 1);
  RequireInitial(found, call);
  return found;
}

std::vector<std::string> ListFunctionNames(FunctionRegistry const& registry) {
  std::vector<std::string> names;
  AppendNames(registry.GetUnaryFunctions(), names);
  AppendNames(registry.GetBinaryFunctions(), names);
  AppendNames(registry.GetMultinaryFunctions(), names);
  std::sort(names.begin(), names.end());
  names.erase(std::unique(names.begin(), names.end()), names.end());
  return names;
}

std::string DescribeUnknownFunction(FunctionRegistry const& registry, OStringCore const& name) {
  std::string text = "no function is named " + Quote(name);
  std::string const nearest = NearestName(name.toUtf8(), ListFunctionNames(registry));
  return nearest.empty() ? text : text + "; did you mean '" + nearest + "'?";
}

}  // namespace ort::core::engine
