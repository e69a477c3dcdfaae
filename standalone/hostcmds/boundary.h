#pragma once
// The host's BOUNDARY (and -BOUNDARY, the same at a command line): a closed
// lightweight polyline around the smallest enclosed area at each picked
// point, islands as further polylines, on the current layer; the curves it
// is traced from stay as they are.
#include <cstdint>
#include <memory>
#include <vector>

#include "host/curves.h"
#include "host/entity.h"
#include "standalone/editor/host_commands.h"
#include "standalone/kernel/arrangement.h"

namespace standalone {

// The straight and circular pieces of a curve in the XY plane. Lines, arcs,
// circles and bulged polylines come exactly; ellipses, splines and curves
// off the XY plane come as short chords. Nothing for other entities.
std::vector<kernel::BulgePiece> boundaryPiecesOf(const host::EntityData& e);

// The closed lightweight polyline through a loop, with the drawing's defaults.
host::Entity boundaryPolyline(const kernel::Loop& loop, const host::EntityProps& props);

// BOUNDARY over the arrangement of the visible curves of the current space.
// The arrangement is built again only when the drawing has changed since
// (or the gap tolerance has); the boundaries the command adds itself lie on
// edges it has already, so they keep it.
class BoundaryCommand {
 public:
  void operator()(HostCommandContext& c);
  // How many times the arrangement has been built.
  int builds() const { return builds_; }

 private:
  int traceAt(HostCommandContext& c, kernel::Vec2 p);
  const kernel::Arrangement& current(HostCommandContext& c);
  void advanced(HostCommandContext& c);

  std::unique_ptr<kernel::Arrangement> arrangement_;
  const void* drawing_ = nullptr;
  std::uint64_t stamp_ = 0;
  double gap_ = 0;
  bool islands_ = true;
  int builds_ = 0;
};

// Adds BOUNDARY and -BOUNDARY to the runner; the command they share.
std::shared_ptr<BoundaryCommand> addBoundaryCommands(HostCommandRunner& runner);

}  // namespace standalone
