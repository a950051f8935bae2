// Filters mark the rows of a column to keep. Rows are marked, never moved: the mask has the column's length,
// and an empty column gives an empty mask. Special rows are not shown to a filter; they stay special in the
// mask.

#include "ostreltransforms/FamilyTable.h"
#include "ostreltransforms/FamilyTables.h"
#include "ostreltransforms/FlatTable.h"
#include "ostreltransforms/Registration.h"
#include "ostreltransforms/SeenIntegers.h"
#include "ostreltransforms/TransformNames.h"

namespace OstrelTransforms {
namespace {

using namespace ort::core;

template <class T>
class KeepOnlyUniqueFunctor;

template <>
class KeepOnlyUniqueFunctor<int> {
 public:
  bool Apply(int value) { return seen_.Add(value).isNew; }
  void ApplyToArray(std::span<int const> values, std::span<bool> output) {
    seen_.AddAll(values, [output](std::size_t row, auto entry) { output[row] = entry.isNew; });
  }

 private:
  SeenIntegers<std::int8_t> seen_;
};

// Equal texts are one pointer, which alone is hashed and compared.
template <>
class KeepOnlyUniqueFunctor<RIndirectString> {
 public:
  bool Apply(RIndirectString const& text) {
    // The empty text marks a free slot and is held apart.
    if (text.IsEmpty()) return !std::exchange(hasEmpty_, true);
    return seen_.FindOrAdd(text).second;
  }

 private:
  struct Slot {
    RIndirectString key;
    bool IsFree() const { return key.IsEmpty(); }
  };
  FlatTable<Slot> seen_;
  bool hasEmpty_ = false;
};

constexpr int kRectWidth = 2;
constexpr int kRectHeight = 3;

bool KeepOnlyNonEmptyRect(Value const& rectangle) {
  detail::RequireValue(rectangle);
  IStoreTuple const& members = rectangle->AsTuple();
  return FetchStoreValue<float>(members.GetMember(kRectWidth)) > 0.0F &&
         FetchStoreValue<float>(members.GetMember(kRectHeight)) > 0.0F;
}

constexpr Row kRows[] = {
    UnaryOperation<KeepOnlyUniqueFunctor<int>>(
        {.name = TransformNames::KEEP_ONLY_UNIQUE,
         .inputs = {"values"},
         .isOrderDependent = true,
         .help = "Keeps the first row of every different number.",
         .details =
             R"(Rows are marked in their order; special rows stay special in the mask and are dropped by it.)",
         .example = R"("inputs": [{"Array": {"type": "Int32", "values": [4, 4, 7, 4, 7, 1]}}])"}),
    UnaryOperation<KeepOnlyUniqueFunctor<RIndirectString>>(
        {.name = TransformNames::KEEP_ONLY_UNIQUE,
         .inputs = {"values"},
         .isOrderDependent = true,
         .help = "Keeps the first row of every different text; capital and small letters differ.",
         .example = R"("inputs": [{"Array": {"type": "String", "values": ["a", "A", "a"]}}])"}),
    Unary<KeepOnlyNonEmptyRect>(
        {.name = TransformNames::KEEP_ONLY_NON_EMPTY_RECT,
         .inputs = {{"rectangles", StoreType::Tuple}},
         .help =
             "Keeps the rectangles (x, y, width, height in Real32) whose width and height are above zero.",
         .details = R"(- `rectangles`: tuples of at least four members; x and y are not read

NaN is not above zero.)",
         .example = R"("inputs": [{"Array": {"type": "Tuple", "values": [)"
                    R"({"Tuple": [{"Real32": 1}, {"Real32": 2}, {"Real32": 10}, {"Real32": 0}]}, )"
                    R"({"Tuple": [{"Real32": 1}, {"Real32": 2}, {"Real32": 0.5}, {"Real32": 0.5}]}]}}])"}),
};

}  // namespace

FamilyTable GetFilterTable() { return {"filter", kRows}; }

void RegisterOstrelFilterFunctions(FunctionRegistry& registry) { RegisterRows(registry, GetFilterTable()); }

}  // namespace OstrelTransforms
