// Picks and selection sets of the command line.
#include <algorithm>
#include <unordered_set>

#include "host/codes.h"
#include "standalone/editor/command_line.h"
#include "standalone/editor/entity_filter.h"
#include "standalone/editor/selection_shapes.h"

namespace standalone {

namespace {

std::string countLine(std::size_t found, std::size_t duplicates, std::size_t removed, std::size_t total,
                      bool first) {
  std::string line = std::to_string(found) + " found";
  if (duplicates) line += " (" + std::to_string(duplicates) + " duplicate)";
  if (removed) line += ", " + std::to_string(removed) + " removed";
  if (!first || duplicates || removed) line += ", " + std::to_string(total) + " total";
  return line + "\n";
}

std::string modeName(std::string_view mode) {
  std::string m = toUpperAscii(mode);
  if (m.starts_with("_")) m.erase(0, 1);
  return m;
}

// The points of a selection polygon or fence as the user gave them.
struct OutlineAnswer {
  std::vector<ge::Point3d> points;
  bool cancelled = false;
};

// Asks for the points of a polygon (which may not cross or touch itself) or
// a fence until an empty answer; Undo takes the last point back. ask gives
// nothing on a cancel; toPoint reads a point answer.
template <class Ask, class ToPoint, class Complain>
OutlineAnswer askOutline(std::string_view firstPrompt, bool polygon, Ask ask, ToPoint toPoint, Complain complain) {
  OutlineAnswer out;
  while (true) {
    std::optional<std::string> text = ask(out.points.empty() ? firstPrompt : "Specify endpoint of line or [Undo]: ");
    if (!text) {
      out.cancelled = true;
      return out;
    }
    if (text->empty()) return out;
    std::string word = toUpperAscii(*text);
    if (!out.points.empty() && (word == "U" || word == "UNDO")) {
      out.points.pop_back();
      continue;
    }
    std::optional<ge::Point3d> p = toPoint(*text);
    if (!p) {
      complain("Invalid point.");
    } else if (polygon && polygonWouldCrossItself(outlineOf(out.points), {p->x, p->y})) {
      complain("Invalid point: the polygon cannot cross or touch itself.");
    } else {
      out.points.push_back(*p);
    }
  }
}

}  // namespace

std::vector<host::ObjectId> CommandLine::selectionAnswer(const std::string& text, bool& understood,
                                                         bool& cancelled) {
  understood = true;
  cancelled = false;
  std::string word = toUpperAscii(text);
  if (word == "ALL") return finder_.all();
  if (word == "L" || word == "LAST") {
    std::optional<host::ObjectId> id = finder_.last();
    return id ? std::vector<host::ObjectId>{*id} : std::vector<host::ObjectId>{};
  }
  if (word == "P" || word == "PREVIOUS") return previous_;
  if (word == "W" || word == "WINDOW" || word == "C" || word == "CROSSING") {
    std::optional<ge::Point3d> a = askCorner("Specify first corner: ");
    std::optional<ge::Point3d> b = a ? askCorner("Specify opposite corner: ") : std::nullopt;
    if (!b) {
      cancelled = true;
      return {};
    }
    if (word.front() == 'C') crossings_.push_back({{a->x, a->y}, {b->x, a->y}, {b->x, b->y}, {a->x, b->y}});
    return finder_.inWindow(*a, *b, word.front() == 'C');
  }
  bool windowPolygon = word == "WP" || word == "WPOLYGON", crossingPolygon = word == "CP" || word == "CPOLYGON";
  if (windowPolygon || crossingPolygon || word == "F" || word == "FENCE") {
    auto askText = [this](std::string_view prompt) -> std::optional<std::string> {
      Answer a = ask(prompt, false);
      if (a.kind == Reply::kCancel) return std::nullopt;
      return a.text;
    };
    auto toPoint = [this](const std::string& answer) -> std::optional<ge::Point3d> {
      std::optional<PointAnswer> p = parsePoint(answer);
      if (!p) return std::nullopt;
      lastPoint_ = resolvePoint(*p, lastPoint_);
      return lastPoint_;
    };
    auto complainAbout = [this](std::string_view why) { complain(why); };
    bool polygon = windowPolygon || crossingPolygon;
    OutlineAnswer outline =
        askOutline(polygon ? "First polygon point: " : "First fence point: ", polygon, askText, toPoint, complainAbout);
    cancelled = outline.cancelled;
    if (cancelled) return {};
    if (crossingPolygon) crossings_.push_back(outlineOf(outline.points));
    return polygon ? finder_.inPolygon(outline.points, crossingPolygon) : finder_.alongFence(outline.points);
  }
  if (parseHandleAnswer(text)) {
    std::optional<host::ObjectId> id = finder_.byHandle(text);
    return id ? std::vector<host::ObjectId>{*id} : std::vector<host::ObjectId>{};
  }
  if (std::optional<PointAnswer> p = parsePoint(text)) {
    lastPoint_ = resolvePoint(*p, lastPoint_);
    std::optional<host::ObjectId> id = finder_.pickAt(lastPoint_, pickAperture());
    return id ? std::vector<host::ObjectId>{*id} : std::vector<host::ObjectId>{};
  }
  understood = false;
  return {};
}

int CommandLine::interactiveSelection(bool single, const EntityFilter& filter, std::vector<host::ObjectId>& set) {
  EntityFinder::CacheScope cache(finder_);
  std::unordered_set<host::ObjectId> members(set.begin(), set.end());  // membership without a scan of the set
  Expecting objects(*this, InputKind::kSelection);
  bool removing = false;
  while (true) {
    Answer a = ask(removing ? "Remove objects: " : "Select objects: ", false);
    if (a.kind == Reply::kCancel) return host::RTCAN;
    if (a.text.empty()) break;
    std::string word = toUpperAscii(a.text);
    if (word == "R" || word == "REMOVE" || word == "A" || word == "ADD") {
      removing = word.front() == 'R';
      continue;
    }
    bool understood = false, cancelled = false;
    std::vector<host::ObjectId> found = selectionAnswer(a.text, understood, cancelled);
    if (cancelled) return host::RTCAN;
    if (!understood) {
      complain("*Invalid selection*\nExpects a point, an entity handle (#1F), or Window/Crossing/WPolygon/CPolygon/Fence/Last/Previous/ALL/Add/Remove.");
      continue;
    }
    std::size_t filteredOut = 0, duplicates = 0, removed = 0;
    bool first = set.empty();
    for (host::ObjectId id : found) {
      std::optional<host::Entity> e = drawing_.read(id);
      if (!e) continue;
      if (!filter.accepts(*e)) {
        ++filteredOut;
        continue;
      }
      bool member = members.count(id) > 0;
      if (removing) {
        if (member) {
          members.erase(id);
          ++removed;
        }
      } else if (member) {
        ++duplicates;
      } else {
        set.push_back(id);
        members.insert(id);
      }
    }
    if (removed) std::erase_if(set, [&](host::ObjectId id) { return members.count(id) == 0; });
    print(countLine(found.size(), duplicates, removed, set.size(), first && !removing));
    if (filteredOut) print(std::to_string(filteredOut) + (filteredOut == 1 ? " was" : " were") + " filtered out.\n");
    if (single) break;  // one selection attempt only
  }
  return host::RTNORM;
}

void CommandLine::finishSelection(std::vector<host::ObjectId>& selection) {
  previous_ = selection;
}

int CommandLine::ssget(std::string_view mode, const ge::Point3d* p1, const ge::Point3d* p2,
                       const host::ResBufList* filterList, std::vector<host::ObjectId>& selection) {
  selection.clear();
  crossings_.clear();
  EntityFilter filter;
  if (filterList) {
    std::optional<EntityFilter> parsed = EntityFilter::parse(*filterList);
    if (!parsed) return host::RTERROR;
    filter = *parsed;
  }
  std::string m = modeName(mode);
  std::vector<host::ObjectId> candidates;
  if (m.empty() || m.starts_with(":S")) {
    int rc = interactiveSelection(!m.empty(), filter, selection);
    if (rc != host::RTNORM) {
      selection.clear();
      return rc;
    }
  } else {
    if (m == "X") candidates = finder_.wholeDrawing();
    else if (m == "A") candidates = finder_.all();
    else if (m == "L") {
      if (std::optional<host::ObjectId> id = finder_.last()) candidates.push_back(*id);
    } else if (m == "P") candidates = previous_;
    else if ((m == "W" || m == "C") && p1 && p2) {
      candidates = finder_.inWindow(*p1, *p2, m == "C");
      if (m == "C") crossings_.push_back({{p1->x, p1->y}, {p2->x, p1->y}, {p2->x, p2->y}, {p1->x, p2->y}});
    }
    else return host::RTERROR;  // a mode this host does not offer
    for (host::ObjectId id : candidates) {
      std::optional<host::Entity> e = drawing_.read(id);
      if (e && filter.accepts(*e)) selection.push_back(id);
    }
  }
  if (selection.empty()) return host::RTERROR;
  finishSelection(selection);
  return host::RTNORM;
}

}  // namespace standalone
