#include <algorithm>
#include <filesystem>
#include <map>

#include "batch.h"
#include "options.h"

namespace corvane_app {

namespace fs = std::filesystem;

namespace {

bool isDrawingFile(const fs::path& p) {
  std::string ext = p.extension().string();
  std::transform(ext.begin(), ext.end(), ext.begin(), [](unsigned char c) { return std::tolower(c); });
  return ext == ".dxf";
}

std::vector<fs::path> drawingsOf(const std::string& input) {
  fs::path p(input);
  if (fs::is_directory(p)) {
    std::vector<fs::path> found;
    for (const fs::directory_entry& e : fs::directory_iterator(p))
      if (e.is_regular_file() && isDrawingFile(e.path())) found.push_back(e.path());
    std::sort(found.begin(), found.end());
    return found;
  }
  if (!fs::exists(p)) throw UsageError(input + ": no such drawing file or folder");
  return {p};
}

}  // namespace

std::vector<BatchItem> planBatch(const BatchRequest& request) {
  const fs::path out(request.outputFolder);
  std::vector<BatchItem> items;
  std::map<std::string, std::string> byName;
  for (const std::string& input : request.inputs)
    for (const fs::path& drawing : drawingsOf(input)) {
      std::string name = drawing.stem().string();
      auto [it, fresh] = byName.emplace(name, drawing.string());
      if (!fresh) throw UsageError("two drawings would give the same result " + name + ".dxf: " + it->second +
                                   " and " + drawing.string());
      BatchItem item{drawing.string(), (out / (name + ".dxf")).string(), (out / (name + ".log")).string()};
      std::error_code ec;
      if (fs::equivalent(item.input, item.output, ec))
        throw UsageError("the result of " + item.input + " would overwrite it; choose another output folder");
      items.push_back(std::move(item));
    }
  if (items.empty()) throw UsageError("no drawings found");
  return items;
}

}  // namespace corvane_app
