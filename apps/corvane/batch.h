#pragma once
// Batch runs: one script over many drawings, each drawing in a corvane
// process of its own, as many at once as there are cores.
#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace corvane_app {

struct BatchRequest {
  std::string script;                 // -s
  std::string outputFolder;           // -o: results, transcripts and the summary go here
  std::vector<std::string> inputs;    // drawing files and folders of drawings
  std::optional<int> jobs;            // -j: processes at once; the core count when absent
};

// One drawing of a batch and where its results go.
struct BatchItem {
  std::string input;
  std::string output;      // OUT/<name>.dxf
  std::string transcript;  // OUT/<name>.log
};

// The drawings named by the inputs (a folder gives its .dxf files, sorted by
// name) with their result paths; throws UsageError when an input is missing,
// two drawings share a name or a result would overwrite an input.
std::vector<BatchItem> planBatch(const BatchRequest& request);

// Runs the batch and writes the summary; exit code 0 when every drawing
// succeeded, 1 otherwise. The progress bar goes to err when it is a terminal.
int runBatch(const BatchRequest& request, std::ostream& out, std::ostream& err, bool progressOnTerminal);

}  // namespace corvane_app
