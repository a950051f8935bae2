#include <memory>
#include <stdexcept>
#include <unordered_map>
#include <vector>

#include "Bytes.h"
#include "ostrel/FunctionList.h"
#include "ostrel/Runtime.h"
#include "ostrelrtcore/RuntimeCore.h"

using namespace ort::core;
using Value = factory::Value;

namespace {

constexpr int kDeepest = 3;

RIndirectString MakeText(Bytes& bytes) {
  constexpr char16_t kinds[] = u"aZ0129-+.:/ %$,\t\n\u00e9\u6F22\u200D\xD83D\xDE00";
  std::u16string text;
  for (int length = bytes.Next() % 12; length > 0; --length) {
    text += kinds[bytes.Next() % (std::size(kinds) - 1)];
  }
  return RIndirectString(OStringCore(std::move(text)));
}

OrtDateTime MakeDate(Bytes& bytes) {
  auto const byte = bytes.Next();
  if (byte < 4) return OrtDateTime::FromValue(bytes.NextBits<std::uint64_t>());
  return OrtDateTime(1990 + byte % 64, 1 + byte / 64, bytes.NextInteger<int>(), bytes.Next());
}

StoreType MakeType(Bytes& bytes) { return static_cast<StoreType>(1 + bytes.Next() % 14); }

Value MakeValue(StoreType type, StoreType element, Bytes& bytes, int depth);

template <class T>
T MakeElement(StoreType type, Bytes& bytes, int depth) {
  if constexpr (std::is_same_v<T, RIndirectString>) {
    return MakeText(bytes);
  } else if constexpr (std::is_same_v<T, Value>) {
    return MakeValue(type, MakeType(bytes), bytes, depth + 1);
  } else if constexpr (sizeof(T) == 1) {
    return bytes.Next() & 1;
  } else if (type == StoreType::Real64) {
    return static_cast<T>(std::bit_cast<std::uint64_t>(bytes.NextReal()));
  } else if (type == StoreType::Real32) {
    return static_cast<T>(std::bit_cast<std::uint32_t>(static_cast<float>(bytes.NextReal())));
  } else if (type == StoreType::Date || type == StoreType::DateTime) {
    return static_cast<T>(MakeDate(bytes).GetValue());
  } else {
    return static_cast<T>(bytes.NextInteger<std::make_signed_t<T>>());
  }
}

// Calls visit.operator()<T>() with the element type of a type's columns.
template <class Visit>
Value VisitElement(StoreType type, Visit const& visit) {
  switch (GetStorageClass(type)) {
    case StorageClass::UInt8:
      return visit.template operator()<std::uint8_t>();
    case StorageClass::UInt32:
      return visit.template operator()<std::uint32_t>();
    case StorageClass::UInt64:
      return visit.template operator()<std::uint64_t>();
    case StorageClass::String:
      return visit.template operator()<RIndirectString>();
    case StorageClass::Value:
      break;
  }
  return visit.template operator()<Value>();
}

Value MakeColumn(StoreType element, int count, Bytes& bytes, int depth) {
  return VisitElement(element, [&]<class T>() {
    auto values = std::make_unique<std::vector<T>>();
    auto rows = std::make_unique<std::vector<int>>();
    auto kinds = std::make_unique<std::vector<SpecialKind>>();
    int const special = bytes.Next();
    for (int row = 0; row < count; ++row) {
      values->push_back(MakeElement<T>(element, bytes, depth));
      if (row == special % 64 || (special >= 240 && row % 2 == 0)) {
        rows->push_back(row);
        kinds->push_back(static_cast<SpecialKind>(special / 64));
      }
    }
    return factory::MakeArray<T>({element, false}, std::move(values), std::move(rows), std::move(kinds));
  });
}

Value MakeScalar(StoreType type, Bytes& bytes) {
  if (bytes.Next() == 255) return factory::MakeSpecial({type, false}, static_cast<SpecialKind>(bytes.Next()));
  switch (type) {
    case StoreType::Int32:
      return factory::MakeInt32(bytes.NextInteger<int>());
    case StoreType::Int64:
      return factory::MakeInt64(bytes.NextInteger<std::int64_t>());
    case StoreType::Real32:
      return factory::MakeReal32(static_cast<float>(bytes.NextReal()));
    case StoreType::Real64:
      return factory::MakeReal64(bytes.NextReal());
    case StoreType::String:
      return factory::MakeString(MakeText(bytes));
    case StoreType::Date:
      return factory::MakeDate(MakeDate(bytes));
    case StoreType::DateTime:
      return factory::MakeDateTime(MakeDate(bytes));
    case StoreType::Color:
      return factory::MakeColor(OrtColor(bytes.NextBits<std::uint32_t>()));
    default:
      return factory::MakeBool((bytes.Next() & 1) != 0);
  }
}

factory::NamedValues MakeNamed(Bytes& bytes, int depth) {
  static char16_t const* const kNames[] = {u"x",         u"y",           u"xScale", u"yScale",
                                           u"size",      u"start",       u"length", u"font",
                                           u"font_size", u"style_index", u"a",      u"b"};
  factory::NamedValues members;
  int const count = bytes.Next() % 8;
  int const rows = bytes.Next() % 6;
  for (int i = 0; i < count; ++i) {
    auto const* const name = kNames[bytes.Next() % std::size(kNames)];
    auto const type = MakeType(bytes);
    members.emplace(name, bytes.Next() % 2 == 0 ? MakeColumn(type, rows, bytes, depth + 1)
                                                : MakeValue(type, MakeType(bytes), bytes, depth + 1));
  }
  return members;
}

Value MakeKeySet(StoreType key, StoreType payload, Bytes& bytes) {
  return VisitElement(key, [&]<class K>() {
    auto entries = std::make_unique<std::unordered_map<K, std::uint64_t>>();
    for (int count = bytes.Next() % 6; count > 0; --count) {
      auto const made = MakeElement<K>(key, bytes, kDeepest);
      entries->emplace(made, MakeElement<std::uint64_t>(payload, bytes, kDeepest));
    }
    return factory::MakeKeySet<K, std::uint64_t>({key, false}, {payload, false}, {payload, false},
                                                 std::move(entries), nullptr);
  });
}

Value MakeValue(StoreType type, StoreType element, Bytes& bytes, int depth) {
  if (depth > kDeepest && !IsPrimitiveStoreType(type)) return factory::MakeTuple(std::vector<Value>{});
  switch (type) {
    case StoreType::Array:
      return MakeColumn(element, bytes.Next() % 8, bytes, depth);
    case StoreType::KeySet:
      return MakeKeySet(element, StoreType::Real64, bytes);
    case StoreType::KeyMap:
      return factory::MakeKeyMap(MakeNamed(bytes, depth));
    case StoreType::Table:
      return factory::MakeTable(MakeNamed(bytes, depth));
    case StoreType::Tuple: {
      std::vector<Value> members;
      for (int count = bytes.Next() % 4; count > 0; --count) {
        members.push_back(MakeValue(MakeType(bytes), MakeType(bytes), bytes, depth + 1));
      }
      return factory::MakeTuple(std::move(members));
    }
    default:
      return MakeScalar(type, bytes);
  }
}

// A value that suits a slot; a column in place of a scalar where rows are worked off one by one.
Value MakeInput(KeySegmentType const& slot, bool byRow, int rows, Bytes& bytes) {
  StoreType type = slot.GetMainType();
  if (type == StoreType::Empty) type = MakeType(bytes);
  StoreType element = slot.GetElementType();
  if (type == StoreType::KeySet && slot.GetKeyType() != StoreType::Empty) {
    return MakeKeySet(slot.GetKeyType(), element, bytes);
  }
  if (byRow && bytes.Next() % 8 != 0) return MakeColumn(type, rows, bytes, 0);
  if (element == StoreType::Empty) element = MakeType(bytes);
  // Columns of one call are mostly of one length.
  if (type == StoreType::Array && bytes.Next() % 8 != 0) return MakeColumn(element, rows, bytes, 0);
  return MakeValue(type, element, bytes, 0);
}

EvaluationMode ChooseMode(std::string const& form, Bytes& bytes) {
  if (form == "unary") return EvaluationMode::Map;
  if (form == "multinary") return EvaluationMode::Call;
  constexpr EvaluationMode kModes[] = {EvaluationMode::Zip, EvaluationMode::Scan,
                                       EvaluationMode::ScanBackward, EvaluationMode::Fold};
  return kModes[bytes.Next() % std::size(kModes)];
}

struct Runtime {
  Runtime() {
    ostrel::program::RegisterAllFunctions(registry, ostrel::services::MakeFixedMeasurer());
    functions = ostrel::program::ListFunctions(registry, {});
  }
  FunctionRegistry registry;
  std::vector<ostrel::program::ListedFunction> functions;
};

}  // namespace

