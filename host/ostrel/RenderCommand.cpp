#include <fmt/format.h>
#include <unistd.h>

#include "charts/RenderChart.h"
#include "charts/writer/OutputFile.h"
#include "charts/writer/PngWriter.h"
#include "charts/writer/SvgWriter.h"
#include "ostrel/RenderTargets.h"
#include "ostrel/Runtime.h"
#include "services/InstallServices.h"

namespace ostrel::program {
namespace {

// Says on a terminal which chart is being drawn, and takes it back when it is done.
class Progress {
 public:
  explicit Progress(std::size_t count) : count_(count), isShown_(count > 1 && isatty(STDERR_FILENO) == 1) {}
  ~Progress() { Clear(); }
  Progress(Progress const&) = delete;
  Progress& operator=(Progress const&) = delete;

  void Begin(std::filesystem::path const& chart) {
    if (isShown_) fmt::print(stderr, "\r\x1b[K[{}/{}] {}", ++number_, count_, chart.string());
  }
  void Clear() {
    if (isShown_) fmt::print(stderr, "\r\x1b[K");
  }

 private:
  std::size_t count_;
  std::size_t number_ = 0;
  bool isShown_;
};

// Nothing is written before the whole document stands, so that a chart that fails leaves nothing behind.
void WriteFiles(RenderTarget const& target, std::string const& svg) {
  if (target.svg.empty()) {
    StandardOutput output;
    output.Write(svg);
    output.Flush();
    return;
  }
  charts::OutputFile file(target.svg);
  file.Write(svg);
  if (!target.png.empty()) charts::WritePng(svg, 1, target.png);
  file.Commit();
}

std::string DrawSvg(RenderTarget const& target, RenderOptions const& options,
                    charts::ChartEnvironment const& environment, Progress& progress) {
  auto const document = charts::ReadChartDocument(target.chart);
  auto const folder = target.chart.has_parent_path() ? target.chart.parent_path() : ".";
  auto const drawn =
      charts::DrawChart(document, {folder, options.dataRoot}, {options.width, options.height}, environment);
  if (!drawn.warnings.empty()) progress.Clear();
  for (auto const& warning : drawn.warnings) Report(target.chart.string() + ": " + warning);
  charts::StringSink svg;
  charts::WriteSvg(drawn.scene, environment.measurer, svg);
  return svg.GetText();
}

std::string DescribeFailure(RenderTarget const& target, std::exception const& error) {
  std::string const message = error.what();
  std::string const chart = target.chart.string();
  return message.starts_with(chart) || message.starts_with("cannot ") ? message : chart + ": " + message;
}

}  // namespace

int RunRender(RenderOptions const& options) {
  auto const targets = ListRenderTargets(options);
  auto const installed = services::InstallServices({options.fontDirectories});
  if (options.makesPng) charts::UsePngFonts(options.fontDirectories);
  ort::core::FunctionRegistry registry;
  RegisterAllFunctions(registry, installed.ShareMeasurer());
  charts::ChartEnvironment const environment{registry, installed.GetMeasurer()};

  int exitCode = ExitCode_Done;
  Progress progress(targets.size());
  for (auto const& target : targets) {
    progress.Begin(target.chart);
    try {
      WriteFiles(target, DrawSvg(target, options, environment, progress));
    } catch (std::exception const& error) {
      progress.Clear();
      Report(DescribeFailure(target, error));
      exitCode = ExitCode_Failed;
    }
  }
  return exitCode;
}

}  // namespace ostrel::program
