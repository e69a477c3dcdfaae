#pragma once
// A minimal in-memory drawing for driving the builders: model space, one
// block, appended entities in order. Only what the builders use is real.
#include "tests/support/fake_drawing.h"

namespace geomtest {

class FakeDrawing final : public test_support::NullDrawing {
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

}  // namespace geomtest
