// Extents and selection benchmarks: print wall-clock figures (best of several
// runs) for the extents of 100,000 texts, of block references to a block of
// 1,000 curves, and for a pick, a window, polygons and a fence over a drawing
// of 40,000 lines, arcs, texts and references to a block of 200 curves.
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <functional>
#include <memory>
#include <random>

#include "standalone/db/database.h"
#include "standalone/db/dxf_reader.h"
#include "standalone/editor/entity_finder.h"
#include "standalone/kernel/curve_kernel.h"
#include "bench/support/timing.h"

namespace {

using benchsupport::bestSeconds;

host::Text label(double x, double y, double rotation) {
  host::Text t;
  t.position = {x, y, 0};
  t.text = "Label 12";
  t.height = 0.5;
  t.rotation = rotation;
  return t;
}

void benchTexts(const standalone::CurveKernel& kernel) {
  std::vector<host::EntityData> texts;
  host::MText m;
  m.text = "{\\fArial;Two}\\Plines of \\H2x;text";
  for (int i = 0; i < 100000; ++i)
    texts.push_back(i % 2 ? host::EntityData(label(i, i % 100, i * 0.01)) : host::EntityData(m));
  ge::Extents3d all;
  double t = bestSeconds(5, [&] {
    all = {};
    for (const auto& e : texts) {
      ge::Extents3d ext;
      if (kernel.getGeomExtents(e, ext) == host::ErrorStatus::eOk) all.add(ext);
    }
  });
  std::printf("extents of 100,000 texts and mtexts: %.4f s (box %.1f x %.1f)\n", t, all.max.x - all.min.x,
              all.max.y - all.min.y);
}

// An R12 drawing whose block PART holds 200 lines and arcs.
std::string drawingWithPart() {
  std::string dxf = "0\nSECTION\n2\nBLOCKS\n0\nBLOCK\n8\n0\n2\nPART\n70\n0\n10\n0\n20\n0\n30\n0\n";
  for (int i = 0; i < 200; ++i) {
    std::string x = std::to_string(i * 0.5);
    dxf += i % 2 ? "0\nLINE\n8\n0\n10\n" + x + "\n20\n0\n30\n0\n11\n" + x + "\n21\n50\n31\n0\n"
                 : "0\nARC\n8\n0\n10\n" + x + "\n20\n25\n30\n0\n40\n10\n50\n10\n51\n150\n";
  }
  return dxf + "0\nENDBLK\n8\n0\n0\nENDSEC\n0\nSECTION\n2\nENTITIES\n0\nENDSEC\n0\nEOF\n";
}

// The drawing with a grid of lines, arcs, texts and small references to PART in model space.
standalone::DrawingDatabase bigDrawing(int modelEntities) {
  standalone::DrawingDatabase db = standalone::readDxf(drawingWithPart());
  std::mt19937 rng(7);
  std::uniform_real_distribution<double> u(0, 1);
  int side = static_cast<int>(std::sqrt(modelEntities));
  for (int i = 0; i < modelEntities; ++i) {
    double x = (i % side) * 10.0, y = (i / side) * 10.0;
    host::Entity e;
    switch (i % 4) {
      case 0: e.data = host::Line{{x, y, 0}, {x + 8 * u(rng), y + 8 * u(rng), 0}}; break;
      case 1: e.data = host::Arc{{x + 4, y + 4, 0}, 1 + 3 * u(rng), 0, 6 * u(rng)}; break;
      case 2: e.data = label(x, y, u(rng)); break;
      default: e.data = host::BlockReference{"PART", {x, y, 0}, {0.08, 0.08, 1}, u(rng)};
    }
    db.append(e);
  }
  return db;
}

}  // namespace

int main() {
  standalone::CurveKernel kernel;
  benchTexts(kernel);

  std::vector<host::EntityData> part;
  for (int i = 0; i < 1000; ++i)
    part.push_back(i % 2 ? host::EntityData(host::Line{{i * 0.1, 0, 0}, {i * 0.1, 50, 0}})
                         : host::EntityData(host::Arc{{i * 0.1, 25, 0}, 10, 0.2, 2.5}));
  // A fresh copy per call, as a drawing read gives it.
  host::BlockContentsLookup lookup = [&](const std::string&) {
    return std::make_shared<const host::BlockContents>(host::BlockContents{{}, part});
  };
  host::BlockReference ref{"PART", {100, 100, 0}, {2, 0.5, 1}, 0.3};
  ref.columnCount = 10, ref.rowCount = 10, ref.columnSpacing = 120, ref.rowSpacing = 60;
  ge::Extents3d box;
  double t = bestSeconds(5, [&] {
    for (int i = 0; i < 100; ++i) kernel.getBlockReferenceExtents(ref, lookup, box);
  });
  std::printf("extents of 100 references to a block of 1,000 lines and arcs (10 x 10 array, non-uniform scale): "
              "%.4f s\n", t);

  standalone::DrawingDatabase db = bigDrawing(40000);
  standalone::EntityFinder finder(db, kernel);
  std::size_t found = 0;
  t = bestSeconds(3, [&] { found = finder.pickAt({1000.5, 1000.5, 0}, 0.5) ? 1 : 0; });
  std::printf("pick among 40,000 entities (no extents cache): %.4f s (%zu found)\n", t, found);
  t = bestSeconds(3, [&] {
    standalone::EntityFinder::CacheScope scope(finder);
    found = finder.inWindow({100, 100, 0}, {1500, 1200, 0}, true).size();
  });
  std::printf("crossing window over 40,000 entities: %.4f s (%zu found)\n", t, found);
  std::vector<ge::Point3d> star;
  for (int k = 0; k < 16; ++k) {
    double r = k % 2 ? 600 : 1000, a = k * 2 * 3.141592653589793 / 16;
    star.push_back({1000 + r * std::cos(a), 1000 + r * std::sin(a), 0});
  }
  t = bestSeconds(3, [&] {
    standalone::EntityFinder::CacheScope scope(finder);
    found = finder.inPolygon(star, true).size();
  });
  std::printf("crossing polygon (16-point star) over 40,000 entities: %.4f s (%zu found)\n", t, found);
  t = bestSeconds(3, [&] {
    standalone::EntityFinder::CacheScope scope(finder);
    found = finder.inPolygon(star, false).size();
  });
  std::printf("window polygon (16-point star) over 40,000 entities: %.4f s (%zu found)\n", t, found);
  std::vector<ge::Point3d> fence;
  for (int k = 0; k <= 10; ++k) fence.push_back({k * 200.0, (k % 2) * 1900.0 + 5, 0});
  t = bestSeconds(3, [&] {
    standalone::EntityFinder::CacheScope scope(finder);
    found = finder.alongFence(fence).size();
  });
  std::printf("fence of 10 segments over 40,000 entities: %.4f s (%zu found)\n", t, found);
  return 0;
}
