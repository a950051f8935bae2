#include <gtest/gtest.h>
#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "TestPaths.h"

namespace {

namespace fs = std::filesystem;

struct Outcome {
  int exitCode = -1;
  std::string output;  // of standard output
  std::string errors;  // of standard error
};

std::string ReadFile(fs::path const& path) {
  std::ifstream file(path, std::ios::binary);
  std::stringstream text;
  text << file.rdbuf();
  return text.str();
}

constexpr char const* kChart =
    R"({"data": {"values": [{"a": 1, "b": 2}, {"a": 3, "b": null}]}, "mark": "point",
  "encoding": {"x": {"field": "a", "type": "quantitative"}, "y": {"field": "b", "type": "quantitative"}}})";

// Runs the program in a folder of its own.
class Program : public testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = (fs::temp_directory_path() / "ostrelXXXXXX").string();
    ASSERT_NE(mkdtemp(pattern.data()), nullptr);
    folder_ = pattern;
  }
  void TearDown() override { fs::remove_all(folder_); }

  void Write(char const* name, std::string const& text) const { std::ofstream(folder_ / name) << text; }

  /// `arguments` as a shell reads them.
  Outcome Run(std::string const& arguments) const {
    fs::path const errors = folder_ / "stderr.txt";
    std::string const command =
        "cd '" + folder_.string() + "' && '" OSTREL_PROGRAM "' " + arguments + " 2>'" + errors.string() + "'";
    Outcome outcome;
    std::FILE* const pipe = popen(command.c_str(), "r");
    std::array<char, 4096> buffer;
    for (std::size_t count; (count = std::fread(buffer.data(), 1, buffer.size(), pipe)) > 0;) {
      outcome.output.append(buffer.data(), count);
    }
    int const status = pclose(pipe);
    outcome.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    outcome.errors = ReadFile(errors);
    fs::remove(errors);
    return outcome;
  }

  std::vector<std::string> ListFiles() const {
    std::vector<std::string> names;
    for (auto const& entry : fs::recursive_directory_iterator(folder_)) {
      if (!entry.is_directory()) names.push_back(fs::relative(entry.path(), folder_).string());
    }
    std::sort(names.begin(), names.end());
    return names;
  }

  fs::path folder_;
};

using Names = std::vector<std::string>;

TEST_F(Program, PagesShowWhatCallAnswersToTheirExamples) {
  auto const functions = nlohmann::json::parse(Run("functions --json").output);
  std::string requests;
  for (auto const& function : functions) {
    EXPECT_TRUE(function["response"].contains("result")) << function["name"];
    requests += function["example"].dump() + '\n';
  }
  Write("requests.jsonl", requests);
  std::istringstream answers(Run("call requests.jsonl").output);
  std::string answer;
  for (auto const& function : functions) {
    ASSERT_TRUE(std::getline(answers, answer));
    EXPECT_EQ(nlohmann::json::parse(answer), function["response"]) << function["example"];
  }

  auto const& last = functions.back();
  std::string const page = Run("functions " + last["name"].get<std::string>()).output;
  EXPECT_TRUE(page.ends_with("  " + answer + "\n")) << page;
}

TEST_F(Program, WrongUsageGives2AndSaysWhatIsWrong) {
  Write("a.vl.json", kChart);
  Write("file", "");
  for (char const* arguments :
       {"", "draw", "render", "render a.vl.json --width 0", "render a.vl.json --height nan",
        "render a.vl.json --data-root nowhere", "render a.vl.json --font-dir file",
        "render a.vl.json -o - --png", "render a.vl.json -o a.png", "render a.vl.json -o a.vl.json",
        "render a.vl.json a.vl.json -o out", "render a.vl.json b.vl.json -o -",
        "render a.vl.json b.vl.json -o file", "call a b", "functions add or", "functions --json --markdown",
        "graph"}) {
    auto const outcome = Run(arguments);
    EXPECT_EQ(outcome.exitCode, 2) << arguments << "\n" << outcome.errors;
    EXPECT_FALSE(outcome.errors.empty()) << arguments;
    EXPECT_EQ(outcome.output, "") << arguments;
  }
  EXPECT_EQ(ListFiles(), (Names{"a.vl.json", "file"}));
}

