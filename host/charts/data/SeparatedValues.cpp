#include <fmt/format.h>

#include <algorithm>
#include <unordered_set>

#include "charts/data/Sources.h"
#include "charts/data/TextCheck.h"
#include "charts/data/TextColumn.h"

namespace ostrel::charts {

namespace {

/// Fields taken in at a time: few enough that their text is still in the cache when the columns read it.
constexpr std::size_t kBlockFields = 8192;

class SeparatedReader {
 public:
  SeparatedReader(std::string_view text, std::string const& sourceName, char delimiter)
      : text_(text), sourceName_(sourceName), delimiter_(delimiter) {}

  DataTable Read(DataFormat const& format) {
    auto const lineBreaks = CheckText(text_, sourceName_);
    ReadHeader();
    // Every record but the last ends with a break and has a byte between every two fields.
    mostRows_ = std::min(lineBreaks, text_.size() / names_.size()) + 1;
    for (auto const& name : names_) columns_.emplace_back(GetKind(format, name), mostRows_);
    ReadRecords();
    RereadTexts();
    return Finish(format);
  }

 private:
  static TextColumn::Kind GetKind(DataFormat const& format, std::string const& name) {
    auto const found = format.parse.find(name);
    // Where a pattern or a truth value is wanted, the text itself counts: 0731 is not 731.
    bool const needsText =
        found != format.parse.end() && found->second != "number" && found->second != "date";
    return needsText ? TextColumn::Kind::OnlyStrings : TextColumn::Kind::AnyType;
  }

  void ReadHeader() {
    SeparatedRecords records(text_, delimiter_, sourceName_);
    std::vector<SeparatedField> fields;
    if (!records.Read(fields)) throw DataError(sourceName_ + ": is empty; a header line is needed");
    std::unordered_set<std::string> known;
    std::string scratch;
    for (auto const& field : fields) {
      std::string name(field.GetText(scratch));
      if (name.empty()) name = fmt::format("column {}", names_.size() + 1);
      if (!known.insert(name).second) {
        throw DataError(fmt::format("{}:1: the header names the field '{}' twice", sourceName_, name));
      }
      names_.push_back(std::move(name));
    }
  }

  void ReadRecords() {
    ForEachBlock([this](std::vector<SeparatedField> const& fields, std::size_t rows) {
      rowCount_ += static_cast<int>(rows);
      for (std::size_t i = 0; i < columns_.size(); ++i) {
        columns_[i].Read({fields.data() + i, columns_.size(), rows}, strings_);
      }
    });
  }

  /// Columns whose first rows had a type that later ones did not keep are read a second time.
  void RereadTexts() {
    std::vector<std::size_t> again;
    for (std::size_t i = 0; i < columns_.size(); ++i) {
      if (!columns_[i].NeedsTexts()) continue;
      again.push_back(i);
      columns_[i] = TextColumn(TextColumn::Kind::OnlyStrings, mostRows_);
    }
    if (again.empty()) return;
    ForEachBlock([this, &again](std::vector<SeparatedField> const& fields, std::size_t rows) {
      for (auto const i : again) columns_[i].Read({fields.data() + i, columns_.size(), rows}, strings_);
    });
  }

  /// Gives `use` all records behind the header, in blocks, every one checked to be as wide as the header.
  template <typename Use>
  void ForEachBlock(Use use) const {
    SeparatedRecords records(text_, delimiter_, sourceName_);
    std::vector<SeparatedField> fields;
    records.Read(fields);
    fields.clear();
    std::size_t rows = 0;
    for (std::size_t before = 0; records.Read(fields); before = fields.size()) {
      auto const count = fields.size() - before;
      if (count == names_.size()) {
        ++rows;
      } else if (count == 1 && fields.back().length == 0) {
        fields.pop_back();
      } else {
        throw DataError(fmt::format("{}:{}: {} field{}, the header has {}", sourceName_, records.GetLine(),
                                    count, count == 1 ? "" : "s", names_.size()));
      }
      if (fields.size() < kBlockFields) continue;
      use(fields, rows);
      fields.clear();
      rows = 0;
    }
    if (rows > 0) use(fields, rows);
  }

  DataTable Finish(DataFormat const& format) {
    DataTable table{sourceName_, rowCount_, {}};
    for (std::size_t i = 0; i < columns_.size(); ++i) {
      DataColumn column{std::move(names_[i]), columns_[i].GetStore().Finish(), true};
      table.columns.push_back(ApplyParse(std::move(column), format));
    }
    return table;
  }

  std::string_view text_;
  std::string const& sourceName_;
  char delimiter_;
  std::vector<std::string> names_;
  std::vector<TextColumn> columns_;
  RecentStrings strings_;
  std::size_t mostRows_ = 0;
  int rowCount_ = 0;
};

}  // namespace

DataTable LoadSeparatedValues(std::string_view text, std::string const& sourceName, char delimiter,
                              DataFormat const& format) {
  return SeparatedReader(WithoutByteOrderMark(text), sourceName, delimiter).Read(format);
}

}  // namespace ostrel::charts
