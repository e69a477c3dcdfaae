#include "frame/builtin_commands.h"

#include "frame/output.h"

namespace frame {

namespace {
constexpr Text kAboutLine{"\nCorvane %s: two-dimensional drafting commands for curves and polylines.\n",
                          "\n【Corvane】 %s：二维曲线与多段线绘图命令集。\n"};
constexpr Text kNotAvailable{"\nThe command %s is not available in this build yet.\n",
                             "\n命令 %s 在此版本中尚不可用。\n"};
}  // namespace

std::string defaultDemoPage(int n) { return "https://corvane.example/demo/" + std::to_string(n); }

std::string introductionPage(int n) { return "https://corvane.example/intro/" + std::to_string(n); }

void openPage(host::Host& host, std::string_view address) {
  // The host notes every address it is asked to open, and why it did not when
  // there is no display; nothing more is said here.
  host.platform.openWithDesktop(address);
}

void aboutCommand(CommandContext& context) {
  print(context.host, kAboutLine, versionLabel());
  openPage(context.host, kAboutPage);
}

void openDemoPage(CommandContext& context, int n) {
  std::string address = context.settings.readText("Demo" + std::to_string(n));
  if (address.empty()) address = defaultDemoPage(n);
  openPage(context.host, address);
}

void notAvailableCommand(CommandContext& context) { print(context.host, kNotAvailable, context.localName); }

}  // namespace frame
