#include "charts/data/SeparatedRecords.h"

#include <fmt/format.h>

#include <array>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include "charts/data/DataTable.h"

namespace ostrel::charts {

namespace {

#ifdef __SSE2__
std::uint64_t FindSeparators(char const* block, char delimiter) {
  __m128i const delimiters = _mm_set1_epi8(delimiter);
  __m128i const quotes = _mm_set1_epi8('"');
  __m128i const feeds = _mm_set1_epi8('\n');
  __m128i const returns = _mm_set1_epi8('\r');
  std::uint64_t mask = 0;
  for (int i = 0; i < 4; ++i) {
    __m128i const bytes = _mm_loadu_si128(reinterpret_cast<__m128i const*>(block + 16 * i));
    __m128i const ends = _mm_or_si128(_mm_cmpeq_epi8(bytes, feeds), _mm_cmpeq_epi8(bytes, returns));
    __m128i const others = _mm_or_si128(_mm_cmpeq_epi8(bytes, delimiters), _mm_cmpeq_epi8(bytes, quotes));
    auto const bits = static_cast<std::uint32_t>(_mm_movemask_epi8(_mm_or_si128(ends, others)));
    mask |= std::uint64_t{bits} << (16 * i);
  }
  return mask;
}
#else
std::uint64_t FindSeparators(char const* block, char delimiter) {
  std::uint64_t mask = 0;
  for (int i = 0; i < 64; ++i) {
    char const c = block[i];
    bool const separates = c == delimiter || c == '"' || c == '\n' || c == '\r';
    mask |= std::uint64_t{separates} << i;
  }
  return mask;
}
#endif

}  // namespace

std::string_view SeparatedField::GetText(std::string& scratch) const {
  if (!hasDoubledQuotes) return GetRawText();
  scratch.clear();
  scratch.reserve(length);
  for (std::uint32_t i = 0; i < length; ++i) {
    scratch.push_back(begin[i]);
    if (begin[i] == '"') ++i;
  }
  return scratch;
}

SeparatorScanner::SeparatorScanner(std::string_view text, char delimiter)
    : text_(text), delimiter_(delimiter) {
  ReadBlock();
}

void SeparatorScanner::ReadBlock() {
  auto const rest = text_.size() - block_;
  if (rest >= kBlock) {
    mask_ = FindSeparators(text_.data() + block_, delimiter_);
    return;
  }
  std::array<char, kBlock> padded{};
  text_.copy(padded.data(), rest, block_);
  mask_ = FindSeparators(padded.data(), delimiter_);
}

SeparatedRecords::SeparatedRecords(std::string_view text, char delimiter, std::string const& sourceName)
    : text_(text), delimiter_(delimiter), sourceName_(sourceName), scanner_(text, delimiter) {
  Advance();
}

bool SeparatedRecords::Read(std::vector<SeparatedField>& fields) {
  if (position_ >= text_.size()) return false;
  recordLine_ = line_;
  recordStart_ = fields.size();
  for (;;) {
    if (Has(position_, '"')) {
      ReadQuoted(fields);
    } else {
      ReadPlain(fields);
    }
    if (!Has(position_, delimiter_)) break;
    ++position_;
    Advance();
  }
  if (position_ < text_.size()) EndRecord();
  return true;
}

void SeparatedRecords::ReadPlain(std::vector<SeparatedField>& fields) {
  if (Has(next_, '"')) {
    Fail(line_,
         fmt::format("field {} has a quote inside; the whole field must be quoted and its quotes doubled",
                     fields.size() - recordStart_ + 1));
  }
  Add(fields, position_, next_, false);
  position_ = next_;
}

void SeparatedRecords::ReadQuoted(std::vector<SeparatedField>& fields) {
  auto const openingLine = line_;
  auto const begin = position_ + 1;
  bool hasDoubledQuotes = false;
  for (Advance();; Advance()) {
    if (next_ == text_.size()) {
      Fail(openingLine,
           fmt::format("the quote that opens field {} is never closed", fields.size() - recordStart_ + 1));
    }
    char const c = text_[next_];
    if (c == '"') {
      if (!Has(next_ + 1, '"')) break;
      hasDoubledQuotes = true;
      Advance();
    } else if (c == '\n' || (c == '\r' && !Has(next_ + 1, '\n'))) {
      ++line_;
    }
  }
  Add(fields, begin, next_, hasDoubledQuotes);
  position_ = next_ + 1;
  Advance();
  if (position_ != next_) {
    Fail(line_, fmt::format("field {} goes on behind its closing quote", fields.size() - recordStart_));
  }
}

void SeparatedRecords::Add(std::vector<SeparatedField>& fields, std::size_t begin, std::size_t end,
                           bool hasDoubledQuotes) {
  auto const number = fields.size() - recordStart_ + 1;
  if (end - begin > kMostFieldBytes) {
    Fail(recordLine_, fmt::format("field {} is longer than {} MiB", number, kMostFieldBytes >> 20));
  }
  if (number > kMostFields) Fail(recordLine_, fmt::format("more than {} fields", kMostFields));
  fields.push_back({text_.data() + begin, static_cast<std::uint32_t>(end - begin), hasDoubledQuotes});
}

void SeparatedRecords::EndRecord() {
  if (text_[position_] == '\r' && Has(position_ + 1, '\n')) {
    ++position_;
    Advance();
  }
  ++position_;
  Advance();
  ++line_;
}

void SeparatedRecords::Fail(std::size_t line, std::string_view cause) const {
  throw DataError(fmt::format("{}:{}: {}", sourceName_, line, cause));
}

}  // namespace ostrel::charts
