#include <fmt/format.h>

#include <cmath>
#include <limits>
#include <numbers>

#include "charts/expressions/Expression.h"
#include "charts/expressions/ExpressionTokens.h"
#include "charts/expressions/LanguageFunctions.h"
#include "ostrelrtcore/NearestName.h"

namespace ostrel::charts {

namespace {

using Token = ExpressionToken;

struct NamedNumber {
  char const* name;
  double value;
};
constexpr NamedNumber kConstants[] = {{"PI", std::numbers::pi},
                                      {"E", std::numbers::e},
                                      {"LN2", std::numbers::ln2},
                                      {"LN10", std::numbers::ln10},
                                      {"LOG2E", std::numbers::log2e},
                                      {"LOG10E", std::numbers::log10e},
                                      {"SQRT2", std::numbers::sqrt2},
                                      {"SQRT1_2", std::numbers::sqrt2 / 2},
                                      {"MIN_VALUE", std::numeric_limits<double>::denorm_min()},
                                      {"MAX_VALUE", std::numeric_limits<double>::max()},
                                      {"NaN", std::numeric_limits<double>::quiet_NaN()},
                                      {"Infinity", std::numeric_limits<double>::infinity()}};

struct BinarySign {
  char const* sign;
  Operator operation;
  int strength;
};
constexpr BinarySign kBinarySigns[] = {{"||", Operator::Or, 1},
                                       {"&&", Operator::And, 2},
                                       {"==", Operator::Equal, 3},
                                       {"!=", Operator::NotEqual, 3},
                                       {"===", Operator::StrictlyEqual, 3},
                                       {"!==", Operator::StrictlyUnequal, 3},
                                       {"<", Operator::Less, 4},
                                       {"<=", Operator::LessOrEqual, 4},
                                       {">", Operator::Greater, 4},
                                       {">=", Operator::GreaterOrEqual, 4},
                                       {"+", Operator::Add, 5},
                                       {"-", Operator::Subtract, 5},
                                       {"*", Operator::Multiply, 6},
                                       {"/", Operator::Divide, 6},
                                       {"%", Operator::Remainder, 6}};

// What other languages have and what to write instead.
struct Hint {
  char const* sign;
  char const* hint;
};
constexpr Hint kHints[] = {{"=", "compare with =="},
                           {"&", "join tests with &&"},
                           {"|", "join tests with ||"},
                           {"^", "raise to a power with **"},
                           {"??", "give a value for missing ones with ||"},
                           {"?.", "write a plain ."},
                           {";", "an expression is one value"},
                           {"~", "operations on bits are not supported"},
                           {"<<", "operations on bits are not supported"},
                           {">>", "operations on bits are not supported"},
                           {"{", "objects are not supported"},
                           {"/", "regular expressions are not supported; search with indexof"},
                           {"=>", "functions cannot be defined"}};

// Precedence climbing; every level of brackets is one of recursion.
class Parser {
 public:
  explicit Parser(std::string_view source) {
    if (source.size() > Expression::kMostBytes) {
      throw ExpressionError(
          fmt::format("{} bytes of an expression are more than {}", source.size(), Expression::kMostBytes));
    }
    expression_.source = source;
    tokens_ = SplitExpression(expression_.source);
  }

  std::shared_ptr<Expression const> Parse() {
    expression_.root = ParseConditional();
    if (Next().kind != Token::Kind::End) FailExpected("an operator or the end");
    return std::make_shared<Expression const>(std::move(expression_));
  }

 private:
  Token const& Next() const { return tokens_[place_]; }
  Token const& Take() { return tokens_[place_++]; }
  bool TakeSign(std::string_view sign) {
    if (!Next().Is(sign)) return false;
    ++place_;
    return true;
  }
  void RequireSign(std::string_view sign) {
    if (!TakeSign(sign)) FailExpected(fmt::format("'{}'", sign));
  }

  [[noreturn]] void FailExpected(std::string const& wanted) const {
    std::string hint;
    for (Hint const& known : kHints) {
      if (Next().Is(known.sign)) hint = std::string("; ") + known.hint;
    }
    expression_.Fail(Next().begin,
                     fmt::format("expected {}, but found {}{}", wanted, Next().Describe(), hint));
  }

