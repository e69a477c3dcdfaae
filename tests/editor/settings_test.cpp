// The settings file, the demand-load entries kept in it, and the system
// variables that live in it, in the drawing header or only for the session.
#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host_fixture.h"
#include "standalone/editor/demand_load.h"
#include "standalone/editor/errors.h"
#include "standalone/editor/settings_file.h"
#include "standalone/editor/system_variables.h"

namespace corvane_test {
namespace {

using namespace standalone;
using ::testing::HasSubstr;

std::string slurp(const std::string& path) {
  std::ifstream in(path);
  std::stringstream s;
  s << in.rdbuf();
  return s.str();
}

constexpr std::string_view kKey = "Software\\Brightvale\\Corvane";

TEST(RegText, RoundTripsEveryValueKind) {
  RegDocument doc;
  std::vector<std::uint8_t> bytes(60);
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<std::uint8_t>(i * 7);
  doc.keys.push_back({"HKEY_CURRENT_USER\\Software\\Brightvale\\Corvane",
                      {{"ChineseVersion", std::uint32_t{0xFFFFFFFF}},
                       {"Location", std::string("C:\\Corvane \"x\"\\ 曲线")},
                       {"", std::string("default")},
                       {"Blob", bytes},
                       {"Empty", std::vector<std::uint8_t>{}}}});
  std::string text = formatRegText(doc);
  EXPECT_THAT(text, HasSubstr("Windows Registry Editor Version 5.00\n\n[HKEY_CURRENT_USER\\Software\\Brightvale\\Corvane]\n"
                              "\"ChineseVersion\"=dword:ffffffff\n\"Location\"=\"C:\\\\Corvane \\\"x\\\"\\\\ 曲线\"\n@=\"default\"\n"));
  EXPECT_THAT(text, HasSubstr(",\\\n  "));  // long byte lists continue on the next line
  EXPECT_EQ(parseRegText(text), doc);
}

TEST(RegText, MalformedTextNamesTheLine) {
  auto why = [](const std::string& text) {
    try {
      parseRegText(text);
    } catch (const SettingsError& e) {
      return std::string(e.what());
    }
    return std::string("accepted");
  };
  const std::string head = "Windows Registry Editor Version 5.00\n\n";
  EXPECT_EQ(why("REGEDIT4\n"), "line 1: the file must start with \"Windows Registry Editor Version 5.00\"");
  EXPECT_EQ(why(head + "\"a\"=dword:1\n"), "line 3: a value before the first key");
  EXPECT_EQ(why(head + "[K]\n\"a\"=dword:123456789\n"), "line 4: a dword needs 1 to 8 hexadecimal digits");
  EXPECT_EQ(why(head + "[K]\n\"a\"=handleOf(2):00\n"), "line 4: unsupported value type (expected \"text\", dword: or hex:)");
  EXPECT_EQ(why(head + "[K]\n\"a\"=\"open\n"), "line 4: quoted text without its closing quote");
  EXPECT_EQ(why(head + "[K]\n\"a\"=hex:0g\n"), "line 4: hex bytes are two hexadecimal digits each, separated by commas");
  EXPECT_EQ(why(head + "[K]\n\"a\"=hex:01,\\"), "line 4: hex list continued past the end of the file");
  EXPECT_EQ(why(""), "line 1: the file must start with \"Windows Registry Editor Version 5.00\"");
}

TEST(SettingsFile, MissingFileKeyOrTypeAndOverlongTextReadAsNothingAndTheFirstWriteCreatesThem) {
  TempDir dir;
  SettingsFile s(dir.file("sub/settings.reg"));
  EXPECT_FALSE(s.readInt(kKey, "pagetimes"));
  EXPECT_FALSE(s.readText(kKey, "Location"));
  EXPECT_FALSE(s.writeBytes(kKey, "Blob", {1, 2}));  // bytes never create the key
  EXPECT_TRUE(s.writeInt(kKey, "pagetimes", 3));
  EXPECT_TRUE(s.writeBytes(kKey, "Blob", {1, 2}));
  EXPECT_TRUE(s.writeText(kKey, "Location", "/opt/corvane/"));
  EXPECT_EQ(s.readInt(kKey, "PAGETIMES"), 3u);  // names ignore case, as in the registry
  EXPECT_EQ(s.readBytes(kKey, "Blob"), (std::vector<std::uint8_t>{1, 2}));
  EXPECT_EQ(s.readText(kKey, "Location"), "/opt/corvane/");
  // A value of another type reads as missing.
  EXPECT_FALSE(s.readInt(kKey, "Location"));
  EXPECT_FALSE(s.readText(kKey, "pagetimes"));
  EXPECT_TRUE(s.writeInt(kKey, "pagetimes", 4));
  EXPECT_EQ(s.list(kKey).size(), 3u);
  EXPECT_EQ(s.readInt(kKey, "pagetimes"), 4u);
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.file("sub")), std::filesystem::directory_iterator()), 1)
      << "no temporary left beside the settings";
  // Text longer than the host's buffer reads as missing.
  s.writeText(kKey, "fits", std::string(4095, 'a'));
  s.writeText(kKey, "too long", std::string(4096, 'a'));
  std::string wide(2048, 'a');
  for (int i = 0; i < 1024; ++i) wide += "\U0001F600";  // two UTF-16 units each
  s.writeText(kKey, "wide", wide);
  EXPECT_TRUE(s.readText(kKey, "fits"));
  EXPECT_FALSE(s.readText(kKey, "too long"));
  // 2048 + 2 * 1024 UTF-16 units: one more than the buffer holds with its terminating zero.
  EXPECT_FALSE(s.readText(kKey, "wide"));
}

