#pragma once
// Small in-memory stand-ins for the host interfaces, enough to drive the
// frame without the embedded host: scripted answers, a transcript, maps for
// settings and system variables, and recorders for what the frame registers.
#include <deque>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <variant>
#include <vector>

#include "host/host.h"
#include "tests/support/fake_drawing.h"

namespace frame_test {

// One scripted answer to the next prompt.
struct Reply {
  int result = host::RTNORM;
  std::variant<std::monostate, int, double, ge::Point3d, std::string, std::vector<host::ObjectId>> value;

  static Reply enter() { return {host::RTNONE, {}}; }
  static Reply cancel() { return {host::RTCAN, {}}; }
  static Reply integer(int v) { return {host::RTNORM, v}; }
  static Reply real(double v) { return {host::RTNORM, v}; }
  static Reply point(ge::Point3d p) { return {host::RTNORM, p}; }
  // A keyword typed at a numeric or point prompt.
  static Reply otherKeyword(std::string k) { return {host::RTKWORD, std::move(k)}; }
  static Reply selection(std::vector<host::ObjectId> ids) { return {host::RTNORM, std::move(ids)}; }
};

struct InitGetCall {
  int bits;
  std::string keywords;
};

struct SsgetCall {
  std::string mode;
  std::optional<host::ResBufList> filter;
};

class FakeEditor : public host::Editor {
 public:
  std::deque<Reply> replies;
  std::string transcript;
  std::vector<InitGetCall> initGets;
  std::vector<SsgetCall> ssgets;
  std::vector<std::pair<std::string, std::string>> messageBoxes;  // caption, text
  std::string lastKeyword;

  void print(std::string_view text) override { transcript += text; }
  void initGet(int bits, std::string_view keywords) override { initGets.push_back({bits, std::string(keywords)}); }
  int getInt(std::string_view prompt, int& value) override { return answer(prompt, value); }
  int getReal(std::string_view prompt, double& value) override { return answer(prompt, value); }
  int getDist(const ge::Point3d*, std::string_view prompt, double& value) override { return answer(prompt, value); }
  int getPoint(const ge::Point3d*, std::string_view prompt, ge::Point3d& value) override {
    return answer(prompt, value);
  }
  int getKword(std::string_view prompt, std::string& keyword) override { return answer(prompt, keyword); }
  int getString(bool, std::string_view prompt, std::string& value) override { return answer(prompt, value); }
  int getInput(std::string& value) override {
    value = lastKeyword;
    return host::RTNORM;
  }
  int entSel(std::string_view prompt, host::ObjectId& entity, ge::Point3d&) override {
    std::vector<host::ObjectId> ids;
    int r = answer(prompt, ids);
    if (r == host::RTNORM && !ids.empty()) entity = ids.front();
    return r;
  }
  int ssget(std::string_view mode, const ge::Point3d*, const ge::Point3d*, const host::ResBufList* filter,
            std::vector<host::ObjectId>& selection) override {
    ssgets.push_back({std::string(mode), filter ? std::optional(*filter) : std::nullopt});
    return answer("", selection);
  }
  void messageBox(std::string_view caption, std::string_view text) override {
    messageBoxes.emplace_back(std::string(caption), std::string(text));
  }
  int getFileName(std::string_view, std::string_view, std::string_view, bool, std::string&) override {
    return host::RTCAN;
  }
  bool userBreak() override { return false; }

 private:
  // Pops the next reply; a script that runs dry cancels, as Escape would.
  template <class T>
  int answer(std::string_view prompt, T& value) {
    transcript += prompt;
    if (replies.empty()) return host::RTCAN;
    Reply r = replies.front();
    replies.pop_front();
    if (r.result == host::RTKWORD) lastKeyword = std::get<std::string>(r.value);
    if (auto* v = std::get_if<T>(&r.value)) value = *v;
    return r.result;
  }
};

class FakeSettingsStore : public host::SettingsStore {
 public:
  using Value = std::variant<std::uint32_t, std::string, std::vector<std::uint8_t>>;
  std::map<std::string, std::map<std::string, Value>> keys;

