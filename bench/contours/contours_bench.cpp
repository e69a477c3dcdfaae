// Contour benchmarks: the faces of a 200 x 200 grid of lines by our planar
// arrangement, and beside it, on the same data in the same run, shapely/GEOS
// noding plus polygonize (grid_faces_shapely.py); INOFFSET on a 50 x 50 grid
// of rooms end to end (time and peak memory).
#include <sys/resource.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "bench/support/plugin_session.h"
#include "bench/support/timing.h"
#include "standalone/hostcmds/boundary.h"
#include "standalone/hostcmds/edit_commands.h"
#include "standalone/hostcmds/pngout.h"
#include "standalone/kernel/arrangement.h"

namespace {

void innerOffsetsOfRooms() {
  constexpr int kRooms = 50;
  standalone::DrawingDatabase db = standalone::DrawingDatabase::createEmpty("AC1027");
  for (int i = 0; i <= kRooms; ++i) {
    for (host::Line l : {host::Line{{0, double(i), 0}, {double(kRooms), double(i), 0}},
                         host::Line{{double(i), 0, 0}, {double(i), double(kRooms), 0}}}) {
      host::Entity e;
      e.data = l;
      db.append(e);
    }
  }
  bench_support::PluginSession session(std::move(db), [](standalone::EmbeddedHost& h) {
    standalone::addBoundaryCommands(h.hostCommands());
    standalone::addPngOutCommand(h.hostCommands());
    standalone::addEditCommands(h.hostCommands());
  });
  auto t0 = std::chrono::steady_clock::now();
  session.run("ZOOM\nC\n25,25\n52\nINOFFSET\nALL\n\nY\n1\n0.1\n");
  double t = std::chrono::duration<double>(std::chrono::steady_clock::now() - t0).count();
  std::size_t polylines = 0;
  for (host::ObjectId id : session.host->drawing().entitiesOf(session.host->drawing().modelSpace()))
    if (auto e = session.host->drawing().read(id); e && std::holds_alternative<host::LwPolyline>(e->data)) ++polylines;
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  std::printf("INOFFSET, %d x %d grid of rooms: %zu inner offsets in %.2f s, peak memory %.0f MB\n", kRooms, kRooms,
              polylines, t, usage.ru_maxrss / 1024.0);
}

}  // namespace

int main() {
  constexpr int kLines = 200;
  std::vector<standalone::kernel::BulgePiece> grid;
  double span = kLines - 1;
  for (int i = 0; i < kLines; ++i) {
    grid.push_back({{0, double(i)}, {span, double(i)}, 0});
    grid.push_back({{double(i), 0}, {double(i), span}, 0});
  }
  std::size_t faces = 0;
  double t = benchsupport::bestSeconds(3, [&] { faces = standalone::kernel::Arrangement(grid).faceCount(); });
  std::printf("our arrangement, %d x %d grid: %zu faces in %.3f s\n", kLines, kLines, faces, t);
  std::fflush(stdout);
  std::string cmd = std::string(CORVANE_PYTHON) + " " + GRID_FACES_SHAPELY + " " + std::to_string(kLines);
  int rc = std::system(cmd.c_str());
  innerOffsetsOfRooms();
  return rc == 0 ? 0 : 1;
}