/// Any registered function with any values of the types that it takes: a value or an exception.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  static Runtime const runtime;
  Bytes bytes(data, size);
  auto const& function = runtime.functions[bytes.NextBits<std::uint16_t>() % runtime.functions.size()];
  FunctionCall call;
  call.function = OStringCore::fromUtf8(function.name);
  call.mode = ChooseMode(function.form, bytes);
  bool const byRow = call.mode != EvaluationMode::Call;
  bool const folds = byRow && call.mode != EvaluationMode::Map && call.mode != EvaluationMode::Zip;
  int const rows = bytes.Next() % 8;
  for (auto const& slot : function.inputs) call.inputs.push_back(MakeInput(slot, byRow, rows, bytes));
  if (folds) call.inputs.erase(call.inputs.begin());
  if (folds && bytes.Next() % 2 == 0) call.groups = MakeColumn(StoreType::Int32, rows, bytes, 0);
  for (auto const& slot : function.parameters) call.parameters.push_back(MakeInput(slot, false, rows, bytes));
  try {
    auto const result = Engine(runtime.registry).Call(call);
    Check(result != nullptr);
    if (call.mode == EvaluationMode::Map) {
      auto const& input = *call.inputs.front();
      if (input.GetStoreType() == StoreType::Array && result->GetStoreType() == StoreType::Array &&
          function.inputs.front().GetMainType() != StoreType::Array) {
        Check(result->AsColumn().GetCount() == input.AsColumn().GetCount());
      }
    }
  } catch (std::exception const&) {
    // Said to be wrong.
  }
  return 0;
}
