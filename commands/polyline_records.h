#pragma once
// Reading and making the polyline records the commands work on.
#include <optional>

#include "ge/point.h"
#include "host/host.h"

namespace commands {

// The vertex positions of a lightweight or 2D polyline in its own object
// coordinates (z the elevation), or the world positions of a 3D polyline.
ge::PointList ownVertexPositions(const host::EntityData& polyline);

// The vertices the polyline is drawn through: as ownVertexPositions, but a
// spline-fit polyline gives its generated vertices without its control frame.
ge::PointList drawnVertexPositions(const host::EntityData& polyline);

// Whether a polyline record is closed; false for other kinds.
bool isClosedPolyline(const host::EntityData& polyline);

// A lightweight polyline's constant width, a 2D polyline's default start
// width; 0 for other kinds.
double constantWidthOf(const host::EntityData& polyline);

// Properties for a new entity: the drawing's defaults with the layer and the
// colour of the source.
host::EntityProps propsLike(const host::Drawing& drawing, const host::EntityProps& source);

// A straight-segment lightweight polyline through the points' x and y, at the
// elevation of the first point and under the given normal.
host::LwPolyline lwPolylineThrough(const ge::PointList& points, bool closed, double constantWidth,
                                   const ge::Vector3d& normal = ge::kZAxis);

// The normal of a lightweight or 2D polyline; the world Z axis otherwise.
ge::Vector3d polylineNormal(const host::EntityData& polyline);

}  // namespace commands
