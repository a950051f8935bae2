#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <memory>
#include <span>
#include <utility>
#include <vector>

#include "ostrelrtcore/FunctionRegistry.h"

// Runs element-wise functors over rows in every shape in which a host may hand them over: whole, cut in two
// at every place, row by row through Apply; a functor without state also twice and backwards. All must give
// the same results, bit by bit. Lengths that differ must give 259 and leave the output as it was.
namespace RowDriver {

using namespace ort::core;

using Factory = std::function<std::unique_ptr<OrtFunctor>()>;
template <class T>
using Special = std::pair<T, SpecialKind>;

enum class State { None, Carried };

// Contiguous rows, also of bool.
template <class T>
class Rows {
 public:
  explicit Rows(std::size_t count) : values_(new T[count]()), count_(count) {}
  explicit Rows(std::vector<T> const& values) : Rows(values.size()) {
    for (std::size_t i = 0; i < count_; ++i) values_[i] = values[i];
  }
  std::span<T const> Slice(std::size_t first, std::size_t last) const {
    return {values_.get() + first, last - first};
  }
  std::span<T> All() { return {values_.get(), count_}; }
  T const& operator[](std::size_t row) const { return values_[row]; }

 private:
  std::unique_ptr<T[]> values_;
  std::size_t count_;
};

// Equality that tells -0 from 0 and takes all NaNs for one.
template <class T>
bool Same(T const& a, T const& b) {
  if constexpr (std::is_floating_point_v<T>) {
    return (a != a && b != b) || (a == b && std::signbit(a) == std::signbit(b));
  } else {
    return a == b;
  }
}
template <class T>
bool Same(Special<T> const& a, Special<T> const& b) {
  return Same(a.first, b.first) && a.second == b.second;
}

template <class T>
void ExpectSame(std::vector<T> const& got, std::vector<T> const& expected, char const* shape,
                std::size_t place) {
  ASSERT_EQ(got.size(), expected.size()) << shape << " " << place;
  for (std::size_t row = 0; row < got.size(); ++row) {
    EXPECT_TRUE(Same(T(got[row]), T(expected[row])))
        << "row " << row << ", " << shape << " " << place << ": got " << testing::PrintToString(T(got[row]))
        << ", expected " << testing::PrintToString(T(expected[row]));
  }
}

// `run` computes rows [first, last) with the functor and gives their results; `apply` does the same row by
// row.
template <class Functor, class Out>
struct Form {
  std::function<std::vector<Out>(Functor&, std::size_t first, std::size_t last)> run;
  std::function<Out(Functor&, std::size_t row)> apply;
};

template <class Functor>
std::pair<std::unique_ptr<OrtFunctor>, Functor*> MakeAs(Factory const& factory) {
  auto functor = factory();
  auto* const typed = dynamic_cast<Functor*>(functor.get());
  return {std::move(functor), typed};
}

template <class Functor, class Out>
void ExpectEveryShape(Factory const& factory, Form<Functor, Out> const& form,
                      std::vector<Out> const& expected, State state) {
  std::size_t const count = expected.size();
  for (std::size_t cut = 0; cut <= count; ++cut) {
    auto const [owner, functor] = MakeAs<Functor>(factory);
    ASSERT_NE(functor, nullptr) << "the functor has another form or other element types";
    std::vector<Out> results = form.run(*functor, 0, cut);
    std::vector<Out> const rest = form.run(*functor, cut, count);
    results.insert(results.end(), rest.begin(), rest.end());
    ExpectSame(results, expected, "cut at", cut);
  }
  auto const [owner, functor] = MakeAs<Functor>(factory);
  std::vector<Out> rowByRow;
  for (std::size_t row = 0; row < count; ++row) rowByRow.push_back(form.apply(*functor, row));
  ExpectSame(rowByRow, expected, "row by row", 0);

  if (state == State::None) {
    for (std::size_t row = count; row-- > 0;) {
      ExpectSame<Out>({form.apply(*functor, row)}, {expected[row]}, "backwards at", row);
    }
    ExpectSame(form.run(*functor, 0, count), expected, "once more", 0);
  }
}

template <class Call>
int ErrorOf(Call const& call) {
  try {
    call();
  } catch (OrtRuntimeException const& error) {
    return error.GetError();
  }
  return -1;
}

template <class In, class Out>
void ExpectUnary(Factory const& factory, std::vector<In> const& input, std::vector<Out> const& expected,
                 State state = State::None) {
  using Functor = IUnaryFunctor<In, Out>;
  Rows<In> const rows(input);
  auto const run = [&](Functor& functor, std::size_t first, std::size_t last) {
    Rows<Out> output(last - first);
    functor.ApplyToArray(rows.Slice(first, last), output.All());
    return std::vector<Out>(output.All().begin(), output.All().end());
  };
  auto const apply = [&](Functor& functor, std::size_t row) { return functor.Apply(rows[row]); };
  ExpectEveryShape<Functor, Out>(factory, {run, apply}, expected, state);

  auto const [owner, functor] = MakeAs<Functor>(factory);
  ASSERT_NE(functor, nullptr);
  functor->ApplyToArray({}, {});
  Rows<Out> tooLong(input.size() + 1);
  EXPECT_EQ(ErrorOf([&, f = functor] { f->ApplyToArray(rows.Slice(0, input.size()), tooLong.All()); }), 259);
  EXPECT_TRUE(Same<Out>(tooLong[0], Out())) << "the output was written before lengths were compared";
}

template <class In, class Out>
void ExpectSpecialUnary(Factory const& factory, std::vector<Special<In>> const& input,
                        std::vector<Special<Out>> const& expected, State state = State::None) {
  using Functor = IUnarySpecialFunctor<In, Out>;
  Rows<In> values(input.size());
  Rows<SpecialKind> kinds(input.size());
  for (std::size_t row = 0; row < input.size(); ++row)
    std::tie(values.All()[row], kinds.All()[row]) = input[row];
  auto const run = [&](Functor& functor, std::size_t first, std::size_t last) {
    Rows<Out> output(last - first);
    Rows<SpecialKind> outputKinds(last - first);
    functor.ApplyToArray(values.Slice(first, last), kinds.Slice(first, last), output.All(),
                         outputKinds.All());
    std::vector<Special<Out>> results;
    for (std::size_t row = 0; row < last - first; ++row) results.emplace_back(output[row], outputKinds[row]);
    return results;
  };
  auto const apply = [&](Functor& functor, std::size_t row) {
    return functor.Apply(values[row], kinds[row]);
  };
  ExpectEveryShape<Functor, Special<Out>>(factory, {run, apply}, expected, state);

  auto const [owner, functor] = MakeAs<Functor>(factory);
  ASSERT_NE(functor, nullptr);
  functor->ApplyToArray({}, {}, {}, {});
  Rows<Out> output(input.size());
  Rows<SpecialKind> tooLong(input.size() + 1);
  EXPECT_EQ(ErrorOf([&, f = functor] {
              f->ApplyToArray(values.Slice(0, input.size()), kinds.Slice(0, input.size()), output.All(),
                              tooLong.All());
            }),
            259);
}

template <class In1, class In2, class Out>
void ExpectBinary(Factory const& factory, std::vector<In1> const& first, std::vector<In2> const& second,
                  std::vector<Out> const& expected, State state = State::None) {
  using Functor = IBinaryFunctor<In1, In2, Out>;
  Rows<In1> const a(first);
  Rows<In2> const b(second);
  auto const run = [&](Functor& functor, std::size_t from, std::size_t to) {
    Rows<Out> output(to - from);
    functor.ApplyToArrays(a.Slice(from, to), b.Slice(from, to), output.All());
    return std::vector<Out>(output.All().begin(), output.All().end());
  };
  auto const apply = [&](Functor& functor, std::size_t row) { return functor.Apply(a[row], b[row]); };
  ExpectEveryShape<Functor, Out>(factory, {run, apply}, expected, state);

  auto const [owner, functor] = MakeAs<Functor>(factory);
  ASSERT_NE(functor, nullptr);
  functor->ApplyToArrays({}, {}, {});
  Rows<Out> tooLong(first.size() + 1);
  EXPECT_EQ(ErrorOf([&, f = functor] {
              f->ApplyToArrays(a.Slice(0, first.size()), b.Slice(0, first.size()), tooLong.All());
            }),
            259);
}

template <class In1, class In2, class Out>
void ExpectSpecialBinary(Factory const& factory, std::vector<Special<In1>> const& first,
                         std::vector<Special<In2>> const& second, std::vector<Special<Out>> const& expected,
                         State state = State::None) {
  using Functor = IBinarySpecialFunctor<In1, In2, Out>;
  std::size_t const count = first.size();
  Rows<In1> a(count);
  Rows<In2> b(count);
  Rows<SpecialKind> aKinds(count), bKinds(count);
  for (std::size_t row = 0; row < count; ++row) {
    std::tie(a.All()[row], aKinds.All()[row]) = first[row];
    std::tie(b.All()[row], bKinds.All()[row]) = second[row];
  }
  auto const run = [&](Functor& functor, std::size_t from, std::size_t to) {
    Rows<Out> output(to - from);
    Rows<SpecialKind> outputKinds(to - from);
    functor.ApplyToArrays(a.Slice(from, to), aKinds.Slice(from, to), b.Slice(from, to),
                          bKinds.Slice(from, to), output.All(), outputKinds.All());
    std::vector<Special<Out>> results;
    for (std::size_t row = 0; row < to - from; ++row) results.emplace_back(output[row], outputKinds[row]);
    return results;
  };
  auto const apply = [&](Functor& functor, std::size_t row) {
    return functor.Apply(a[row], aKinds[row], b[row], bKinds[row]);
  };
  ExpectEveryShape<Functor, Special<Out>>(factory, {run, apply}, expected, state);

  auto const [owner, functor] = MakeAs<Functor>(factory);
  ASSERT_NE(functor, nullptr);
  functor->ApplyToArrays({}, {}, {}, {}, {}, {});
  Rows<Out> output(count);
  Rows<SpecialKind> tooLong(count + 1);
  EXPECT_EQ(ErrorOf([&, f = functor] {
              f->ApplyToArrays(a.Slice(0, count), aKinds.Slice(0, count), b.Slice(0, count),
                               bKinds.Slice(0, count), output.All(), tooLong.All());
            }),
            259);
}

// The one registration of a name with these input types, made with parameters: a factory for the drivers
// above.
template <class Registry>
Factory FindFactory(Registry& functions, FunctionKey const& key,
                    std::vector<std::shared_ptr<StoreValue>> parameters = {}) {
  auto const entries = functions.Find(key);
  if (entries.empty()) throw std::runtime_error("no registration of " + key.GetName().toUtf8());
  return [factory = entries.front().GetFactory(), parameters = std::move(parameters)] {
    return factory(parameters);
  };
}

}  // namespace RowDriver
