#include "standalone/editor/entity_finder.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>

namespace standalone {

namespace {

std::optional<std::uint64_t> parseHex(std::string_view digits) {
  if (digits.empty() || digits.size() > 16) return std::nullopt;
  std::uint64_t v = 0;
  for (char c : digits) {
    int d = c >= '0' && c <= '9' ? c - '0' : c >= 'a' && c <= 'f' ? c - 'a' + 10 : c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
    if (d < 0) return std::nullopt;
    v = v << 4 | static_cast<std::uint64_t>(d);
  }
  return v;
}

std::string_view trimmed(std::string_view s) {
  while (!s.empty() && s.front() == ' ') s.remove_prefix(1);
  while (!s.empty() && s.back() == ' ') s.remove_suffix(1);
  return s;
}

ge::Extents3d rectangle(const ge::Point3d& a, const ge::Point3d& b) {
  ge::Extents3d box;
  box.add(ge::Point3d{a.x, a.y, -1e300});
  box.add(ge::Point3d{b.x, b.y, 1e300});
  return box;
}

double xyDistance(const ge::Point3d& a, const ge::Point3d& b) { return std::hypot(a.x - b.x, a.y - b.y); }

// The entity's extents from the curve services; block references with their
// block's entities from blocks.
bool extentsOf(const host::CurveServices& curves, const host::EntityData& data, const host::BlockContentsLookup& blocks,
               ge::Extents3d& ext) {
  host::ErrorStatus status = host::ErrorStatus::eNotApplicable;
  if (const auto* ref = std::get_if<host::BlockReference>(&data))
    status = curves.getBlockReferenceExtents(*ref, blocks, ext);
  else
    status = curves.getGeomExtents(data, ext);
  return status == host::ErrorStatus::eOk && ext.isValid();
}

}  // namespace

std::optional<ge::Extents3d> entityExtents(const host::Drawing& drawing, const host::CurveServices& curves,
                                           const host::EntityData& data) {
  ge::Extents3d ext;
  if (!extentsOf(curves, data, host::blockContentsOf(drawing), ext)) return std::nullopt;
  return ext;
}

std::optional<std::uint64_t> parseHandleAnswer(std::string_view text) {
  text = trimmed(text);
  if (text.starts_with("#")) return parseHex(text.substr(1));
  if (!text.starts_with("(") || !text.ends_with(")")) return std::nullopt;
  std::string_view inner = trimmed(text.substr(1, text.size() - 2));
  if (inner.size() < 7 || !(inner.substr(0, 7) == "handent" || inner.substr(0, 7) == "HANDENT")) return std::nullopt;
  inner = trimmed(inner.substr(7));
  if (inner.size() < 2 || inner.front() != '"' || inner.back() != '"') return std::nullopt;
  return parseHex(inner.substr(1, inner.size() - 2));
}

EntityFinder::QueryScope::QueryScope(const EntityFinder& finder) : finder_(finder), owner_(!finder.blocks_) {
  if (owner_) finder_.blocks_.emplace();
}

EntityFinder::QueryScope::~QueryScope() {
  if (!owner_) return;
  finder_.blocks_.reset();
  finder_.frozen_.clear();
}

bool EntityFinder::hidden(const host::Entity& e) const {
  if (e.props.invisible) return true;
  if (!blocks_) return drawing_.isLayerFrozen(e.props.layer);
  auto [it, fresh] = frozen_.try_emplace(e.props.layer, false);
  if (fresh) it->second = drawing_.isLayerFrozen(e.props.layer);
  return it->second;
}

host::BlockContentsLookup EntityFinder::blockLookup() const {
  // Entities on layer 0 take the reference's layer, thawed when it is met.
  host::BlockContentsLookup read = [this](const std::string& name) -> std::shared_ptr<const host::BlockContents> {
    std::optional<host::ObjectId> block = drawing_.findBlock(name);
    if (!block) return nullptr;
    auto contents = std::make_shared<host::BlockContents>();
    contents->basePoint = drawing_.blockBasePoint(*block);
    for (host::ObjectId id : drawing_.entitiesOf(*block))
      if (std::optional<host::Entity> e = drawing_.read(id); e && (e->props.layer == "0" ? !e->props.invisible : !hidden(*e)))
        contents->entities.push_back(std::move(e->data));
    return contents;
  };
  if (!blocks_) return read;
  return [this, read](const std::string& name) {
    auto [it, fresh] = blocks_->try_emplace(name);
    if (fresh) it->second = read(name);
    return it->second;
  };
}

bool EntityFinder::boxOf(const host::Entity& e, ge::Extents3d& ext) const {
  if (!cache_) return extentsOf(curves_, e.data, blockLookup(), ext);
  auto [it, fresh] = cache_->try_emplace(e.id.value);
  if (fresh) {
    ge::Extents3d computed;
    if (extentsOf(curves_, e.data, blockLookup(), computed)) it->second = computed;
  }
  if (!it->second) return false;
  ext = *it->second;
  return true;
}

std::optional<EntityFinder::PickDistance> EntityFinder::distanceTo(const host::Entity& e, const ge::Point3d& p) const {
  // The pick is a 2D point on the screen: curves are measured at their own height.
  ge::Point3d on;
  if (host::isCurve(e.data) && curves_.getClosestPointTo(e.data, p, on) == host::ErrorStatus::eOk)
    return PickDistance{xyDistance(on, p), true};
  if (const auto* ref = std::get_if<host::BlockReference>(&e.data);
      ref && curves_.getBlockReferenceClosestPoint(*ref, blockLookup(), p, on) == host::ErrorStatus::eOk)
    return PickDistance{xyDistance(on, p), true};
  ge::Extents3d ext;
  if (!boxOf(e, ext)) return std::nullopt;
  double dx = std::max({ext.min.x - p.x, 0.0, p.x - ext.max.x});
  double dy = std::max({ext.min.y - p.y, 0.0, p.y - ext.max.y});
  // A point's box is the point itself.
  return PickDistance{std::hypot(dx, dy), std::holds_alternative<host::PointEntity>(e.data)};
}

std::optional<host::ObjectId> EntityFinder::pickAt(const ge::Point3d& p, double aperture) const {
  QueryScope blocks(*this);
  // What the pick box meets on an entity's own geometry wins over what only
  // meets the box of a text, a hatch or an image: a line through a label is
  // picked on the line.
  struct Best {
    std::optional<host::ObjectId> id;
    double distance;
  } onGeometry{std::nullopt, aperture}, onBox{std::nullopt, aperture};
  for (host::ObjectId id : drawing_.entitiesOf(drawing_.currentSpace())) {
    std::optional<host::Entity> e = drawing_.read(id);
    if (!e || hidden(*e)) continue;
    // The box test is cheap; the closest point on a free-form curve is not.
    double reach = onGeometry.id ? onGeometry.distance : aperture;
    ge::Extents3d ext;
    if (boxOf(*e, ext) &&
        (p.x < ext.min.x - reach || p.x > ext.max.x + reach || p.y < ext.min.y - reach || p.y > ext.max.y + reach))
      continue;
    std::optional<PickDistance> d = distanceTo(*e, p);
    if (!d) continue;
    Best& tier = d->onGeometry ? onGeometry : onBox;
    // Of equal distances the one drawn last wins, as it lies on top.
    if (d->distance <= tier.distance) tier = {id, d->distance};
  }
  return onGeometry.id ? onGeometry.id : onBox.id;
}

bool EntityFinder::crossesRectangle(const host::Entity& e, const ge::Extents3d& ext, const ge::Extents3d& box) const {
  // A crossing window is the crossing polygon of its four corners.
  std::vector<ge::Point2d> corners{{box.min.x, box.min.y}, {box.max.x, box.min.y}, {box.max.x, box.max.y},
                                   {box.min.x, box.max.y}};
  return polygonTakes(e, ext, corners, true);
}

std::vector<host::ObjectId> EntityFinder::inWindow(const ge::Point3d& a, const ge::Point3d& b, bool crossing) const {
  QueryScope blocks(*this);
  ge::Extents3d box = rectangle(a, b);
  std::vector<host::ObjectId> out;
  for (host::ObjectId id : drawing_.entitiesOf(drawing_.currentSpace())) {
    std::optional<host::Entity> e = drawing_.read(id);
    ge::Extents3d ext;
    if (!e || hidden(*e) || !boxOf(*e, ext)) continue;
    if (box.containsXY(ext) || (crossing && box.intersectsXY(ext) && crossesRectangle(*e, ext, box))) out.push_back(id);
  }
  return out;
}

std::vector<host::ObjectId> EntityFinder::all() const {
  std::vector<host::ObjectId> ids = drawing_.entitiesOf(drawing_.currentSpace());
  std::unordered_map<std::string, bool> skip;  // per layer, asked once
  std::erase_if(ids, [&](host::ObjectId id) {
    std::optional<host::Entity> e = drawing_.read(id);
    if (!e || e->props.invisible) return true;
    if (!frozenOrLocked_) return false;
    auto [it, fresh] = skip.try_emplace(e->props.layer, false);
    if (fresh) it->second = frozenOrLocked_(e->props.layer);
    return it->second;
  });
  return ids;
}

std::vector<host::ObjectId> EntityFinder::wholeDrawing() const {
  std::vector<host::ObjectId> out = drawing_.entitiesOf(drawing_.modelSpace());
  if (drawing_.currentSpace() != drawing_.modelSpace()) {
    std::vector<host::ObjectId> more = drawing_.entitiesOf(drawing_.currentSpace());
    out.insert(out.end(), more.begin(), more.end());
  }
  return out;
}

std::optional<host::ObjectId> EntityFinder::last() const {
  std::vector<host::ObjectId> ids = all();
  for (auto it = ids.rbegin(); it != ids.rend(); ++it)
    if (drawing_.read(*it)) return *it;
  return std::nullopt;
}

std::optional<host::ObjectId> EntityFinder::byHandle(std::string_view text) const {
  std::optional<std::uint64_t> handle = parseHandleAnswer(text);
  if (!handle || *handle == 0) return std::nullopt;
  host::ObjectId id{*handle};
  if (!drawing_.read(id)) return std::nullopt;
  return id;
}

}  // namespace standalone
