#pragma once

#include <string>
#include <string_view>

namespace ostrel::charts {

/// Takes what a writer makes, piece after piece.
class ByteSink {
 public:
  virtual ~ByteSink() = default;
  virtual void Write(std::string_view bytes) = 0;
};

class StringSink final : public ByteSink {
 public:
  void Write(std::string_view bytes) override { text_.append(bytes); }
  std::string const& GetText() const { return text_; }

 private:
  std::string text_;
};

}  // namespace ostrel::charts
