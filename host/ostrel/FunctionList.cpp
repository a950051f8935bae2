#include "ostrel/FunctionList.h"

#include <fmt/format.h>

#include <map>
#include <tuple>
#include <utility>

#include "ostrel/CallProtocol.h"
#include "ostrel/FunctionErrors.h"
#include "ostrel/PayloadJson.h"

namespace ostrel::program {
namespace {

using namespace ort::core;

char const* DescribeType(int type) {
  constexpr char const* kTypes[] = {"plain", "special", "operation", "special operation"};
  return kTypes[type];
}

// Hands out help to registrations. Several of one name and types (a plain and a special one) get theirs in
// order of registration.
class Documentation {
 public:
  explicit Documentation(std::vector<FunctionDocumentation> const& all) {
    for (auto const& entry : all)
      byKey_[MakeKey(entry.name, entry.inputs, entry.parameters)].push_back(&entry);
  }

  FunctionDocumentation Take(ListedFunction const& function, OStringCore const& name) {
    auto const found = byKey_.find(MakeKey(name, function.inputs, function.parameters));
    if (found == byKey_.end()) return {};
    auto& entries = found->second;
    auto const* const entry = entries.front();
    if (entries.size() > 1) entries.erase(entries.begin());
    return *entry;
  }

 private:
  static std::string MakeKey(OStringCore const& name, std::vector<KeySegmentType> const& inputs,
                             std::vector<KeySegmentType> const& parameters) {
    std::string key = name.toUtf8();
    for (auto const& slot : inputs) key += "\n" + slot.ToString().toUtf8();
    key += '\n';
    for (auto const& slot : parameters) key += "\n" + slot.ToString().toUtf8();
    return key;
  }

  std::map<std::string, std::vector<FunctionDocumentation const*>> byKey_;
};

template <class Functions>
void Append(Functions const& functions, char const* form, Documentation& documentation,
            std::vector<ListedFunction>& all) {
  for (auto const& entry : functions.GetEntries()) {
    OStringCore const& name = entry.GetKey().GetName();
    auto& function = all.emplace_back();
    function.name = name.toUtf8();
    function.form = form;
    function.type = DescribeType(static_cast<int>(entry.GetType()));
    function.inputs = entry.GetKey().GetInputTypes();
    function.output = entry.GetOutput();
    function.parameters = entry.GetParameters();
    function.isOrderDependent = entry.IsOrderDependent();
    function.documentation = documentation.Take(function, name);
  }
}

std::string DescribeSlots(std::vector<KeySegmentType> const& slots, std::vector<std::string> const& names) {
  std::string text;
  for (std::size_t i = 0; i < slots.size(); ++i) {
    if (i > 0) text += ", ";
    if (i < names.size()) text += names[i] + ": ";
    text += DescribeSlot(slots[i]);
  }
  return text;
}

void WriteSlots(std::vector<KeySegmentType> const& slots, std::vector<std::string> const& names,
                std::string& out) {
  out += '[';
  for (std::size_t i = 0; i < slots.size(); ++i) {
    out += i > 0 ? R"(,{"name":)" : R"({"name":)";
    WriteText(i < names.size() ? std::string_view(names[i]) : "", out);
    out += R"(,"type":)";
    WriteText(DescribeSlot(slots[i]), out);
    out += '}';
  }
  out += ']';
}

void WriteMember(char const* name, std::string_view text, std::string& out) {
  WriteText(std::string_view(name), out);
  out += ':';
  WriteText(text, out);
  out += ',';
}

void WriteErrors(ListedFunction const& function, CallSession& session, std::string& out) {
  out += R"("errors":[)";
  for (bool isFirst = true; auto const& error : FindErrors({&function}, session)) {
    out += std::exchange(isFirst, false) ? R"({"code":)" : R"(,{"code":)";
    WriteText(error.code, out);
    out += R"(,"when":)";
    WriteText(fmt::format("{}", fmt::join(error.when, "; ")), out);
    out += '}';
  }
  out += "],";
}

void WriteFunction(ListedFunction const& function, CallSession& session, std::string& out) {
  auto const& documentation = function.documentation;
  out += '{';
  WriteMember("name", function.name, out);
  WriteMember("form", function.form, out);
  WriteMember("type", function.type, out);
  out += fmt::format(R"("orderDependent":{},"inputs":)", function.isOrderDependent);
  WriteSlots(function.inputs, documentation.inputNames, out);
  out += R"(,"parameters":)";
  WriteSlots(function.parameters, documentation.parameterNames, out);
  out += ',';
  WriteMember("output", DescribeSlot(function.output), out);
  WriteMember("family", documentation.family, out);
  WriteMember("help", documentation.help, out);
  WriteMember("details", documentation.details, out);
  WriteErrors(function, session, out);
  std::string const& example = documentation.example;
  out += R"("example":)" + (example.empty() ? "null" : example);
  out += R"(,"response":)" + (example.empty() ? "null" : session.Answer(example)) + '}';
}

}  // namespace

std::vector<ListedFunction> ListFunctions(FunctionRegistry const& registry,
                                          std::vector<FunctionDocumentation> const& documentation) {
  std::vector<ListedFunction> all;
  Documentation help(documentation);
  Append(registry.GetUnaryFunctions(), "unary", help, all);
  Append(registry.GetBinaryFunctions(), "binary", help, all);
  Append(registry.GetMultinaryFunctions(), "multinary", help, all);
  return all;
}

std::string DescribeSlot(KeySegmentType const& slot) {
  return slot.GetMainType() == StoreType::Empty ? "any" : slot.ToString().toUtf8();
}

std::string GetSignature(ListedFunction const& function) {
  auto const& documentation = function.documentation;
  std::string text = function.name + "(" + DescribeSlots(function.inputs, documentation.inputNames);
  if (!function.parameters.empty()) {
    text += "; " + DescribeSlots(function.parameters, documentation.parameterNames);
  }
  return text + ") -> " + DescribeSlot(function.output);
}

std::string DescribeRegistration(ListedFunction const& function) {
  return function.form + " " + function.type + (function.isOrderDependent ? ", in order" : "");
}

std::string MakeManifest(std::vector<ListedFunction> const& functions) {
  std::string text = "# name (inputs; parameters) -> output | form and type\n";
  for (auto const& function : functions) {
    text += function.name + " (" + DescribeSlots(function.inputs, {});
    if (!function.parameters.empty()) text += "; " + DescribeSlots(function.parameters, {});
    text += ") -> " + DescribeSlot(function.output) + " | " + DescribeRegistration(function) + '\n';
  }
  return text;
}

std::string MakeFunctionsJson(std::vector<ListedFunction> const& functions, CallSession& session) {
  std::string out = "[";
  for (auto const& function : functions) {
    out += out.size() > 1 ? ",\n " : "";
    WriteFunction(function, session, out);
  }
  return out + "]\n";
}

}  // namespace ostrel::program
