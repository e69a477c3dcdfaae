#include "prompt_probe.h"

#include <cstdio>
#include <string>

#include "tests/support/scripted_host.h"

namespace corvane_test {

namespace {

std::string codeName(int rc) {
  switch (rc) {
    case host::RTNORM: return "RTNORM";
    case host::RTNONE: return "RTNONE";
    case host::RTCAN: return "RTCAN";
    case host::RTERROR: return "RTERROR";
    case host::RTKWORD: return "RTKWORD";
    default: return std::to_string(rc);
  }
}

std::string number(double v) {
  char buf[64];
  std::snprintf(buf, sizeof buf, "%.6g", v);
  return buf;
}

std::string pointText(const ge::Point3d& p) { return number(p.x) + "," + number(p.y) + "," + number(p.z); }

class Probe {
 public:
  explicit Probe(host::Host& h) : h_(h), ed_(h.editor) {}

  void run() {
    while (true) {
      ed_.initGet(0, "Int Real Dist Base Point Kword String Line Pick Select File Message Quit");
      std::string kind;
      int rc = ed_.getKword("Probe [Int/Real/Dist/Base/Point/Kword/String/Line/Pick/Select/File/Message/Quit]: ", kind);
      if (rc != host::RTNORM || kind == "Quit") return;
      if (kind == "Select") selection();
      else if (kind == "File") fileName();
      else if (kind == "Message") ed_.messageBox("Corvane", "Nothing was selected.");
      else if (kind == "Pick") pick();
      else if (kind == "String" || kind == "Line") text(kind == "Line");
      else value(kind);
    }
  }

 private:
  // Bits and keywords for the next prompt, asked as "bits keywords...".
  void setUp() {
    int bits = 0;
    ed_.getInt("Bits: ", bits);
    std::string keywords;
    ed_.getString(true, "Keywords: ", keywords);
    ed_.initGet(bits, keywords);
  }
  void report(int rc, const std::string& value) {
    std::string extra;
    if (rc == host::RTKWORD) ed_.getInput(extra);
    ed_.print("-> " + codeName(rc) + (rc == host::RTNORM ? " " + value : rc == host::RTKWORD ? " " + extra : "") + "\n");
  }
  void value(const std::string& kind) {
    setUp();
    if (kind == "Int") {
      int v = 0;
      int rc = ed_.getInt("Enter an integer: ", v);
      report(rc, std::to_string(v));
    } else if (kind == "Real") {
      double v = 0;
      int rc = ed_.getReal("Enter a real: ", v);
      report(rc, number(v));
    } else if (kind == "Dist" || kind == "Base") {
      double v = 0;
      ge::Point3d base{1, 1, 0};
      int rc = ed_.getDist(kind == "Base" ? &base : nullptr, "Enter a distance: ", v);
      report(rc, number(v));
    } else if (kind == "Point") {
      ge::Point3d p;
      int rc = ed_.getPoint(nullptr, "Enter a point: ", p);
      report(rc, pointText(p));
    } else {
      std::string k;
      int rc = ed_.getKword("Enter a keyword: ", k);
      report(rc, k);
    }
  }
  void text(bool spaces) {
    std::string s;
    int rc = ed_.getString(spaces, "Enter a text: ", s);
    report(rc, "[" + s + "]");
  }
  void fileName() {
    std::string path;
    int rc = ed_.getFileName("Save report as", "report", "xls", true, path);
    report(rc, "[" + path + "]");
  }
  void pick() {
    host::ObjectId id;
    ge::Point3d at;
    int rc = ed_.entSel("Select an object: ", id, at);
    std::string what;
    if (rc == host::RTNORM) {
      auto e = h_.drawing.read(id);
      what = test_support::handleOf(id) + " " + (e ? host::dxfName(e->data) : "?") + " at " + pointText(at);
    }
    report(rc, what);
  }
  // Mode ("." for the ordinary one), types and layer for the filter, corners for W and C.
  void selection() {
    std::string mode, types, layer;
    ed_.getString(false, "Mode: ", mode);
    if (mode == ".") mode.clear();
    ed_.getString(false, "Types (. for any): ", types);
    ed_.getString(false, "Layer (. for any): ", layer);
    // A comma list of types is one wildcard pattern; the or-groups the plug-in
    // sends are exercised by its own command tests.
    host::ResBufList filter;
    if (types != ".") filter.push_back(host::ResBuf::group(0, types));
    if (layer != ".") filter.push_back(host::ResBuf::group(8, layer));
    ge::Point3d a, b;
    bool corners = mode == "W" || mode == "C" || mode == "_W" || mode == "_C";
    if (corners) {
      ed_.getPoint(nullptr, "First corner: ", a);
      ed_.getPoint(nullptr, "Other corner: ", b);
    }
    std::vector<host::ObjectId> set;
    int rc = ed_.ssget(mode, corners ? &a : nullptr, corners ? &b : nullptr, filter.empty() ? nullptr : &filter, set);
    std::string list = std::to_string(set.size()) + ":";
    for (host::ObjectId id : set) list += " " + test_support::handleOf(id);
    report(rc, list);
  }

  host::Host& h_;
  host::Editor& ed_;
};

}  // namespace

void registerPromptProbe(host::Host& h) {
  h.commandStack.addCommand("TESTS", "TEST_PROBE", "PROBE", host::ACRX_CMD_MODAL, [&h] { Probe(h).run(); });
}

}  // namespace corvane_test
