#pragma once
// The embedded host's drawing: entity records by handle, block definitions,
// symbol tables, header variables and non-graphical objects, with everything a
// DXF file held that we do not interpret kept for writing it back.
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ge/point.h"
#include "host/drawing.h"
#include "standalone/db/drawing_change.h"
#include "standalone/db/records.h"

namespace standalone {

// The view recorded in the VPORT table's "*ACTIVE" entry.
struct ActiveView {
  ge::Point2d center;  // 12/22, drawing units
  double height = 0;   // 40, drawing units
  double aspect = 1;   // 41, width / height
};

// A layer as the layer list shows it.
struct LayerState {
  std::string name;
  int color = 7;  // 1..255, the index colour the layer draws in
  bool on = true;
  bool frozen = false;
  bool locked = false;
  bool operator==(const LayerState&) const = default;
};

class DrawingDatabase final : public host::Drawing {
 public:
  // Takes over the contents built by the DXF reader.
  explicit DrawingDatabase(DrawingContents contents);

  // A new, empty drawing of the given DXF version with the minimum content
  // other programs expect (tables, model and paper space, named-object dictionary).
  static DrawingDatabase createEmpty(std::string version = "AC1032");

  // DXF version string of the drawing, e.g. "AC1015".
  const std::string& version() const { return c_.version; }

  // A header variable as group-code/value pairs (type = group code, value typed
  // by the code's range); name with or without the leading $, any case.
  std::optional<host::ResBufList> headerVariable(std::string_view name) const;
  // Sets or adds a header variable; text values are UTF-8.
  void setHeaderVariable(std::string_view name, host::ResBufList values);

  // The view of the VPORT "*ACTIVE" entry; nothing when the drawing has none.
  std::optional<ActiveView> activeView() const;
  // Sets the active view, adding the VPORT entry when there is none.
  void setActiveView(const ActiveView& view);

  // The last entity appended to or loaded into the current space; null if none.
  host::ObjectId lastEntity() const { return {c_.lastEntity}; }
  // Layer names in table order.
  std::vector<std::string> layerNames() const;
  // Every layer in table order (database_layers.cpp).
  std::vector<LayerState> layerStates() const;
  // Sets a layer's colour, on/off (the sign of its colour) and frozen and
  // locked flags; false when there is no such layer or the colour is not 1..255.
  bool setLayerState(const LayerState& state);
  // Names of the block definitions in file order, model and paper space included.
  std::vector<std::string> blockNames() const;
  // True when the layer exists and is frozen or locked.
  bool isLayerFrozenOrLocked(const std::string& layer) const;
  // The stored record without a copy; valid until the drawing is next changed.
  const host::Entity* peek(host::ObjectId id) const;
  // Counts the entity writes, erasures and appends so far: while it stays the
  // same, so do the entities (for caches built from them).
  std::uint64_t changeCount() const { return changes_; }
  // The contents for the DXF writer.
  const DrawingContents& contents() const { return c_; }
  // A new, empty block definition with its base point (WCS); nothing when the
  // name is empty or a block of that name exists. Entities go in by append().
  std::optional<host::ObjectId> addBlock(const std::string& name, const ge::Point3d& basePoint);
  // Reserves a fresh handle (for records created outside the entity API).
  std::uint64_t newHandle() {
    touchFrame();
    return c_.nextHandle++;
  }
  // Called after every entity written back (the host's `modified` notification).
  void setModifiedObserver(std::function<void(host::ObjectId)> observer) { modified_ = std::move(observer); }
  // Lists a class of objects made here in the CLASSES section (R2000 and
  // later) unless the drawing lists it already.
  void declareClass(const std::string& dxfName, const std::string& cppName, const std::string& appName);

  // Undo support. From startRecording() on, the drawing keeps the state
  // before every change; takeRecording() stops and hands it over (empty when
  // nothing changed). restore() puts a recorded state back, tells the
  // modified observer of every entity it brought back, and returns the change
  // that goes forward again. Declared classes stay declared.
  void startRecording();
  DrawingChange takeRecording();
  DrawingChange restore(DrawingChange change);

  // host::Drawing
  std::optional<host::Entity> read(host::ObjectId id) const override;
  host::ErrorStatus write(const host::Entity& entity) override;
  host::ErrorStatus erase(host::ObjectId id) override;
  host::ErrorStatus append(host::Entity& entity, host::ObjectId owner = host::kNullId) override;
  host::ObjectId currentSpace() const override { return {c_.modelSpace}; }
  host::ObjectId modelSpace() const override { return {c_.modelSpace}; }
  host::ObjectId ownerOf(host::ObjectId id) const override;
  bool isBlockRecord(host::ObjectId id) const override;
  std::optional<host::ObjectId> findBlock(const std::string& name) const override;
  std::vector<host::ObjectId> entitiesOf(host::ObjectId blockRecord) const override;
  ge::Point3d blockBasePoint(host::ObjectId blockRecord) const override;
  std::optional<host::Color> layerColor(const std::string& layer) const override;
  bool isLayerFrozen(const std::string& layer) const override;
  std::optional<std::string> textStyleFont(const std::string& style) const override;
  std::string currentLayer() const override;
  host::Color currentColor() const override;
  host::EntityProps defaultProps() const override;
  host::ObjectId namedObjectsDictionary() const override { return {c_.namedObjects}; }
  std::optional<host::ObjectId> dictionaryLookup(host::ObjectId dictionary, const std::string& key) const override;
  host::ErrorStatus dictionarySet(host::ObjectId dictionary, const std::string& key, host::ObjectId object) override;
  host::ErrorStatus dictionaryRemove(host::ObjectId dictionary, const std::string& key) override;
  std::optional<host::DbObject> readObject(host::ObjectId id) const override;
  host::ErrorStatus writeObject(host::DbObject& object) override;
  std::vector<host::ObjectId> reactorsOf(host::ObjectId id) const override;
  host::ErrorStatus addReactor(host::ObjectId id, host::ObjectId reactor) override;
  host::ErrorStatus removeReactor(host::ObjectId id, host::ObjectId reactor) override;

 private:
  // The LAYER entry's flags (group 70); 0 for an unknown layer.
  int layerFlags(const std::string& layer) const;
  EntityRecord* liveEntity(std::uint64_t handle);
  const EntityRecord* liveEntity(std::uint64_t handle) const;
  TagRecord* liveRecord(std::uint64_t handle);
  const TagRecord* liveRecord(std::uint64_t handle) const;
  const TagRecord* findTableEntry(std::string_view table, std::string_view name) const;
  SymbolTable* findTable(std::string_view table);
  BlockDefinition* blockOf(std::uint64_t recordId);
  const BlockDefinition* blockOf(std::uint64_t recordId) const;
  bool inEntitySection(std::uint64_t owner) const;
  HeaderVariable* findHeader(std::string_view name);
  const HeaderVariable* findHeader(std::string_view name) const;

  host::ErrorStatus writeRecord(const host::Entity& entity);
  // Before a change while recording: keep the state it replaces.
  void touchFrame();
  void touchEntity(std::size_t index);
  void touchRecord(std::size_t index);

  DrawingContents c_;
  std::function<void(host::ObjectId)> modified_;
  std::uint64_t changes_ = 0;
  std::optional<DrawingChange> recording_;
};

}  // namespace standalone
