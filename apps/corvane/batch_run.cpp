#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <thread>

#include "batch.h"
#include "io/replace_file.h"
#include "options.h"
#include "standalone/editor/desktop_platform.h"
#include "standalone/editor/errors.h"
#include "standalone/editor/settings_file.h"

extern char** environ;

namespace corvane_app {

namespace fs = std::filesystem;

namespace {

// A temporary folder for the children's settings copies and error output.
class ScratchFolder {
 public:
  ScratchFolder() {
    std::string pattern = (fs::temp_directory_path() / "corvane-batch-XXXXXX").string();
    if (!mkdtemp(pattern.data())) throw standalone::InputError("cannot make a temporary folder");
    dir_ = pattern;
  }
  ~ScratchFolder() {
    std::error_code ignored;
    fs::remove_all(dir_, ignored);
  }
  fs::path file(const std::string& name) const { return dir_ / name; }

 private:
  fs::path dir_;
};

struct Outcome {
  bool ok = false;
  std::string reason;
};

// The child reads the script and writes its result; its transcript goes to
// the item's log, its error line to errPath. It gets a settings file of its
// own, copied from the user's, so that concurrent loads neither race on the
// user's file nor count as the user's loads, and it opens no pages.
pid_t startChild(const std::string& program, const std::string& script, const BatchItem& item,
                 const fs::path& errPath, const fs::path& settingsPath) {
  std::error_code ec;
  fs::copy_file(standalone::defaultSettingsPath(), settingsPath, fs::copy_options::overwrite_existing, ec);
  std::vector<std::string> args{program, item.input, "-s", script, "-o", item.output, "--no-pages"};
  std::vector<char*> argv;
  for (std::string& a : args) argv.push_back(a.data());
  argv.push_back(nullptr);
  std::string settingsVar = "CORVANE_SETTINGS=" + settingsPath.string();
  std::vector<char*> envp;
  for (char** e = environ; *e; ++e)
    if (std::strncmp(*e, "CORVANE_SETTINGS=", 17) != 0) envp.push_back(*e);
  envp.push_back(settingsVar.data());
  envp.push_back(nullptr);

  posix_spawn_file_actions_t files;
  posix_spawn_file_actions_init(&files);
  posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, item.transcript.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
  posix_spawn_file_actions_addopen(&files, STDERR_FILENO, errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
  pid_t pid = -1;
  int rc = posix_spawn(&pid, program.c_str(), &files, nullptr, argv.data(), envp.data());
  posix_spawn_file_actions_destroy(&files);
  return rc == 0 ? pid : -1;
}

// Why a child failed: its last error line without the program's prefix.
std::string failureReason(int status, const fs::path& errPath) {
  std::ifstream in(errPath);
  std::string last;
  for (std::string line; std::getline(in, line);)
    if (!line.empty()) last = line;
  if (last.starts_with("corvane: ")) last.erase(0, 9);
  if (!last.empty()) return last;
  if (WIFSIGNALED(status)) return "stopped by signal " + std::to_string(WTERMSIG(status));
  return "exit code " + std::to_string(WEXITSTATUS(status));
}

void drawProgress(std::ostream& err, size_t done, size_t total, size_t failed) {
  constexpr size_t kWidth = 30;
  size_t filled = total ? done * kWidth / total : kWidth;
  err << "\r[" << std::string(filled, '#') << std::string(kWidth - filled, ' ') << "] " << done << "/" << total;
  if (failed) err << ", " << failed << " failed";
  err << std::flush;
}

void writeSummary(std::ostream& out, const BatchRequest& request, const std::vector<BatchItem>& items,
                  const std::vector<Outcome>& outcomes) {
  size_t failed = 0;
  for (const Outcome& o : outcomes) failed += o.ok ? 0 : 1;
  out << "Batch: " << items.size() << " drawings, " << items.size() - failed << " done, " << failed
      << " failed; results in " << request.outputFolder << "\n";
  if (failed) out << "Failed:\n";
  for (size_t i = 0; i < items.size(); ++i)
    if (!outcomes[i].ok) out << "  " << items[i].input << ": " << outcomes[i].reason << "\n";
}

}  // namespace

int runBatch(const BatchRequest& request, std::ostream& out, std::ostream& err, bool progressOnTerminal) {
  if (!fs::is_regular_file(request.script)) throw standalone::InputError(request.script + ": no such script file");
  std::vector<BatchItem> items = planBatch(request);
  fs::create_directories(request.outputFolder);
  const std::string program = standalone::currentExecutablePath();
  const size_t jobs = static_cast<size_t>(std::max(1, request.jobs.value_or(
                                                          static_cast<int>(std::thread::hardware_concurrency()))));
  ScratchFolder scratch;
  std::vector<Outcome> outcomes(items.size());
  std::map<pid_t, size_t> running;
  size_t next = 0, done = 0, failed = 0;
  auto errOf = [&](size_t i) { return scratch.file(std::to_string(i) + ".err"); };
  if (progressOnTerminal) drawProgress(err, 0, items.size(), 0);
  while (done < items.size()) {
    while (running.size() < jobs && next < items.size()) {
      size_t i = next++;
      // A result left by an earlier run must not pass for this run's.
      std::error_code ignored;
      fs::remove(items[i].output, ignored);
      pid_t pid = startChild(program, request.script, items[i], errOf(i), scratch.file(std::to_string(i) + ".reg"));
      if (pid > 0) {
        running.emplace(pid, i);
        continue;
      }
      outcomes[i] = {false, "could not start a process"};
      ++done, ++failed;
    }
    if (running.empty()) continue;
    int status = 0;
    pid_t pid = waitpid(-1, &status, 0);
    auto it = running.find(pid);
    if (it == running.end()) continue;
    size_t i = it->second;
    running.erase(it);
    bool ok = WIFEXITED(status) && WEXITSTATUS(status) == 0 && fs::is_regular_file(items[i].output);
    outcomes[i] = {ok, ok ? "" : failureReason(status, errOf(i))};
    ++done, failed += ok ? 0 : 1;
    if (progressOnTerminal) drawProgress(err, done, items.size(), failed);
  }
  if (progressOnTerminal) err << "\n";
  writeSummary(out, request, items, outcomes);
  std::ostringstream summary;
  writeSummary(summary, request, items, outcomes);
  try {
    io::replaceFile(fs::path(request.outputFolder) / "summary.txt", summary.str());
  } catch (const io::FileWriteError& e) {
    err << e.what() << "\n";
    return 1;
  }
  return failed == 0 ? 0 : 1;
}

}  // namespace corvane_app
