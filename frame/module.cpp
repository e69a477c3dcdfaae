#include "frame/module.h"

#include "commands/link_lines.h"
#include "frame/builtin_commands.h"
#include "frame/errors.h"
#include "frame/language.h"
#include "frame/menu.h"
#include "frame/output.h"

namespace frame {

namespace {
constexpr Text kGreeting{"\nCorvane %s loaded successfully.", "\n【Corvane】 %s 已成功加载。"};
// Load reasons of the demand-load entries: on proxy detection, at start-up, on command invocation.
constexpr int kLoadReasons = 7;
// Loads whose count modulo this is 0 show the about text; the introduction pages follow them.
constexpr std::uint32_t kIntroductionCycle = 32;
constexpr std::uint32_t kIntroductionPages = 3;
}  // namespace

int Module::acrxEntryPoint(AppMsg msg) {
  switch (msg) {
    case AppMsg::kInitAppMsg:
      initialise();
      break;
    case AppMsg::kLoadDwgMsg:
      loadMenu(host_, settings_);
      break;
    case AppMsg::kUnloadAppMsg:
      unload();
      break;
  }
  return 0;
}

void Module::initialise() {
  // Locking the module in memory and declaring it document-aware have no
  // counterpart on this host, nor has building the run-time class tree.
  setChinese(settings_.readInt("ChineseVersion") != 0);
  registerCommands();
  print(host_, kGreeting, versionLabel());
  commands::initLinkLineClass(host_);
  countLoad();
  writeDemandLoadEntries();
}

void Module::registerCommands() {
  for (const CommandEntry& entry : commandTable()) {
    // A failure to add a command is not reported.
    host_.commandStack.addCommand(kCommandGroup, entry.globalName, entry.localName, host::ACRX_CMD_MODAL,
                                  [this, &entry] { runCommand(entry); });
  }
}

void Module::runCommand(const CommandEntry& entry) {
  CommandContext context{host_, settings_, entry.globalName, entry.localName};
  commandPrologue(settings_, entry.internalName);
  if (!entry.isBuilt()) {
    notAvailableCommand(context);
    return;
  }
  try {
    entry.handler(context);
  } catch (const PluginError& e) {
    // Failures of outside data end the command with their message; the
    // host's own exceptions (input that ended) pass on to the host.
    host_.editor.print(e.chosen());
  }
}

void Module::countLoad() {
  std::uint32_t loads = settings_.readInt("pagetimes");
  if (loads >= kLoadCounterLimit) {
    settings_.writeInt("pagetimes", 0);
    return;
  }
  settings_.writeInt("pagetimes", loads + 1);
  std::uint32_t k = loads % kIntroductionCycle + 1;
  if (k == 1) {
    const CommandEntry* about = findByLocalName("ABOUT_CORVANE");
    CommandContext context{host_, settings_, about->globalName, about->localName};
    aboutCommand(context);
  }
  // The introduction pages are the first demonstration pages; a missing one is passed over quietly.
  if (k <= kIntroductionPages)
    if (std::optional<std::string> page = demoPage(settings_, host_.platform, static_cast<int>(k)))
      openPage(host_, *page);
}

void Module::writeDemandLoadEntries() {
  host::DemandLoadEntry entry;
  entry.appName = std::string(kCommandGroup);
  entry.moduleName = host_.platform.modulePath();
  entry.description = "Corvane version 1.0";
  entry.loadReasons = kLoadReasons;
  entry.groupName = std::string(kCommandGroup);
  for (auto [global, local] : demandLoadCommands()) entry.commands.emplace_back(global, local);
  host_.demandLoad.write(entry);
}

void Module::unload() {
  host_.commandStack.removeGroup(kCommandGroup);
  commands::removeLinkLineClass(host_);
}

}  // namespace frame
