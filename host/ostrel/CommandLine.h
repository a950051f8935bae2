#pragma once

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "charts/writer/ByteSink.h"

/// What the commands of the program share.
namespace ostrel::program {

enum ExitCode : int { ExitCode_Done = 0, ExitCode_Failed = 1, ExitCode_WrongUsage = 2 };

/// Arguments that can't be meant as they stand.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Standard output. Throws std::runtime_error "cannot write standard output: CAUSE".
class StandardOutput final : public charts::ByteSink {
 public:
  void Write(std::string_view bytes) override;
  /// To be called at the end, and wherever a reader waits for what was written.
  void Flush();
};

/// "ostrel: MESSAGE" as a line of standard error.
void Report(std::string_view message);

struct RenderOptions {
  std::vector<std::string> charts;
  std::string output;  ///< a file, a directory, "-" or empty
  bool makesPng = false;
  std::optional<double> width;
  std::optional<double> height;
  std::string dataRoot;
  std::vector<std::string> fontDirectories;
};
int RunRender(RenderOptions const& options);

struct CallOptions {
  std::string requests;  ///< a file; "-" or empty for standard input
};
int RunCall(CallOptions const& options);

struct FunctionsOptions {
  std::string name;  ///< empty for all
  bool makesJson = false;
  bool makesMarkdown = false;
  bool makesManifest = false;
};
int RunFunctions(FunctionsOptions const& options);

struct GraphOptions {
  std::string chart;
  bool makesDot = false;
  std::string dataRoot;
};
int RunGraph(GraphOptions const& options);

}  // namespace ostrel::program
