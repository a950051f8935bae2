#include <gtest/gtest-spi.h>

#include "ostrelrtcore/OrtUnaryFunctor.h"
#include "ostreltransforms/RowDriver.h"

// The driver must find what it is there to find.
namespace {

using namespace RowDriver;

struct Doubled {
  int Apply(int value) const { return 2 * value; }
};
struct WrongFirstRow {
  int Apply(int value) { return std::exchange(isFirst, false) ? 0 : 2 * value; }
  bool isFirst = true;
};
struct RunningSum {
  int Apply(int value) { return sum += value; }
  int sum = 0;
};
// Forgets its sum at the start of every view.
class ForgetfulSum : public OrtUnaryFunctor<int, int, RunningSum> {
 public:
  void ApplyToArray(std::span<int const> input, std::span<int> output) override {
    OrtUnaryFunctor<int, int, RunningSum>().ApplyToArray(input, output);
  }
};
struct SignLosing {
  double Apply(double value) const { return value + 0.0; }
};

template <class Functor>
std::unique_ptr<OrtFunctor> Make() {
  return std::make_unique<Functor>();
}
template <class F>
using IntFunctor = OrtUnaryFunctor<int, int, F>;

TEST(RowDriver, AcceptsWhatIsRight) {
  ExpectUnary<int, int>(Make<IntFunctor<Doubled>>, {1, 2, 3}, {2, 4, 6});
  ExpectUnary<int, int>(Make<IntFunctor<RunningSum>>, {1, 2, 3}, {1, 3, 6}, State::Carried);
  ExpectUnary<int, int>(Make<IntFunctor<Doubled>>, {}, {});
}

TEST(RowDriver, ReportsPlantedFaults) {
  auto const failed = [&](auto const& check) {
    testing::TestPartResultArray found;
    {
      testing::ScopedFakeTestPartResultReporter const reporter(
          testing::ScopedFakeTestPartResultReporter::INTERCEPT_ONLY_CURRENT_THREAD, &found);
      check();
    }
    return found.size() > 0;
  };
  EXPECT_TRUE(failed([] { ExpectUnary<int, int>(Make<IntFunctor<WrongFirstRow>>, {1, 2}, {0, 4}); }));
  EXPECT_TRUE(failed([] { ExpectUnary<int, int>(Make<IntFunctor<RunningSum>>, {1, 2}, {1, 3}); }));
  EXPECT_TRUE(failed([] { ExpectUnary<int, int>(Make<ForgetfulSum>, {1, 2}, {1, 3}, State::Carried); }));
  EXPECT_TRUE(failed([] {
    ExpectUnary<double, double>(Make<OrtUnaryFunctor<double, double, SignLosing>>, {-0.0}, {-0.0});
  }));
  EXPECT_TRUE(failed([] { ExpectUnary<double, double>(Make<IntFunctor<Doubled>>, {1.0}, {2.0}); }));
}

}  // namespace
