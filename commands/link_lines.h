#pragma once
// Connector lines that follow the shapes they join: the persistent reactor
// LinkLineToNotify that a shape carries, and the side arithmetic of the
// automatic connector.
#include <array>
#include <optional>
#include <vector>

#include "ge/extents.h"
#include "ge/point.h"
#include "host/host.h"

namespace commands {

// The reactor class's run-time name, parent, application and DXF type name.
inline constexpr const char* kLinkLineClass = "LinkLineToNotify";
inline constexpr const char* kLinkLineParent = "AcDbObject";
inline constexpr const char* kLinkLineApp = "persreac";
inline constexpr const char* kLinkLineDxfName = "LINKLINETONOTIFY";
// The dictionary of the named-object dictionary that holds the reactor objects.
inline constexpr const char* kLinkLineDictionary = "ZORL_DICT";

// Side codes: where on its shape a connector end sits.
enum class Side : int { kNone = 0, kRight = 1, kTop = 2, kLeft = 3, kBottom = 4 };

// The middles of a box's sides at z = 0, in the stored order: top, bottom, left, right.
using SideMiddles = std::array<ge::Point3d, 4>;
SideMiddles sideMiddlesOf(const ge::Extents3d& box);
// The side whose middle sits at index i of SideMiddles.
Side sideAt(int index);

// True when two points count as the same side middle: within 1e-8 of their
// size (and 1e-8 units near the origin). Both come from the same extents
// arithmetic or from a point typed at a side middle, so only rounding
// separates them.
bool samePlace(const ge::Point3d& a, const ge::Point3d& b);

// The persistent reactor a shape carries: its side middles as last seen and
// the connector splines attached to it. None of this is written to the
// drawing; a reopened drawing's reactors start empty.
class LinkLineToNotify final : public host::DbObjectInstance {
 public:
  SideMiddles sides{};
  std::vector<host::ObjectId> connectors;

  // A shape was edited: the connector ends that sat at one of its old side
  // middles move to the new middle of that side.
  void modified(host::Host& host, host::ObjectId self, host::ObjectId notifier) override;
};

// Registers the class with the host (the frame does so at load); prints
// "Class mismatch" when a class of that name with another parent exists.
void initLinkLineClass(host::Host& host);
// Removes the class at unload.
void removeLinkLineClass(host::Host& host);

// Tangent directions at the start of a connector leaving a side, and at the
// end of one arriving at it.
ge::Vector3d leavingTangent(Side side);
ge::Vector3d arrivingTangent(Side side);
// The tangent for an end on no shape, from the start a and the end b with margin m.
ge::Vector3d marginTangent(const ge::Point3d& a, const ge::Point3d& b, double margin);

// The side of the box a point is nearest to (the smallest distance to the
// line of each side; ties go to right, top, left, bottom in that order).
Side nearestSide(const ge::Extents3d& box, const ge::Point3d& p);

// Gives the shape a LinkLineToNotify for the connector: a new one in
// ZORL_DICT under a fresh GUID key when the shape has no persistent reactor;
// when it already carries a LinkLineToNotify the connector joins that one's
// list; a shape with any other reactor gets nothing.
void attachConnector(host::Host& host, host::ObjectId shape, host::ObjectId connector);

}  // namespace commands
