#include <cerrno>
#include <cstring>
#include <fstream>
#include <iostream>

#include "ostrel/CallProtocol.h"
#include "ostrel/CommandLine.h"

namespace ostrel::program {
namespace {

bool IsBlank(std::string_view line) { return line.find_first_not_of(" \t\r") == std::string_view::npos; }

// A response is on its way before the next request is read, so that a program can converse.
void AnswerLines(std::istream& requests, std::string const& name) {
  CallSession session(std::make_shared<services::FontService const>());
  StandardOutput output;
  for (std::string line; std::getline(requests, line);) {
    if (IsBlank(line)) continue;
    output.Write(session.Answer(line) + '\n');
    output.Flush();
  }
  if (requests.bad()) throw std::runtime_error("cannot read " + name + ": " + std::strerror(errno));
}

}  // namespace

int RunCall(CallOptions const& options) {
  if (options.requests.empty() || options.requests == "-") {
    std::ios::sync_with_stdio(false);
    AnswerLines(std::cin, "standard input");
    return ExitCode_Done;
  }
  std::ifstream requests(options.requests, std::ios::binary);
  if (!requests) throw std::runtime_error("cannot read " + options.requests + ": " + std::strerror(errno));
  AnswerLines(requests, options.requests);
  return ExitCode_Done;
}

}  // namespace ostrel::program
