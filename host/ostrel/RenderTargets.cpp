#include "ostrel/RenderTargets.h"

#include <map>

namespace ostrel::program {
namespace {

namespace fs = std::filesystem;

std::string GetPictureName(fs::path const& chart) {
  std::string const name = chart.filename().string();
  for (std::string_view const ending : {".vl.json", ".json"}) {
    if (name.size() > ending.size() && name.ends_with(ending))
      return name.substr(0, name.size() - ending.size());
  }
  return chart.stem().string();
}

bool IsDirectoryName(std::string const& output) {
  std::error_code ignored;
  return output.ends_with('/') || fs::is_directory(output, ignored);
}

void MakeDirectory(std::string const& directory) {
  std::error_code error;
  fs::create_directories(directory, error);
  if (!fs::is_directory(directory)) {
    throw std::runtime_error("cannot make directory " + directory + ": " +
                             (error ? error.message() : "it is a file"));
  }
}

RenderTarget MakeSingleTarget(RenderOptions const& options) {
  fs::path const chart = options.charts.front();
  if (options.output == "-") {
    if (options.makesPng) throw UsageError("--png needs a file; standard output gets the SVG alone");
    return {chart, {}, {}};
  }
  fs::path const svg = options.output;
  if (svg.extension() == ".png") {
    throw UsageError("-o names the SVG; --png writes " + svg.string() + " beside " +
                     fs::path(svg).replace_extension(".svg").string());
  }
  return {chart, svg, options.makesPng ? fs::path(svg).replace_extension(".png") : ""};
}

void RequireDifferentFiles(std::vector<RenderTarget> const& targets) {
  std::map<fs::path, fs::path> charts;
  for (auto const& target : targets) {
    std::error_code ignored;
    if (fs::equivalent(target.chart, target.svg, ignored)) {
      throw UsageError("the picture would replace its chart " + target.chart.string());
    }
    auto const [other, isNew] = charts.emplace(target.svg, target.chart);
    if (!isNew) {
      throw UsageError(other->second.string() + " and " + target.chart.string() + " would both become " +
                       target.svg.string());
    }
  }
}

}  // namespace

std::vector<RenderTarget> ListRenderTargets(RenderOptions const& options) {
  bool const isSingle = options.charts.size() == 1;
  std::vector<RenderTarget> targets;
  if (isSingle && !options.output.empty() && !IsDirectoryName(options.output)) {
    targets.push_back(MakeSingleTarget(options));
  } else {
    std::error_code ignored;
    bool const isFile = fs::exists(options.output, ignored) && !fs::is_directory(options.output, ignored);
    if (options.output == "-" || isFile) {
      throw UsageError("several charts need a directory, " + options.output + " is none");
    }
    for (fs::path const chart : options.charts) {
      fs::path const name = fs::path(options.output) / GetPictureName(chart);
      targets.push_back({chart, name.string() + ".svg", options.makesPng ? name.string() + ".png" : ""});
    }
  }
  RequireDifferentFiles(targets);
  if (!options.output.empty() && (!isSingle || IsDirectoryName(options.output)))
    MakeDirectory(options.output);
  return targets;
}

}  // namespace ostrel::program
