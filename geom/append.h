#pragma once
// Appending new entities to a drawing: to its current space, to a given
// drawing, or into the same block as a source entity.
#include "host/drawing.h"

namespace geom {

// Appends to the current space of the drawing; the entity receives its id.
host::ErrorStatus appendToCurrentSpace(host::Drawing& drawing, host::Entity& entity);
// Appends to the current space of the target drawing, or of the working
// drawing when no target is given.
host::ErrorStatus appendToDatabase(host::Drawing& working, host::Drawing* target, host::Entity& entity);
// Appends to the block that owns the source entity, or to the current space
// when that owner is not a block table record (or the source is unknown).
host::ErrorStatus appendBesideSource(host::Drawing& drawing, host::ObjectId source, host::Entity& entity);

}  // namespace geom
