// MIRRTEXT 0: a mirrored text takes the mirrored footprint but reads as before.
#include <cmath>

#include "standalone/hostcmds/edit_commands.h"
#include "standalone/kernel/ocs.h"
#include "standalone/kernel/text_extents.h"
#include "standalone/kernel/transform_placed.h"

namespace standalone {

namespace {

// A map of scale 1 that reverses orientation.
bool isMirror(const ge::Matrix3d& m) { return std::abs(m.uniformScale() - 1) < 1e-9 && m.determinant3() < 0; }

double angleIn(const ge::Vector3d& normal, const ge::Vector3d& dir) {
  kernel::Frame f = kernel::ocsFrame(normal);
  return std::atan2(dir.dot(f.y), dir.dot(f.x));
}

// The two readable ways of a mirrored text: along the reversed mirrored
// direction (the box flipped back across its vertical middle) or along the
// mirrored direction (flipped back across its horizontal middle), whichever
// is closer to the text's old direction.
bool readsAlongReversed(const ge::Vector3d& dir, const ge::Vector3d& mirroredDir) { return mirroredDir.dot(dir) <= 0; }

bool mirrorText(host::Text& t, const ge::Matrix3d& m) {
  const ge::Vector3d n = (t.normal.length() > 0 ? t.normal : ge::kZAxis).normalized();
  const ge::Vector3d d = kernel::textDirection(t), u = n.cross(d);
  bool leftBaseline = t.horizontalJustify == 0 && t.verticalJustify == 0;
  bool spans = t.horizontalJustify == 3 || t.horizontalJustify == 5;  // aligned, fit
  const ge::Point3d ref = leftBaseline || spans ? t.position : t.alignmentPoint;
  // The box about the reference point, in the text's own axes.
  double x0 = 0, x1 = 0, y0 = 0, y1 = t.height;
  if (std::optional<kernel::TextBox> box = kernel::textBox(t)) {
    x0 = y0 = 1e300, x1 = y1 = -1e300;
    for (const ge::Point3d& corner : *box) {
      ge::Vector3d v = corner - ref;
      x0 = std::min(x0, v.dot(d)), x1 = std::max(x1, v.dot(d));
      y0 = std::min(y0, v.dot(u)), y1 = std::max(y1, v.dot(u));
    }
  }
  const ge::Vector3d md = m.apply(d), mu = m.apply(u);
  const ge::Vector3d newNormal = m.apply(n).normalized();
  ge::Vector3d newDir, newUp;
  ge::Point3d newRef = m.apply(ref);
  if (readsAlongReversed(d, md)) {
    newDir = -md, newUp = mu, newRef = newRef + md * (x0 + x1);
  } else {
    newDir = md, newUp = -mu, newRef = newRef + mu * (y0 + y1);
  }
  auto place = [&](const ge::Point3d& p) {
    ge::Vector3d v = p - ref;
    return newRef + newDir * v.dot(d) + newUp * v.dot(u);
  };
  t.position = place(t.position);
  t.alignmentPoint = place(t.alignmentPoint);
  t.normal = newNormal;
  t.rotation = angleIn(newNormal, newDir);
  return true;
}

// Attachment 1..9 is row-major from the top left: left/right swap across the
// vertical middle, top/bottom across the horizontal one.
int swapAcross(int attachment, bool vertical) {
  if (attachment < 1 || attachment > 9) return attachment;
  int row = (attachment - 1) / 3, col = (attachment - 1) % 3;
  if (vertical) col = 2 - col;
  else row = 2 - row;
  return row * 3 + col + 1;
}

bool mirrorMText(host::MText& t, const ge::Matrix3d& m) {
  const ge::Vector3d n = (t.normal.length() > 0 ? t.normal : ge::kZAxis).normalized();
  const ge::Vector3d d = t.xDirection.normalized();
  const ge::Vector3d md = m.apply(d);
  bool reversed = readsAlongReversed(d, md);
  t.position = m.apply(t.position);
  t.normal = m.apply(n).normalized();
  t.xDirection = reversed ? -md : md;
  t.attachment = swapAcross(t.attachment, reversed);
  return true;
}

}  // namespace

bool mirrorReadable(host::EntityData& text, const ge::Matrix3d& mirror) {
  if (!isMirror(mirror) || !kernel::isFinite(mirror)) return false;
  if (auto* t = std::get_if<host::Text>(&text)) return mirrorText(*t, mirror);
  if (auto* t = std::get_if<host::MText>(&text)) return mirrorMText(*t, mirror);
  return false;
}

}  // namespace standalone
