#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>
#include <type_traits>

#include "ostrelrtcore/OrtRuntimeException.h"

namespace ort::core {
namespace {

static_assert(std::is_nothrow_copy_constructible_v<OrtRuntimeException>);
static_assert(std::is_nothrow_copy_assignable_v<OrtRuntimeException>);

TEST(OrtRuntimeException, TellsCodeMeaningAndMessage) {
  struct Case {
    int code;
    OStringCore message;
    char const* what;
  };
  for (auto const& [code, message, what] :
       {Case{219, {}, "error 219: wrong count of inputs or members"},
        Case{178, u"ln", "error 178: type not supported: ln"},
        Case{0, u"\u00FCber \U0001F4C8",
             "error 0: input not accepted: \xC3\xBC"
             "ber \xF0\x9F\x93\x88"},
        Case{-7, u"x", "error -7: unknown error: x"}, Case{9999, {}, "error 9999: unknown error"}}) {
    OrtRuntimeException const error(static_cast<OrtError>(code), message);
    EXPECT_EQ(error.GetError(), code);
    EXPECT_EQ(error.GetMessage(), message);
    EXPECT_STREQ(error.what(), what);
  }
  EXPECT_TRUE(OrtRuntimeException(OrtError_WrongInputCount).GetMessage().isEmpty());
}

TEST(OrtRuntimeException, EveryCodeInUseHasAMeaningOfItsOwn) {
  std::set<std::string> meanings;
  for (int code : {0, 2, 3, 6, 55, 72, 120, 121, 128, 130, 178, 219, 220, 259}) {
    EXPECT_TRUE(meanings.insert(DescribeError(static_cast<OrtError>(code))).second) << code;
  }
  EXPECT_FALSE(meanings.contains(DescribeError(static_cast<OrtError>(1))));
}

TEST(OrtRuntimeException, CopiesOutliveTheOriginalAndMovedFromOnesStayWhole) {
  auto original = std::make_unique<OrtRuntimeException>(OrtError_TypesDiffer, u"add");
  OrtRuntimeException moved(std::move(*original));
  EXPECT_STREQ(original->what(), moved.what());
  OrtRuntimeException copy(OrtError_InputNotAccepted);
  copy = moved;
  original.reset();
  EXPECT_EQ(copy.GetError(), OrtError_TypesDiffer);
  EXPECT_EQ(copy.GetMessage(), OStringCore(u"add"));
}

TEST(OrtRuntimeException, IsCaughtAsAStandardException) {
  try {
    throw OrtRuntimeException(OrtError_LengthsDiffer);
  } catch (std::exception const& error) {
    EXPECT_STREQ(error.what(), "error 259: columns differ in length");
  }
}

}  // namespace
}  // namespace ort::core
