#pragma once

#include <unordered_map>

#include "ostrelrtcore/values/ValueBase.h"

namespace ort::core {

class TupleValue final : public ValueBase, private IStoreTuple {
 public:
  explicit TupleValue(std::shared_ptr<std::vector<std::shared_ptr<StoreValue>> const> members)
      : ValueBase(StoreTypeInfo::Tuple), members_(std::move(members)) {}
  ~TupleValue() override;

  bool Equals(StoreValue const& other) const override;
  std::shared_ptr<StoreValue> Clone() const override;
  std::size_t GetHash() const override;

 protected:
  IStoreTuple const* FindTuple() const override { return this; }

 private:
  int GetCount() const override { return static_cast<int>(members_->size()); }
  std::shared_ptr<StoreValue> const& GetMember(int position) const override;

  std::shared_ptr<std::vector<std::shared_ptr<StoreValue>> const> members_;
};

// A table or a key map: names in ascending order and, at the same positions, their values.
class NamedValue final : public ValueBase, private IStoreNamedValues {
 public:
  struct Content {
    std::vector<OStringCore> names;
    IStoreDictionary<RIndirectString, std::shared_ptr<StoreValue>> values;
    // The payload bits of a key map whose members are all scalars.
    std::unique_ptr<IStoreDictionary<RIndirectString, uint64>> bits;
  };
  static std::shared_ptr<StoreValue> Make(
      StoreTypeInfo const& type, std::unordered_map<OStringCore, std::shared_ptr<StoreValue>> const& values);

  NamedValue(StoreTypeInfo const& type, std::shared_ptr<Content const> content)
      : ValueBase(type), content_(std::move(content)) {}
  ~NamedValue() override;

  bool Equals(StoreValue const& other) const override;
  std::shared_ptr<StoreValue> Clone() const override;
  std::size_t GetHash() const override;

 protected:
  IStoreNamedValues const* FindNamedValues() const override { return this; }
  void const* FindDictionary(StorageClass key, StorageClass payload) const override;

 private:
  int GetCount() const override { return static_cast<int>(content_->names.size()); }
  std::vector<OStringCore> const& GetNames() const override { return content_->names; }
  std::shared_ptr<StoreValue> Find(OStringCore const& name) const override;
  std::shared_ptr<StoreValue> Get(OStringCore const& name) const override;

  std::shared_ptr<Content const> content_;
};

template <class K, class V>
class KeySetValue final : public ValueBase {
 public:
  using Dictionary = IStoreDictionary<K, V>;
  KeySetValue(KeySetTypes const& types, std::shared_ptr<Dictionary const> dictionary)
      : ValueBase(StoreTypeInfo::KeySet), types_(types), dictionary_(std::move(dictionary)) {}
  ~KeySetValue() override;

  bool Equals(StoreValue const& other) const override;
  std::shared_ptr<StoreValue> Clone() const override;
  std::size_t GetHash() const override;

 protected:
  KeySetTypes const* FindKeySetTypes() const override { return &types_; }
  void const* FindDictionary(StorageClass key, StorageClass payload) const override;

 private:
  KeySetTypes types_;
  std::shared_ptr<Dictionary const> dictionary_;
};

}  // namespace ort::core
