#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <span>
#include <unordered_map>
#include <vector>

#include "ostrelrtcore/FunctionKey.h"
#include "ostrelrtcore/OrtFunctor.h"

namespace ort::core {

using ParameterSpan = std::span<std::shared_ptr<StoreValue> const>;

/// Makes a fresh functor at each call, from the constant parameters where the function has any. Too few or
/// wrong parameters throw 55. May be built from a callable that takes a ParameterSpan, or from one without
/// arguments.
class ORTCORE_API FunctorFactory {
 public:
  FunctorFactory() = default;

  template <class Make>
  requires(!std::is_same_v<std::remove_cvref_t<Make>, FunctorFactory>) FunctorFactory(Make&& make) {
    if constexpr (kMayBeEmpty<std::remove_cvref_t<Make>>) {
      if (!make) return;
    }
    if constexpr (std::is_invocable_v<Make&, ParameterSpan>) {
      make_ = std::forward<Make>(make);
    } else {
      make_ = [plain = std::forward<Make>(make)](ParameterSpan) { return plain(); };
    }
  }

  std::unique_ptr<OrtFunctor> operator()() const { return make_(ParameterSpan()); }
  std::unique_ptr<OrtFunctor> operator()(ParameterSpan parameters) const { return make_(parameters); }
  explicit operator bool() const { return static_cast<bool>(make_); }

 private:
  /// Function pointers and std::function; an empty one makes an empty factory.
  template <class Make>
  static constexpr bool kMayBeEmpty = std::is_pointer_v<Make> || requires(Make& make) {
    make.target_type();
  };

  std::function<std::unique_ptr<OrtFunctor>(ParameterSpan)> make_;
};

// The enumerations are shown, since a template over a hidden type is hidden itself.

/// What the factory of a unary function makes: a plain or special functor over an element function (0, 1), or
/// over an operation of the family's own, built from parameters and free to keep state (2, 3).
enum class ORTCORE_API UnaryFunctionType : std::uint8_t {
  Plain = 0,
  Special = 1,
  Operation = 2,
  SpecialOperation = 3
};
/// The same for binary functions.
enum class ORTCORE_API BinaryFunctionType : std::uint8_t { Plain = 0, Operation = 2, SpecialOperation = 3 };
enum class ORTCORE_API MultinaryFunctionType : std::uint8_t { Plain = 0 };

/// One registration. A light handle that stays valid as long as its registry.
template <class FunctionType>
class RegistryEntry {
 public:
  struct Content {
    FunctionKey key;
    KeySegmentType output;
    FunctionType type;
    std::vector<KeySegmentType> parameters;
    bool isOrderDependent;
    FunctorFactory factory;
  };
  explicit RegistryEntry(Content const& content) : content_(&content) {}

  FunctionKey const& GetKey() const { return content_->key; }
  KeySegmentType const& GetOutput() const { return content_->output; }
  FunctionType GetType() const { return content_->type; }
  std::vector<KeySegmentType> const& GetParameters() const { return content_->parameters; }
  /// True for a functor that carries state from row to row: it wants all rows in order, on one thread.
  bool IsOrderDependent() const { return content_->isOrderDependent; }
  FunctorFactory const& GetFactory() const { return content_->factory; }

  /// An entry is used like a pointer where that reads better.
  RegistryEntry const* operator->() const { return this; }

 private:
  Content const* content_;
};

/// What the three sub-registries share. Registering belongs to start-up; look-ups may run on many threads.
template <class FunctionType>
class ORTCORE_API RegistryOfFunctions {
 public:
  using Type = FunctionType;
  using Entry = RegistryEntry<FunctionType>;

  /// The entries that suit a call's key, the latest registration first: a duplicate shadows the earlier one.
  std::vector<Entry> Find(FunctionKey const& key) const;
  /// All entries of a name, in order of registration.
  std::vector<Entry> Find(OStringCore const& name) const;
  /// The same in place; valid until something is registered.
  std::span<Entry const> GetEntries(OStringCore const& name) const;
  /// All entries, in order of registration.
  std::vector<Entry> const& GetEntries() const { return entries_; }

  RegistryOfFunctions(RegistryOfFunctions const&) = delete;
  RegistryOfFunctions& operator=(RegistryOfFunctions const&) = delete;

 protected:
  RegistryOfFunctions() = default;
  ~RegistryOfFunctions() = default;
  /// Throws 55 with the function's name as message for an empty factory.
  void Add(typename Entry::Content content);

 private:
  std::deque<typename Entry::Content> contents_;
  std::vector<Entry> entries_;
  std::unordered_map<OStringCore, std::vector<Entry>> byName_;
};

extern template class RegistryOfFunctions<UnaryFunctionType>;
extern template class RegistryOfFunctions<BinaryFunctionType>;
extern template class RegistryOfFunctions<MultinaryFunctionType>;

class ORTCORE_API RegistryOfUnaryFunctions : public RegistryOfFunctions<UnaryFunctionType> {
 public:
  void Register(OStringCore const& name, StoreType input, StoreType output, Type type,
                FunctorFactory factory);
  void Register(FunctionKey const& key, KeySegmentType const& output, Type type, FunctorFactory factory);
  void Register(FunctionKey const& key, KeySegmentType const& output,
                std::vector<KeySegmentType> const& parameters, Type type, bool isOrderDependent,
                FunctorFactory factory);
};

class ORTCORE_API RegistryOfBinaryFunctions : public RegistryOfFunctions<BinaryFunctionType> {
 public:
  void Register(OStringCore const& name, StoreType first, StoreType second, StoreType output, Type type,
                FunctorFactory factory);
  void Register(FunctionKey const& key, KeySegmentType const& output, Type type, FunctorFactory factory);
  void Register(FunctionKey const& key, KeySegmentType const& output,
                std::vector<KeySegmentType> const& parameters, Type type, bool isOrderDependent,
                FunctorFactory factory);
};

class ORTCORE_API RegistryOfMultinaryFunctions : public RegistryOfFunctions<MultinaryFunctionType> {
 public:
  void Register(FunctionKey const& key, KeySegmentType const& output, FunctorFactory factory);
};

/// The functions that a host can evaluate, by name and input types.
class ORTCORE_API FunctionRegistry {
 public:
  FunctionRegistry();

  virtual RegistryOfUnaryFunctions& GetUnaryFunctions();
  virtual RegistryOfBinaryFunctions& GetBinaryFunctions();
  virtual RegistryOfMultinaryFunctions& GetMultinaryFunctions();
  virtual ~FunctionRegistry();

  RegistryOfUnaryFunctions const& GetUnaryFunctions() const { return unary_; }
  RegistryOfBinaryFunctions const& GetBinaryFunctions() const { return binary_; }
  RegistryOfMultinaryFunctions const& GetMultinaryFunctions() const { return multinary_; }

 private:
  RegistryOfUnaryFunctions unary_;
  RegistryOfBinaryFunctions binary_;
  RegistryOfMultinaryFunctions multinary_;
};

/// Registers the host's own functions (see builtins/).
ORTCORE_API void RegisterAllBuiltinFunctions(FunctionRegistry& registry);

}  // namespace ort::core
