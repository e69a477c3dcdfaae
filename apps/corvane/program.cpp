#include "program.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <unistd.h>

#include "apps/common/loaded_plugin.h"
#include "standalone/db/dxf_reader.h"
#include "standalone/db/dxf_writer.h"
#include "standalone/editor/answer_parse.h"
#include "standalone/editor/answer_source.h"
#include "standalone/editor/embedded_host.h"
#include "standalone/editor/errors.h"
#include "standalone/editor/settings_file.h"
#include "standalone/render/plot.h"
#include "standalone/render/render.h"
#include "terminal_input.h"

namespace corvane_app {

namespace fs = std::filesystem;

namespace {

std::string readWholeFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw standalone::InputError(path + ": cannot open the file");
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

// A throwaway copy of the user's settings, for listings that load the plug-in
// for a moment without counting a load or writing demand-load entries.
class ScratchSettings {
 public:
  ScratchSettings() {
    std::string pattern = (fs::temp_directory_path() / "corvane-XXXXXX").string();
    std::vector<char> buf(pattern.begin(), pattern.end());
    buf.push_back('\0');
    if (!mkdtemp(buf.data())) throw standalone::InputError("cannot make a temporary folder");
    dir_ = buf.data();
    std::error_code ec;
    fs::copy_file(standalone::defaultSettingsPath(), dir_ / "settings.reg", ec);  // a missing file stays missing
  }
  ~ScratchSettings() {
    std::error_code ignored;
    fs::remove_all(dir_, ignored);
  }
  std::string path() const { return (dir_ / "settings.reg").string(); }