TEST_F(Program, HelpAndVersionGive0) {
  for (char const* arguments : {"--help", "render --help", "call --help", "functions --help", "graph -h"}) {
    auto const outcome = Run(arguments);
    EXPECT_EQ(outcome.exitCode, 0) << arguments;
    EXPECT_NE(outcome.output.find("Usage:"), std::string::npos) << outcome.output;
  }
  EXPECT_TRUE(Run("--version").output.starts_with("ostrel "));
}

TEST_F(Program, RenderWritesTheSvgIntoTheCurrentFolder) {
  fs::create_directory(folder_ / "charts");
  Write("charts/a.vl.json", kChart);
  auto const outcome = Run("render charts/a.vl.json");
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.output, "");
  EXPECT_TRUE(outcome.errors.starts_with("ostrel: charts/a.vl.json: 1 of 2 rows ")) << outcome.errors;
  EXPECT_EQ(ListFiles(), (Names{"a.svg", "charts/a.vl.json"}));
  EXPECT_TRUE(ReadFile(folder_ / "a.svg").starts_with("<svg"));
}

TEST_F(Program, RenderWritesWhereItIsTold) {
  Write("a.vl.json", kChart);
  Write("b.vl.json", kChart);
  EXPECT_EQ(Run("render a.vl.json -o x/").exitCode, 0);
  EXPECT_EQ(Run("render a.vl.json b.vl.json -o new/deep --png").exitCode, 0);
  EXPECT_EQ(Run("render a.vl.json -o picture.svg --png").exitCode, 0);
  EXPECT_EQ(ListFiles(),
            (Names{"a.vl.json", "b.vl.json", "new/deep/a.png", "new/deep/a.svg", "new/deep/b.png",
                   "new/deep/b.svg", "picture.png", "picture.svg", "x/a.svg"}));
  EXPECT_TRUE(ReadFile(folder_ / "picture.png").starts_with("\x89PNG"));
  auto const outcome = Run("render a.vl.json -o -");
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.output, ReadFile(folder_ / "x/a.svg"));
}

TEST_F(Program, AChartThatFailsLeavesNothingAndDoesNotStopTheOthers) {
  Write("a.vl.json", kChart);
  Write("bad.vl.json", R"({"mark": "pie"})");
  auto const outcome = Run("render missing.vl.json bad.vl.json a.vl.json -o out --png");
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(outcome.errors.find("ostrel: missing.vl.json: there is no such file\nostrel: bad.vl.json: "), 0U)
      << outcome.errors;
  EXPECT_EQ(ListFiles(), (Names{"a.vl.json", "bad.vl.json", "out/a.png", "out/a.svg"}));
}

TEST_F(Program, OutputThatCanNotBeWrittenGives1) {
  Write("a.vl.json", kChart);
  Write("file", "");
  for (char const* arguments :
       {"render a.vl.json -o /dev/full", "render a.vl.json -o - >/dev/full",
        "render a.vl.json -o nowhere/a.svg", "render a.vl.json -o file/", "render a.vl.json -o file/a.svg",
        "functions >/dev/full", "functions --markdown >/dev/full", "graph a.vl.json >/dev/full"}) {
    auto const outcome = Run(arguments);
    EXPECT_EQ(outcome.exitCode, 1) << arguments;
    EXPECT_TRUE(outcome.errors.find("ostrel: cannot ") != std::string::npos) << arguments << "\n"
                                                                             << outcome.errors;
  }
  EXPECT_EQ(ListFiles(), (Names{"a.vl.json", "file"}));
}

