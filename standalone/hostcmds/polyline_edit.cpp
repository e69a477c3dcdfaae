#include "standalone/hostcmds/polyline_edit.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include "host/codes.h"

namespace standalone {

namespace {

constexpr const char* kFirstPrompt = "Select polyline or [Multiple]: ";
constexpr const char* kMultipleOptions = "Enter an option [Close/Open/Join/Width/Fit/Spline/Decurve/Ltype gen/Reverse/Undo]: ";
constexpr const char* kOptionKeywords = "Close Open Join Width Edit Fit Spline Decurve Ltype Reverse Undo";
constexpr const char* kWidthPrompt = "Specify new width for all segments: ";

bool isPolyline(const host::EntityData& d) {
  return std::holds_alternative<host::LwPolyline>(d) || std::holds_alternative<host::Polyline2d>(d) ||
         std::holds_alternative<host::Polyline3d>(d);
}

bool isClosed(const host::EntityData& d) {
  if (auto* lw = std::get_if<host::LwPolyline>(&d)) return lw->closed;
  if (auto* p2 = std::get_if<host::Polyline2d>(&d)) return p2->closed;
  if (auto* p3 = std::get_if<host::Polyline3d>(&d)) return p3->closed;
  return false;
}

// The option prompt of a single polyline: Open stands in for Close on a closed
// one; a 3D polyline has no widths and no arcs.
std::string singleOptions(const host::EntityData& d) {
  std::string closeOrOpen = isClosed(d) ? "Open" : "Close";
  if (std::holds_alternative<host::Polyline3d>(d))
    return "Enter an option [" + closeOrOpen + "/Join/Edit vertex/Spline curve/Decurve/Reverse/Undo]: ";
  return "Enter an option [" + closeOrOpen + "/Join/Width/Edit vertex/Fit/Spline/Decurve/Ltype gen/Reverse/Undo]: ";
}

bool setPlinegen(host::EntityData& d, bool on) {
  if (auto* lw = std::get_if<host::LwPolyline>(&d)) return lw->plinegen = on, true;
  if (auto* p2 = std::get_if<host::Polyline2d>(&d)) return p2->plinegen = on, true;
  return false;
}

bool plinegenOf(const host::EntityData& d) {
  if (auto* lw = std::get_if<host::LwPolyline>(&d)) return lw->plinegen;
  if (auto* p2 = std::get_if<host::Polyline2d>(&d)) return p2->plinegen;
  return false;
}

// One PEDIT run over its polylines, with the records before each option kept for Undo.
class PolylineEdit {
 public:
  explicit PolylineEdit(HostCommandContext& c) : c_(c) {}

  void operator()() {
    if (!choosePolylines()) return;
    while (true) {
      c_.editor.initGet(0, kOptionKeywords);
      std::string option;
      int rc = c_.editor.getKword(prompt(), option);
      if (rc != host::RTNORM) return;  // Enter ends the command, a cancel too
      apply(option);
    }
  }

 private:
  bool choosePolylines() {
    while (true) {
      c_.editor.initGet(0, "Multiple");
      host::ObjectId id;
      ge::Point3d picked;
      int rc = c_.editor.entSel(kFirstPrompt, id, picked);
      if (rc == host::RTKWORD) return selectMultiple();
      if (rc == host::RTCAN || rc == host::RTNONE) return false;
      if (rc != host::RTNORM) continue;
      std::optional<host::Entity> e = c_.drawing.read(id);
      if (!e || !isPolyline(e->data)) {
        c_.editor.print("Object selected is not a polyline.\n");
        continue;
      }
      ids_ = {id};
      multiple_ = false;
      return true;
    }
  }

  bool selectMultiple() {
    host::ResBufList filter{host::ResBuf::group(-4, "<or"), host::ResBuf::group(0, "POLYLINE"),
                            host::ResBuf::group(0, "LWPOLYLINE"), host::ResBuf::group(0, "LINE"),
                            host::ResBuf::group(0, "ARC"), host::ResBuf::group(0, "SPLINE"),
                            host::ResBuf::group(-4, "or>")};
    if (c_.editor.ssget("", nullptr, nullptr, &filter, ids_) != host::RTNORM || ids_.empty()) return false;
    multiple_ = true;
    offerConversion();
    return !ids_.empty();
  }

