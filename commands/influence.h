#pragma once
// Influence deformation: one influence curve pushes, turns, shrinks or bends a
// nearby object along X, the effect fading with distance. The steps are shared
// by PLAFFECT, plAffectMoveX and plAffClick.
#include <optional>
#include <vector>

#include "host/host.h"

namespace commands {

// What one deformation step needs besides the two objects.
struct InfluenceParams {
  double strength = 0.3;  // s: the user's strength 1..10 divided by 10
  double distance = 1;    // d: drawing units, positive
};

// Which parts of the rigid-body step apply.
struct RigidFlags {
  bool move = true;
  bool rotate = false;
  bool scale = true;
};

// The X a point moves to when the influence curve's crossing of the
// horizontal through it lies at r from it (r <= d): half d times the fading
// weight ((d - r) / d)^1.5 * s, away from the crossing (left when the crossing
// lies to the right).
double pushedX(double x, double crossingX, double r, const InfluenceParams& params);

// The first crossing of the influence curve with the horizontal segment of
// half-length d through p (neither operand extended); nothing when none.
std::optional<ge::Point3d> horizontalCrossing(const host::CurveServices& curves, const host::EntityData& influence,
                                              const ge::Point3d& p, double d);

// Curve bending: samples the curve (SURFTAB1 x 6 points, 16 below 4), pushes
// every sample the crossing of whose horizontal lies within d, and replaces
// the curve by a new one through the points with its colour and closed flag.
// True when the new curve was made and the old one erased.
bool bendCurve(host::Host& host, const host::EntityData& influence, const host::Entity& affected,
               const InfluenceParams& params);

// Rigid-body step: about the centre of the object's extents, scales by
// sqrt(sin(|C - K| * pi/2 / d)) (K the influence curve's point nearest C),
// then, when the crossing of the horizontal through C lies within d, moves it
// along X like a bent point and turns it counter-clockwise by
// s * pi/2 * (d - r) / d about C. Writes the object back; false when the
// object was left as it was.
bool moveRigidly(host::Host& host, const host::EntityData& influence, host::Entity& affected,
                 const InfluenceParams& params, const RigidFlags& flags);

// The dispatcher of the interactive variants: bending for a curve that is not
// rigid, else the rigid-body step.
bool applyInfluence(host::Host& host, const host::EntityData& influence, host::Entity& affected,
                    const InfluenceParams& params, const RigidFlags& flags, bool rigid);

// What applyInfluence would make of the affected object, with the drawing
// left as it is: the bent curve, or the object moved rigidly; nothing when
// the step would leave the object as it was.
std::optional<host::EntityData> influencedShape(const host::Host& host, const host::EntityData& influence,
                                                const host::Entity& affected, const InfluenceParams& params,
                                                const RigidFlags& flags, bool rigid);

// Vertical-curve shift: every affected object but the curve itself moves
// along X by the curve's deviation at the object's height from its upper end,
// faded by the object's distance from that point against its distance to the
// far edge of the objects' extents (made negligible when fading is off).
// Curves among the objects are skipped unless admitted. Returns how many moved.
int shiftAlongVerticalCurve(host::Host& host, const host::Entity& curve, const std::vector<host::ObjectId>& ids,
                            bool fading, bool admitCurves);

}  // namespace commands
