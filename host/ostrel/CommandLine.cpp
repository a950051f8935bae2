#include "ostrel/CommandLine.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace ostrel::program {
namespace {

[[noreturn]] void FailToWrite() {
  throw std::runtime_error(std::string("cannot write standard output: ") + std::strerror(errno));
}

}  // namespace

void StandardOutput::Write(std::string_view bytes) {
  if (std::fwrite(bytes.data(), 1, bytes.size(), stdout) != bytes.size()) FailToWrite();
}

void StandardOutput::Flush() {
  if (std::fflush(stdout) != 0) FailToWrite();
}

void Report(std::string_view message) {
  std::fprintf(stderr, "ostrel: %.*s\n", static_cast<int>(message.size()), message.data());
}

}  // namespace ostrel::program
