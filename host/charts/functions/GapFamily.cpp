#include <algorithm>
#include <vector>

#include "charts/functions/ChartFamilies.h"
#include "ostrelrtcore/builtins/Columns.h"

/// Which combinations of two fields have no row.
namespace ostrel::charts {
namespace {

using namespace ort::core;
using namespace ort::core::builtins;

constexpr std::size_t kMostPairs = 5'000'000;

std::vector<int> ListDifferent(std::span<int const> values) {
  std::vector<int> different(values.begin(), values.end());
  std::ranges::sort(different);
  different.erase(std::unique(different.begin(), different.end()), different.end());
  return different;
}

std::size_t PlaceOf(int value, std::vector<int> const& values) {
  return static_cast<std::size_t>(std::ranges::lower_bound(values, value) - values.begin());
}

Value MakeInts(std::vector<int> values) {
  return factory::MakeArray<int>(StoreTypeInfo::Int32, std::make_unique<std::vector<int>>(std::move(values)));
}

Value MissingPairs(Value const& first, Value const& second) {
  RowKinds const firstKinds(RequireColumn(*first, StoreType::Int32, "first"));
  RowKinds const secondKinds(RequireColumn(*second, StoreType::Int32, "second"));
  auto const firsts = first->AsTypedArray<int>().GetValues();
  auto const seconds = second->AsTypedArray<int>().GetValues();
  RequireOneLength(static_cast<int>(firsts.size()), static_cast<int>(seconds.size()), "second");
  std::vector<int> left;
  std::vector<int> right;
  for (std::size_t row = 0; row < firsts.size(); ++row) {
    auto const at = static_cast<int>(row);
    if (firstKinds[at] != SpecialKind::None || secondKinds[at] != SpecialKind::None) continue;
    left.push_back(firsts[row]);
    right.push_back(seconds[row]);
  }
  std::vector<int> const ofFirst = ListDifferent(left);
  std::vector<int> const ofSecond = ListDifferent(right);
  if (!ofSecond.empty() && ofFirst.size() > kMostPairs / ofSecond.size())
    ThrowError(OrtError_InputKindNotAccepted, "more than 5,000,000 pairs");
  std::vector<bool> isThere(ofFirst.size() * ofSecond.size());
  for (std::size_t row = 0; row < left.size(); ++row)
    isThere[PlaceOf(left[row], ofFirst) * ofSecond.size() + PlaceOf(right[row], ofSecond)] = true;
  std::vector<int> missingFirst;
  std::vector<int> missingSecond;
  for (std::size_t pair = 0; pair < isThere.size(); ++pair) {
    if (isThere[pair]) continue;
    missingFirst.push_back(ofFirst[pair / ofSecond.size()]);
    missingSecond.push_back(ofSecond[pair % ofSecond.size()]);
  }
  factory::NamedValues members;
  members.emplace(OStringCore(L"first"), MakeInts(std::move(missingFirst)));
  members.emplace(OStringCore(L"second"), MakeInts(std::move(missingSecond)));
  return factory::MakeKeyMap(std::move(members));
}

}  // namespace

BuiltinFamily GapFamily() {
  KeySegmentType const numbers = ArrayOf(StoreType::Int32);
  return {
      "gaps",
      {
          {.name = "missingPairs",
           .inputs = {"first", "second"},
           .help = "The pairs of a number of the first column and one of the second that stand in no row, "
                   "as columns \"first\" and \"second\", in ascending order. Special rows are passed over; "
                   "more than 5,000,000 pairs in all throw 2.",
           .example = R"("inputs": [{"Array": {"type": "Int32", "values": [0, 0, 1, 2]}}, )"
                      R"({"Array": {"type": "Int32", "values": [5, 7, 5, 7]}}])",
           .registrations = {Multinary<MissingPairs>({numbers, numbers}, Segment(StoreType::KeyMap))}},
      }};
}

}  // namespace ostrel::charts