 private:
  fs::path dir_;
};

standalone::EmbeddedHostOptions hostOptions(std::string settingsPath, bool openPages) {
  standalone::EmbeddedHostOptions options;
  options.settingsPath = std::move(settingsPath);
  options.modulePath = standalone::currentExecutablePath();
  options.openPages = openPages;
  return options;
}

void writePictures(const RunRequest& request, standalone::EmbeddedHost& h) {
  standalone::RenderOptions options;
  host::ResBuf v;
  if (h.sysvars().getVar("PDMODE", v) == host::RTNORM) {
    if (const auto* mode = std::get_if<std::int16_t>(&v.value)) options.pointMode = *mode;
  }
  if (h.sysvars().getVar("PDSIZE", v) == host::RTNORM) {
    if (const auto* size = std::get_if<double>(&v.value)) options.pointSize = *size;
  }
  if (request.svg) standalone::renderDrawingToSvg(h.drawing(), *request.svg, options);
  if (request.png) standalone::renderDrawingToPng(h.drawing(), *request.png, options);
  if (request.pdf) {
    standalone::PlotSettings plot;
    if (request.paper) plot.paper = *standalone::paperSizeByName(*request.paper);  // checked when parsed
    if (request.scale) plot.scale = *standalone::parsePlotScale(*request.scale);
    plot.landscape = request.landscape;
    if (request.plotView) plot.window = standalone::PlotWindow{h.view().center, h.view().width(), h.view().height};
    plot.pointMode = options.pointMode;
    plot.pointSize = options.pointSize;
    standalone::plotDrawingToPdf(h.drawing(), *request.pdf, plot);
  }
}

}  // namespace

int runDrawing(const RunRequest& request, std::ostream& out, std::ostream& err) {
  if (!fs::is_regular_file(request.drawing)) {
    err << "corvane: " << request.drawing << ": no such drawing file\n";
    return 1;
  }
  // Read the answers first: a missing or unreadable script changes nothing.
  std::optional<standalone::ScriptReader> reader;
  // A user at a terminal edits the answers and has their history; scripts and pipes are read as they are.
  std::optional<TerminalInput> terminal;
  bool atTerminal = ::isatty(STDIN_FILENO) && ::isatty(STDOUT_FILENO);
  if (request.script) {
    reader = standalone::ScriptReader::fromText(*request.script, readWholeFile(*request.script));
  } else if (request.commandText) {
    reader = standalone::ScriptReader::fromText("-c", *request.commandText + "\n");
  } else if (atTerminal) {
    reader.emplace("stdin", [&terminal] { return terminal->nextLine(); }, false);
  } else {
    reader = standalone::ScriptReader::fromStream("stdin", std::cin, !::isatty(STDIN_FILENO));
  }
  standalone::DrawingDatabase drawing = standalone::loadDxf(request.drawing);
  standalone::EmbeddedHost h(std::move(drawing), out, hostOptions(standalone::defaultSettingsPath(), request.openPages));
  if (atTerminal) terminal.emplace(h.transcript());
  standalone::SessionResult result;
  {
    LoadedPlugin plugin(h);
    result = h.run(*reader);
  }
  if (result.failure) {
    err << "corvane: " << *result.failure << (request.output ? "; nothing written" : "") << "\n";
    return 1;
  }
  if (request.output) {
    h.storeView();
    fs::path target(*request.output);
    if (target.has_parent_path()) fs::create_directories(target.parent_path());
    standalone::saveDxf(h.drawing(), target);
  }
  for (const auto& picture : {request.svg, request.png, request.pdf})
    if (picture && fs::path(*picture).has_parent_path()) fs::create_directories(fs::path(*picture).parent_path());
  writePictures(request, h);
  return 0;
}

int listCommands(std::ostream& out, std::ostream&) {
  ScratchSettings scratch;
  std::ostringstream transcript;
  standalone::EmbeddedHost h(standalone::DrawingDatabase::createEmpty(), transcript, hostOptions(scratch.path(), false));
  LoadedPlugin plugin(h);
  for (const standalone::CommandEntry& e : h.commands().entries()) out << e.globalName << " " << e.localName << "\n";
  return 0;
}

int showMenu(std::ostream& out, std::ostream& err) {
  ScratchSettings scratch;
  std::ostringstream transcript;
  standalone::EmbeddedHost h(standalone::DrawingDatabase::createEmpty(), transcript, hostOptions(scratch.path(), false));
  LoadedPlugin plugin(h);
  std::string bar = h.menus().describeMenuBar();
  if (bar.empty()) {
    out << transcript.str();
    err << "corvane: no menu was loaded\n";
    return 1;
  }
  out << bar;
  return 0;
}

int settingsCommand(const SettingsRequest& request, std::ostream& out, std::ostream& err) {
  standalone::SettingsFile settings(standalone::defaultSettingsPath(),
                                    [&err](const std::string& note) { err << "corvane: " << note << "\n"; });
  auto show = [](const standalone::RegValue& v) {
    if (const auto* i = std::get_if<std::uint32_t>(&v.data)) return std::to_string(*i);
    if (const auto* s = std::get_if<std::string>(&v.data)) return *s;
    const auto& bytes = std::get<std::vector<std::uint8_t>>(v.data);
    std::string hex;
    for (std::uint8_t b : bytes) {
      char buf[4];
      std::snprintf(buf, sizeof buf, "%02x", b);
      hex += buf;
    }
    return "hex:" + hex;
  };
  switch (request.op) {
    case SettingsRequest::Op::kList:
      for (const standalone::RegValue& v : settings.list(standalone::kCorvaneKey)) out << v.name << "=" << show(v) << "\n";
      return 0;
    case SettingsRequest::Op::kGet:
      for (const standalone::RegValue& v : settings.list(standalone::kCorvaneKey))
        if (standalone::equalsNoCase(v.name, request.name)) {
          out << show(v) << "\n";
          return 0;
        }
      err << "corvane: no setting " << request.name << "\n";
      return 1;
    case SettingsRequest::Op::kSet: {
      const std::string& text = request.value;
      bool decimal = !text.empty() && text.size() <= 10 && text.find_first_not_of("0123456789") == std::string::npos &&
                     std::stoull(text) <= 0xFFFFFFFFull;
      bool ok = decimal ? settings.writeInt(standalone::kCorvaneKey, request.name,
                                            static_cast<std::uint32_t>(std::stoull(text)))
                        : settings.writeText(standalone::kCorvaneKey, request.name, text);
      if (!ok) {
        err << "corvane: cannot write " << settings.path() << "\n";
        return 1;
      }
      return 0;
    }
  }
  return 1;
}

}  // namespace corvane_app