TEST(SettingsFile, DamagedFileReadsAsMissingAndIsKeptAsideOnTheNextWrite) {
  TempDir dir;
  std::string path = dir.file("settings.reg");
  std::ofstream(path) << "Windows Registry Editor Version 5.00\n\n[HKEY_CURRENT_USER\\" << kKey
                      << "]\n\"ChineseVersion\"=dword:1\n\"broken\"=what\n";
  std::vector<std::string> notes;
  SettingsFile s(path, [&](const std::string& n) { notes.push_back(n); });
  EXPECT_FALSE(s.readInt(kKey, "ChineseVersion"));
  EXPECT_EQ(slurp(path).find("broken") != std::string::npos, true);  // reading changes nothing
  EXPECT_TRUE(s.writeInt(kKey, "pagetimes", 1));
  EXPECT_THAT(slurp(path + ".damaged"), HasSubstr("\"broken\"=what"));
  EXPECT_EQ(s.readInt(kKey, "pagetimes"), 1u);
  ASSERT_EQ(notes.size(), 1u);
  EXPECT_THAT(notes[0], HasSubstr("kept as " + path + ".damaged"));
  // A second damaged file does not overwrite the first one kept aside.
  std::ofstream(path) << "junk\n";
  EXPECT_TRUE(s.writeInt(kKey, "pagetimes", 2));
  EXPECT_TRUE(std::filesystem::exists(path + ".damaged.1"));
}

TEST(SettingsFile, PathFromTheEnvironment) {
  ::setenv("CORVANE_SETTINGS", "/x/over.reg", 1);
  EXPECT_EQ(defaultSettingsPath(), "/x/over.reg");
  ::unsetenv("CORVANE_SETTINGS");
  ::setenv("XDG_CONFIG_HOME", "/cfg", 1);
  EXPECT_EQ(defaultSettingsPath(), "/cfg/corvane/settings.reg");
  ::unsetenv("XDG_CONFIG_HOME");
  ::setenv("HOME", "/home/u", 1);
  EXPECT_EQ(defaultSettingsPath(), "/home/u/.config/corvane/settings.reg");
}

TEST(DemandLoad, EntriesGoToTheirOwnKeys) {
  TempDir dir;
  SettingsFile s(dir.file("settings.reg"));
  DemandLoadFile d(s);
  host::DemandLoadEntry e{"Corvane", "/opt/corvane/corvane", "Corvane version 1.0", 7, "Corvane",
                          {{"ZORL_PLYH", "PLYH"}, {"ZORL_DEMO1", "ZORL_DEMO1"}}};
  ASSERT_TRUE(d.write(e));
  std::string app = std::string(kApplicationsKey) + "\\Corvane";
  EXPECT_EQ(s.readInt(app, "LOADCTRLS"), 7u);
  EXPECT_EQ(s.readText(app, "LOADER"), "/opt/corvane/corvane");
  EXPECT_EQ(s.readText(app + "\\Commands", "ZORL_PLYH"), "PLYH");
  EXPECT_EQ(s.readText(app + "\\Groups", "Corvane"), "Corvane");
  EXPECT_TRUE(d.write(e));  // written again at every load: same content
  EXPECT_EQ(s.list(app + "\\Commands").size(), 2u);
}

class MapHeader : public DrawingHeader {
 public:
  std::optional<host::ResBuf> get(std::string_view name) const override {
    auto it = values.find(std::string(name));
    if (it == values.end()) return std::nullopt;
    return it->second.second;
  }
  void set(std::string_view name, int group, const host::ResBuf& v) override { values[std::string(name)] = {group, v}; }
  std::map<std::string, std::pair<int, host::ResBuf>> values;
};

class SysVarTest : public ::testing::Test {
 protected:
  host::ResBuf get(const char* name) {
    host::ResBuf v;
    EXPECT_EQ(vars.getVar(name, v), host::RTNORM) << name;
    return v;
  }
  TempDir dir;
  SettingsFile settings{dir.file("settings.reg")};
  MapHeader header;
  View view{{3, 4}, 25, 1600, 1000};
  SystemVariableTable vars{header, settings, view};
};

