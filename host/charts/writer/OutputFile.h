#pragma once

#include <filesystem>
#include <string>

#include "charts/writer/ByteSink.h"

namespace ostrel::charts {

/// A file that stands under its name only when it is complete: until Commit() the bytes go into a temporary
/// file beside it, which is gone when the writer gives up. What stood there before is then replaced and
/// passes on its access rights. A link is followed; a device or pipe is written as it comes.
///
/// Every failure is a std::runtime_error "cannot write FILE: CAUSE".
class OutputFile final : public ByteSink {
 public:
  explicit OutputFile(std::filesystem::path path);
  ~OutputFile() override;
  OutputFile(OutputFile const&) = delete;
  OutputFile& operator=(OutputFile const&) = delete;

  void Write(std::string_view bytes) override;
  /// To be called once; nothing may be written afterwards.
  void Commit();

 private:
  [[noreturn]] void Fail(int error) const;
  void OpenTemporary(unsigned mode);
  void WriteThrough(std::string_view bytes);

  std::filesystem::path path_;       ///< as it was given, for messages
  std::filesystem::path target_;     ///< with links followed
  std::filesystem::path temporary_;  ///< empty when the target is written directly
  std::string buffer_;
  int descriptor_ = -1;
};

}  // namespace ostrel::charts
