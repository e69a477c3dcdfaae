// Test helper for the interop check: loads a DXF file, changes the first
// LINE of model space (moves its end point by +1,+2), appends a bulged
// LWPOLYLINE, a fit-point SPLINE and a HELIX, and saves. Prints the handles it touched.
// With --rewrite-all every interpreted entity is also written back unchanged,
// so the whole drawing is regenerated from the records instead of copied.
// With IN OUT --place-inserts DX DY ROT SX SY SZ NX NY NZ the block references with
// attributes are moved instead (see placeInserts).
// With --new VERSION OUT.dxf it writes a new drawing with every kind made here
// (R12: with an image, whose frame is all that version can hold).
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string_view>
#include <vector>

#include "standalone/db/dxf_reader.h"
#include "standalone/db/dxf_writer.h"

namespace {

// A new drawing of the version with one entity of every kind made here.
int makeNewDrawing(const char* version, const char* out) {
  auto db = standalone::DrawingDatabase::createEmpty(version);
  host::Spline spline{.knots = {0, 0, 0, 0, 1, 1, 1, 1}, .controlPoints = {{0, 0, 0}, {1, 2, 0}, {3, 2, 0}, {4, 0, 0}}};
  std::vector<host::EntityData> kinds{host::Line{{0, 0, 0}, {1, 1, 0}},
                                      host::Circle{{0, 0, 0}, 2},
                                      host::Arc{{0, 0, 0}, 2, 0, 1, 0, {0, 0, -1}},
                                      host::Ellipse{{0, 0, 0}, {2, 0, 0}, ge::kZAxis, 0.5},
                                      host::LwPolyline{{{0, 0, 0.3, 0, 0}, {1, 0, 0, 0, 0}}},
                                      host::Polyline2d{{{{0, 0, 0}}, {{1, 1, 0}}}},
                                      host::Polyline3d{{{{0, 0, 0}}, {{1, 1, 1}}}},
                                      spline,
                                      host::Helix{.curve = spline, .startPoint = {1, 0, 0}},
                                      host::Text{.text = "new text 中文"},
                                      host::MText{.text = "new\\Pmtext"},
                                      host::PointEntity{{1, 2, 3}},
                                      host::Hatch{.paths = {{.flags = 3,
                                                             .polyline = {{0, 0, 0}, {2, 0, 0.5}, {2, 2, 0}}}}}};
  // An image needs its definition object in later versions; R12 gets only its frame.
  if (db.version() == "AC1009")
    kinds.push_back(host::Image{.insertion = {5, 5, 0}, .uVector = {0.01, 0, 0}, .vVector = {0, 0.01, 0},
                                .widthPixels = 640, .heightPixels = 480});
  for (auto& data : kinds) {
    host::Entity e;
    e.props.layer = "MADE HERE";
    e.data = data;
    db.append(e);
  }
  // A linetype the drawing's table lacks,
  host::Entity dashed;
  dashed.props.linetype = "CORVANE_DASH";
  dashed.data = host::Line{{0, 0, 0}, {5, 0, 0}};
  db.append(dashed);
  host::Entity styled;  // and a text style it lacks
  styled.data = host::Text{.position = {0, 5, 0}, .text = "styled", .style = "CORVANE_NOTES"};
  db.append(styled);
  standalone::saveDxf(db, out);
  return 0;
}

}  // namespace

// Moves every block reference of model space that has attributes: shifted by
// (dx, dy), turned by rot degrees, its scales multiplied by (sx, sy, sz), and
// given the normal (nx, ny, nz) unless that is zero.
int placeInserts(const char* in, const char* out, char** numbers) {
  double v[9];
  for (int i = 0; i < 9; ++i) v[i] = std::strtod(numbers[i], nullptr);
  auto db = standalone::loadDxf(in);
  for (auto id : db.entitiesOf(db.modelSpace())) {
    auto e = db.read(id);
    auto* ref = std::get_if<host::BlockReference>(&e->data);
    if (!ref || !ref->hasAttributes) continue;
    ref->position = ref->position + ge::Vector3d{v[0], v[1], 0};
    ref->rotation += v[2] * 3.14159265358979323846 / 180;
    ref->scale = {ref->scale.x * v[3], ref->scale.y * v[4], ref->scale.z * v[5]};
    if (ge::Vector3d n{v[6], v[7], v[8]}; n.length() > 0) ref->normal = n;
    db.write(*e);
  }
  standalone::saveDxf(db, out);
  return 0;
}

