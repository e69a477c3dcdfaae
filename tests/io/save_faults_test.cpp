// Files the host and the commands write survive faults: a save killed at any moment, or one
// whose writes fail, leaves the old file whole and at most one stray
// temporary, which the next save of that file removes.
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <random>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "io/replace_file.h"
#include "reports/report_file.h"
#include "standalone/db/database.h"
#include "standalone/db/dxf_reader.h"
#include "standalone/db/dxf_tags.h"
#include "standalone/db/dxf_writer.h"
#include "standalone/editor/settings_file.h"
#include "standalone/render/render.h"
#include "standalone/render/render_error.h"
#include "tests/support/temp_dir.h"

namespace {

namespace fs = std::filesystem;
using test_support::TempDir;

std::string contents(const fs::path& p) {
  std::ifstream in(p, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

// Files in the folder other than the target: temporaries left behind.
int strays(const fs::path& target) {
  int n = 0;
  for (const auto& e : fs::directory_iterator(target.parent_path()))
    if (e.path() != target) ++n;
  return n;
}

// A drawing of many lines, so that saving it takes a while; shift tells two apart.
standalone::DrawingDatabase bigDrawing(int lines, double shift) {
  auto db = standalone::DrawingDatabase::createEmpty();
  for (int i = 0; i < lines; ++i) {
    host::Entity e;
    e.data = host::Line{{shift + i, 0, 0}, {shift + i, 1, 0}};
    db.append(e);
  }
  return db;
}

// Runs body in a child process and returns its exit status (or the signal that ended it, negated).
int inChild(const std::function<int()>& body) {
  std::fflush(nullptr);
  pid_t pid = ::fork();
  if (pid == 0) ::_exit(body());
  int status = 0;
  ::waitpid(pid, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

// Writes longer than limitBytes fail with EFBIG instead of ending the process.
void limitFileSize(rlim_t limitBytes) {
  ::signal(SIGXFSZ, SIG_IGN);
  rlimit limit{limitBytes, limitBytes};
  ::setrlimit(RLIMIT_FSIZE, &limit);
}

// A report page of many rows, as the report commands write it; mark tells two apart.
bool writeReport(const fs::path& target, const std::string& mark, int rows) {
  auto file = reports::ReportFile::create(target.string());
  if (!file) return false;
  for (int i = 0; i < rows; ++i) file->write("<tr><td>" + mark + "</td><td>" + std::to_string(i) + " 坐标</td></tr>\n");
  return file->commit();
}

// Each kind of file, written again and again in a child killed at a random
// moment, is afterwards either its old or its new self, with at most one
// stray temporary, which the next write of the file removes.
TEST(SaveFaults, WritesKilledAtRandomMomentsLeaveTheOldOrTheNewFileWhole) {
  TempDir dir("savekill");
  standalone::DrawingDatabase oldDrawing = bigDrawing(20000, 0), newDrawing = bigDrawing(20000, 0.5);
  struct Case {
    const char* name;
    fs::path target;
    int trials;
    std::function<void(const fs::path&)> writeOld, writeNew;
  };
  const Case cases[] = {
      {"drawing", dir.path() / "plan.dxf", 24, [&](const fs::path& p) { standalone::saveDxf(oldDrawing, p); },
       [&](const fs::path& p) { standalone::saveDxf(newDrawing, p); }},
      {"report", dir.path() / "list.html", 12, [](const fs::path& p) { ASSERT_TRUE(writeReport(p, "old", 40000)); },
       [](const fs::path& p) { writeReport(p, "new", 40000); }},
  };
  std::mt19937 random(20261123);
  for (const Case& c : cases) {
    const fs::path sample = dir.path() / "sample";
    c.writeNew(sample);
    const std::string newText = contents(sample);
    fs::remove(sample);
    c.writeOld(c.target);
    const std::string oldText = contents(c.target);
    ASSERT_NE(oldText, newText) << c.name;

    auto started = std::chrono::steady_clock::now();
    c.writeNew(dir.path() / "timing");
    auto writeTime = std::chrono::steady_clock::now() - started;
    fs::remove(dir.path() / "timing");
    std::uniform_int_distribution<long long> moment(
        0, std::chrono::duration_cast<std::chrono::microseconds>(writeTime).count() * 3);

    int keptOld = 0, tookNew = 0, leftTemporary = 0;
    for (int trial = 0; trial < c.trials; ++trial) {
      std::ofstream(c.target, std::ios::binary | std::ios::trunc) << oldText;
      std::fflush(nullptr);
      pid_t pid = ::fork();
      if (pid == 0) {
        for (;;) c.writeNew(c.target);
      }
      std::this_thread::sleep_for(std::chrono::microseconds(moment(random)));
      ::kill(pid, SIGKILL);
      ::waitpid(pid, nullptr, 0);
      std::string now = contents(c.target);
      ASSERT_TRUE(now == oldText || now == newText) << c.name << " trial " << trial << ": the file is neither whole";
      (now == oldText ? keptOld : tookNew)++;
      int left = strays(c.target);
      ASSERT_LE(left, 1) << c.name << " trial " << trial;
      leftTemporary += left;
      c.writeOld(c.target);
      EXPECT_EQ(strays(c.target), 0) << c.name << " trial " << trial << ": the next write left the stray";
      EXPECT_EQ(contents(c.target), oldText) << c.name;
    }
    fs::remove(c.target);
    std::printf("%d kills while writing a %zu-byte %s: old file kept %d, new file complete %d, "
                "stray temporaries left %d (all removed by the next write)\n",
                c.trials, newText.size(), c.name, keptOld, tookNew, leftTemporary);
  }
}

TEST(SaveFaults, FailingWritesLeaveEveryKindOfFileAsItWas) {
  TempDir dir("savefail");
  const fs::path drawingFile = dir.path() / "plan.dxf", pictureFile = dir.path() / "plan.png",
                 settingsFile = dir.path() / "settings.reg", reportFile = dir.path() / "plan.html";
  standalone::DrawingDatabase small = bigDrawing(3, 0), big = bigDrawing(20000, 0.5);
  standalone::saveDxf(small, drawingFile);
  standalone::RenderOptions options;
  standalone::renderDrawingToPng(small, pictureFile, options);
  standalone::SettingsFile(settingsFile.string()).writeInt("Software\\Test", "kept", 7);
  ASSERT_TRUE(writeReport(reportFile, "old", 3));
  const std::string oldDrawing = contents(drawingFile), oldPicture = contents(pictureFile),
                    oldSettings = contents(settingsFile), oldReport = contents(reportFile);
  constexpr rlim_t kLimit = 64 * 1024;  // below the big drawing and the settings with a long text

  struct Case {
    const char* name;
    rlim_t limit;
    std::function<bool()> writeFails;  // true when the write reported its failure
  };
  const Case cases[] = {
      {"drawing", kLimit,
       [&] {
         try {
           standalone::saveDxf(big, drawingFile);
         } catch (const standalone::DxfError& e) {
           return std::string(e.what()).find("plan.dxf") != std::string::npos;
         }
         return false;
       }},
      {"picture", 1024,  // a blank picture of this size packs to some kilobytes
       [&] {
         standalone::RenderOptions large;
         large.widthPx = 2000;
         large.heightPx = 2000;
         try {
           standalone::renderDrawingToPng(big, pictureFile, large);
         } catch (const standalone::RenderError&) {
           return true;
         }
         return false;
       }},
      {"settings", kLimit,
       [&] {
         standalone::SettingsFile settings(settingsFile.string());
         return !settings.writeText("Software\\Test", "long", std::string(2 * kLimit, 'x'));
       }},
      {"report", kLimit, [&] { return !writeReport(reportFile, "new", 20000); }},
  };
  for (const Case& c : cases) {
    int status = inChild([&] {
      limitFileSize(c.limit);
      return c.writeFails() ? 0 : 1;
    });
    EXPECT_EQ(status, 0) << c.name << ": the failed write was not reported";
    EXPECT_EQ(contents(drawingFile), oldDrawing) << c.name;
    EXPECT_EQ(contents(pictureFile), oldPicture) << c.name;
    EXPECT_EQ(contents(settingsFile), oldSettings) << c.name;
    EXPECT_EQ(contents(reportFile), oldReport) << c.name;
    EXPECT_EQ(strays(drawingFile), 3) << c.name << ": a temporary was left behind";  // the other three files
  }
}

TEST(SaveFaults, OnlyTemporariesOfProcessesThatEndedAreRemoved) {
  TempDir dir("strays");
  const fs::path target = dir.path() / "plan.dxf";
  std::ofstream(target) << "old";
  // A process id no process has: one that just ended.
  pid_t ended = 0;
  {
    std::fflush(nullptr);
    pid_t pid = ::fork();
    if (pid == 0) ::_exit(0);
    ::waitpid(pid, nullptr, 0);
    ended = pid;
  }
  const fs::path dead = dir.path() / (".plan.dxf." + std::to_string(ended) + ".abcdef.part");
  const fs::path living = dir.path() / (".plan.dxf." + std::to_string(::getppid()) + ".abcdef.part");
  const fs::path other = dir.path() / (".other.dxf." + std::to_string(ended) + ".abcdef.part");
  const fs::path user = dir.path() / ".plan.dxf.notes";
  for (const fs::path& p : {dead, living, other, user}) std::ofstream(p) << "x";
  io::replaceFile(target, "new");
  EXPECT_EQ(contents(target), "new");
  EXPECT_FALSE(fs::exists(dead));
  EXPECT_TRUE(fs::exists(living)) << "a save still running elsewhere keeps its temporary";
  EXPECT_TRUE(fs::exists(other)) << "another file's temporary is not ours to remove";
  EXPECT_TRUE(fs::exists(user)) << "a file of the user's that only looks alike stays";
}

}  // namespace