  // Lines, arcs and splines among the selection become polylines when the
  // user agrees; otherwise they drop out of the edit.
  void offerConversion() {
    std::vector<host::ObjectId> others;
    for (host::ObjectId id : ids_)
      if (std::optional<host::Entity> e = c_.drawing.read(id); e && !isPolyline(e->data)) others.push_back(id);
    if (others.empty()) return;
    c_.editor.initGet(0, "Yes No");
    std::string answer;
    int rc = c_.editor.getKword("Convert Lines, Arcs and Splines to polylines [Yes/No]? <Y>: ", answer);
    bool convert = rc == host::RTNONE || (rc == host::RTNORM && answer == "Yes");
    int precision = 10;
    bool anySpline = std::any_of(others.begin(), others.end(), [this](host::ObjectId id) {
      std::optional<host::Entity> e = c_.drawing.read(id);
      return e && std::holds_alternative<host::Spline>(e->data);
    });
    if (convert && anySpline) {
      c_.editor.initGet(host::RSG_NONEG, "");
      int answerPrecision = precision;
      if (c_.editor.getInt("Specify a precision <10>: ", answerPrecision) == host::RTNORM)
        precision = std::clamp(answerPrecision, 0, 99);
    }
    for (host::ObjectId id : others) {
      std::optional<host::Entity> e = c_.drawing.read(id);
      if (!convert || !e || !toPolyline(*e, precision) || c_.drawing.write(*e) != host::ErrorStatus::eOk)
        std::erase(ids_, id);
    }
  }

  // A line or an arc in the XY plane as a lightweight polyline, a spline as
  // the host's polyline approximation; false when it cannot be converted.
  bool toPolyline(host::Entity& e, int precision) {
    if (auto* line = std::get_if<host::Line>(&e.data)) {
      if (line->start.z != line->end.z) return false;
      host::LwPolyline lw;
      lw.vertices = {{line->start.x, line->start.y}, {line->end.x, line->end.y}};
      lw.elevation = line->start.z;
      e.data = std::move(lw);
      return true;
    }
    if (auto* arc = std::get_if<host::Arc>(&e.data)) {
      if (arc->normal != ge::kZAxis) return false;
      double sweep = arc->endAngle - arc->startAngle;
      while (sweep <= 0) sweep += 2 * 3.14159265358979323846;
      host::LwPolyline lw;
      lw.vertices = {{arc->center.x + arc->radius * std::cos(arc->startAngle),
                      arc->center.y + arc->radius * std::sin(arc->startAngle), std::tan(sweep / 4)},
                     {arc->center.x + arc->radius * std::cos(arc->endAngle),
                      arc->center.y + arc->radius * std::sin(arc->endAngle)}};
      lw.elevation = arc->center.z;
      e.data = std::move(lw);
      return true;
    }
    if (auto* spline = std::get_if<host::Spline>(&e.data)) {
      host::EntityData result;
      if (c_.curves.splineToPolyline(*spline, precision, result) != host::ErrorStatus::eOk) return false;
      e.data = std::move(result);
      return true;
    }
    return false;
  }

  std::string prompt() const {
    if (multiple_) return kMultipleOptions;
    std::optional<host::Entity> e = c_.drawing.read(ids_.front());
    return e ? singleOptions(e->data) : kMultipleOptions;
  }

  // Snapshot of every edited record, so Undo can put them back.
  void remember() {
    UndoStep step;
    for (host::ObjectId id : ids_)
      if (std::optional<host::Entity> e = c_.drawing.read(id)) step.written.push_back(*e);
    undo_.push_back(std::move(step));
  }

  template <class Edit>
  void editEach(Edit edit) {
    remember();
    for (host::ObjectId id : ids_) {
      std::optional<host::Entity> e = c_.drawing.read(id);
      if (e && edit(*e)) c_.drawing.write(*e);
    }
  }

  void apply(const std::string& option) {
    if (option == "Close") return editEach([this](host::Entity& e) { return closeOrOpen(e, true); });
    if (option == "Open") return editEach([this](host::Entity& e) { return closeOrOpen(e, false); });
    if (option == "Width") return width();
    if (option == "Spline") return editEach([this](host::Entity& e) { return splineFit(e); });
    if (option == "Fit") return editEach([this](host::Entity& e) { return curveFit(e); });
    if (option == "Decurve") return editEach([](host::Entity& e) { return decurvePolyline(e.data); });
    if (option == "Reverse")
      return editEach([this](host::Entity& e) { return c_.curves.reverseCurve(e.data) == host::ErrorStatus::eOk; });
    if (option == "Ltype") return linetypeGeneration();
    if (option == "Undo") return undo();
    if (option == "Join") return join();
    if (option == "Edit") return editVertex();
    c_.editor.print("The " + option + " option is not available in this build yet.\n");
  }

