#include "ostrelrtcore/OrtFunctor.h"

namespace ort::core {

OrtFunctor::~OrtFunctor() = default;
UntypedUnary::~UntypedUnary() = default;
UntypedBinary::~UntypedBinary() = default;

namespace detail {

void ThrowLengthMismatch() { throw OrtRuntimeException(static_cast<OrtError>(259)); }

void ThrowNotAFold() {
  throw OrtRuntimeException(static_cast<OrtError>(55),
                            OStringCore(L"a fold needs an output of the first input's type"));
}

}  // namespace detail
}  // namespace ort::core
