#include <fmt/format.h>

#include <algorithm>
#include <set>

#include "ostrel/CallProtocol.h"
#include "ostrel/FunctionErrors.h"
#include "ostrel/FunctionList.h"

namespace ostrel::program {
namespace {

std::string_view TrimLine(std::string_view line) {
  while (line.ends_with('\n') || line.ends_with(' ')) line.remove_suffix(1);
  return line;
}

// The examples of a name's registrations, each once, with what they give.
std::string RunExamples(std::vector<ListedFunction const*> const& registrations, CallSession& session,
                        std::string_view indent) {
  std::string text;
  std::set<std::string> seen;
  for (auto const* function : registrations) {
    std::string const& example = function->documentation.example;
    if (example.empty() || !seen.insert(example).second) continue;
    text += fmt::format("{0}{1}\n{0}{2}\n", indent, TrimLine(example), session.Answer(example));
  }
  return text;
}

std::vector<ListedFunction const*> SelectName(std::vector<ListedFunction> const& functions,
                                              std::string const& name) {
  std::vector<ListedFunction const*> selected;
  for (auto const& function : functions) {
    if (function.name == name) selected.push_back(&function);
  }
  return selected;
}

// Element-wise functions but the special forms, which are told of special rows.
bool KeepsSpecialRows(ListedFunction const& function) {
  return function.form != "multinary" && !function.type.starts_with("special");
}

std::vector<std::string> ListFamilies(std::vector<ListedFunction> const& functions) {
  std::vector<std::string> families;
  for (auto const& function : functions) families.push_back(function.documentation.family);
  std::sort(families.begin(), families.end());
  families.erase(std::unique(families.begin(), families.end()), families.end());
  return families;
}

// A paragraph of several lines behind the help; nothing where there is none.
std::string MakeDetails(std::string_view details, std::string_view indent) {
  std::string text;
  while (!details.empty()) {
    std::string_view const line = details.substr(0, details.find('\n'));
    details.remove_prefix(std::min(line.size() + 1, details.size()));
    text += line.empty() ? "\n" : fmt::format("{}{}\n", indent, line);
  }
  return text.empty() ? text : "\n" + text;
}

// Errors by a pattern of code and causes, with a separator between them; nothing where the details list them.
std::string MakeErrors(std::vector<ListedFunction const*> const& registrations, CallSession& session,
                       std::string_view pattern, char const* separator) {
  if (registrations.front()->documentation.details.find("Errors:") != std::string::npos) return "";
  std::vector<std::string> errors;
  for (auto const& error : FindErrors(registrations, session)) {
    errors.push_back(fmt::format(fmt::runtime(pattern), error.code, fmt::join(error.when, "; ")));
  }
  return fmt::format("{}", fmt::join(errors, separator));
}

std::string MakeSection(std::vector<ListedFunction const*> const& registrations, CallSession& session) {
  auto const& documentation = registrations.front()->documentation;
  std::string text = fmt::format("\n### {}\n\n{}\n{}\n", registrations.front()->name, documentation.help,
                                 MakeDetails(documentation.details, ""));
  for (auto const* function : registrations) {
    text += fmt::format("- `{}` ({})\n", GetSignature(*function), DescribeRegistration(*function));
  }
  std::string const errors = MakeErrors(registrations, session, "{} ({})", ", ");
  if (!errors.empty()) text += fmt::format("\nErrors: {}\n", errors);
  return text + "\n```json\n" + RunExamples(registrations, session, "") + "```\n";
}

constexpr char const* kMarkdownHead = R"(# Functions

Everything that charts and calls can use, by family. A signature names the inputs and, after a semicolon, the
constant parameters; "in order" marks a function that carries state from row to row. Unary functions are
mapped over a column, binary ones zipped over two or folded over one, multinary ones take whole values. Each
example is a request to `ostrel call`, followed by its response; texts are measured with 10 pixels for every
UTF-16 unit. Element-wise functions are not shown special rows, which keep their kind in the result; the special
forms tell what they make of them. A range tuple holds a minimum and a maximum (numbers, dates or special values), a
mode code, the code of the field's type, and whether its scale is logarithmic. The errors are what came of the
example with one thing in it made wrong. A call whose inputs suit no registration of a name is answered with the list of
them.

This file is made by `scripts/renew`.
)";

}  // namespace

std::string MakeFunctionsText(std::vector<ListedFunction> functions) {
  std::stable_sort(functions.begin(), functions.end(),
                   [](auto const& left, auto const& right) { return left.name < right.name; });
  std::string text;
  for (auto const& function : functions) {
    text += fmt::format("{}  [{}]  {}\n", GetSignature(function), DescribeRegistration(function),
                        function.documentation.help);
  }
  return text;
}

std::string MakeFunctionPage(std::vector<ListedFunction> const& registrations, CallSession& session) {
  auto const selected = SelectName(registrations, registrations.front().name);
  auto const& first = registrations.front();
  std::string text = fmt::format("{} ({})\n\n  {}\n{}", first.name, first.documentation.family,
                                 first.documentation.help, MakeDetails(first.documentation.details, "  "));
  for (auto const* function : selected) {
    text += fmt::format("\n{}\n  {}{}\n", GetSignature(*function), DescribeRegistration(*function),
                        KeepsSpecialRows(*function) ? "; special rows keep their kind" : "");
  }
  std::string const errors = MakeErrors(selected, session, "  {:<4} {}\n", "");
  if (!errors.empty()) text += "\nErrors\n" + errors;
  std::string const examples = RunExamples(selected, session, "  ");
  return examples.empty() ? text : text + "\nExample\n" + examples;
}

std::string MakeFunctionsMarkdown(std::vector<ListedFunction> const& functions, CallSession& session) {
  std::string text = kMarkdownHead;
  for (std::string const& family : ListFamilies(functions)) {
    text += fmt::format("\n## {}\n", family);
    std::set<std::string> seen;
    for (auto const& function : functions) {
      if (function.documentation.family != family || !seen.insert(function.name).second) continue;
      text += MakeSection(SelectName(functions, function.name), session);
    }
  }
  return text;
}

}  // namespace ostrel::program
