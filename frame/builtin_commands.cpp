#include "frame/builtin_commands.h"

#include "frame/about_text.h"
#include "frame/output.h"

namespace frame {

namespace {
constexpr Text kNotAvailable{"\nThe command %s is not available in this build yet.\n",
                             "\n命令 %s 在此版本中尚不可用。\n"};
constexpr Text kPageMissing{"\nThe demonstration page %s is not installed.\n", "\n演示页面 %s 未安装。\n"};
}  // namespace

std::string localDemoPage(Settings& settings, const host::Platform& platform, int n) {
  return pluginFolder(settings, platform) + "demo" + kPathSeparator + "demo" + std::to_string(n) + ".html";
}

std::optional<std::string> demoPage(Settings& settings, const host::Platform& platform, int n) {
  std::string stored = settings.readText("Demo" + std::to_string(n));
  if (!stored.empty()) return stored;
  std::string local = localDemoPage(settings, platform, n);
  if (platform.fileExists(local)) return local;
  return std::nullopt;
}

void openPage(host::Host& host, std::string_view address) {
  // The host notes every address it is asked to open, and why it did not when
  // there is no display; nothing more is said here.
  host.platform.openWithDesktop(address);
}

void aboutCommand(CommandContext& context) { context.host.editor.print(aboutText(context.settings.location())); }

void openDemoPage(CommandContext& context, int n) {
  if (std::optional<std::string> page = demoPage(context.settings, context.host.platform, n))
    openPage(context.host, *page);
  else
    print(context.host, kPageMissing, localDemoPage(context.settings, context.host.platform, n));
}

void notAvailableCommand(CommandContext& context) { print(context.host, kNotAvailable, context.localName); }

}  // namespace frame
