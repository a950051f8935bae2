#include "charts/expressions/ExpressionTokens.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>

#include "charts/data/NumberText.h"
#include "charts/expressions/Expression.h"
#include "ostrelsys/OStringCore.h"
#include "ostrelsys/Utf.h"

namespace ostrel::charts {

namespace {

using Kind = ExpressionToken::Kind;

// A sign that begins with another one stands before it.
constexpr std::string_view kSigns[] = {
    ">>>", "===", "!==", "**=", "=>", "==", "!=", "<=", ">=", "&&", "||", "??", "**", "++", "--", "<<",
    ">>",  "?.",  "+=",  "-=",  "*=", "/=", "+",  "-",  "*",  "/",  "%",  "<",  ">",  "!",  "=",  "?",
    ":",   ",",   ".",   "(",   ")",  "[",  "]",  "{",  "}",  "&",  "|",  "^",  "~",  ";"};

bool IsDigit(char byte) { return byte >= '0' && byte <= '9'; }

bool BeginsName(char byte) {
  bool const isLetter = (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z');
  return isLetter || byte == '_' || byte == '$' || static_cast<unsigned char>(byte) >= 0x80;
}

int HexValue(char byte) {
  if (IsDigit(byte)) return byte - '0';
  if (byte >= 'a' && byte <= 'f') return byte - 'a' + 10;
  if (byte >= 'A' && byte <= 'F') return byte - 'A' + 10;
  return -1;
}

class Tokenizer {
 public:
  explicit Tokenizer(std::string_view source) : source_(source) {}

  std::vector<ExpressionToken> Split() {
    do {
      SkipBlanks();
      tokens_.emplace_back();
      tokens_.back().begin = at_;
      Read(tokens_.back());
      tokens_.back().end = at_;
    } while (tokens_.back().kind != Kind::End);
    return std::move(tokens_);
  }

 private:
  char Peek(std::size_t ahead = 0) const {
    return at_ + ahead < source_.size() ? source_[at_ + ahead] : '\0';
  }
  bool IsAtEnd() const { return at_ >= source_.size(); }

  void SkipBlanks() {
    constexpr std::string_view kBlanks = " \t\r\n";
    while (!IsAtEnd() && kBlanks.find(source_[at_]) != std::string_view::npos) ++at_;
  }

  void Read(ExpressionToken& token) {
    if (IsAtEnd()) return;
    char const first = Peek();
    if (IsDigit(first) || (first == '.' && IsDigit(Peek(1)))) return ReadNumberToken(token);
    if (first == '"' || first == '\'') return ReadText(token);
    if (BeginsName(first)) return ReadName(token);
    for (std::string_view const sign : kSigns) {
      if (!source_.substr(at_).starts_with(sign)) continue;
      token.kind = Kind::Sign;
      token.text = sign;
      at_ += sign.size();
      return;
    }
    if (first == '`') FailAtColumn(source_, at_, "texts stand in ' or \"; join them with +");
    FailAtColumn(source_, at_, fmt::format("the character '{}' has no meaning here", first));
  }

  void ReadName(ExpressionToken& token) {
    token.kind = Kind::Name;
    while (!IsAtEnd() && (BeginsName(Peek()) || IsDigit(Peek()))) token.text += source_[at_++];
  }

  void ReadNumberToken(ExpressionToken& token) {
    token.kind = Kind::Number;
    std::size_t const begin = at_;
    if (Peek() == '0' && (Peek(1) == 'x' || Peek(1) == 'X')) {
      at_ += 2;
      std::size_t const digits = at_;
      for (; HexValue(Peek()) >= 0; ++at_) token.number = token.number * 16 + HexValue(Peek());
      if (at_ == digits || BeginsName(Peek())) FailAtColumn(source_, begin, "ill-formed number");
      return;
    }
    SkipDigits();
    if (Peek() == '.') {
      ++at_;
      SkipDigits();
    }
    if (Peek() == 'e' || Peek() == 'E') {
      ++at_;
      if (Peek() == '+' || Peek() == '-') ++at_;
      SkipDigits();
    }
    NumberText const number = ReadNumber(source_.substr(begin, at_ - begin));
    if (number.kind == NumberText::Kind::None || BeginsName(Peek()))
      FailAtColumn(source_, begin, "ill-formed number");
    token.number = number.ToReal();
  }

  void SkipDigits() {
    while (IsDigit(Peek())) ++at_;
  }

  void ReadText(ExpressionToken& token) {
    token.kind = Kind::Text;
    std::size_t const begin = at_;
    char const quote = source_[at_++];
    std::u16string units;
    std::size_t plain = at_;
    auto const takePlain = [&] { units += OStringCore::fromUtf8(source_.substr(plain, at_ - plain)).view(); };
    while (Peek() != quote) {
      if (IsAtEnd()) FailAtColumn(source_, begin, "the text has no closing quote");
      if (Peek() != '\\') {
        ++at_;
        continue;
      }
      takePlain();
      ReadEscape(units);
      plain = at_;
    }
    takePlain();
    ++at_;
    token.text = Utf::Utf16ToUtf8(units);
  }

  void ReadEscape(std::u16string& units) {
    std::size_t const begin = at_;
    at_ += 2;
    if (at_ > source_.size()) FailAtColumn(source_, begin, "the text has no closing quote");
    constexpr std::string_view kLetters = "nrtbfv";
    constexpr char16_t kMeanings[] = {u'\n', u'\r', u'\t', u'\b', u'\f', u'\v'};
    char const letter = source_[at_ - 1];
    if (auto const place = kLetters.find(letter); place != std::string_view::npos) {
      units += kMeanings[place];
    } else if (letter == 'u') {
      AppendCodePoint(units, Peek() == '{' ? ReadBracedHex(begin) : ReadHex(begin, 4), begin);
    } else if (letter == 'x') {
      AppendCodePoint(units, ReadHex(begin, 2), begin);
    } else if (IsDigit(letter)) {
      FailAtColumn(source_, begin, "this escape is not supported; use \\u and four digits");
    } else {
      // Any other character stands for itself.
      --at_;
      std::size_t const character = at_++;
      while (!IsAtEnd() && (static_cast<unsigned char>(Peek()) & 0xC0U) == 0x80U) ++at_;
      units += OStringCore::fromUtf8(source_.substr(character, at_ - character)).view();
    }
  }

  std::uint32_t ReadHex(std::size_t begin, int digits) {
    std::uint32_t value = 0;
    for (int i = 0; i < digits; ++i, ++at_) {
      int const digit = HexValue(Peek());
      if (digit < 0)
        FailAtColumn(source_, begin, fmt::format("the escape needs {} hexadecimal digits", digits));
      value = value * 16 + static_cast<std::uint32_t>(digit);
    }
    return value;
  }

  std::uint32_t ReadBracedHex(std::size_t begin) {
    constexpr std::uint32_t kLastCharacter = 0x10FFFF;
    std::uint32_t value = 0;
    for (++at_; HexValue(Peek()) >= 0 && value <= kLastCharacter; ++at_)
      value = value * 16 + static_cast<std::uint32_t>(HexValue(Peek()));
    if (Peek() != '}' || value > kLastCharacter) FailAtColumn(source_, begin, "the escape is no character");
    ++at_;
    return value;
  }

  void AppendCodePoint(std::u16string& units, std::uint32_t character, std::size_t begin) const {
    if (character == 0) FailAtColumn(source_, begin, "a text has no NUL characters");
    if (character < 0x10000) {
      units += static_cast<char16_t>(character);
      return;
    }
    units += static_cast<char16_t>(0xD800 + ((character - 0x10000) >> 10));
    units += static_cast<char16_t>(0xDC00 + ((character - 0x10000) & 0x3FF));
  }

  std::string_view source_;
  std::size_t at_ = 0;
  std::vector<ExpressionToken> tokens_;
};

}  // namespace

void FailAtColumn(std::string_view source, std::size_t byte, std::string const& cause) {
  auto const before = source.substr(0, byte);
  auto const begins = [](char unit) { return (static_cast<unsigned char>(unit) & 0xC0U) != 0x80U; };
  throw ExpressionError(fmt::format("column {}: {}", std::ranges::count_if(before, begins) + 1, cause));
}

std::string ExpressionToken::Describe() const {
  switch (kind) {
    case Kind::End:
      return "the end";
    case Kind::Text:
      return "a text";
    case Kind::Number:
      return "a number";
    default:
      return "'" + text + "'";
  }
}

std::vector<ExpressionToken> SplitExpression(std::string_view source) { return Tokenizer(source).Split(); }

}  // namespace ostrel::charts
