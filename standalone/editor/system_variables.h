#pragma once
// The host's system variables with their types and defaults. Each variable
// lives where the host keeps it: in the drawing's header (read and written
// through DrawingHeader), in the per-user settings (the host's registry
// values), only for the session, or computed from the view (read-only).
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/resbuf.h"
#include "host/settings.h"
#include "host/sysvars.h"
#include "standalone/editor/view.h"

namespace standalone {

// Header variables of the open drawing by their DXF names ("$PDMODE"), as
// RT-typed values (RTSHORT, RTREAL, RTSTR, RT3DPOINT).
class DrawingHeader {
 public:
  virtual ~DrawingHeader() = default;
  // The value when the drawing's header has the variable.
  virtual std::optional<host::ResBuf> get(std::string_view dxfName) const = 0;
  // Adds or replaces the variable; group is the DXF group code it is written with.
  virtual void set(std::string_view dxfName, int group, const host::ResBuf& value) = 0;
};

// The settings key under which registry-kept host variables live.
inline constexpr std::string_view kHostVariablesKey = "Software\\Brightvale\\Corvane\\Host";

class SystemVariableTable : public host::SystemVariables {
 public:
  SystemVariableTable(DrawingHeader& header, host::SettingsStore& settings, const View& view);

  int getVar(std::string_view name, host::ResBuf& value) const override;
  int setVar(std::string_view name, const host::ResBuf& value) override;

  // Names of all known variables, alphabetically.
  std::vector<std::string> names() const;

 private:
  enum class Home { kHeader, kRegistry, kSession, kViewSize, kViewCenter };
  struct Definition {
    std::string name;
    int type;  // RTSHORT, RTREAL, RTSTR, RT3DPOINT
    Home home;
    int group = 0;  // DXF group code of the header variable
    host::ResBuf initial;
    bool (*valid)(const host::ResBuf&) = nullptr;  // value check after type conversion
  };
  const Definition* find(std::string_view name) const;
  // The value converted to the variable's type, or nothing when it does not fit.
  static std::optional<host::ResBuf> convert(const Definition& def, const host::ResBuf& value);

  DrawingHeader& header_;
  host::SettingsStore& settings_;
  const View& view_;
  std::vector<Definition> definitions_;
  std::map<std::string, host::ResBuf> session_;
};

// CECOLOR's text ("BYLAYER", "BYBLOCK", "1".."255") for a colour index (256, 0, 1..255), and back.
std::string colorText(int index);
std::optional<int> colorIndexFromText(std::string_view text);

}  // namespace standalone
