#include "ostrelrtcore/OrtFunctor.h"

namespace ort::core {

OrtFunctor::~OrtFunctor() = default;
UntypedUnary::~UntypedUnary() = default;
UntypedBinary::~UntypedBinary() = default;

namespace detail {

void ThrowLengthMismatch() { throw OrtRuntimeException(OrtError_LengthsDiffer); }

void ThrowNotAFold() {
  throw OrtRuntimeException(OrtError_WrongValueKind,
                            OStringCore(L"a fold needs an output of the first input's type"));
}

}  // namespace detail
}  // namespace ort::core
