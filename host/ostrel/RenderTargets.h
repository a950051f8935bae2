#pragma once

#include "ostrel/CommandLine.h"

namespace ostrel::program {

/// One picture to be made.
struct RenderTarget {
  std::filesystem::path chart;
  std::filesystem::path svg;  ///< empty for standard output
  std::filesystem::path png;  ///< empty when none is wanted
};

/// Which files a run writes: NAME.svg for NAME.vl.json, in the current directory unless the output says
/// otherwise; a directory that does not exist yet is made. Throws UsageError for an output that does not suit
/// the charts, and std::runtime_error for a directory that can't be made.
std::vector<RenderTarget> ListRenderTargets(RenderOptions const& options);

}  // namespace ostrel::program
