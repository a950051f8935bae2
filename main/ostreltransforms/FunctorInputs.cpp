#include "ostreltransforms/FunctorInputs.h"

#include "ostrelrtcore/OrtRuntimeException.h"
#include "ostrelrtcore/RFormatString.h"

namespace OstrelTransforms::detail {
namespace {

using namespace ort::core;

OStringCore CountMessage(wchar_t const* pattern, std::size_t given, std::size_t wanted) {
  return RFormatString(pattern).arg(uint64{given}, 0, 10, L' ').arg(uint64{wanted}, 0, 10, L' ');
}

}  // namespace

void RequireParameterCount(std::size_t given, std::size_t wanted) {
  if (given != wanted) {
    throw OrtRuntimeException(OrtError_WrongValueKind,
                              CountMessage(L"%1 parameters given, %2 needed", given, wanted));
  }
}

void RequireInputCount(std::size_t given, std::size_t wanted) {
  if (given != wanted) {
    throw OrtRuntimeException(OrtError_WrongInputCount,
                              CountMessage(L"%1 inputs given, %2 needed", given, wanted));
  }
}

void RequireValue(Value const& value) {
  if (value == nullptr)
    throw OrtRuntimeException(OrtError_WrongValueKind, OStringCore(L"a null pointer was given"));
}

}  // namespace OstrelTransforms::detail