TEST_F(Program, CallAnswersEveryLineOfAFileAndOfStandardInput) {
  Write("calls",
        "{\"function\":\"abs\",\"inputs\":[{\"Real64\":-1}],\"id\":1}\r\n\n   \nnonsense\n[\n"
        "{\"function\":\"abs\",\"inputs\":[{\"Real64\":-2}],\"id\":2}");
  std::string const responses =
      "{\"id\":1,\"result\":{\"Real64\":1}}\n"
      "{\"invalid\":\"parse error at column 2: syntax error while parsing value - invalid literal; last "
      "read: 'no'\"}\n"
      "{\"invalid\":\"parse error at column 2: syntax error while parsing value - unexpected end of input; "
      "expected "
      "'[', '{', or a literal\"}\n"
      "{\"id\":2,\"result\":{\"Real64\":2}}\n";
  for (char const* arguments : {"call calls", "call <calls", "call - <calls"}) {
    auto const outcome = Run(arguments);
    EXPECT_EQ(outcome.exitCode, 0) << arguments;
    EXPECT_EQ(outcome.output, responses) << arguments;
    EXPECT_EQ(outcome.errors, "") << arguments;
  }
  EXPECT_EQ(Run("call </dev/null").output, "");
}

// A fifo in each direction: the second request is only written when the first response has been read.
TEST_F(Program, CallConverses) {
  Write("talk.sh",
        "mkfifo in out\n\"$1\" call <in >out &\nexec 3>in 4<out\n"
        "for n in 1 2 3; do\n  echo "
        "\"{\\\"function\\\":\\\"abs\\\",\\\"inputs\\\":[{\\\"Int32\\\":$n}],\\\"id\\\":$n}\" >&3\n"
        "  read -r line <&4 && echo \"$line\"\ndone\nexec 3>&-\nwait\n");
  auto const outcome = Run("--version >/dev/null; timeout 20 sh talk.sh '" OSTREL_PROGRAM "'");
  for (char const* id : {"{\"id\":1,", "{\"id\":2,", "{\"id\":3,"}) {
    EXPECT_NE(outcome.output.find(id), std::string::npos) << outcome.output << outcome.errors;
  }
  EXPECT_EQ(outcome.exitCode, 0);
}

TEST_F(Program, CallThatCanNotReadOrWriteGives1) {
  Write("calls", "{}\n");
  EXPECT_EQ(Run("call nowhere").errors, "ostrel: cannot read nowhere: No such file or directory\n");
  EXPECT_EQ(Run("call nowhere").exitCode, 1);
  EXPECT_EQ(Run("call .").errors, "ostrel: cannot read .: Is a directory\n");
  EXPECT_EQ(Run("call .").exitCode, 1);
  EXPECT_EQ(Run("call calls >/dev/full").exitCode, 1);
  EXPECT_EQ(Run("call <&-").exitCode, 1);
}

TEST_F(Program, FunctionsTellsOfTheNearestName) {
  auto const outcome = Run("functions clampMi");
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(outcome.output, "");
  EXPECT_EQ(outcome.errors, "ostrel: no function is named 'clampMi'; did you mean 'clampMin'?\n");
  EXPECT_NE(Run("functions")
                .output.find("\nclampMin(values: Real64; minimum: Real64) -> Real64  [unary operation]  "),
            std::string::npos);
}

TEST_F(Program, GraphShowsTheChartsNodes) {
  Write("a.vl.json", kChart);
  EXPECT_NE(Run("graph a.vl.json").output.find(" = input\n"), std::string::npos);
  EXPECT_TRUE(Run("graph a.vl.json --dot").output.starts_with("digraph chart {\n"));
  EXPECT_EQ(Run("graph missing.vl.json").exitCode, 1);
}

// Every chart that ships is drawn and shows its graph.
TEST_F(Program, TheGalleryIsDrawnAndShown) {
  std::string const examples = OSTREL_SOURCE_DIR "/examples";
  int charts = 0;
  for (auto const& entry : std::filesystem::directory_iterator(examples + "/gallery")) {
    std::string const arguments = "'" + entry.path().string() + "' --data-root '" + examples + "'";
    EXPECT_EQ(Run("render " + arguments + " -o .").exitCode, 0) << entry.path();
    EXPECT_EQ(Run("graph " + arguments).exitCode, 0) << entry.path();
    ++charts;
  }
  EXPECT_GT(charts, 18);
}

}  // namespace
