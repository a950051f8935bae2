#include "ostrelrtcore/OrtRuntimeException.h"

#include <string>

namespace ort::core {

char const* DescribeError(OrtError error) noexcept {
  switch (error) {
    case OrtError_InputNotAccepted:
      return "input not accepted";
    case OrtError_InputKindNotAccepted:
      return "input of a kind that is not accepted";
    case OrtError_SecondInputKindNotAccepted:
      return "second input of a kind that is not accepted";
    case OrtError_OperandsNotAccepted:
      return "operands not accepted";
    case OrtError_WrongValueKind:
      return "value of the wrong kind";
    case OrtError_UnsuitableLookupTable:
      return "lookup table does not suit its input";
    case OrtError_WrongInputType:
      return "input type differs from what the implementation requires";
    case OrtError_EmptyOutputType:
      return "output type is empty";
    case OrtError_NotUnary:
      return "a unary function needs exactly one input type";
    case OrtError_NotBinary:
      return "a binary function needs exactly two input types";
    case OrtError_UnsupportedType:
      return "type not supported";
    case OrtError_WrongInputCount:
      return "wrong count of inputs or members";
    case OrtError_TypesDiffer:
      return "operands are of different types";
    case OrtError_LengthsDiffer:
      return "columns differ in length";
  }
  return "unknown error";
}

struct OrtRuntimeException::Texts {
  OrtError error;
  OStringCore message;
  std::string what;
};

OrtRuntimeException::OrtRuntimeException(OrtError error) : OrtRuntimeException(error, OStringCore()) {}

OrtRuntimeException::OrtRuntimeException(OrtError error, OStringCore const& message) {
  std::string what = "error " + std::to_string(static_cast<int>(error)) + ": " + DescribeError(error);
  if (!message.isEmpty()) what += ": " + message.toUtf8();
  texts_ = std::make_shared<Texts const>(Texts{error, message, std::move(what)});
}

OrtRuntimeException::~OrtRuntimeException() = default;

OrtError OrtRuntimeException::GetError() const noexcept { return texts_->error; }

OStringCore const& OrtRuntimeException::GetMessage() const noexcept { return texts_->message; }

char const* OrtRuntimeException::what() const noexcept { return texts_->what.c_str(); }

}  // namespace ort::core
