#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "TestPaths.h"
#include "ostrel/CallProtocol.h"

namespace ostrel::program {
namespace {

// The files of tests/ostrel/calls are what a reader of the protocol would try: a request a line, the response
// on the next. Lines that begin with # and blank lines part them.
struct Call {
  std::string file;
  int line = 0;
  std::string request;
  std::string response;
};

std::vector<Call> ReadCalls(std::filesystem::path const& path) {
  std::vector<Call> calls;
  std::ifstream file(path);
  std::string text;
  bool isResponse = false;
  for (int line = 1; std::getline(file, text); ++line) {
    if (text.empty() || text[0] == '#') continue;
    if (isResponse) {
      calls.back().response = text;
    } else {
      calls.push_back({path.filename().string(), line, text, ""});
    }
    isResponse = !isResponse;
  }
  EXPECT_FALSE(isResponse) << path << ": the last request has no response";
  return calls;
}

std::vector<std::filesystem::path> ListCallFiles() {
  std::vector<std::filesystem::path> files;
  for (auto const& entry : std::filesystem::directory_iterator(OSTREL_SOURCE_DIR "/tests/ostrel/calls")) {
    files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

class CallFile : public testing::TestWithParam<std::filesystem::path> {};

TEST_P(CallFile, EveryRequestGetsItsResponse) {
  CallSession session(services::MakeFixedMeasurer());
  auto const calls = ReadCalls(GetParam());
  EXPECT_FALSE(calls.empty());
  for (auto const& call : calls) {
    EXPECT_EQ(session.Answer(call.request), call.response)
        << call.file << ":" << call.line << ": " << call.request;
  }
}

// A value that comes back as it was sent is one that every form can carry on.
TEST_P(CallFile, EveryResultCanBeSentBack) {
  CallSession session(services::MakeFixedMeasurer());
  for (auto const& call : ReadCalls(GetParam())) {
    std::string const response = session.Answer(call.request);
    constexpr std::string_view kBegin = R"({"result":)";
    if (!response.starts_with(kBegin)) continue;
    std::string const value = response.substr(kBegin.size(), response.size() - kBegin.size() - 1);
    EXPECT_EQ(session.Answer(R"({"function":"makeTuple","inputs":[)" + value + "]}"),
              R"({"result":{"Tuple":[)" + value + "]}}")
        << call.file << ":" << call.line;
  }
}

INSTANTIATE_TEST_SUITE_P(Files, CallFile, testing::ValuesIn(ListCallFiles()),
                         [](auto const& file) { return file.param.stem().string(); });

std::string Nested(int levels) {
  return std::string(static_cast<std::size_t>(levels), '[') +
         std::string(static_cast<std::size_t>(levels), ']');
}

TEST(CallSession, RefusesJsonDeeperThan200Levels) {
  CallSession session(services::MakeFixedMeasurer());
  EXPECT_EQ(session.Answer(Nested(200)), R"({"invalid":"$: a request is an object, an array was given"})");
  EXPECT_EQ(session.Answer(Nested(201)), R"({"invalid":"nested deeper than 200 levels"})");
  EXPECT_EQ(session.Answer(std::string(10'000'000, '[')), R"({"invalid":"nested deeper than 200 levels"})");
}

// What a reader has to do is read the line; the text that could not be read need not be UTF-8.
TEST(CallSession, QuotesIllFormedUtf8AsReplacementCharacters) {
  CallSession session(services::MakeFixedMeasurer());
  std::string const response = session.Answer("{\"function\":\"\xff\"}");
  EXPECT_NE(response.find("ill-formed UTF-8"), std::string::npos) << response;
  EXPECT_TRUE(Json::accept(response)) << response;
}

TEST(CallSession, SwitchesTheMeasureBetweenRequests) {
  CallSession session(std::make_shared<services::FontService const>());
  auto const measure = [&](std::string const& property) {
    return session.Answer(
        R"({"function":"measureTexts","inputs":[{"Array":{"type":"String","values":["ill"]}},)"
        R"({"Tuple":[{"String":"DejaVu Sans"},{"Real64":100},{"Int32":400},{"Int32":0}]}])" +
        property + "}");
  };
  std::string const real = measure("");
  std::string const fixed = R"({"result":{"Array":{"type":"Real64","values":[30]}}})";
  EXPECT_NE(real, fixed);
  EXPECT_EQ(measure(R"(,"measure":"fixed")"), fixed);
  EXPECT_EQ(measure(""), real);
}

// The hostile middle: each prefix of a good request, and each byte of it replaced, is answered by one line.
TEST(CallSession, AnswersEveryDamagedRequestWithOneLine) {
  CallSession session(services::MakeFixedMeasurer());
  std::string const request =
      R"({"function":"add","mode":"zip","inputs":[{"Array":{"type":"Real64","values":[1,null],"specials":[[1,9]]}},)"
      R"({"Real64":-2.5e3}],"id":"\u00e9"})";
  auto const expectOneLine = [&](std::string const& damaged) {
    std::string const response = session.Answer(damaged);
    EXPECT_TRUE(Json::accept(response)) << damaged << "\n" << response;
    EXPECT_EQ(response.find('\n'), std::string::npos) << damaged;
  };
  for (std::size_t i = 0; i < request.size(); ++i) {
    expectOneLine(request.substr(0, i));
    for (char const byte : {'"', '[', '}', '0', '\xff', '\0', '\n'}) {
      std::string damaged = request;
      damaged[i] = byte;
      expectOneLine(damaged);
    }
  }
}

}  // namespace
}  // namespace ostrel::program
