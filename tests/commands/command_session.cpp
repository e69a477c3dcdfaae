#include "command_session.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <stdexcept>

#include "apps/common/loaded_plugin.h"
#include "frame/language.h"
#include "standalone/db/dxf_reader.h"
#include "standalone/db/dxf_writer.h"
#include "standalone/editor/answer_source.h"

namespace commands_test {

CommandSession::CommandSession(Language language)
    : HostSession("commands"), language_(language), draft_(standalone::DrawingDatabase::createEmpty("AC1027")) {
  // The load counter past the pages shown on the first loads keeps the transcript to the commands.
  std::ofstream(settingsPath()) << "Windows Registry Editor Version 5.00\n\n"
                                   "[HKEY_CURRENT_USER\\Software\\Brightvale\\Corvane]\n"
                                << "\"ChineseVersion\"=dword:0000000" << (chinese() ? 1 : 0) << "\n"
                                << "\"pagetimes\"=dword:0000000a\n";
}

CommandSession::~CommandSession() { frame::setChinese(false); }

host::ObjectId CommandSession::add(host::EntityData data, const std::string& layer, int color) {
  host::Entity e;
  e.props.layer = layer;
  e.props.color.index = color;
  e.data = std::move(data);
  draft_.append(e);
  return e.id;
}

void CommandSession::start() {
  std::filesystem::path in = root() / "in.dxf";
  standalone::saveDxf(draft_, in);
  HostSession::start(standalone::loadDxf(in), root() / "corvane",
                     [](standalone::EmbeddedHost& h) { corvane_app::addHostCommands(h); });
}

void CommandSession::startFrom(const std::filesystem::path& dxf) {
  HostSession::start(standalone::loadDxf(dxf), root() / "corvane",
                     [](standalone::EmbeddedHost& h) { corvane_app::addHostCommands(h); });
}

std::vector<host::Entity> CommandSession::entities() {
  std::vector<host::Entity> out;
  const auto& db = host().drawing();
  for (host::ObjectId id : db.entitiesOf(db.modelSpace()))
    if (auto e = db.read(id)) out.push_back(*e);
  return out;
}

std::vector<std::string> CommandSession::readBackWithEzdxf() {
  std::filesystem::path out = root() / "out.dxf", dump = root() / "dump.txt";
  standalone::saveDxf(host().drawing(), out);
  std::string cmd = std::string(CORVANE_PYTHON) + " " + CORVANE_DUMP_DXF + " " + out.string() + " > " +
                    dump.string() + " 2>&1";
  int status = std::system(cmd.c_str());
  std::vector<std::string> lines;
  std::ifstream in(dump);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  if (status != 0)
    throw std::runtime_error("ezdxf could not read the drawing: " + (lines.empty() ? "" : lines.back()));
  return lines;
}

std::string pickOf(host::ObjectId id) { return "#" + test_support::handleOf(id); }

host::LwPolyline lwThrough(const std::vector<ge::Point2d>& pts, bool closed, double elevation) {
  host::LwPolyline lw;
  for (auto p : pts) lw.vertices.push_back({p.x, p.y});
  lw.closed = closed;
  lw.elevation = elevation;
  return lw;
}

host::Polyline2d old2dThrough(const std::vector<ge::Point2d>& pts, bool closed) {
  host::Polyline2d pl;
  for (auto p : pts) pl.vertices.push_back({{p.x, p.y, 0}});
  pl.closed = closed;
  return pl;
}

host::Polyline3d poly3dThrough(const std::vector<ge::Point3d>& pts, bool closed) {
  host::Polyline3d pl;
  for (auto p : pts) pl.vertices.push_back({p});
  pl.closed = closed;
  return pl;
}

ge::PointList verticesOf(const host::Entity& e) {
  ge::PointList pts;
  if (auto* lw = std::get_if<host::LwPolyline>(&e.data))
    for (auto& v : lw->vertices) pts.push_back({v.x, v.y, lw->elevation});
  if (auto* p2 = std::get_if<host::Polyline2d>(&e.data))
    for (auto& v : p2->vertices) pts.push_back(v.position);
  if (auto* p3 = std::get_if<host::Polyline3d>(&e.data))
    for (auto& v : p3->vertices) pts.push_back(v.position);
  return pts;
}

std::string CommandSession::processed(int n) const {
  return pick("\nProcessed <", "\n处理了< ") + std::to_string(n) + pick(" > curve(s) OK.", " >根曲线。 ");
}

testing::AssertionResult CommandSession::says(const std::string& transcript, const std::string& text) const {
  if (transcript.find(text) != std::string::npos) return testing::AssertionSuccess();
  return testing::AssertionFailure() << "no \"" << text << "\" in:\n" << transcript;
}

host::ResBuf CommandSession::sysvar(const char* name) {
  host::ResBuf value;
  host().host().sysvars.getVar(name, value);
  return value;
}

std::string selectionOf(std::initializer_list<host::ObjectId> ids) {
  std::string out;
  for (auto id : ids) out += pickOf(id) + "\n";
  return out + "\n";
}

void expectPoints(const ge::PointList& got, const ge::PointList& want) {
  ASSERT_EQ(got.size(), want.size());
  for (std::size_t i = 0; i < got.size(); ++i) EXPECT_LT(got[i].distanceTo(want[i]), 1e-9) << i;
}

}  // namespace commands_test
