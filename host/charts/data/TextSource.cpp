#include "charts/data/ColumnStore.h"
#include "charts/data/Sources.h"
#include "charts/data/TextCheck.h"
#include "charts/data/WordCount.h"

namespace ostrel::charts {

DataTable LoadWords(std::string_view text, std::string const& sourceName, DataFormat const& format) {
  CheckText(text, sourceName);
  auto words = CountWords(WithoutByteOrderMark(text), format.stopWords.value_or(EnglishStopWords()));
  if (words.size() > format.wordLimit) words.resize(format.wordLimit);
  ColumnStore texts;
  ColumnStore counts;
  for (WordCount const& word : words) {
    texts.AppendString(ort::core::RIndirectString(OStringCore::fromUtf8(word.word)));
    counts.AppendInteger(word.count);
  }
  DataTable table{sourceName, static_cast<int>(words.size()), {}};
  table.columns.push_back({"word", texts.Finish(ort::core::StoreType::String), true});
  table.columns.push_back({"count", counts.Finish(ort::core::StoreType::Int64), false});
  return table;
}

}  // namespace ostrel::charts