  // A spline-fit 2D polyline is fitted again on its frame, now closed or open.
  bool closeOrOpen(host::Entity& e, bool closed) {
    if (!setPolylineClosed(e.data, closed)) return false;
    auto* pl = std::get_if<host::Polyline2d>(&e.data);
    if (!pl || !pl->splineFit) return true;
    int type = pl->curveType == host::PolyCurveType::kQuadraticSpline ? 5 : 6;
    c_.curves.fitPolyline2d(*pl, type, shortVariable(c_.sysvars, "SPLINESEGS", 8));
    return true;
  }

  // Join on one polyline: the selected pieces that meet its ends.
  void join() {
    if (multiple_) return joinMultiple();
    std::optional<host::Entity> e = c_.drawing.read(ids_.front());
    if (!e) return;
    std::vector<host::ObjectId> selected;
    if (c_.editor.ssget("", nullptr, nullptr, nullptr, selected) != host::RTNORM) return;
    std::erase(selected, e->id);
    std::vector<host::Entity> pieces;
    std::vector<host::EntityData> pieceData;
    for (host::ObjectId id : selected) {
      pieces.push_back(c_.drawing.read(id).value_or(host::Entity{}));
      pieceData.push_back(pieces.back().data);
    }
    remember();
    std::vector<bool> used;
    int added = 0;
    if (auto* lw = std::get_if<host::LwPolyline>(&e->data)) added = joinToPolyline(*lw, pieceData, used);
    else if (auto* p2 = std::get_if<host::Polyline2d>(&e->data)) added = joinTo2dPolyline(*p2, pieceData, used);
    else if (auto* p3 = std::get_if<host::Polyline3d>(&e->data)) added = joinTo3dPolyline(*p3, pieceData, used);
    if (added > 0) {
      c_.drawing.write(*e);
      for (std::size_t i = 0; i < selected.size(); ++i)
        if (used[i]) eraseJoined(pieces[i]);
    }
    printAdded(added);
  }

  void printAdded(int added) {
    c_.editor.print(std::to_string(added) + (added == 1 ? " segment" : " segments") + " added to polyline\n");
  }

  // A piece taken into a polyline goes, and comes back on Undo.
  void eraseJoined(const host::Entity& piece) {
    if (c_.drawing.erase(piece.id) == host::ErrorStatus::eOk) undo_.back().erased.push_back(piece);
  }

  // Join over Multiple: the fuzz distance (with the join type on request),
  // then the selected lightweight polylines joined among themselves.
  void joinMultiple() {
    while (true) {
      c_.editor.print(std::string("Join Type = ") + joinTypeName() + "\n");
      c_.editor.initGet(host::RSG_NONEG, "Jointype");
      double fuzz = fuzz_;
      int rc = c_.editor.getDist(nullptr, "Enter fuzz distance or [Jointype] <" + formatDistance(fuzz_) + ">: ", fuzz);
      if (rc == host::RTKWORD) {
        c_.editor.initGet(0, "Extend Add Both");
        std::string answer;
        int typeRc = c_.editor.getKword("Enter join type [Extend/Add/Both] <Extend>: ", answer);
        if (typeRc == host::RTNONE) joinType_ = JoinType::kExtend;
        else if (typeRc != host::RTNORM) return;
        else joinType_ = answer == "Add" ? JoinType::kAdd : answer == "Both" ? JoinType::kBoth : JoinType::kExtend;
        continue;
      }
      if (rc == host::RTNORM) fuzz_ = fuzz;
      else if (rc != host::RTNONE) return;
      break;
    }
    std::vector<host::Entity> records;
    std::vector<host::LwPolyline> polylines;
    for (host::ObjectId id : ids_) {
      std::optional<host::Entity> e = c_.drawing.read(id);
      if (!e || !std::holds_alternative<host::LwPolyline>(e->data)) continue;
      polylines.push_back(std::get<host::LwPolyline>(e->data));
      records.push_back(std::move(*e));
    }
    remember();
    std::vector<std::size_t> joinedInto;
    int added = joinPolylines(polylines, fuzz_, joinType_, joinedInto);
    for (std::size_t i = 0; i < records.size(); ++i) {
      if (joinedInto[i] != i) {
        eraseJoined(records[i]);
        std::erase(ids_, records[i].id);
      } else if (std::get<host::LwPolyline>(records[i].data) != polylines[i]) {
        records[i].data = polylines[i];
        c_.drawing.write(records[i]);
      }
    }
    printAdded(added);
  }

