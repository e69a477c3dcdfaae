// Reference reader for the benchmark: Debian's dxflib parses the file and
// only counts the entities it reports. Prints count, seconds and peak memory.
#include <sys/resource.h>

#include <chrono>
#include <cstdio>

#include <dxflib/dl_creationadapter.h>
#include <dxflib/dl_dxf.h>

namespace {

class Counter : public DL_CreationAdapter {
 public:
  long entities = 0;
  void addPoint(const DL_PointData&) override { ++entities; }
  void addLine(const DL_LineData&) override { ++entities; }
  void addArc(const DL_ArcData&) override { ++entities; }
  void addCircle(const DL_CircleData&) override { ++entities; }
  void addEllipse(const DL_EllipseData&) override { ++entities; }
  void addPolyline(const DL_PolylineData&) override { ++entities; }
  void addSpline(const DL_SplineData&) override { ++entities; }
  void addText(const DL_TextData&) override { ++entities; }
  void addMText(const DL_MTextData&) override { ++entities; }
  void addInsert(const DL_InsertData&) override { ++entities; }
  void addHatch(const DL_HatchData&) override { ++entities; }
};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: dxflib_count FILE\n");
    return 2;
  }
  auto t0 = std::chrono::steady_clock::now();
  Counter counter;
  DL_Dxf dxf;
  if (!dxf.in(argv[1], &counter)) {
    std::fprintf(stderr, "dxflib could not read %s\n", argv[1]);
    return 1;
  }
  double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - t0).count();
  struct rusage usage {};
  getrusage(RUSAGE_SELF, &usage);
  double cpu = static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
               static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
  std::printf("dxflib load: %ld entities, %.3f s wall, %.3f s cpu, peak %.1f MB\n", counter.entities, seconds, cpu,
              static_cast<double>(usage.ru_maxrss) / 1024.0);
  return 0;
}
