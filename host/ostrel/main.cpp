#include <CLI/CLI.hpp>

#include "ostrel/CommandLine.h"

namespace {

using namespace ostrel::program;

void AddRender(CLI::App& app, RenderOptions& options, std::function<int()>& run) {
  auto* const command = app.add_subcommand("render", "Draws charts as SVG, and as PNG where that is wanted.");
  command->add_option("CHART", options.charts, "Chart documents, NAME.vl.json")->required();
  command
      ->add_option("-o,--output", options.output,
                   "The SVG's file, a directory, or - for standard output; NAME.svg when left out")
      ->type_name("FILE|DIR");
  command->add_flag("--png", options.makesPng, "Write NAME.png as well");
  auto const isSize = CLI::Range(1.0, 32767.0);
  command->add_option("--width", options.width, "Width of the plotting area in pixels")->check(isSize);
  command->add_option("--height", options.height, "Height of the plotting area in pixels")->check(isSize);
  command->add_option("--data-root", options.dataRoot, "A folder, beside the chart's own, to read data from")
      ->check(CLI::ExistingDirectory)
      ->type_name("DIR");
  command->add_option("--font-dir", options.fontDirectories, "Use the fonts of this folder and no others")
      ->check(CLI::ExistingDirectory)
      ->type_name("DIR")
      ->expected(1)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
  command->callback([&] { run = [&] { return RunRender(options); }; });
}

void AddCall(CLI::App& app, CallOptions& options, std::function<int()>& run) {
  auto* const command = app.add_subcommand(
      "call", "Calls functions: reads requests, one line of JSON each, and answers each with one line.");
  command->add_option("FILE", options.requests, "The requests; standard input when left out")->type_name("");
  command->callback([&] { run = [&] { return RunCall(options); }; });
}

int Run(std::function<int()> const& run) {
  try {
    return run();
  } catch (UsageError const& error) {
    Report(error.what());
    return ExitCode_WrongUsage;
  } catch (std::exception const& error) {
    Report(error.what());
    return ExitCode_Failed;
  }
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app("Turns chart documents into pictures and calls any registered function.", "ostrel");
  app.set_version_flag("--version", "ostrel " OSTREL_VERSION);
  app.require_subcommand(1);
  RenderOptions render;
  std::function<int()> run;
  CallOptions call;
  AddRender(app, render, run);
  AddCall(app, call, run);
  try {
    app.parse(argc, argv);
  } catch (CLI::ParseError const& error) {
    return app.exit(error) == 0 ? ExitCode_Done : ExitCode_WrongUsage;
  }
  return Run(run);
}