TEST_F(SysVarTest, DefaultsAndTypes) {
  using R = host::ResBuf;
  const std::pair<const char*, R> defaults[] = {
      {"PDMODE", R::shortInt(0)},     {"pdsize", R::real(0)},         {"CMDECHO", R::shortInt(1)},
      {"MIRRTEXT", R::shortInt(0)},   {"SURFTAB1", R::shortInt(6)},   {"MENUBAR", R::shortInt(0)},
      {"FILEDIA", R::shortInt(1)},    {"PICKBOX", R::shortInt(3)},    {"CECOLOR", R::text("BYLAYER")},
      {"CLAYER", R::text("0")},       {"SPLINETYPE", R::shortInt(6)}, {"SPLINESEGS", R::shortInt(8)},
      {"SPLFRAME", R::shortInt(0)},   {"VIEWSIZE", R::real(25)},      {"VIEWCTR", R::point3d({3, 4, 0})}};
  for (const auto& [name, value] : defaults) EXPECT_EQ(get(name), value) << name;
  host::ResBuf v;
  EXPECT_EQ(vars.getVar("NOSUCHVAR", v), host::RTERROR);
}

TEST_F(SysVarTest, HeaderVariablesAreReadFromAndWrittenToTheDrawing) {
  header.values["$PDMODE"] = {70, host::ResBuf::shortInt(35)};
  header.values["$CECOLOR"] = {62, host::ResBuf::shortInt(0)};
  EXPECT_EQ(get("PDMODE"), host::ResBuf::shortInt(35));
  EXPECT_EQ(get("CECOLOR"), host::ResBuf::text("BYBLOCK"));
  EXPECT_EQ(vars.setVar("PDSIZE", host::ResBuf::shortInt(2)), host::RTNORM);  // an integer for a real is fine
  EXPECT_EQ(header.values["$PDSIZE"], (std::pair<int, host::ResBuf>{40, host::ResBuf::real(2)}));
  EXPECT_EQ(vars.setVar("CECOLOR", host::ResBuf::text("bylayer")), host::RTNORM);
  EXPECT_EQ(header.values["$CECOLOR"], (std::pair<int, host::ResBuf>{62, host::ResBuf::shortInt(256)}));
  EXPECT_EQ(vars.setVar("CLAYER", host::ResBuf::text("Walls")), host::RTNORM);
  EXPECT_EQ(header.values["$CLAYER"].first, 8);
}

TEST_F(SysVarTest, RegistryVariablesLiveInTheSettingsFileAndSessionVariablesNowhere) {
  EXPECT_EQ(vars.setVar("PICKBOX", host::ResBuf::shortInt(10)), host::RTNORM);
  EXPECT_EQ(vars.setVar("CMDECHO", host::ResBuf::shortInt(0)), host::RTNORM);
  EXPECT_EQ(get("CMDECHO"), host::ResBuf::shortInt(0));
  EXPECT_TRUE(header.values.empty());
  EXPECT_EQ(settings.list(kHostVariablesKey).size(), 1u);
  EXPECT_EQ(settings.readInt(kHostVariablesKey, "PICKBOX"), 10u);
  SystemVariableTable again{header, settings, view};
  host::ResBuf v;
  again.getVar("PICKBOX", v);
  EXPECT_EQ(v, host::ResBuf::shortInt(10));
}

TEST_F(SysVarTest, RefusedValues) {
  using R = host::ResBuf;
  EXPECT_EQ(vars.setVar("PDMODE", R::shortInt(99)), host::RTNORM);  // 96 + 3
  // VIEWSIZE is read-only; PDMODE takes 0 to 4 plus 32, 64 or 96; CMDECHO 0 or 1; PICKBOX up to 50.
  const std::pair<const char*, R> refused[] = {
      {"VIEWSIZE", R::real(3)},       {"PDMODE", R::shortInt(5)},      {"PDMODE", R::text("3")},
      {"CMDECHO", R::shortInt(2)},    {"CMDECHO", R::real(0)},         {"PICKBOX", R::shortInt(51)},
      {"SPLINETYPE", R::shortInt(4)}, {"CECOLOR", R::text("256")},     {"CLAYER", R::text("")},
      {"MENUBAR", R::longInt(70000)}};
  for (const auto& [name, value] : refused) EXPECT_EQ(vars.setVar(name, value), host::RTERROR) << name;
  ASSERT_EQ(header.values.size(), 1u);  // only the one accepted value was written, and not overwritten
  EXPECT_EQ(header.values["$PDMODE"].second, host::ResBuf::shortInt(99));
}

TEST(SysVarInDrawing, HeaderValuesReachTheDatabase) {
  HostFixture f;
  host::Host& h = f.host().host();
  ASSERT_EQ(h.sysvars.setVar("PDMODE", host::ResBuf::shortInt(35)), host::RTNORM);
  auto stored = f.host().drawing().headerVariable("$PDMODE");
  ASSERT_TRUE(stored && !stored->empty());
  EXPECT_EQ(stored->front().type, 70);
  ASSERT_EQ(h.sysvars.setVar("CLAYER", host::ResBuf::text("Walls")), host::RTNORM);
  EXPECT_EQ(h.drawing.currentLayer(), "Walls");
  ASSERT_EQ(h.sysvars.setVar("CECOLOR", host::ResBuf::text("5")), host::RTNORM);
  EXPECT_EQ(h.drawing.currentColor().index, 5);
}

}  // namespace
}  // namespace corvane_test
