// Figures for txt2PL (never a test): 1,000 texts, TEXT and MTEXT in English
// and Chinese, turned into polylines through the embedded host's MIRROR,
// WMFOUT, WMFIN and ERASE with the plug-in loaded. Prints the time and the
// polylines and vertices made.
//   text_bench [texts]
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>

#include "bench/support/timing.h"
#include "bench/support/plugin_session.h"
#include "standalone/hostcmds/edit_commands.h"
#include "standalone/metafile/wmf_commands.h"

namespace {

// Texts in rows of 25: every fourth an MTEXT of two lines, every other one Chinese.
standalone::DrawingDatabase drawing(int texts) {
  standalone::DrawingDatabase db = standalone::DrawingDatabase::createEmpty();
  for (int k = 0; k < texts; ++k) {
    double x = (k % 25) * 30.0, y = (k / 25) * 6.0;
    bool chinese = k % 2 == 1;
    host::Entity e;
    if (k % 4 == 3) {
      host::MText m;
      m.position = {x, y + 4, 0};
      m.height = 1.5;
      m.text = chinese ? "多行文字\\P第二行" : "Two lines\\Pof text";
      e.data = m;
    } else {
      host::Text t{{x, y, 0}, {x, y, 0}, 2, chinese ? "文字转多段线" : "Text 2 PL"};
      t.rotation = (k % 7) * 0.1;
      e.data = t;
    }
    db.append(e);
  }
  return db;
}

}  // namespace

int main(int argc, char** argv) {
  int texts = argc > 1 ? std::atoi(argv[1]) : 1000;
  bench_support::PluginSession session(drawing(texts), [](standalone::EmbeddedHost& h) {
    standalone::addEditCommands(h.hostCommands());
    standalone::addMetafileCommands(h.hostCommands());
  });
  double t = benchsupport::bestSeconds(1, [&] { session.run("txt2PL\nALL\n\n"); });
  // What the command made: the polylines of the imported block.
  const host::Drawing& db = session.host->host().drawing;
  std::size_t polylines = 0, vertices = 0, open = 0;
  if (std::optional<host::ObjectId> block = db.findBlock("WMF0"))
    for (host::ObjectId id : db.entitiesOf(*block))
      if (auto e = db.read(id))
        if (const auto* pl = std::get_if<host::LwPolyline>(&e->data)) {
          ++polylines;
          vertices += pl->vertices.size();
          open += !pl->closed;
        }
  std::printf("txt2PL on %d texts: %.2f s, %zu polylines (%zu open) with %zu vertices\n", texts, t, polylines, open,
              vertices);
  if (std::getenv("TEXT_BENCH_TRANSCRIPT")) std::printf("%s\n", session.out.str().c_str());
  return 0;
}
