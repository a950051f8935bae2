#pragma once

#include <exception>
#include <memory>

#include "ostrelrtcore/Export.h"
#include "ostrelsys/OStringCore.h"

namespace ort::core {

/// The codes of what may be wrong with a function's inputs, its registration or the use of a value. A code
/// without a name here is made by static_cast and travels unchanged.
enum OrtError : int {
  OrtError_InputNotAccepted = 0,
  OrtError_InputKindNotAccepted = 2,
  OrtError_SecondInputKindNotAccepted = 3,
  OrtError_OperandsNotAccepted = 6,
  OrtError_WrongValueKind = 55,
  OrtError_UnsuitableLookupTable = 72,
  OrtError_WrongInputType = 120,
  OrtError_EmptyOutputType = 121,
  OrtError_NotUnary = 128,
  OrtError_NotBinary = 130,
  OrtError_UnsupportedType = 178,
  OrtError_WrongInputCount = 219,
  OrtError_TypesDiffer = 220,
  OrtError_LengthsDiffer = 259,
};

/// What a code stands for, in a few English words; "unknown error" for a code without a name.
ORTCORE_API char const* DescribeError(OrtError error) noexcept;

/// Every failure of a function, a registration or a value. Copies share their texts and never throw.
class ORTCORE_API OrtRuntimeException : public std::exception {
 public:
  explicit OrtRuntimeException(OrtError error);
  OrtRuntimeException(OrtError error, OStringCore const& message);

  // A moved-from exception would have no texts, so there are only copies.
  OrtRuntimeException(OrtRuntimeException const&) noexcept = default;
  OrtRuntimeException& operator=(OrtRuntimeException const&) noexcept = default;
  ~OrtRuntimeException() override;

  OrtError GetError() const noexcept;
  /// The message it was thrown with, often a function's name; empty when there was none.
  OStringCore const& GetMessage() const noexcept;
  /// UTF-8: the code, what it stands for, and the message if any: "error 178: type not supported: ln".
  char const* what() const noexcept override;

 private:
  struct Texts;
  std::shared_ptr<Texts const> texts_;
};

}  // namespace ort::core
