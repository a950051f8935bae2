#include "ostrelrtcore/FunctionRegistry.h"

namespace ort::core {

template <class FunctionType>
void RegistryOfFunctions<FunctionType>::Add(typename Entry::Content content) {
  if (!content.factory) throw OrtRuntimeException(OrtError_WrongValueKind, content.key.GetName());
  auto const& stored = contents_.emplace_back(std::move(content));
  byName_[stored.key.GetName()].emplace_back(stored);
  entries_.emplace_back(stored);
}

template <class FunctionType>
auto RegistryOfFunctions<FunctionType>::Find(FunctionKey const& key) const -> std::vector<Entry> {
  std::vector<Entry> found;
  auto const named = GetEntries(key.GetName());
  for (auto entry = named.rbegin(); entry != named.rend(); ++entry) {
    if (Matches(entry->GetKey(), key)) found.push_back(*entry);
  }
  return found;
}

template <class FunctionType>
auto RegistryOfFunctions<FunctionType>::Find(OStringCore const& name) const -> std::vector<Entry> {
  auto const named = GetEntries(name);
  return {named.begin(), named.end()};
}

template <class FunctionType>
auto RegistryOfFunctions<FunctionType>::GetEntries(OStringCore const& name) const -> std::span<Entry const> {
  auto const named = byName_.find(name);
  if (named == byName_.end()) return {};
  return named->second;
}

template class RegistryOfFunctions<UnaryFunctionType>;
template class RegistryOfFunctions<BinaryFunctionType>;
template class RegistryOfFunctions<MultinaryFunctionType>;

void RegistryOfUnaryFunctions::Register(OStringCore const& name, StoreType input, StoreType output, Type type,
                                        FunctorFactory factory) {
  Register(FunctionKey(name, KeySegmentType(input, false)), KeySegmentType(output, false), type,
           std::move(factory));
}

void RegistryOfUnaryFunctions::Register(FunctionKey const& key, KeySegmentType const& output, Type type,
                                        FunctorFactory factory) {
  Register(key, output, {}, type, false, std::move(factory));
}

void RegistryOfUnaryFunctions::Register(FunctionKey const& key, KeySegmentType const& output,
                                        std::vector<KeySegmentType> const& parameters, Type type,
                                        bool isOrderDependent, FunctorFactory factory) {
  Add({key, output, type, parameters, isOrderDependent, std::move(factory)});
}

void RegistryOfBinaryFunctions::Register(OStringCore const& name, StoreType first, StoreType second,
                                         StoreType output, Type type, FunctorFactory factory) {
  Register(FunctionKey(name, KeySegmentType(first, false), KeySegmentType(second, false)),
           KeySegmentType(output, false), type, std::move(factory));
}

void RegistryOfBinaryFunctions::Register(FunctionKey const& key, KeySegmentType const& output, Type type,
                                         FunctorFactory factory) {
  Register(key, output, {}, type, false, std::move(factory));
}

void RegistryOfBinaryFunctions::Register(FunctionKey const& key, KeySegmentType const& output,
                                         std::vector<KeySegmentType> const& parameters, Type type,
                                         bool isOrderDependent, FunctorFactory factory) {
  Add({key, output, type, parameters, isOrderDependent, std::move(factory)});
}

void RegistryOfMultinaryFunctions::Register(FunctionKey const& key, KeySegmentType const& output,
                                            FunctorFactory factory) {
  Add({key, output, Type::Plain, {}, false, std::move(factory)});
}

FunctionRegistry::FunctionRegistry() = default;
FunctionRegistry::~FunctionRegistry() = default;
RegistryOfUnaryFunctions& FunctionRegistry::GetUnaryFunctions() { return unary_; }
RegistryOfBinaryFunctions& FunctionRegistry::GetBinaryFunctions() { return binary_; }
RegistryOfMultinaryFunctions& FunctionRegistry::GetMultinaryFunctions() { return multinary_; }

}  // namespace ort::core
