#pragma once
// The host's command stack, driving host commands by tokens, the expression
// queue, menu groups and demand-load entries.
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "host/resbuf.h"

namespace host {

using CommandHandler = std::function<void()>;

enum CommandFlags : int { ACRX_CMD_MODAL = 0, ACRX_CMD_TRANSPARENT = 1 };

class CommandStack {
 public:
  virtual ~CommandStack() = default;
  // Returns false when a command of that global or local name exists in the group.
  virtual bool addCommand(std::string_view group, std::string_view globalName, std::string_view localName,
                          int flags, CommandHandler handler) = 0;
  virtual bool removeGroup(std::string_view group) = 0;
};

// Runs host commands (PEDIT, BOUNDARY, ...) with their input given as tokens,
// as acedCommandS does: RTSTR for names, keywords and "" (Enter); RTREAL,
// RTSHORT, RTPOINT/RT3DPOINT, RTENAME. Returns RTNORM or RTERROR/RTCAN.
class HostCommands {
 public:
  virtual ~HostCommands() = default;
  virtual int command(const ResBufList& tokens) = 0;
  // ads_queueexpr: an AutoLISP-like expression run after the current command.
  virtual void queueExpression(std::string_view expression) = 0;
  virtual bool isMenuGroupLoaded(std::string_view group) const = 0;
  // The host's major release number.
  virtual int releaseNumber() const = 0;
};

// Demand-load entries (AcadAppInfo): written once at initialisation.
struct DemandLoadEntry {
  std::string appName;
  std::string moduleName;
  std::string description;
  int loadReasons = 0;
  std::string groupName;
  std::vector<std::pair<std::string, std::string>> commands;  // global, local
};

class DemandLoadStore {
 public:
  virtual ~DemandLoadStore() = default;
  virtual bool write(const DemandLoadEntry& entry) = 0;
};

}  // namespace host