  // The node ends where the token before the next one does.
  int Add(ExpressionNode node) {
    node.end = place_ > 0 ? tokens_[place_ - 1].end : 0;
    for (int const child : node.children)
      node.depth = std::max(node.depth, expression_.GetNode(child).depth + 1);
    if (node.depth > Expression::kMostLevels)
      expression_.Fail(node.begin, fmt::format("more than {} levels", Expression::kMostLevels));
    expression_.nodes.push_back(std::move(node));
    return static_cast<int>(expression_.nodes.size()) - 1;
  }
  ExpressionNode At(std::size_t begin, ExpressionKind kind, std::vector<int> children = {}) const {
    ExpressionNode node;
    node.kind = kind;
    node.begin = begin;
    node.children = std::move(children);
    return node;
  }

  class Level {
   public:
    explicit Level(Parser& parser) : parser_(parser) {
      if (++parser_.level_ > Expression::kMostBrackets) {
        parser_.expression_.Fail(
            parser_.Next().begin,
            fmt::format("more than {} brackets or operators within one another", Expression::kMostBrackets));
      }
    }
    ~Level() { --parser_.level_; }

   private:
    Parser& parser_;
  };

  int ParseConditional() {
    Level const level(*this);
    std::size_t const begin = Next().begin;
    int const test = ParseBinary(1);
    if (!TakeSign("?")) return test;
    int const whenTrue = ParseConditional();
    RequireSign(":");
    int const whenFalse = ParseConditional();
    return Add(At(begin, ExpressionKind::Conditional, {test, whenTrue, whenFalse}));
  }

  BinarySign const* FindBinary() const {
    if (Next().kind != Token::Kind::Sign) return nullptr;
    for (BinarySign const& known : kBinarySigns) {
      if (Next().text == known.sign) return &known;
    }
    return nullptr;
  }

  int ParseBinary(int least) {
    std::size_t const begin = Next().begin;
    int left = ParseUnary();
    while (BinarySign const* const sign = FindBinary()) {
      if (sign->strength < least) break;
      Take();
      int const right = ParseBinary(sign->strength + 1);
      left = AddOperation(begin, sign->operation, {left, right});
    }
    return left;
  }

  int AddOperation(std::size_t begin, Operator operation, std::vector<int> children) {
    ExpressionNode node = At(begin, ExpressionKind::Operation, std::move(children));
    node.operation = operation;
    return Add(std::move(node));
  }

  int ParseUnary() {
    std::size_t const begin = Next().begin;
    constexpr std::pair<char const*, Operator> kSigns[] = {
        {"-", Operator::Negate}, {"+", Operator::ToNumber}, {"!", Operator::Not}};
    for (auto const& [sign, operation] : kSigns) {
      if (!TakeSign(sign)) continue;
      Level const level(*this);
      std::size_t const second = Next().begin;
      int const operand = ParseUnary();
      // A power in brackets begins behind the bracket.
      ExpressionNode const& node = expression_.GetNode(operand);
      bool const isPower = node.kind == ExpressionKind::Operation && node.operation == Operator::Power;
      if (isPower && node.begin == second)
        expression_.Fail(begin, "put brackets around the power or what is raised, as in -(2 ** 2)");
      return AddOperation(begin, operation, {operand});
    }
    int const base = ParseAccess();
    if (!TakeSign("**")) return base;
    Level const level(*this);
    int const exponent = ParseUnary();
    return AddOperation(begin, Operator::Power, {base, exponent});
  }

  int ParseAccess() {
    std::size_t const begin = Next().begin;
    int value = ParsePrimary();
    for (;;) {
      if (TakeSign(".")) {
        if (Next().kind != Token::Kind::Name) FailExpected("the name of a field");
        std::string const& name = Take().text;
        if (Next().Is("("))
          expression_.Fail(
              Next().begin,
              fmt::format("a value has no functions of its own; write {0}(...) with the value in it", name));
        value = AddMember(begin, value, name);
      } else if (TakeSign("[")) {
        int const index = ParseConditional();
        RequireSign("]");
        ExpressionNode const& node = expression_.GetNode(index);
        value = node.kind == ExpressionKind::Text ? AddMember(begin, value, std::string(node.text))
                                                  : Add(At(begin, ExpressionKind::Index, {value, index}));
      } else {
        return value;
      }
    }
  }

  int AddMember(std::size_t begin, int value, std::string const& name) {
    ExpressionNode node = At(begin, ExpressionKind::Member, {value});
    node.text = name;
    return Add(std::move(node));
  }

