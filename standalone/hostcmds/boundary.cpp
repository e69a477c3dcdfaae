#include "standalone/hostcmds/boundary.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <numbers>
#include <optional>
#include <string>

#include "host/codes.h"
#include "standalone/db/database.h"
#include "standalone/editor/answer_parse.h"
#include "standalone/kernel/path.h"
#include "standalone/kernel/piece_eval.h"

namespace standalone {

namespace {

using kernel::BulgePiece;
using kernel::Vec2;

Vec2 xy(const ge::Point3d& p) { return {p.x, p.y}; }

// Chords of a free-form piece: 128 per turn of an ellipse, 32 per knot span
// of a spline, so that a chord strays from the curve by well under a
// thousandth of its size.
void addChords(const kernel::Piece& piece, std::vector<BulgePiece>& out) {
  std::vector<double> breaks = kernel::pieceBreakpoints(piece);
  int perSpan = 32;
  if (std::holds_alternative<kernel::EllipsePiece>(piece.geometry))
    perSpan = std::max(8, static_cast<int>(std::ceil((piece.p1 - piece.p0) / (2 * std::numbers::pi) * 128 /
                                                      static_cast<double>(breaks.size() - 1))));
  ge::Point3d prev = kernel::piecePoint(piece, breaks.front());
  for (std::size_t s = 0; s + 1 < breaks.size(); ++s)
    for (int k = 1; k <= perSpan; ++k) {
      double u = breaks[s] + (breaks[s + 1] - breaks[s]) * k / perSpan;
      ge::Point3d p = kernel::piecePoint(piece, u);
      out.push_back({xy(prev), xy(p), 0});
      prev = p;
    }
}

void addArc(const kernel::ArcPiece& arc, std::vector<BulgePiece>& out) {
  auto at = [&](double t) { return arc.center + (arc.x * std::cos(t) + arc.y * std::sin(t)) * arc.radius; };
  double turn = arc.normal().z > 0 ? 1 : -1;
  // Halves for anything over half a turn, so that a circle has two ends.
  int parts = std::abs(arc.sweep) > std::numbers::pi ? 2 : 1;
  double step = arc.sweep / parts;
  for (int k = 0; k < parts; ++k) {
    double t0 = arc.start + step * k;
    out.push_back({xy(at(t0)), xy(at(t0 + step)), turn * std::tan(step / 4)});
  }
}

}  // namespace

std::vector<BulgePiece> boundaryPiecesOf(const host::EntityData& e) {
  std::vector<BulgePiece> out;
  std::optional<kernel::Path> path = kernel::pathOf(e);
  if (!path) return out;
  for (const kernel::Piece& piece : path->pieces) {
    if (const auto* line = std::get_if<kernel::LinePiece>(&piece.geometry)) {
      out.push_back({xy(line->a), xy(line->b), 0});
    } else if (const auto* arc = std::get_if<kernel::ArcPiece>(&piece.geometry);
               arc && std::abs(std::abs(arc->normal().z) - 1) < 1e-9) {
      addArc(*arc, out);
    } else {
      addChords(piece, out);
    }
  }
  return out;
}

host::Entity boundaryPolyline(const kernel::Loop& loop, const host::EntityProps& props) {
  host::LwPolyline pl;
  pl.closed = true;
  for (const BulgePiece& p : loop.pieces) pl.vertices.push_back({p.a.x, p.a.y, p.bulge});
  host::Entity e;
  e.props = props;
  e.data = std::move(pl);
  return e;
}

void BoundaryCommand::operator()(HostCommandContext& c) {
  CommandLine& ed = c.editor;
  int made = 0;
  while (true) {
    ed.initGet(0, "Advanced");
    ge::Point3d p;
    int rc = ed.getPoint(nullptr, "Specify internal point or [Advanced options]: ", p);
    if (rc == host::RTKWORD) {
      advanced(c);
      continue;
    }
    if (rc != host::RTNORM) break;
    made += traceAt(c, {p.x, p.y});
  }
  if (made > 0) ed.print("BOUNDARY created " + std::to_string(made) + (made == 1 ? " polyline\n" : " polylines\n"));
}

int BoundaryCommand::traceAt(HostCommandContext& c, Vec2 p) {
  const kernel::Arrangement& arrangement = current(c);
  std::optional<kernel::Arrangement::Region> region = arrangement.regionAt(p);
  if (!region) {
    c.editor.print("A closed boundary cannot be determined.\n");
    return 0;
  }
  host::ResBuf hpbound;
  if (c.sysvars.getVar("HPBOUND", hpbound) == host::RTNORM && std::get<std::int16_t>(hpbound.value) == 0)
    c.editor.print("Regions are not made here; the boundary is a polyline.\n");
  std::vector<std::size_t> loops{region->outer};
  if (islands_) loops.insert(loops.end(), region->islands.begin(), region->islands.end());
  host::EntityProps props = c.drawing.defaultProps();
  for (std::size_t i : loops) {
    host::Entity e = boundaryPolyline(arrangement.loops()[i], props);
    c.drawing.append(e);
  }
  if (auto* db = dynamic_cast<DrawingDatabase*>(&c.drawing); db && db == drawing_) stamp_ = db->changeCount();
  return static_cast<int>(loops.size());
}

const kernel::Arrangement& BoundaryCommand::current(HostCommandContext& c) {
  host::ResBuf gap;
  double gapTolerance = 0;
  if (c.sysvars.getVar("HPGAPTOL", gap) == host::RTNORM)
    if (const auto* d = std::get_if<double>(&gap.value)) gapTolerance = *d;
  auto* db = dynamic_cast<DrawingDatabase*>(&c.drawing);
  if (arrangement_ && db && db == drawing_ && db->changeCount() == stamp_ && gapTolerance == gap_) return *arrangement_;
  std::vector<BulgePiece> pieces;
  for (host::ObjectId id : c.drawing.entitiesOf(c.drawing.currentSpace())) {
    std::optional<host::Entity> e = c.drawing.read(id);
    if (!e || e->props.invisible) continue;
    if (std::optional<host::Color> layer = c.drawing.layerColor(e->props.layer); layer && layer->index < 0) continue;
    std::vector<BulgePiece> more = boundaryPiecesOf(e->data);
    pieces.insert(pieces.end(), more.begin(), more.end());
  }
  arrangement_ = std::make_unique<kernel::Arrangement>(pieces, gapTolerance);
  ++builds_;
  drawing_ = db;
  stamp_ = db ? db->changeCount() : 0;
  gap_ = gapTolerance;
  return *arrangement_;
}

void BoundaryCommand::advanced(HostCommandContext& c) {
  CommandLine& ed = c.editor;
  std::string input;
  ed.getInput(input);
  ed.initGet(0, "Island Object");
  std::string option;
  if (ed.getKword("Enter an option [Island detection/Object type]: ", option) != host::RTNORM) return;
  if (option == "Island") {
    ed.initGet(0, "Yes No");
    std::string answer;
    if (ed.getKword(std::string("Do you want island detection? [Yes/No] <") + (islands_ ? "Y" : "N") + ">: ", answer) ==
            host::RTNORM &&
        !answer.empty())
      islands_ = answer == "Yes";
  } else if (option == "Object") {
    ed.initGet(0, "Polyline");
    std::string answer;
    ed.getKword("Enter type of boundary object [Polyline] <Polyline>: ", answer);
  }
}

std::shared_ptr<BoundaryCommand> addBoundaryCommands(HostCommandRunner& runner) {
  auto command = std::make_shared<BoundaryCommand>();
  runner.addHostCommand("BOUNDARY", [command](HostCommandContext& c) { (*command)(c); });
  runner.addHostCommand("-BOUNDARY", [command](HostCommandContext& c) { (*command)(c); });
  return command;
}

}  // namespace standalone
