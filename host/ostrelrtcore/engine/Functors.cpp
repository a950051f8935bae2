#include "ostrelrtcore/engine/Functors.h"

namespace ort::core::engine {
namespace {

[[noreturn]] void ThrowUnsuitable(FoundFunction const& function) {
  throw OrtRuntimeException(OrtError_WrongValueKind, function.key->GetName());
}

template <class Interface>
MadeFunctor<Interface> See(std::unique_ptr<OrtFunctor> functor, FoundFunction const& function) {
  Interface* seen = nullptr;
  if (functor != nullptr) {
    if constexpr (std::is_same_v<Interface, UntypedUnary>) {
      seen = functor->GetUntypedUnary();
    } else if constexpr (std::is_same_v<Interface, UntypedBinary>) {
      seen = functor->GetUntypedBinary();
    } else {
      seen = dynamic_cast<Interface*>(functor.get());
    }
  }
  if (seen == nullptr) ThrowUnsuitable(function);
  return {std::move(functor), seen};
}

}  // namespace

MadeFunctor<UntypedUnary> MakeUnary(FoundFunction const& function, ParameterSpan parameters) {
  auto made = See<UntypedUnary>((*function.factory)(parameters), function);
  FunctorStorage const storage = made.functor->GetStorage();
  if (storage.first != GetStorageClass(function.GetInputType(0)) ||
      storage.output != GetStorageClass(function.GetOutputType())) {
    ThrowUnsuitable(function);
  }
  return made;
}

MadeFunctor<UntypedBinary> MakeBinary(FoundFunction const& function, ParameterSpan parameters) {
  auto made = See<UntypedBinary>((*function.factory)(parameters), function);
  FunctorStorage const storage = made.functor->GetStorage();
  if (storage.first != GetStorageClass(function.GetInputType(0)) ||
      storage.second != GetStorageClass(function.GetInputType(1)) ||
      storage.output != GetStorageClass(function.GetOutputType())) {
    ThrowUnsuitable(function);
  }
  return made;
}

MadeFunctor<IMultinaryFunctor> MakeMultinary(FoundFunction const& function) {
  return See<IMultinaryFunctor>((*function.factory)(), function);
}

}  // namespace ort::core::engine
