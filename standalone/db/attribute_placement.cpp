#include "standalone/db/attribute_placement.h"

#include <cmath>
#include <optional>

#include "ge/matrix.h"
#include "standalone/db/dxf_tags.h"
#include "standalone/db/ocs.h"
#include "standalone/db/tag_record.h"

namespace standalone {

namespace {

// Rotated (unscaled) axes of a placement in world space.
struct Axes {
  ge::Vector3d x, y, z;
};
Axes axesOf(const InsertPlacement& p) {
  OcsFrame f = OcsFrame::of(p.normal);
  double c = std::cos(p.rotation), s = std::sin(p.rotation);
  return {f.x * c + f.y * s, f.y * c - f.x * s, f.z};
}

// Block coordinates to world coordinates.
ge::Matrix3d blockToWorld(const InsertPlacement& p) {
  Axes a = axesOf(p);
  return ge::Matrix3d::fromFrame(p.position, a.x * p.scale.x, a.y * p.scale.y, a.z * p.scale.z);
}

// World coordinates to block coordinates; nothing when a scale is zero.
std::optional<ge::Matrix3d> worldToBlock(const InsertPlacement& p) {
  if (p.scale.x == 0 || p.scale.y == 0 || p.scale.z == 0) return std::nullopt;
  Axes a = axesOf(p);
  ge::Matrix3d unscale =
      ge::Matrix3d::fromFrame({}, {1 / p.scale.x, 0, 0}, {0, 1 / p.scale.y, 0}, {0, 0, 1 / p.scale.z});
  return unscale * ge::Matrix3d::toFrame(p.position, a.x, a.y, a.z);
}

// Index of the first tag with the code in [from, to); `to` if none.
std::size_t find(const TagList& tags, int code, std::size_t from, std::size_t to) {
  for (std::size_t i = from; i < to; ++i)
    if (tags[i].code == code) return i;
  return to;
}

// One ATTRIB's text geometry: tags [begin, end) of the list, up to its XDATA.
class AttributeGeometry {
 public:
  AttributeGeometry(TagList& tags, std::size_t begin, std::size_t end) : tags_(tags), begin_(begin), end_(end) {}

  // Maps the attribute by the affine transform; false when it would flatten it.
  bool apply(const ge::Matrix3d& m) {
    if (find(tags_, 40, begin_, end_) == end_) return false;
    ge::Vector3d n = vector(210, ge::kZAxis);
    OcsFrame f = OcsFrame::of(n);
    double rotation = real(50, 0) * kDegree, oblique = real(51, 0) * kDegree;
    ge::Vector3d xDir = f.x * std::cos(rotation) + f.y * std::sin(rotation);
    ge::Vector3d yDir = f.z.cross(xDir);
    ge::Vector3d x = m.apply(xDir), y = m.apply(yDir);
    ge::Vector3d area = x.cross(y);
    if (area.length() < 1e-12 || x.length() < 1e-12) return false;
    ge::Vector3d n2 = area.normalized();
    OcsFrame f2 = OcsFrame::of(n2);
    double heightScale = area.length() / x.length();
    ge::Vector3d u = x.normalized(), v = n2.cross(u);
    ge::Vector3d slant = x * std::tan(oblique) + y;

    double height = real(40, 1), width = real(41, 1);
    movePoint(10, f, f2, n, n2, m);
    movePoint(11, f, f2, n, n2, m);
    setText(40, height * heightScale, 1);
    setText(41, width * x.length() / heightScale, 1);
    setText(50, std::atan2(x.dot(f2.y), x.dot(f2.x)) / kDegree, 0);
    setText(51, std::atan2(slant.dot(u), slant.dot(v)) / kDegree, 0);
    setNormal(n2);
    return true;
  }

