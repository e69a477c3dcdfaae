#include "geom/append.h"

namespace geom {

host::ErrorStatus appendToCurrentSpace(host::Drawing& drawing, host::Entity& entity) {
  return drawing.append(entity, drawing.currentSpace());
}

host::ErrorStatus appendToDatabase(host::Drawing& working, host::Drawing* target, host::Entity& entity) {
  return appendToCurrentSpace(target ? *target : working, entity);
}

host::ErrorStatus appendBesideSource(host::Drawing& drawing, host::ObjectId source, host::Entity& entity) {
  host::ObjectId owner = source.isNull() ? host::kNullId : drawing.ownerOf(source);
  if (!owner.isNull() && drawing.isBlockRecord(owner)) return drawing.append(entity, owner);
  return appendToCurrentSpace(drawing, entity);
}

}  // namespace geom
