#include "engine/EngineTestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <sstream>

namespace enginetest {
namespace {

template <class Functor>
FunctorFactory Make() {
  return FunctorFactory([] { return std::make_unique<Functor>(); });
}

FunctionKey Key(wchar_t const* name, std::vector<KeySegmentType> const& inputs) {
  return {OStringCore(name), inputs};
}

template <class Operation>
using Unary = OrtUnaryFunctor<double, double, Operation>;
template <class Operation>
using UnarySpecial = OrtUnarySpecialFunctor<double, double, Operation>;
template <class Operation>
using Binary = OrtBinaryFunctor<double, double, double, Operation>;
template <class Operation>
using BinarySpecial = OrtBinarySpecialFunctor<double, double, double, Operation>;

Value CountInputs(std::vector<Value> const& inputs) {
  if (inputs.size() > 9) throw OrtRuntimeException(static_cast<OrtError>(219), OStringCore(L"count"));
  return factory::MakeInt32(static_cast<int>(inputs.size()));
}

}  // namespace

void RegisterTestFunctions(FunctionRegistry& registry) {
  KeySegmentType const real(StoreTypeInfo::Real64);
  KeySegmentType const text(StoreTypeInfo::String);
  auto& unary = registry.GetUnaryFunctions();
  using U = UnaryFunctionType;
  unary.Register(Key(L"halve", {real}), real, U::Plain, Make<Unary<Halve>>());
  unary.Register(Key(L"halveSpecial", {real}), real, U::Special, Make<UnarySpecial<HalveSpecial>>());
  unary.Register(Key(L"decay", {real}), real, {}, U::Operation, true, Make<Unary<Decay>>());
  unary.Register(Key(L"decaySpecial", {real}), real, {}, U::SpecialOperation, true,
                 Make<UnarySpecial<DecaySpecial>>());
  unary.Register(Key(L"both", {real}), real, U::Plain, Make<Unary<Halve>>());
  unary.Register(Key(L"both", {real}), real, U::Special, Make<UnarySpecial<HalveSpecial>>());
  unary.Register(Key(L"refuse", {real}), real, U::Plain, Make<Unary<RefuseThirteen>>());
  unary.Register(Key(L"scale", {real}), real, {real}, U::Operation, false, [](ParameterSpan parameters) {
    if (parameters.empty()) throw OrtRuntimeException(static_cast<OrtError>(55), OStringCore(L"scale"));
    return std::make_unique<Unary<Scale>>(FetchStoreValue<double>(parameters[0]));
  });

  auto& binary = registry.GetBinaryFunctions();
  using B = BinaryFunctionType;
  binary.Register(Key(L"mix", {real, real}), real, B::Plain, Make<Binary<Mix>>());
  binary.Register(Key(L"mixSpecial", {real, real}), real, {}, B::SpecialOperation, false,
                  Make<BinarySpecial<MixSpecial>>());
  binary.Register(Key(L"mixDecay", {real, real}), real, {}, B::Operation, true, Make<Binary<MixDecay>>());
  binary.Register(Key(L"mixDecaySpecial", {real, real}), real, {}, B::SpecialOperation, true,
                  Make<BinarySpecial<MixDecaySpecial>>());
  binary.Register(Key(L"append", {text, text}), text, B::Plain,
                  Make<OrtBinaryFunctor<RIndirectString, RIndirectString, RIndirectString, Append>>());

  registry.GetMultinaryFunctions().Register(
      Key(L"count", {KeySegmentType(StoreTypeInfo::Array, StoreTypeInfo::Empty, StoreTypeInfo::Real64, {})}),
      KeySegmentType(StoreTypeInfo::Int32), Make<OrtMultinaryFunctor<CountInputs>>());
}

void PrintTo(Row const& row, std::ostream* out) {
  if (row.kind == SpecialKind::None) {
    *out << row.value;
  } else {
    *out << '!' << static_cast<int>(row.kind);
    if (row.value != 0) *out << '=' << row.value;
  }
}

Rows ParseRows(std::string const& text) {
  Rows rows;
  std::istringstream words(text);
  for (std::string word; words >> word;) {
    if (word[0] == '!') {
      rows.push_back({0, Kind(std::stoi(word.substr(1)))});
    } else {
      rows.push_back({std::stod(word)});
    }
  }
  return rows;
}

Value MakeReals(Rows const& rows) {
  ColumnBuilder<double> builder(StoreTypeInfo::Real64, static_cast<int>(rows.size()));
  for (std::size_t i = 0; i < rows.size(); ++i) {
    builder.GetValues()[i] = rows[i].value;
    if (rows[i].kind != SpecialKind::None) builder.SetSpecial(static_cast<int>(i), rows[i].kind);
  }
  return builder.Finish();
}

Value MakeReals(std::string const& text) { return MakeReals(ParseRows(text)); }

Value MakeStrings(std::vector<char const*> const& texts, std::vector<int> const& missing) {
  ColumnBuilder<RIndirectString> builder(StoreTypeInfo::String, static_cast<int>(texts.size()));
  for (std::size_t i = 0; i < texts.size(); ++i) builder.GetValues()[i] = OStringCore::fromUtf8(texts[i]);
  for (int const row : missing) builder.SetSpecial(row, SpecialKind::Missing);
  return builder.Finish();
}

Rows ReadRows(Value const& value) {
  if (value->GetStoreType() != StoreType::Array) {
    return {value->IsSpecial() ? Row{0, value->GetSpecialKind()} : Row{value->GetReal64()}};
  }
  auto const& column = value->AsTypedArray<double>();
  Rows rows;
  for (int i = 0; i < column.GetCount(); ++i)
    rows.push_back({column.GetElement(i), column.GetSpecialKind(i)});
  return rows;
}

std::string Compare(Rows const& rows, Rows const& expected) {
  if (rows.size() != expected.size()) {
    return std::to_string(rows.size()) + " rows instead of " + std::to_string(expected.size());
  }
  auto const [row, other] = std::mismatch(rows.begin(), rows.end(), expected.begin());
  if (row == rows.end()) return "same";
  return "row " + std::to_string(row - rows.begin()) + ": " + testing::PrintToString(*row) + " instead of " +
         testing::PrintToString(*other);
}

std::vector<std::string> ReadTexts(Value const& value) {
  auto const& column = value->AsTypedArray<RIndirectString>();
  std::vector<std::string> texts;
  for (int i = 0; i < column.GetCount(); ++i) {
    texts.push_back(column.IsSpecial(i) ? "!" : OStringCore(column.GetElement(i)).toUtf8());
  }
  return texts;
}

Sample::Sample(Form sampleForm, int count, unsigned seed) : form(sampleForm) {
  std::mt19937 random(seed);
  auto const draw = [&](int below) { return static_cast<int>(random() % static_cast<unsigned>(below)); };
  int const specialEvery = form == FewSpecials ? 700 : form == ManySpecials ? 2 : 0;
  for (int i = 0; i < count; ++i) {
    bool const isSpecial = specialEvery != 0 && draw(specialEvery) == 0;
    rows.push_back(isSpecial ? Row{0, Kind(draw(2) == 0 ? 1 : 9)} : Row{draw(64) * 0.25 - 4});
  }
  Row const one =
      form == Constant || form == Scalar ? Row{draw(64) * 0.25} : Row{0, Kind(draw(2) == 0 ? 2 : 9)};
  switch (form) {
    case Constant:
      value = factory::MakeConstantArray<double>(StoreTypeInfo::Real64, one.value, count);
      break;
    case AllSpecial:
      value = factory::MakeConstantArray<double>(StoreTypeInfo::Real64, count, one.kind);
      break;
    case Scalar:
      value = factory::MakeReal64(one.value);
      break;
    case SpecialScalar:
      value = factory::MakeSpecial(StoreTypeInfo::Real64, one.kind);
      break;
    default:
      value = MakeReals(rows);
      return;
  }
  rows.assign(static_cast<std::size_t>(count), one);
}

}  // namespace enginetest
