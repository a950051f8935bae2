#pragma once

#include "ostrelrtcore/engine/FunctionLookup.h"

namespace ort::core::engine {

/// A functor fresh from its factory, seen through the interface of its arity.
template <class Interface>
struct MadeFunctor {
  std::unique_ptr<OrtFunctor> owner;
  Interface* functor;
};

/// Throws 55 with the function's name when the functor is of another arity or reads or writes elements of
/// another width than its registration says, and what the factory throws.
MadeFunctor<UntypedUnary> MakeUnary(FoundFunction const& function, ParameterSpan parameters);
MadeFunctor<UntypedBinary> MakeBinary(FoundFunction const& function, ParameterSpan parameters);
MadeFunctor<IMultinaryFunctor> MakeMultinary(FoundFunction const& function);

}  // namespace ort::core::engine