  int ParsePrimary() {
    std::size_t const begin = Next().begin;
    if (Next().kind == Token::Kind::Number) {
      ExpressionNode node = At(begin, ExpressionKind::Number);
      node.number = Take().number;
      return Add(std::move(node));
    }
    if (Next().kind == Token::Kind::Text) {
      ExpressionNode node = At(begin, ExpressionKind::Text);
      node.text = Take().text;
      return Add(std::move(node));
    }
    if (Next().kind == Token::Kind::Name) return ParseName();
    if (TakeSign("(")) {
      int const value = ParseConditional();
      RequireSign(")");
      return value;
    }
    if (TakeSign("[")) return Add(At(begin, ExpressionKind::List, ParseValues("]")));
    FailExpected("a value");
  }

  std::vector<int> ParseValues(std::string_view closing) {
    std::vector<int> values;
    if (TakeSign(closing)) return values;
    do {
      values.push_back(ParseConditional());
    } while (TakeSign(","));
    if (!TakeSign(closing)) FailExpected(fmt::format("',' or '{}'", closing));
    return values;
  }

  int ParseName() {
    Token const& name = Take();
    if (Next().Is("(")) return ParseCall(name);
    ExpressionNode node = At(name.begin, ExpressionKind::Null);
    if (name.text == "datum") {
      node.kind = ExpressionKind::Datum;
    } else if (name.text == "true" || name.text == "false") {
      node.kind = ExpressionKind::Boolean;
      node.number = name.text == "true" ? 1 : 0;
    } else if (name.text != "null" && name.text != "undefined") {
      node.kind = ExpressionKind::Number;
      node.number = FindConstant(name);
    }
    return Add(std::move(node));
  }

  double FindConstant(Token const& name) const {
    std::vector<std::string> names = {"datum", "true", "false", "null"};
    for (NamedNumber const& constant : kConstants) {
      if (name.text == constant.name) return constant.value;
      names.emplace_back(constant.name);
    }
    std::string cause = fmt::format("no value is named '{}'", name.text);
    std::string const nearest = ort::core::NearestName(name.text, names);
    if (FindLanguageFunction(name.text) != nullptr) {
      cause = fmt::format("'{0}' is a function; write {0}(...)", name.text);
    } else {
      cause += nearest.empty() ? fmt::format("; a field is written datum.{}", name.text)
                               : fmt::format("; did you mean '{}'?", nearest);
    }
    expression_.Fail(name.begin, cause);
  }

  int ParseCall(Token const& name) {
    LanguageFunction const* const function = FindLanguageFunction(name.text);
    if (function == nullptr) FailUnknownFunction(name);
    Take();
    ExpressionNode node = At(name.begin, ExpressionKind::Call, ParseValues(")"));
    auto const count = static_cast<int>(node.children.size());
    if (count < function->least || count > function->most) {
      std::string const wanted = function->most == kAnyCount ? fmt::format("{} or more", function->least)
                                 : function->least == function->most
                                     ? fmt::format("{}", function->least)
                                     : fmt::format("{} to {}", function->least, function->most);
      expression_.Fail(name.begin, fmt::format("{} takes {} value{}, not {}", name.text, wanted,
                                               wanted == "1" ? "" : "s", count));
    }
    node.function = function;
    return Add(std::move(node));
  }

  [[noreturn]] void FailUnknownFunction(Token const& name) const {
    constexpr Hint kRefused[] = {{"now", "a chart does not depend on when it is drawn; write a date"},
                                 {"random", "a chart does not depend on chance"},
                                 {"test", "regular expressions are not supported; search with indexof"},
                                 {"regexp", "regular expressions are not supported; search with indexof"},
                                 {"data", "only the fields of the row are known"},
                                 {"scale", "only the fields of the row are known"}};
    for (Hint const& refused : kRefused) {
      if (name.text == refused.sign)
        expression_.Fail(name.begin, fmt::format("{} is not supported; {}", name.text, refused.hint));
    }
    std::string const nearest = NearestLanguageFunction(name.text);
    expression_.Fail(name.begin, fmt::format("no function is named '{}'{}", name.text,
                                             nearest.empty() ? "" : "; did you mean '" + nearest + "'?"));
  }

  Expression expression_;
  std::vector<Token> tokens_;
  std::size_t place_ = 0;
  int level_ = 0;
};

}  // namespace

void Expression::Fail(std::size_t byte, std::string const& cause) const { FailAtColumn(source, byte, cause); }

std::shared_ptr<Expression const> ParseExpression(std::string_view source) { return Parser(source).Parse(); }

}  // namespace ostrel::charts