 private:
  double real(int code, double fallback) const {
    std::size_t i = find(tags_, code, begin_, end_);
    double v = fallback;
    if (i == end_ || !tryParseReal(tags_[i].value, v)) return fallback;
    return v;
  }
  ge::Vector3d vector(int code, const ge::Vector3d& fallback) const {
    if (find(tags_, code, begin_, end_) == end_) return fallback;
    return {real(code, fallback.x), real(code + 10, fallback.y), real(code + 20, fallback.z)};
  }
  // Sets a group of the text part; an absent one is added after the height
  // unless the value is the one a reader assumes without it.
  void setText(int code, double value, double implied) {
    if (find(tags_, code, begin_, end_) == end_ && std::fabs(value - implied) < 1e-12) return;
    set(code, value, find(tags_, 40, begin_, end_));
  }
  // Replaces the group's value, or adds the group after `after` when it is absent.
  void set(int code, double value, std::size_t after) {
    std::size_t i = find(tags_, code, begin_, end_);
    if (i != end_) {
      tags_[i].value = formatReal(value);
      return;
    }
    tags_.insert(tags_.begin() + static_cast<std::ptrdiff_t>(after) + 1, Tag{code, formatReal(value)});
    ++end_;
  }
  void movePoint(int code, const OcsFrame& f, const OcsFrame& f2, const ge::Vector3d& n, const ge::Vector3d& n2,
                 const ge::Matrix3d& m) {
    std::size_t at = find(tags_, code, begin_, end_);
    if (at == end_) return;
    ge::Vector3d ocs = vector(code, {});
    ge::Point3d world = isWorldZ(n) ? ge::Point3d{ocs.x, ocs.y, ocs.z} : f.toWorld({ocs.x, ocs.y, ocs.z});
    ge::Point3d moved = m.apply(world);
    ge::Point3d p = isWorldZ(n2) ? moved : f2.toOcs(moved);
    set(code, p.x, at);
    set(code + 10, p.y, at);
    set(code + 20, p.z, find(tags_, code + 10, begin_, end_));
  }
  // The normal goes where it stood, or at the end of the text part when it was world Z.
  void setNormal(const ge::Vector3d& n2) {
    std::size_t at = find(tags_, 210, begin_, end_);
    if (at == end_) {
      if (n2.x == 0 && n2.y == 0 && n2.z == 1) return;
      std::size_t marker = find(tags_, 100, find(tags_, 40, begin_, end_), end_);  // AcDbAttribute
      tags_.insert(tags_.begin() + static_cast<std::ptrdiff_t>(marker), Tag{210, formatReal(n2.x)});
      ++end_;
      at = marker;
    }
    set(210, n2.x, at);
    set(220, n2.y, at);
    set(230, n2.z, find(tags_, 220, begin_, end_));
  }

  TagList& tags_;
  std::size_t begin_, end_;
};

// Where an ATTRIB's own geometry ends: at XDATA or an embedded object.
std::size_t geometryEnd(const TagList& tags, std::size_t begin, std::size_t end) {
  for (std::size_t i = begin; i < end; ++i)
    if (tags[i].code == 1001 || tags[i].code == 101) return i;
  return end;
}

}  // namespace

InsertPlacement placementOf(const host::BlockReference& ref) {
  return {ref.position, ref.scale, ref.rotation, ref.normal};
}

TagList attributesMoved(std::string_view tail, const InsertPlacement& from, const InsertPlacement& to) {
  TagList tags = tokenize(tail);
  auto back = worldToBlock(from);
  if (!back) return tags;
  ge::Matrix3d m = blockToWorld(to) * *back;
  std::size_t i = 0;
  while (i < tags.size()) {
    std::size_t next = i + 1;
    while (next < tags.size() && tags[next].code != 0) ++next;
    if (tags[i].code == 0 && tags[i].value == "ATTRIB") {
      std::size_t end = geometryEnd(tags, i + 1, next);
      std::size_t before = tags.size();
      AttributeGeometry(tags, i + 1, end).apply(m);
      next += tags.size() - before;
    }
    i = next;
  }
  return tags;
}

}  // namespace standalone