  std::optional<std::uint32_t> readInt(std::string_view key, std::string_view name) const override {
    return get<std::uint32_t>(key, name);
  }
  std::optional<std::string> readText(std::string_view key, std::string_view name) const override {
    return get<std::string>(key, name);
  }
  std::optional<std::vector<std::uint8_t>> readBytes(std::string_view key, std::string_view name) const override {
    return get<std::vector<std::uint8_t>>(key, name);
  }
  bool writeInt(std::string_view key, std::string_view name, std::uint32_t value) override {
    keys[std::string(key)][std::string(name)] = value;
    return true;
  }
  bool writeText(std::string_view key, std::string_view name, std::string_view value) override {
    keys[std::string(key)][std::string(name)] = std::string(value);
    return true;
  }
  bool writeBytes(std::string_view key, std::string_view name, const std::vector<std::uint8_t>& value) override {
    auto k = keys.find(std::string(key));
    if (k == keys.end()) return false;
    k->second[std::string(name)] = value;
    return true;
  }

 private:
  template <class T>
  std::optional<T> get(std::string_view key, std::string_view name) const {
    auto k = keys.find(std::string(key));
    if (k == keys.end()) return std::nullopt;
    auto v = k->second.find(std::string(name));
    if (v == k->second.end()) return std::nullopt;
    if (auto* t = std::get_if<T>(&v->second)) return *t;
    return std::nullopt;
  }
};

class FakeSystemVariables : public host::SystemVariables {
 public:
  std::map<std::string, host::ResBuf> vars;
  std::set<std::string> readOnly;
  std::vector<std::pair<std::string, host::ResBuf>> sets;  // every accepted set, in order

  int getVar(std::string_view name, host::ResBuf& value) const override {
    auto v = vars.find(std::string(name));
    if (v == vars.end()) return host::RTERROR;
    value = v->second;
    return host::RTNORM;
  }
  int setVar(std::string_view name, const host::ResBuf& value) override {
    auto v = vars.find(std::string(name));
    if (v == vars.end() || readOnly.count(std::string(name)) || v->second.type != value.type) return host::RTERROR;
    v->second = value;
    sets.emplace_back(std::string(name), value);
    return host::RTNORM;
  }
};

struct Registered {
  std::string group, global, local;
  int flags;
  host::CommandHandler handler;
};

class FakeCommandStack : public host::CommandStack {
 public:
  std::vector<Registered> commands;
  bool addCommand(std::string_view group, std::string_view globalName, std::string_view localName, int flags,
                  host::CommandHandler handler) override {
    commands.push_back({std::string(group), std::string(globalName), std::string(localName), flags, handler});
    return true;
  }
  bool removeGroup(std::string_view group) override {
    std::erase_if(commands, [&](const Registered& r) { return r.group == group; });
    return true;
  }
  // Runs a command by its local name as the host's command line would.
  bool run(std::string_view localName) {
    for (auto& c : commands)
      if (c.local == localName) {
        c.handler();
        return true;
      }
    return false;
  }
};

class FakeHostCommands : public host::HostCommands {
 public:
  std::vector<std::string> queued;
  int release = 23;

  int command(const host::ResBufList&) override { return host::RTNORM; }
  void queueExpression(std::string_view expression) override { queued.emplace_back(expression); }
  bool isMenuGroupLoaded(std::string_view) const override { return false; }
  int releaseNumber() const override { return release; }
};

class FakeDemandLoad : public host::DemandLoadStore {
 public:
  std::vector<host::DemandLoadEntry> written;
  bool write(const host::DemandLoadEntry& entry) override {
    written.push_back(entry);
    return true;
  }
};

class FakePlatform : public host::Platform {
 public:
  std::string app = "/opt/corvane/lib/corvane.so";
  std::string module = "/opt/corvane/lib/corvane.so";
  std::set<std::string> files;
  std::vector<std::string> opened;

