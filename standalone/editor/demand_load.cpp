#include "standalone/editor/demand_load.h"

namespace standalone {

bool DemandLoadFile::write(const host::DemandLoadEntry& entry) {
  if (entry.appName.empty()) return false;
  std::string key = std::string(kApplicationsKey) + "\\" + entry.appName;
  std::vector<RegValue> app = {
      {"DESCRIPTION", entry.description},
      {"LOADCTRLS", static_cast<std::uint32_t>(entry.loadReasons)},
      {"LOADER", entry.moduleName},
  };
  std::vector<RegValue> groups;
  if (!entry.groupName.empty()) groups.push_back({entry.groupName, entry.groupName});
  std::vector<RegValue> commands;
  for (const auto& [global, local] : entry.commands) commands.push_back({global, local});
  return settings_.writeKey(key, std::move(app)) && settings_.writeKey(key + "\\Groups", std::move(groups)) &&
         settings_.writeKey(key + "\\Commands", std::move(commands));
}

}  // namespace standalone