int main(int argc, char** argv) {
  if (argc == 13 && std::string_view(argv[3]) == "--place-inserts") {
    try {
      return placeInserts(argv[1], argv[2], argv + 4);
    } catch (const std::exception& e) {
      std::fprintf(stderr, "%s\n", e.what());
      return 1;
    }
  }
  if (argc == 4 && std::string_view(argv[1]) == "--new") {
    try {
      return makeNewDrawing(argv[2], argv[3]);
    } catch (const std::exception& e) {
      std::fprintf(stderr, "%s\n", e.what());
      return 1;
    }
  }
  bool rewriteAll = argc == 4 && std::string_view(argv[3]) == "--rewrite-all";
  if (argc != 3 && !rewriteAll) {
    std::fprintf(stderr, "usage: db_roundtrip_tool IN.dxf OUT.dxf [--rewrite-all]\n");
    return 2;
  }
  try {
    auto db = standalone::loadDxf(argv[1]);
    if (rewriteAll) {
      std::vector<host::ObjectId> spaces{db.modelSpace()};
      for (const auto& name : db.blockNames()) spaces.push_back(*db.findBlock(name));
      for (auto space : spaces)
        for (auto id : db.entitiesOf(space))
          if (auto e = db.read(id); e && !std::holds_alternative<host::OtherEntity>(e->data)) db.write(*e);
    }
    std::uint64_t modified = 0;
    for (auto id : db.entitiesOf(db.modelSpace())) {
      auto e = db.read(id);
      if (auto* line = std::get_if<host::Line>(&e->data)) {
        line->end = line->end + ge::Vector3d{1, 2, 0};
        db.write(*e);
        modified = id.value;
        break;
      }
    }
    host::Entity pl;
    pl.props = db.defaultProps();
    pl.props.layer = "ROUNDTRIP";
    pl.data = host::LwPolyline{.vertices = {{0, 0, 0.5}, {10, 0, 0}, {10, 5, -1}, {0, 5, 0}}, .closed = true};
    db.append(pl);
    std::uint64_t spline = 0, helix = 0;
    if (db.version() > "AC1009") {
      host::Entity sp;
      sp.data = host::Spline{.flags = 8 | 1024, .fitPoints = {{0, 0, 0}, {3, 4, 0}, {7, 1, 0}}, .fitTolerance = 0};
      db.append(sp);
      spline = sp.id.value;
      host::Entity hx;  // one more instance of a class-based kind
      hx.data = host::Helix{.curve = {.knots = {0, 0, 0, 0, 1, 1, 1, 1},
                                      .controlPoints = {{1, 0, 0}, {1, 1, 0.3}, {-1, 1, 0.6}, {-1, 0, 1}}},
                            .startPoint = {1, 0, 0}, .topRadius = 1, .turns = 0.5, .turnHeight = 2};
      db.append(hx);
      helix = hx.id.value;
    }
    standalone::saveDxf(db, argv[2]);
    std::printf("{\"modified\": \"%llX\", \"appended\": \"%llX\", \"spline\": \"%llX\", \"helix\": \"%llX\"}\n",
                static_cast<unsigned long long>(modified), static_cast<unsigned long long>(pl.id.value),
                static_cast<unsigned long long>(spline), static_cast<unsigned long long>(helix));
  } catch (const std::exception& e) {
    std::fprintf(stderr, "%s\n", e.what());
    return 1;
  }
  return 0;
}
