#include <CLI/CLI.hpp>

#include "ostrel/CommandLine.h"

namespace {

using namespace ostrel::program;

void AddDataRoot(CLI::App& command, std::string& dataRoot) {
  command.add_option("--data-root", dataRoot, "A folder, beside the chart's own, to read data from")
      ->check(CLI::ExistingDirectory)
      ->type_name("");
}

void AddRender(CLI::App& app, RenderOptions& options, std::function<int()>& run) {
  auto* const command = app.add_subcommand("render", "Draws charts as SVG, and as PNG where that is wanted.");
  command->add_option("CHART", options.charts, "Chart documents, NAME.vl.json")->required();
  command
      ->add_option("-o,--output", options.output,
                   "The SVG's file, a directory, or - for standard output; NAME.svg when left out")
      ->type_name("FILE|DIR");
  command->add_flag("--png", options.makesPng, "Write NAME.png as well");
  CLI::Validator const isSize(
      [](std::string& text) {
        double size = 0;
        bool const isNumber = CLI::detail::lexical_cast(text, size);
        return isNumber && size >= 1 && size <= 32767 ? "" : text + " is no number from 1 to 32767";
      },
      "NUMBER");
  command->add_option("--width", options.width, "Width of the plotting area in pixels")->check(isSize);
  command->add_option("--height", options.height, "Height of the plotting area in pixels")->check(isSize);
  AddDataRoot(*command, options.dataRoot);
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

void AddFunctions(CLI::App& app, FunctionsOptions& options, std::function<int()>& run) {
  auto* const command = app.add_subcommand("functions", "Lists the functions, or tells all about one.");
  auto* const name = command->add_option("NAME", options.name, "A function's name")->type_name("");
  auto* const json = command->add_flag("--json", options.makesJson, "Write JSON");
  auto* const markdown = command->add_flag("--markdown", options.makesMarkdown, "Write the reference of all");
  auto* const manifest =
      command->add_flag("--manifest", options.makesManifest, "Write what is registered, a line each");
  markdown->excludes(name)->excludes(json);
  manifest->excludes(name)->excludes(json)->excludes(markdown);
  command->callback([&] { run = [&] { return RunFunctions(options); }; });
}

void AddGraph(CLI::App& app, GraphOptions& options, std::function<int()>& run) {
  auto* const command = app.add_subcommand("graph", "Shows the function graph that a chart becomes.");
  command->add_option("CHART", options.chart, "The chart document")->required()->type_name("");
  command->add_flag("--dot", options.makesDot, "Write DOT, for drawing");
  AddDataRoot(*command, options.dataRoot);
  command->callback([&] { run = [&] { return RunGraph(options); }; });
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
  FunctionsOptions functions;
  AddFunctions(app, functions, run);
  GraphOptions graph;
  AddGraph(app, graph, run);
  try {
    app.parse(argc, argv);
  } catch (CLI::ParseError const& error) {
    return app.exit(error) == 0 ? ExitCode_Done : ExitCode_WrongUsage;
  }
  return Run(run);
}