  std::string appName() const override { return app; }
  std::string modulePath() const override { return module; }
  bool fileExists(std::string_view path) const override { return files.count(std::string(path)); }
  bool openWithDesktop(std::string_view target) override {
    opened.emplace_back(target);
    return true;
  }
  int runProgram(std::string_view, const std::vector<std::string>&) override { return -1; }
  std::string temporaryFileName(std::string_view suffix) override { return "/tmp/fake" + std::string(suffix); }
};

// The frame computes no geometry; every curve service answers "not implemented".
class FakeCurves : public host::CurveServices {
  using ES = host::ErrorStatus;
  using ED = host::EntityData;
  static constexpr ES kNo = ES::eNotImplementedYet;

 public:
  ES getStartParam(const ED&, double&) const override { return kNo; }
  ES getEndParam(const ED&, double&) const override { return kNo; }
  ES getStartPoint(const ED&, ge::Point3d&) const override { return kNo; }
  ES getEndPoint(const ED&, ge::Point3d&) const override { return kNo; }
  bool isClosed(const ED&) const override { return false; }
  ES getPointAtParam(const ED&, double, ge::Point3d&) const override { return kNo; }
  ES getParamAtPoint(const ED&, const ge::Point3d&, double&) const override { return kNo; }
  ES getDistAtParam(const ED&, double, double&) const override { return kNo; }
  ES getParamAtDist(const ED&, double, double&) const override { return kNo; }
  ES getPointAtDist(const ED&, double, ge::Point3d&) const override { return kNo; }
  ES getDistAtPoint(const ED&, const ge::Point3d&, double&) const override { return kNo; }
  ES getClosestPointTo(const ED&, const ge::Point3d&, ge::Point3d&) const override { return kNo; }
  ES getFirstDeriv(const ED&, double, ge::Vector3d&) const override { return kNo; }
  ES getArea(const ED&, double&) const override { return kNo; }
  ES getGeomExtents(const ED&, ge::Extents3d&) const override { return kNo; }
  ES transformBy(ED&, const ge::Matrix3d&) const override { return kNo; }
  ES reverseCurve(ED&) const override { return kNo; }
  ES intersectWith(const ED&, const ED&, host::Intersect, std::vector<ge::Point3d>&) const override { return kNo; }
  ES getOffsetCurves(const ED&, double, std::vector<ED>&) const override { return kNo; }
  ES getOrthoProjectedCurve(const ED&, const host::Plane&, ED&) const override { return kNo; }
  ES getProjectedCurve(const ED&, const host::Plane&, const ge::Vector3d&, ED&) const override { return kNo; }
  ES getSpline(const ED&, host::Spline&) const override { return kNo; }
  ES splineToPolyline(const host::Spline&, int, ED&) const override { return kNo; }
  ES convertLwTo2d(const host::LwPolyline&, host::Polyline2d&) const override { return kNo; }
  ES convert2dToLw(const host::Polyline2d&, host::LwPolyline&) const override { return kNo; }
  ES fitSpline(const std::vector<ge::Point3d>&, const ge::Vector3d*, const ge::Vector3d*,
               host::Spline&) const override {
    return kNo;
  }
  ES fitPolyline2d(host::Polyline2d&, int, int) const override { return kNo; }
};

// All fakes wired into one host::Host.
struct FakeHost {
  FakeEditor editor;
  test_support::MemoryDrawing drawing;
  FakeCurves curves;
  FakeSystemVariables sysvars;
  FakeCommandStack commandStack;
  FakeHostCommands hostCommands;
  FakeDemandLoad demandLoad;
  FakeSettingsStore settings;
  FakePlatform platform;
  host::Host host{editor, drawing, curves, sysvars, commandStack, hostCommands, demandLoad, settings, platform};
};

}  // namespace frame_test
