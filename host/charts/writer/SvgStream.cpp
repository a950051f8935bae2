#include "charts/writer/SvgStream.h"

#include <unicode/utf8.h>

#include <cstdint>

namespace ostrel::charts {

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";
constexpr UChar32 kZeroWidthSpace = 0x200B;

// Without the surrogates, which are ill-formed in UTF-8.
bool IsAllowedInXml(UChar32 character) {
  if (character < 0x20) return character == '\t' || character == '\n' || character == '\r';
  return character != 0xFFFE && character != 0xFFFF;
}

bool IsPlain(char byte) {
  auto const value = static_cast<unsigned char>(byte);
  return value >= 0x20 && value < 0x80 && byte != '<' && byte != '>' && byte != '&' && byte != '"';
}

std::string_view GetEntity(UChar32 character) {
  switch (character) {
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '&':
      return "&amp;";
    case '"':
      return "&quot;";
    case '\r':
      return "&#13;";  // as it stands, a reader would make it a line feed
    default:
      return {};
  }
}

}  // namespace

void SvgStream::Flush() {
  sink_.Write({buffer_.data(), used_});
  used_ = 0;
}

void SvgStream::WriteLong(std::string_view markup) {
  Flush();
  if (markup.size() > kCapacity) {
    sink_.Write(markup);
  } else {
    *this << markup;
  }
}

SvgStream& SvgStream::operator<<(ort::core::OrtColor color) {
  static constexpr char kDigits[] = "0123456789abcdef";
  char* out = Reserve(7);
  char* const start = out;
  unsigned const channels[] = {static_cast<unsigned>(color.GetR()), static_cast<unsigned>(color.GetG()),
                               static_cast<unsigned>(color.GetB())};
  bool isShort = true;
  for (unsigned const channel : channels) isShort = isShort && channel % 0x11 == 0;
  *out++ = '#';
  for (unsigned const channel : channels) {
    if (!isShort) *out++ = kDigits[channel >> 4];
    *out++ = kDigits[channel & 15];
  }
  used_ += static_cast<std::size_t>(out - start);
  return *this;
}

SvgStream& SvgStream::operator<<(Escaped escaped) {
  std::string_view const text = escaped.text;
  std::size_t position = 0;
  while (position < text.size()) {
    std::size_t end = position;
    while (end < text.size() && IsPlain(text[end])) ++end;
    *this << text.substr(position, end - position);
    position = end < text.size() ? WriteCharacter(text, end) : end;
  }
  return *this;
}

std::size_t SvgStream::WriteCharacter(std::string_view text, std::size_t position) {
  auto const* const bytes = reinterpret_cast<std::uint8_t const*>(text.data());
  std::size_t next = position;
  UChar32 character = 0;
  U8_NEXT(bytes, next, text.size(), character);
  if (character == kZeroWidthSpace) return next;
  std::string_view const entity = GetEntity(character);
  if (character < 0 || !IsAllowedInXml(character)) {
    *this << kReplacement;
  } else if (!entity.empty()) {
    *this << entity;
  } else {
    *this << text.substr(position, next - position);
  }
  return next;
}

}  // namespace ostrel::charts
