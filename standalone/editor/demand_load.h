#pragma once
// Demand-load entries kept in the settings file, under
// Software\Brightvale\Corvane\Host\Applications\<application>, with the
// sub-keys Groups and Commands (global name = local name), as the host keeps
// them in its registry.
#include "host/commands.h"
#include "standalone/editor/settings_file.h"

namespace standalone {

inline constexpr std::string_view kApplicationsKey = "Software\\Brightvale\\Corvane\\Host\\Applications";

class DemandLoadFile : public host::DemandLoadStore {
 public:
  explicit DemandLoadFile(SettingsFile& settings) : settings_(settings) {}
  bool write(const host::DemandLoadEntry& entry) override;

 private:
  SettingsFile& settings_;
};

}  // namespace standalone
