#include <gtest/gtest.h>

#include <fstream>
#include <set>
#include <sstream>

#include "TestPaths.h"
#include "ostrel/CallProtocol.h"
#include "ostrel/FunctionList.h"
#include "ostrel/Runtime.h"
#include "ostreltransforms/OstrelTransforms.h"

namespace ostrel::program {
namespace {

using namespace ort::core;

std::string ReadTreeFile(char const* name) {
  std::ifstream file(std::string(OSTREL_SOURCE_DIR "/") + name, std::ios::binary);
  std::stringstream text;
  text << file.rdbuf();
  return text.str();
}

std::vector<ListedFunction> ListAll() {
  FunctionRegistry registry;
  RegisterAllFunctions(registry, nullptr);
  return ListFunctions(registry, GetAllDocumentation());
}

// The first line in which two texts differ, for a message of bearable length.
std::string FindDifference(std::string const& left, std::string const& right) {
  std::istringstream leftLines(left);
  std::istringstream rightLines(right);
  for (std::string a, b;;) {
    bool const hasLeft = static_cast<bool>(std::getline(leftLines, a));
    bool const hasRight = static_cast<bool>(std::getline(rightLines, b));
    if (!hasLeft && !hasRight) return "";
    if (!hasLeft || !hasRight || a != b) {
      return "in the tree: " + (hasLeft ? a : "(end)") + "\nregistered:  " + (hasRight ? b : "(end)");
    }
  }
}

TEST(Functions, ManifestTellsWhatIsRegistered) {
  std::string const kept = ReadTreeFile("tests/ostrel/registry.manifest");
  std::string const now = MakeManifest(ListAll());
  EXPECT_TRUE(kept == now) << "a name, type, form or flag differs; if that is meant, run scripts/renew\n"
                           << FindDifference(kept, now);
}

TEST(Functions, ReferenceIsCurrent) {
  CallSession session(services::MakeFixedMeasurer());
  std::string const kept = ReadTreeFile("docs/functions.md");
  std::string const now = MakeFunctionsMarkdown(ListAll(), session);
  EXPECT_TRUE(kept == now) << "docs/functions.md is not what the functions tell; run scripts/renew\n"
                           << FindDifference(kept, now);
}

TEST(Functions, EveryRegistrationIsExplainedAndNoneIsExplainedThatIsNot) {
  auto const functions = ListAll();
  EXPECT_EQ(functions.size(), GetAllDocumentation().size());
  for (auto const& function : functions) {
    auto const& documentation = function.documentation;
    EXPECT_FALSE(documentation.help.empty()) << GetSignature(function);
    EXPECT_FALSE(documentation.family.empty()) << GetSignature(function);
    EXPECT_EQ(documentation.inputNames.size(), function.inputs.size()) << GetSignature(function);
    EXPECT_EQ(documentation.parameterNames.size(), function.parameters.size()) << GetSignature(function);
  }
}

TEST(Functions, EveryExampleRunsAndCallsItsOwnFunction) {
  CallSession session(services::MakeFixedMeasurer());
  for (auto const& function : ListAll()) {
    std::string const& example = function.documentation.example;
    ASSERT_FALSE(example.empty()) << GetSignature(function);
    EXPECT_EQ(example.find('\n'), std::string::npos) << example;
    EXPECT_EQ(ParseRequest(example)["function"], function.name) << example;
    std::string const response = session.Answer(example);
    EXPECT_TRUE(response.starts_with(R"({"result":)")) << example << "\n" << response;
  }
}

template <class Functions>
void CollectNames(Functions const& functions, std::set<OStringCore>& names) {
  for (auto const& entry : functions.GetEntries()) names.insert(entry.GetKey().GetName());
}

std::set<OStringCore> CollectNames(FunctionRegistry const& registry) {
  std::set<OStringCore> names;
  CollectNames(registry.GetUnaryFunctions(), names);
  CollectNames(registry.GetBinaryFunctions(), names);
  CollectNames(registry.GetMultinaryFunctions(), names);
  return names;
}

TEST(Functions, NoHostFunctionTakesAPlugInFunctionsName) {
  FunctionRegistry plugIn;
  OstrelTransforms::RegisterOstrelTransformFunctions(plugIn);
  FunctionRegistry all;
  RegisterAllFunctions(all, nullptr);
  auto const isFromPlugIn = CollectNames(plugIn);
  std::set<OStringCore> hostNames;
  for (auto const& documentation : GetBuiltinDocumentation()) hostNames.insert(documentation.name);
  EXPECT_EQ(CollectNames(all).size() > isFromPlugIn.size() + hostNames.size(), true);
  for (auto const& name : hostNames) EXPECT_FALSE(isFromPlugIn.contains(name)) << name;
}

TEST(Functions, JsonHoldsEveryRegistration) {
  auto const functions = ListAll();
  CallSession session(services::MakeFixedMeasurer());
  auto const json = Json::parse(MakeFunctionsJson(functions, session));
  ASSERT_EQ(json.size(), functions.size());
  for (std::size_t i = 0; i < functions.size(); ++i) {
    EXPECT_EQ(json[i]["name"], functions[i].name);
    EXPECT_EQ(json[i]["inputs"].size(), functions[i].inputs.size());
    EXPECT_EQ(json[i]["orderDependent"], functions[i].isOrderDependent);
  }
}

TEST(Functions, PageShowsAllRegistrationsAndWhatTheExampleGives) {
  auto functions = ListAll();
  std::erase_if(functions, [](auto const& function) { return function.name != "toReal64"; });
  CallSession session(services::MakeFixedMeasurer());
  EXPECT_EQ(
      MakeFunctionPage(functions, session),
      "toReal64 (map)\n\n"
      "  The day number: days since 1899-12-30, with the time of day as fraction.\n\n"
      "  - `dates`: instants, to a ten-thousandth of a second\n"
      "  - The result is in days.\n\n"
      "  A column with special rows goes to the special form, in which they become 0, special of kind 1.\n\n"
      "toReal64(dates: DateTime) -> Real64\n"
      "  unary plain; special rows keep their kind\n\n"
      "toReal64(dates: DateTime) -> Real64\n"
      "  unary special\n\n"
      "Example\n"
      R"(  {"function": "toReal64", "inputs": [{"DateTime": "1900-01-01T12:00:00.0000"}]})"
      "\n"
      R"(  {"result":{"Real64":2.5}})"
      "\n"
      R"(  {"function": "toReal64", "inputs": [{"Array": {"type": "DateTime", "values": )"
      R"(["2020-03-01T12:00:00.0000", null], "specials": [[1, 9]]}}]})"
      "\n"
      R"(  {"result":{"Array":{"type":"Real64","values":[43891.5,null],"specials":[[1,1]]}}})"
      "\n");
}

TEST(Functions, PageTellsTheErrorsThatFaultyCallsGive) {
  CallSession session(services::MakeFixedMeasurer());
  struct {
    char const* name;
    char const* errors;
  } const cases[] = {
      {"clampMin", "Errors\n  55   no parameters; a parameter of another kind\n"},
      {"equal", "Errors\n  259  columns of different lengths\n"},
      {"iif", "Errors\n  259  columns of different lengths\n"},
      {"temporalTickFrequency", "Errors\n  55   an input of another kind\n  out_of_range no inputs\n"},
      {"mapPixels",
       "Errors\n  55   an input of another kind\n  219  no inputs; an input too many\n"
       "  259  columns of different lengths\n"},
  };
  for (auto const& wanted : cases) {
    auto functions = ListAll();
    std::erase_if(functions, [&](auto const& function) { return function.name != wanted.name; });
    EXPECT_NE(MakeFunctionPage(functions, session).find(wanted.errors), std::string::npos) << wanted.name;
  }
}

TEST(Functions, DetailsStandBehindTheHelpOnPageAndInTheReference) {
  auto functions = ListAll();
  std::erase_if(functions, [](auto const& function) { return function.name != "abs"; });
  CallSession session(services::MakeFixedMeasurer());
  std::string const plain = MakeFunctionPage(functions, session);
  std::string const plainReference = MakeFunctionsMarkdown(functions, session);
  functions.front().documentation.details = "- first\n\nlast";
  std::string const& help = functions.front().documentation.help;
  auto const expectInserted = [&](std::string text, std::string const& details, std::string const& now) {
    text.insert(text.find(help) + help.size() + 1, details);
    EXPECT_EQ(now, text);
  };
  expectInserted(plain, "\n  - first\n\n  last\n", MakeFunctionPage(functions, session));
  expectInserted(plainReference, "\n- first\n\nlast\n", MakeFunctionsMarkdown(functions, session));
}

}  // namespace
}  // namespace ostrel::program