  const char* joinTypeName() const {
    return joinType_ == JoinType::kAdd ? "Add" : joinType_ == JoinType::kBoth ? "Both" : "Extend";
  }

  // A distance as the host shows a default: four decimals.
  static std::string formatDistance(double d) {
    char text[64];
    std::snprintf(text, sizeof text, "%.4f", d);
    return text;
  }

  // Edit vertex on one polyline: a marked vertex moved along with Next and
  // Previous, moved itself, or followed by a new one.
  void editVertex() {
    if (multiple_) return;
    std::size_t at = 0;
    while (true) {
      c_.editor.initGet(0, "Next Previous Break Insert Move Regen Straighten Tangent Width eXit");
      std::string option;
      int rc = c_.editor.getKword(
          "Enter a vertex editing option\n"
          "[Next/Previous/Break/Insert/Move/Regen/Straighten/Tangent/Width/eXit] <N>: ",
          option);
      if (rc == host::RTNONE) option = "Next";
      else if (rc != host::RTNORM) return;
      std::optional<host::Entity> e = c_.drawing.read(ids_.front());
      if (!e || option == "eXit") return;
      std::size_t n = vertexCount(e->data);
      if (option == "Next") {
        at = std::min(at + 1, n - 1);
      } else if (option == "Previous") {
        at = at > 0 ? at - 1 : 0;
      } else if (option == "Move" || option == "Insert") {
        bool moving = option == "Move";
        ge::Point3d p;
        if (c_.editor.getPoint(nullptr,
                               moving ? "Specify new location for marked vertex: " : "Specify location for new vertex: ",
                               p) != host::RTNORM)
          continue;
        remember();
        if (moving ? moveVertex(e->data, at, p) : insertVertexAfter(e->data, at, p)) c_.drawing.write(*e);
      } else {
        c_.editor.print("The " + option + " option is not available in this build yet.\n");
      }
    }
  }

  void width() {
    double w = 0;
    c_.editor.initGet(host::RSG_NONEG, "");
    if (c_.editor.getDist(nullptr, kWidthPrompt, w) != host::RTNORM) return;
    editEach([w](host::Entity& e) { return setUniformWidth(e.data, w); });
  }

  void linetypeGeneration() {
    bool on = false;
    if (std::optional<host::Entity> e = c_.drawing.read(ids_.front())) on = plinegenOf(e->data);
    c_.editor.initGet(0, "ON OFF");
    std::string answer;
    int rc = c_.editor.getKword(std::string("Enter polyline linetype generation option [ON/OFF] <") +
                                    (on ? "On" : "Off") + ">: ",
                                answer);
    if (rc == host::RTNORM) on = answer == "ON";
    else if (rc != host::RTNONE) return;
    editEach([on](host::Entity& e) { return setPlinegen(e.data, on); });
  }

  // The 2D polyline a fit works on: a lightweight polyline becomes one first,
  // as in the host, which keeps fitted polylines in the old form.
  std::optional<host::Polyline2d> fittable(const host::Entity& e, const char* what) {
    host::Polyline2d pl;
    if (auto* lw = std::get_if<host::LwPolyline>(&e.data)) {
      if (c_.curves.convertLwTo2d(*lw, pl) != host::ErrorStatus::eObjectToBeDeleted) return std::nullopt;
      return pl;
    }
    if (auto* p2 = std::get_if<host::Polyline2d>(&e.data)) return *p2;
    c_.editor.print(std::string(what) + " of 3D polylines is not available in this build yet.\n");
    return std::nullopt;
  }

