#include <gtest/gtest.h>

#include <set>

#include "ostrelrtcore/FunctionDocumentation.h"
#include "ostrelrtcore/FunctionRegistry.h"

namespace {

using namespace ort::core;

/// Every registration with its inputs, parameters and output in words.
template <class Functions>
void AppendSignatures(Functions const& functions, std::multiset<std::string>& signatures) {
  for (auto const& entry : functions.GetEntries()) {
    std::string text = entry.GetKey().GetName().toUtf8();
    for (auto const& input : entry.GetKey().GetInputTypes()) text += ", " + input.ToString().toUtf8();
    for (auto const& parameter : entry.GetParameters()) text += "; " + parameter.ToString().toUtf8();
    signatures.insert(text + " -> " + entry.GetOutput().ToString().toUtf8());
  }
}

std::multiset<std::string> RegisteredSignatures() {
  FunctionRegistry registry;
  RegisterAllBuiltinFunctions(registry);
  std::multiset<std::string> signatures;
  AppendSignatures(std::as_const(registry).GetUnaryFunctions(), signatures);
  AppendSignatures(std::as_const(registry).GetBinaryFunctions(), signatures);
  AppendSignatures(std::as_const(registry).GetMultinaryFunctions(), signatures);
  return signatures;
}

TEST(Builtins, EveryRegistrationIsDocumentedAndNothingElse) {
  std::multiset<std::string> documented;
  for (auto const& function : GetBuiltinDocumentation()) {
    std::string text = function.name.toUtf8();
    for (auto const& input : function.inputs) text += ", " + input.ToString().toUtf8();
    for (auto const& parameter : function.parameters) text += "; " + parameter.ToString().toUtf8();
    documented.insert(text + " -> " + function.output.ToString().toUtf8());
  }
  EXPECT_EQ(documented, RegisteredSignatures());
}

TEST(Builtins, NoSignatureIsRegisteredTwice) {
  auto const signatures = RegisteredSignatures();
  std::set<std::string> const different(signatures.begin(), signatures.end());
  EXPECT_EQ(different.size(), signatures.size());
}

TEST(Builtins, DocumentationNamesEverySlotAndItsExampleIsItsOwn) {
  for (auto const& function : GetBuiltinDocumentation()) {
    SCOPED_TRACE(function.name.toUtf8());
    EXPECT_EQ(function.inputNames.size(), function.inputs.size());
    EXPECT_EQ(function.parameterNames.size(), function.parameters.size());
    EXPECT_EQ(function.help.back(), '.');
    EXPECT_FALSE(function.family.empty());
    EXPECT_TRUE(
        function.example.starts_with("{\"function\": \"" + function.name.toUtf8() + "\", \"inputs\": ["))
        << function.example;
    EXPECT_EQ(function.example.find("\"parameters\": [") != std::string::npos, !function.parameters.empty());
  }
}

TEST(Builtins, NoNameIsOfTwoForms) {
  FunctionRegistry registry;
  RegisterAllBuiltinFunctions(registry);
  std::set<std::string> unary;
  std::set<std::string> binary;
  std::set<std::string> multinary;
  for (auto const& entry : registry.GetUnaryFunctions().GetEntries())
    unary.insert(entry.GetKey().GetName().toUtf8());
  for (auto const& entry : registry.GetBinaryFunctions().GetEntries())
    binary.insert(entry.GetKey().GetName().toUtf8());
  for (auto const& entry : registry.GetMultinaryFunctions().GetEntries()) {
    multinary.insert(entry.GetKey().GetName().toUtf8());
  }
  auto all = unary;
  all.merge(std::set(binary));
  all.merge(std::set(multinary));
  EXPECT_EQ(all.size(), unary.size() + binary.size() + multinary.size());
}

}  // namespace
