#pragma once
// A minimal in-memory drawing for driving the builders: model space, one
// block, appended entities in order. Only what the builders use is real.
#include <map>

#include "host/drawing.h"

namespace geomtest {

class FakeDrawing final : public host::Drawing {
 public:
  static constexpr host::ObjectId kModel{1}, kBlock{2};
  std::vector<host::Entity> appended;
  host::Color current{5, std::nullopt};
  host::ErrorStatus appendStatus = host::ErrorStatus::eOk;

  std::optional<host::Entity> read(host::ObjectId id) const override {
    for (const auto& e : appended)
      if (e.id == id) return e;
    return std::nullopt;
  }
  host::ErrorStatus write(const host::Entity&) override { return host::ErrorStatus::eNotImplementedYet; }
  host::ErrorStatus erase(host::ObjectId) override { return host::ErrorStatus::eNotImplementedYet; }
  host::ErrorStatus append(host::Entity& e, host::ObjectId owner) override {
    if (appendStatus != host::ErrorStatus::eOk) return appendStatus;
    e.id = host::ObjectId{next_++};
    e.owner = owner.isNull() ? kModel : owner;
    appended.push_back(e);
    return host::ErrorStatus::eOk;
  }
  host::ObjectId currentSpace() const override { return kModel; }
  host::ObjectId modelSpace() const override { return kModel; }
  host::ObjectId ownerOf(host::ObjectId id) const override {
    auto e = read(id);
    return e ? e->owner : host::kNullId;
  }
  bool isBlockRecord(host::ObjectId id) const override { return id == kModel || id == kBlock; }
  std::optional<host::ObjectId> findBlock(const std::string&) const override { return std::nullopt; }
  std::vector<host::ObjectId> entitiesOf(host::ObjectId) const override { return {}; }
  std::string currentLayer() const override { return "WORK"; }
  host::Color currentColor() const override { return current; }
  host::EntityProps defaultProps() const override {
    host::EntityProps p;
    p.layer = "WORK";
    p.color = current;
    return p;
  }
  host::ObjectId namedObjectsDictionary() const override { return host::kNullId; }
  std::optional<host::ObjectId> dictionaryLookup(host::ObjectId, const std::string&) const override {
    return std::nullopt;
  }
  host::ErrorStatus dictionarySet(host::ObjectId, const std::string&, host::ObjectId) override {
    return host::ErrorStatus::eNotImplementedYet;
  }
  host::ErrorStatus dictionaryRemove(host::ObjectId, const std::string&) override {
    return host::ErrorStatus::eNotImplementedYet;
  }
  std::optional<host::DbObject> readObject(host::ObjectId) const override { return std::nullopt; }
  host::ErrorStatus writeObject(host::DbObject&) override { return host::ErrorStatus::eNotImplementedYet; }
  std::vector<host::ObjectId> reactorsOf(host::ObjectId) const override { return {}; }
  host::ErrorStatus addReactor(host::ObjectId, host::ObjectId) override { return host::ErrorStatus::eNotImplementedYet; }
  host::ErrorStatus removeReactor(host::ObjectId, host::ObjectId) override {
    return host::ErrorStatus::eNotImplementedYet;
  }

 private:
  std::uint64_t next_ = 100;
};

}  // namespace geomtest
