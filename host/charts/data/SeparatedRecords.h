#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ostrel::charts {

/// A field as it stands in the text, without its outer quotes.
struct SeparatedField {
  char const* begin = nullptr;
  std::uint32_t length = 0;
  bool hasDoubledQuotes = false;

  std::string_view GetRawText() const { return {begin, length}; }
  /// Doubled quotes made single, by way of `scratch` where there are any.
  std::string_view GetText(std::string& scratch) const;
};

/// Where fields may end, in ascending order: delimiters, quotes and line breaks, found 64 bytes at a time.
class SeparatorScanner {
 public:
  SeparatorScanner(std::string_view text, char delimiter);
  /// The next place, and the text's length when there is none.
  std::size_t Next() {
    while (mask_ == 0) {
      if (text_.size() - block_ <= kBlock) return text_.size();
      block_ += kBlock;
      ReadBlock();
    }
    auto const place = block_ + static_cast<std::size_t>(__builtin_ctzll(mask_));
    mask_ &= mask_ - 1;
    return place;
  }

 private:
  static constexpr std::size_t kBlock = 64;
  void ReadBlock();

  std::string_view text_;
  char delimiter_;
  std::size_t block_ = 0;
  std::uint64_t mask_ = 0;
};

/// The records of a text by RFC 4180, with any delimiter and line breaks of LF, CR LF or CR, mixed as they
/// come. Everything that the format forbids throws DataError with the line: quotes inside of an unquoted
/// field, text behind a closing quote, a quote that is never closed (with the line where it opens), a field
/// of more than 16 MiB, and more than 16,384 fields in a record.
class SeparatedRecords {
 public:
  static constexpr std::size_t kMostFields = 16'384;
  static constexpr std::size_t kMostFieldBytes = std::size_t{16} << 20;

  /// The source's name is kept by reference.
  SeparatedRecords(std::string_view text, char delimiter, std::string const& sourceName);

  /// Appends the next record's fields; a blank line has one empty field. False at the end of the text.
  bool Read(std::vector<SeparatedField>& fields);
  /// The line, counted from 1, in which the record read last begins.
  std::size_t GetLine() const { return recordLine_; }

 private:
  void ReadPlain(std::vector<SeparatedField>& fields);
  void ReadQuoted(std::vector<SeparatedField>& fields);
  void Add(std::vector<SeparatedField>& fields, std::size_t begin, std::size_t end, bool hasDoubledQuotes);
  void EndRecord();
  void Advance() { next_ = scanner_.Next(); }
  bool Has(std::size_t place, char wanted) const { return place < text_.size() && text_[place] == wanted; }
  [[noreturn]] void Fail(std::size_t line, std::string_view cause) const;

  std::string_view text_;
  char delimiter_;
  std::string const& sourceName_;
  SeparatorScanner scanner_;
  std::size_t position_ = 0;
  std::size_t next_ = 0;  // the first separator at or behind the position
  std::size_t line_ = 1;
  std::size_t recordLine_ = 1;
  std::size_t recordStart_ = 0;  // of the record's fields
};

}  // namespace ostrel::charts
