#pragma once
// The common base of the in-test drawings: every service of host::Drawing
// answers "nothing there" or "not implemented", so a fake overrides only the
// few calls the code under test really makes.
#include <optional>
#include <string>
#include <vector>

#include "host/drawing.h"

namespace test_support {

class NullDrawing : public host::Drawing {
 protected:
  using ES = host::ErrorStatus;
  using Id = host::ObjectId;
  static constexpr ES kNo = ES::eNotImplementedYet;

 public:
  std::optional<host::Entity> read(Id) const override { return std::nullopt; }
  ES write(const host::Entity&) override { return kNo; }
  ES erase(Id) override { return kNo; }
  ES append(host::Entity&, Id) override { return kNo; }
  Id currentSpace() const override { return {}; }
  Id modelSpace() const override { return {}; }
  Id ownerOf(Id) const override { return {}; }
  bool isBlockRecord(Id) const override { return false; }
  std::optional<Id> findBlock(const std::string&) const override { return std::nullopt; }
  std::vector<Id> entitiesOf(Id) const override { return {}; }
  std::string currentLayer() const override { return "0"; }
  host::Color currentColor() const override { return {}; }
  host::EntityProps defaultProps() const override { return {}; }
  Id namedObjectsDictionary() const override { return {}; }
  std::optional<Id> dictionaryLookup(Id, const std::string&) const override { return std::nullopt; }
  ES dictionarySet(Id, const std::string&, Id) override { return kNo; }
  ES dictionaryRemove(Id, const std::string&) override { return kNo; }
  std::optional<host::DbObject> readObject(Id) const override { return std::nullopt; }
  ES writeObject(host::DbObject&) override { return kNo; }
  std::vector<Id> reactorsOf(Id) const override { return {}; }
  ES addReactor(Id, Id) override { return kNo; }
  ES removeReactor(Id, Id) override { return kNo; }
};

// Entities kept in the order appended, owned by model space or one block;
// new entities take the current layer "WORK" and colour.
class MemoryDrawing final : public NullDrawing {
 public:
  static constexpr Id kModel{1}, kBlock{2};
  std::vector<host::Entity> appended;
  host::Color current{5, std::nullopt};
  ES appendStatus = ES::eOk;  // what append answers; anything but eOk appends nothing

  // Appends an entity to model space; its id.
  Id add(host::EntityData data) {
    host::Entity e{{}, {}, defaultProps(), std::move(data)};
    append(e, {});
    return e.id;
  }
  std::optional<host::Entity> read(Id id) const override {
    for (const auto& e : appended)
      if (e.id == id) return e;
    return std::nullopt;
  }
  ES append(host::Entity& e, Id owner) override {
    if (appendStatus != ES::eOk) return appendStatus;
    e.id = Id{next_++};
    e.owner = owner.isNull() ? kModel : owner;
    appended.push_back(e);
    return ES::eOk;
  }
  Id currentSpace() const override { return kModel; }
  Id modelSpace() const override { return kModel; }
  Id ownerOf(Id id) const override {
    auto e = read(id);
    return e ? e->owner : host::kNullId;
  }
  bool isBlockRecord(Id id) const override { return id == kModel || id == kBlock; }
  std::string currentLayer() const override { return "WORK"; }
  host::Color currentColor() const override { return current; }
  host::EntityProps defaultProps() const override {
    host::EntityProps p;
    p.layer = "WORK";
    p.color = current;
    return p;
  }

 private:
  std::uint64_t next_ = 100;
};

}  // namespace test_support
