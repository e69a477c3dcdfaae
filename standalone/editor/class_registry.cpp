#include "standalone/editor/class_registry.h"

namespace standalone {

using host::ErrorStatus;

ErrorStatus ClassRegistry::addClass(host::ClassDescription description) {
  auto it = classes_.find(description.name);
  if (it != classes_.end()) {
    if (it->second.parent != description.parent) return ErrorStatus::eWrongObjectType;
    it->second = std::move(description);
    return ErrorStatus::eOk;
  }
  std::string name = description.name;
  classes_.emplace(std::move(name), std::move(description));
  return ErrorStatus::eOk;
}

ErrorStatus ClassRegistry::removeClass(std::string_view name) {
  auto it = classes_.find(name);
  if (it == classes_.end()) return ErrorStatus::eKeyNotFound;
  // The live objects of the class go with it; the stored objects stay in the drawing.
  for (auto i = instances_.begin(); i != instances_.end();) {
    const host::ClassDescription* c = classOfObject({i->first});
    i = c && c->name == name ? instances_.erase(i) : std::next(i);
  }
  classes_.erase(it);
  return ErrorStatus::eOk;
}

ErrorStatus ClassRegistry::newObject(std::string_view className, host::ObjectId& id) {
  auto it = classes_.find(className);
  if (it == classes_.end()) return ErrorStatus::eKeyNotFound;
  const host::ClassDescription& c = it->second;
  host::DbObject object{host::kNullId, host::kNullId, c.dxfName, {}};
  if (ErrorStatus es = drawing_.writeObject(object); es != ErrorStatus::eOk) return es;
  if (declared_.insert(c.name).second && declare_) declare_(c);
  id = object.id;
  instances_[id.value] = c.create();
  return ErrorStatus::eOk;
}

const host::ClassDescription* ClassRegistry::classOfObject(host::ObjectId id) const {
  std::optional<host::DbObject> object = drawing_.readObject(id);
  if (!object) return nullptr;
  for (const auto& [name, c] : classes_)
    if (c.dxfName == object->dxfName) return &c;
  return nullptr;
}

host::DbObjectInstance* ClassRegistry::instance(host::ObjectId id) {
  const host::ClassDescription* c = classOfObject(id);
  if (!c) return nullptr;
  auto& slot = instances_[id.value];
  if (!slot) slot = c->create();
  return slot.get();
}

void ClassRegistry::notifyModified(host::Host& host, host::ObjectId entity) {
  if (classes_.empty() || !notifying_.insert(entity.value).second) return;
  for (host::ObjectId reactor : drawing_.reactorsOf(entity))
    if (host::DbObjectInstance* object = instance(reactor)) object->modified(host, reactor, entity);
  notifying_.erase(entity.value);
}

}  // namespace standalone
