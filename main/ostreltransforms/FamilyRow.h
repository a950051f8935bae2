#pragma once

#include <array>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <span>
#include <string_view>

#include "ostrelrtcore/FunctionRegistry.h"

// The parts of a family's table: one row is one registration and its documentation.
namespace OstrelTransforms {

using ort::core::StoreType;

// Never defined: calling it while a table is put together at compile time makes the fault a compile error,
// which shows the text.
[[noreturn]] void RowFault(char const* fault);

// The type of a slot: a main type and, for containers, the types of keys and elements. Empty as a whole where
// the type is to be read from the operation.
struct SlotType {
  constexpr SlotType() = default;
  constexpr SlotType(StoreType mainType) : main(mainType) {}
  constexpr SlotType(StoreType mainType, StoreType keyType, StoreType elementType)
      : main(mainType), key(keyType), element(elementType) {}

  constexpr bool IsContainer() const { return key != StoreType::Empty || element != StoreType::Empty; }
  ort::core::KeySegmentType MakeSegment() const;

  StoreType main = StoreType::Empty;
  StoreType key = StoreType::Empty;
  StoreType element = StoreType::Empty;
};

constexpr SlotType ArrayOf(StoreType element) { return {StoreType::Array, StoreType::Empty, element}; }
constexpr SlotType KeySetOf(StoreType key, StoreType payload) { return {StoreType::KeySet, key, payload}; }

// A named input or parameter. A plain name is enough where the type can be read from the operation.
struct Slot {
  constexpr Slot() = default;
  constexpr Slot(char const* slotName) : name(slotName) {}
  constexpr Slot(char const* slotName, SlotType slotType) : name(slotName), type(slotType) {}

  char const* name = nullptr;
  SlotType type;
};

class Slots {
 public:
  static constexpr std::size_t kCapacity = 16;

  constexpr Slots() = default;
  constexpr Slots(std::initializer_list<Slot> slots) {
    if (slots.size() > kCapacity) RowFault("a row has more slots than a table holds");
    for (Slot const& slot : slots) {
      if (std::string_view(slot.name).empty()) RowFault("a slot has no name");
      slots_[count_++] = slot;
    }
  }

  constexpr std::size_t size() const { return count_; }
  constexpr Slot const* begin() const { return slots_.data(); }
  constexpr Slot const* end() const { return slots_.data() + count_; }
  constexpr Slot const& operator[](std::size_t index) const { return slots_[index]; }
  constexpr Slot& operator[](std::size_t index) { return slots_[index]; }

 private:
  std::array<Slot, kCapacity> slots_{};
  std::size_t count_ = 0;
};

// What a family writes about one registration.
struct RowText {
  wchar_t const* const& name;  // one of TransformNames
  Slots inputs = {};
  SlotType output = {};  // left out where the operation's result tells it
  Slots parameters = {};
  bool isOrderDependent = false;  // the operation carries state from row to row
  char const* help = nullptr;     // one sentence
  char const* details = "";       // lines of Markdown for what a sentence does not hold
  char const* example = nullptr;  // a request's members apart from "function": R"("inputs": [...])"
};

std::vector<ort::core::KeySegmentType> MakeSegments(Slots const& slots);

// The sub-registry in which a function stands.
enum class Arity : std::uint8_t { Unary, Binary, Multinary };

using FunctorMaker = std::unique_ptr<ort::core::OrtFunctor> (*)(ort::core::ParameterSpan);

// One registration with all that is known about it; rows are constants and need no code at load.
struct Row {
  wchar_t const* const* name;
  Arity arity;
  std::uint8_t type;  // the numeric value of the registry's Type
  bool isOperation;   // registered in the parameter form
  bool isOrderDependent;
  std::array<StoreType, 2> requiredInputs;  // of element-wise functions; Empty leaves it open
  Slots inputs;
  SlotType output;
  Slots parameters;
  FunctorMaker make;
  char const* help;
  char const* details;
  char const* example;
};

// A family's rows, in the order in which they are registered.
struct FamilyTable {
  char const* family;
  std::span<Row const> rows;
};

// Registers every row of a table, in order, each after its checks.
void RegisterRows(ort::core::FunctionRegistry& registry, FamilyTable const& table);

}  // namespace OstrelTransforms
