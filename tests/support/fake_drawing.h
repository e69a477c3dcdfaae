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

}  // namespace test_support
