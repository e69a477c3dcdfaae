#pragma once
// A small in-memory drawing for renderer tests: model space, named blocks with
// base points, and layer colours. Only the reads the renderer makes work.
#include <map>

#include "tests/support/fake_drawing.h"

namespace render_test {

class FakeDrawing : public test_support::NullDrawing {
 public:
  static constexpr host::ObjectId kModel{1};

  // Adds an entity to model space (or to a block record) and returns its id.
  host::ObjectId add(host::EntityData data, host::EntityProps props = {}, host::ObjectId owner = kModel) {
    host::ObjectId id{next_++};
    order_[owner].push_back(id);
    entities_[id] = host::Entity{id, owner, std::move(props), std::move(data)};
    return id;
  }
  host::ObjectId addBlock(const std::string& name, ge::Point3d base = {}) {
    host::ObjectId id{next_++};
    blocks_[name] = id;
    bases_[id] = base;
    return id;
  }
  void setLayerColor(const std::string& layer, host::Color c) { layers_[layer] = c; }

  std::optional<host::Entity> read(host::ObjectId id) const override { return lookup(entities_, id); }
  host::ObjectId currentSpace() const override { return kModel; }
  host::ObjectId modelSpace() const override { return kModel; }
  bool isBlockRecord(host::ObjectId id) const override { return id == kModel || bases_.count(id) > 0; }
  std::optional<host::ObjectId> findBlock(const std::string& name) const override { return lookup(blocks_, name); }
  std::vector<host::ObjectId> entitiesOf(host::ObjectId record) const override {
    return lookup(order_, record).value_or(std::vector<host::ObjectId>{});
  }
  ge::Point3d blockBasePoint(host::ObjectId record) const override {
    return lookup(bases_, record).value_or(ge::Point3d{});
  }
  std::optional<host::Color> layerColor(const std::string& layer) const override { return lookup(layers_, layer); }

 private:
  template <class Map, class Key>
  static std::optional<typename Map::mapped_type> lookup(const Map& map, const Key& key) {
    auto it = map.find(key);
    if (it == map.end()) return std::nullopt;
    return it->second;
  }

  std::uint64_t next_ = 2;
  std::map<host::ObjectId, host::Entity> entities_;
  std::map<host::ObjectId, std::vector<host::ObjectId>> order_;
  std::map<std::string, host::ObjectId> blocks_;
  std::map<host::ObjectId, ge::Point3d> bases_;
  std::map<std::string, host::Color> layers_;
};

}  // namespace render_test
