// Any bytes as separated values and as JSON: a table or a DataError, and nothing else.

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "charts/data/LoadTable.h"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  using namespace ostrel::charts;
  std::string_view const text(reinterpret_cast<char const*>(data), size);
  for (auto const* name : {"a.csv", "a.tsv", "a.json"}) {
    try {
      auto const table = LoadText(text, name);
      for (auto const& column : table.columns) {
        if (column.values->AsColumn().GetCount() != table.rowCount) __builtin_trap();
      }
    } catch (DataError const&) {
      // The input is bad and said to be.
    }
  }
  return 0;
}
