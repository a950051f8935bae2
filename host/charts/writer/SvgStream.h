#pragma once

#include <array>
#include <cstring>
#include <string>
#include <string_view>

#include "charts/writer/ByteSink.h"
#include "charts/writer/SvgNumber.h"
#include "ostrelrtcore/OrtColor.h"

namespace ostrel::charts {

/// Text to be written into an element or a quoted attribute.
struct Escaped {
  std::string_view text;
};

/// A number that a blank parts from what stands before it; its sign does that as well.
struct NextNumber {
  double value;
};

/// SVG text on its way to a sink, in pieces of at most kCapacity bytes.
class SvgStream {
 public:
  explicit SvgStream(ByteSink& sink) : sink_(sink) {}
  SvgStream(SvgStream const&) = delete;
  SvgStream& operator=(SvgStream const&) = delete;

  /// To be called at the end.
  void Flush();

  /// Markup, as it is.
  SvgStream& operator<<(std::string_view markup) {
    if (markup.size() > kCapacity - used_) {
      WriteLong(markup);
      return *this;
    }
    std::memcpy(buffer_.data() + used_, markup.data(), markup.size());
    used_ += markup.size();
    return *this;
  }

  SvgStream& operator<<(double number) {
    char* const start = Reserve(kMaxSvgNumberLength);
    used_ += static_cast<std::size_t>(WriteSvgNumber(number, start) - start);
    return *this;
  }

  SvgStream& operator<<(NextNumber number) {
    char* const start = Reserve(kMaxSvgNumberLength + 1);
    char* end = WriteSvgNumber(number.value, start + 1);
    if (start[1] == '-') {
      std::memmove(start, start + 1, static_cast<std::size_t>(end - start - 1));
      --end;
    } else {
      start[0] = ' ';
    }
    used_ += static_cast<std::size_t>(end - start);
    return *this;
  }

  /// "#4c78a8", "#fff"; the alpha channel is left out.
  SvgStream& operator<<(ort::core::OrtColor color);

  /// UTF-8. Ill-formed sequences and characters that XML does not allow become U+FFFD; U+200B, a break hint,
  /// is dropped.
  SvgStream& operator<<(Escaped escaped);

 private:
  static constexpr std::size_t kCapacity = 64 * 1024;

  char* Reserve(std::size_t count) {
    if (count > kCapacity - used_) Flush();
    return buffer_.data() + used_;
  }
  void WriteLong(std::string_view markup);
  /// Writes the character at `position` and gives the position behind it.
  std::size_t WriteCharacter(std::string_view text, std::size_t position);

  ByteSink& sink_;
  std::size_t used_ = 0;
  std::array<char, kCapacity> buffer_;
};

}  // namespace ostrel::charts
