#include "commands/link_lines.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <random>
#include <string>

#include "frame/output.h"

namespace commands {

namespace {

using host::ErrorStatus;

constexpr frame::Text kClassMismatch{"Class mismatch", "Class mismatch"};

// Relative size of the rounding that may separate two copies of one side middle.
constexpr double kSamePlaceTolerance = 1e-8;

// A fresh GUID in its registry form, {8-4-4-4-12} upper-case hex digits.
std::string newGuidKey() {
  std::random_device seed;
  std::mt19937_64 bits(static_cast<std::uint64_t>(seed()) << 32 | seed());
  std::uint64_t hi = bits(), lo = bits();
  hi = (hi & ~0xF000ull) | 0x4000ull;               // version 4
  lo = (lo & ~(0xC000ull << 48)) | (0x8000ull << 48);  // RFC 4122 variant
  char text[40];
  std::snprintf(text, sizeof text, "{%08llX-%04llX-%04llX-%04llX-%012llX}", (unsigned long long)(hi >> 32),
                (unsigned long long)((hi >> 16) & 0xFFFF), (unsigned long long)(hi & 0xFFFF),
                (unsigned long long)(lo >> 48), (unsigned long long)(lo & 0xFFFFFFFFFFFFull));
  return text;
}

// The ZORL_DICT dictionary, made and filed in the named-object dictionary when missing.
std::optional<host::ObjectId> linkLineDictionary(host::Drawing& drawing) {
  host::ObjectId root = drawing.namedObjectsDictionary();
  if (std::optional<host::ObjectId> found = drawing.dictionaryLookup(root, kLinkLineDictionary)) return found;
  host::DbObject dictionary{host::kNullId, root, "DICTIONARY", {}};
  if (drawing.writeObject(dictionary) != ErrorStatus::eOk) return std::nullopt;
  if (drawing.dictionarySet(root, kLinkLineDictionary, dictionary.id) != ErrorStatus::eOk) return std::nullopt;
  return dictionary.id;
}

LinkLineToNotify* linkLineOf(host::Host& host, host::ObjectId reactor) {
  return host.classes ? dynamic_cast<LinkLineToNotify*>(host.classes->instance(reactor)) : nullptr;
}

std::optional<SideMiddles> currentSides(const host::Host& host, const host::EntityData& shape) {
  ge::Extents3d box;
  if (host.curves.getGeomExtents(shape, box) != ErrorStatus::eOk) return std::nullopt;
  return sideMiddlesOf(box);
}

// Moves one fit point of a connector and fits it again with its end tangents.
bool moveFitPoint(const host::CurveServices& curves, host::Spline& spline, std::size_t index,
                  const ge::Point3d& to) {
  std::vector<ge::Point3d> fit = spline.fitPoints;
  fit[index] = to;
  const ge::Vector3d* start = spline.startTangent ? &*spline.startTangent : nullptr;
  const ge::Vector3d* end = spline.endTangent ? &*spline.endTangent : nullptr;
  host::Spline refit;
  if (curves.fitSpline(fit, start, end, refit) != ErrorStatus::eOk) return false;
  spline = refit;
  return true;
}

}  // namespace

SideMiddles sideMiddlesOf(const ge::Extents3d& box) {
  double midX = (box.min.x + box.max.x) / 2, midY = (box.min.y + box.max.y) / 2;
  return {ge::Point3d{midX, box.max.y, 0}, ge::Point3d{midX, box.min.y, 0}, ge::Point3d{box.min.x, midY, 0},
          ge::Point3d{box.max.x, midY, 0}};
}

Side sideAt(int index) {
  constexpr Side kOrder[] = {Side::kTop, Side::kBottom, Side::kLeft, Side::kRight};
  return kOrder[index];
}

bool samePlace(const ge::Point3d& a, const ge::Point3d& b) {
  double size = std::max({1.0, a.asVector().length(), b.asVector().length()});
  return a.distanceTo(b) <= kSamePlaceTolerance * size;
}

void LinkLineToNotify::modified(host::Host& host, host::ObjectId self, host::ObjectId notifier) {
  (void)self;
  std::optional<host::Entity> shape = host.drawing.read(notifier);
  if (!shape || !host::isCurve(shape->data) || std::holds_alternative<host::Spline>(shape->data)) return;
  std::optional<SideMiddles> now = currentSides(host, shape->data);
  if (!now) return;
  bool unchanged = true;
  for (int i = 0; i < 4; ++i) unchanged = unchanged && samePlace((*now)[i], sides[i]);
  if (unchanged) return;
  for (host::ObjectId id : connectors) {
    std::optional<host::Entity> connector = host.drawing.read(id);
    auto* spline = connector ? std::get_if<host::Spline>(&connector->data) : nullptr;
    if (!spline || spline->fitPoints.size() < 2) continue;
    ge::Point3d start, end;
    if (host.curves.getStartPoint(connector->data, start) != ErrorStatus::eOk ||
        host.curves.getEndPoint(connector->data, end) != ErrorStatus::eOk)
      continue;
    for (int i = 0; i < 4; ++i) {
      std::optional<std::size_t> index;
      if (samePlace(start, sides[i])) index = 0;
      else if (samePlace(end, sides[i])) index = spline->fitPoints.size() - 1;
      if (!index) continue;
      if (moveFitPoint(host.curves, *spline, *index, (*now)[i])) host.drawing.write(*connector);
      break;
    }
  }
  sides = *now;
}

void initLinkLineClass(host::Host& host) {
  if (!host.classes) return;
  host::ClassDescription c{kLinkLineClass, kLinkLineParent, kLinkLineDxfName, kLinkLineApp,
                           [] { return std::make_unique<LinkLineToNotify>(); }};
  if (host.classes->addClass(std::move(c)) == ErrorStatus::eWrongObjectType) frame::print(host, kClassMismatch);
}

void removeLinkLineClass(host::Host& host) {
  if (host.classes) host.classes->removeClass(kLinkLineClass);
}

ge::Vector3d leavingTangent(Side side) {
  switch (side) {
    case Side::kRight: return {1, 0, 0};
    case Side::kTop: return {0, 1, 0};
    case Side::kLeft: return {-1, 0, 0};
    case Side::kBottom: return {0, -1, 0};
    case Side::kNone: break;
  }
  return {};
}

ge::Vector3d arrivingTangent(Side side) { return -leavingTangent(side); }

ge::Vector3d marginTangent(const ge::Point3d& a, const ge::Point3d& b, double margin) {
  if (b.x - margin > a.x) return {1, 0, 0};
  if (a.x - margin > b.x) return {-1, 0, 0};
  if (a.y > b.y + margin) return {0, -1, 0};
  return {0, 1, 0};
}

Side nearestSide(const ge::Extents3d& box, const ge::Point3d& p) {
  const std::pair<double, Side> distances[] = {{std::abs(p.x - box.max.x), Side::kRight},
                                               {std::abs(p.y - box.max.y), Side::kTop},
                                               {std::abs(p.x - box.min.x), Side::kLeft},
                                               {std::abs(p.y - box.min.y), Side::kBottom}};
  auto best = std::min_element(std::begin(distances), std::end(distances),
                               [](const auto& a, const auto& b) { return a.first < b.first; });
  return best->second;
}

void attachConnector(host::Host& host, host::ObjectId shape, host::ObjectId connector) {
  std::optional<host::Entity> e = host.drawing.read(shape);
  if (!e || !host.classes) return;
  std::vector<host::ObjectId> reactors = host.drawing.reactorsOf(shape);
  if (!reactors.empty()) {
    // One reactor per shape: a later connector joins the list of the one it has.
    for (host::ObjectId r : reactors)
      if (LinkLineToNotify* link = linkLineOf(host, r)) {
        if (std::optional<SideMiddles> now = currentSides(host, e->data); now && link->connectors.empty())
          link->sides = *now;
        link->connectors.push_back(connector);
      }
    return;
  }
  std::optional<host::ObjectId> dictionary = linkLineDictionary(host.drawing);
  if (!dictionary) return;
  host::ObjectId reactor;
  if (host.classes->newObject(kLinkLineClass, reactor) != ErrorStatus::eOk) return;
  std::string key = newGuidKey();
  if (host.drawing.dictionaryLookup(*dictionary, key)) {
    host.drawing.erase(reactor);
    host.editor.print(key);
    return;
  }
  host.drawing.dictionarySet(*dictionary, key, reactor);
  host.drawing.addReactor(shape, reactor);
  if (LinkLineToNotify* link = linkLineOf(host, reactor)) {
    if (std::optional<SideMiddles> now = currentSides(host, e->data)) link->sides = *now;
    link->connectors.push_back(connector);
  }
}

}  // namespace commands
