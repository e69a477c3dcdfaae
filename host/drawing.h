#pragma once
// Access to the open drawing: entity records by id, blocks, the named-object
// dictionary, current layer and colour, persistent reactors.
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/codes.h"
#include "host/curves.h"
#include "host/entity.h"
#include "host/resbuf.h"

namespace host {

// A non-graphical object kept in the drawing (dictionary entry value): its DXF
// type name and its data as group-code/value pairs after the common header.
struct DbObject {
  ObjectId id;
  ObjectId owner;
  std::string dxfName;   // "XRECORD", "DICTIONARY", or a custom class name
  ResBufList data;       // type = DXF group code
};

class Drawing {
 public:
  virtual ~Drawing() = default;

  // A copy of the entity's record; nothing when the id is unknown or erased.
  virtual std::optional<Entity> read(ObjectId id) const = 0;
  // Replaces the record of an existing entity (id taken from the record).
  virtual ErrorStatus write(const Entity& entity) = 0;
  virtual ErrorStatus erase(ObjectId id) = 0;
  // Appends to the given block table record (model space, a layout or a block)
  // and returns the new id; a null owner appends to the current space.
  virtual ErrorStatus append(Entity& entity, ObjectId owner = kNullId) = 0;

  virtual ObjectId currentSpace() const = 0;
  virtual ObjectId modelSpace() const = 0;
  // The owner of an object; null for the root dictionary or an unknown id.
  virtual ObjectId ownerOf(ObjectId id) const = 0;
  virtual bool isBlockRecord(ObjectId id) const = 0;
  virtual std::optional<ObjectId> findBlock(const std::string& name) const = 0;
  // Entities of a block table record in drawing order.
  virtual std::vector<ObjectId> entitiesOf(ObjectId blockRecord) const = 0;
  // Base point of a block definition (DXF BLOCK group 10, WCS of the block);
  // the origin when the drawing does not keep one.
  virtual ge::Point3d blockBasePoint(ObjectId blockRecord) const {
    (void)blockRecord;
    return {};
  }
  // Colour of a layer; a negative index means the layer is off. Nothing for an
  // unknown layer or when the drawing keeps no layer table.
  virtual std::optional<Color> layerColor(const std::string& layer) const {
    (void)layer;
    return std::nullopt;
  }

  // Whether a layer is frozen: its entities are neither drawn nor picked, nor
  // is anything drawn through a block reference that lies on it. False for an
  // unknown layer.
  virtual bool isLayerFrozen(const std::string& layer) const {
    (void)layer;
    return false;
  }

  // The font a text style names: its TrueType family when the style keeps
  // one, else its font file ("romans.shx", "arial.ttf"; a bare file name is
  // an SHX font and gets ".shx"). Nothing for an unknown style.
  virtual std::optional<std::string> textStyleFont(const std::string& style) const {
    (void)style;
    return std::nullopt;
  }

  // Properties the host gives new entities (setDatabaseDefaults).
  virtual std::string currentLayer() const = 0;
  virtual Color currentColor() const = 0;
  virtual EntityProps defaultProps() const = 0;

  // Named-object dictionary and the objects it owns.
  virtual ObjectId namedObjectsDictionary() const = 0;
  virtual std::optional<ObjectId> dictionaryLookup(ObjectId dictionary, const std::string& key) const = 0;
  virtual ErrorStatus dictionarySet(ObjectId dictionary, const std::string& key, ObjectId object) = 0;
  virtual ErrorStatus dictionaryRemove(ObjectId dictionary, const std::string& key) = 0;
  virtual std::optional<DbObject> readObject(ObjectId id) const = 0;
  // Adds or replaces a non-graphical object; a null id adds a new one.
  virtual ErrorStatus writeObject(DbObject& object) = 0;

  // Persistent reactors: objects notified when an entity changes.
  virtual std::vector<ObjectId> reactorsOf(ObjectId id) const = 0;
  virtual ErrorStatus addReactor(ObjectId id, ObjectId reactor) = 0;
  virtual ErrorStatus removeReactor(ObjectId id, ObjectId reactor) = 0;
};

// The contents of the drawing's blocks by name (base point and entities, read
// at each call), for CurveServices::getBlockReferenceExtents. The drawing must
// outlive the lookup.
inline BlockContentsLookup blockContentsOf(const Drawing& drawing) {
  return [&drawing](const std::string& name) -> std::shared_ptr<const BlockContents> {
    std::optional<ObjectId> block = drawing.findBlock(name);
    if (!block) return nullptr;
    auto contents = std::make_shared<BlockContents>();
    contents->basePoint = drawing.blockBasePoint(*block);
    for (ObjectId id : drawing.entitiesOf(*block))
      if (std::optional<Entity> e = drawing.read(id)) contents->entities.push_back(std::move(e->data));
    return contents;
  };
}

}  // namespace host