  // Curve fitting: arcs through every frame vertex.
  bool curveFit(host::Entity& e) {
    std::optional<host::Polyline2d> pl = fittable(e, "Curve fitting");
    if (!pl) return false;
    host::EntityData frame = *pl;
    decurvePolyline(frame);
    pl = std::get<host::Polyline2d>(frame);
    pl->curveFit = true;
    if (c_.curves.fitPolyline2d(*pl, 0, 0) != host::ErrorStatus::eOk) return false;
    e.data = std::move(*pl);
    return true;
  }

  // Spline fitting of a 2D polyline on its vertices as the frame.
  bool splineFit(host::Entity& e) {
    std::optional<host::Polyline2d> found = fittable(e, "Spline fitting");
    if (!found) return false;
    host::Polyline2d pl = std::move(*found);
    int type = shortVariable(c_.sysvars, "SPLINETYPE", 6);
    int segs = shortVariable(c_.sysvars, "SPLINESEGS", 8);
    if (c_.curves.fitPolyline2d(pl, type, segs) != host::ErrorStatus::eOk) return false;
    e.data = std::move(pl);
    return true;
  }

  void undo() {
    if (undo_.empty()) {
      c_.editor.print("All changes have been undone.\n");
      return;
    }
    UndoStep& step = undo_.back();
    for (const host::Entity& e : step.written) c_.drawing.write(e);
    // Joined pieces come back as new entities, and back into the edit.
    for (host::Entity& e : step.erased) {
      if (c_.drawing.append(e, e.owner) == host::ErrorStatus::eOk && multiple_) ids_.push_back(e.id);
    }
    undo_.pop_back();
  }

  // What an option changed: the records before it, and the entities it erased.
  struct UndoStep {
    std::vector<host::Entity> written, erased;
  };

  HostCommandContext& c_;
  std::vector<host::ObjectId> ids_;
  bool multiple_ = false;
  double fuzz_ = 0;
  JoinType joinType_ = JoinType::kExtend;
  std::vector<UndoStep> undo_;
};

}  // namespace

bool setUniformWidth(host::EntityData& d, double width) {
  if (auto* lw = std::get_if<host::LwPolyline>(&d)) {
    lw->constantWidth = width;
    for (auto& v : lw->vertices) v.startWidth = v.endWidth = 0;
    return true;
  }
  if (auto* p2 = std::get_if<host::Polyline2d>(&d)) {
    p2->defaultStartWidth = p2->defaultEndWidth = width;
    for (auto& v : p2->vertices) v.startWidth = v.endWidth = width;
    return true;
  }
  return false;
}

bool setPolylineClosed(host::EntityData& d, bool closed) {
  if (auto* lw = std::get_if<host::LwPolyline>(&d)) return lw->closed = closed, true;
  if (auto* p2 = std::get_if<host::Polyline2d>(&d)) return p2->closed = closed, true;
  if (auto* p3 = std::get_if<host::Polyline3d>(&d)) return p3->closed = closed, true;
  return false;
}

bool decurvePolyline(host::EntityData& d) {
  if (auto* p2 = std::get_if<host::Polyline2d>(&d)) {
    if (p2->splineFit) {
      std::erase_if(p2->vertices, [](const host::Vertex2d& v) { return !(v.flags & host::kVertexSplineFrame); });
    } else if (p2->curveFit) {
      std::erase_if(p2->vertices, [](const host::Vertex2d& v) { return v.flags & host::kVertexCurveFitExtra; });
    }
    for (auto& v : p2->vertices) v.flags &= ~(host::kVertexSplineFrame | host::kVertexCurveFitExtra);
    p2->splineFit = p2->curveFit = false;
    p2->curveType = host::PolyCurveType::kNone;
    return true;
  }
  if (auto* p3 = std::get_if<host::Polyline3d>(&d)) {
    if (p3->splineFit)
      std::erase_if(p3->vertices, [](const host::Vertex3d& v) { return !(v.flags & host::kVertexSplineFrame); });
    for (auto& v : p3->vertices) v.flags = host::kVertex3dPolyline;
    p3->splineFit = false;
    p3->curveType = host::PolyCurveType::kNone;
    return true;
  }
  return std::holds_alternative<host::LwPolyline>(d);
}

void addPolylineEditCommands(HostCommandRunner& runner) {
  runner.addHostCommand("PEDIT", [](HostCommandContext& c) {
    PolylineEdit edit(c);
    edit();
  });
}

}  // namespace standalone
