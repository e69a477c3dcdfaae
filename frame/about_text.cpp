#include "frame/about_text.h"

#include "frame/output.h"

namespace frame {

namespace {

constexpr Text kProductLine{"\nCorvane %s: two-dimensional drafting commands for curves and polylines.\n",
                            "\n【Corvane】 %s：二维曲线与多段线绘图命令集。\n"};
constexpr Text kLibrariesHeading{"Libraries used and their licences:\n", "使用的库及其许可证：\n"};
constexpr Text kSettingsLine{"Settings file: %s\n", "设置文件：%s\n"};

struct Library {
  std::string_view name;
  std::string_view licence;  // SPDX expression, the same in either language
};

// What the corvane program links besides the system's C library.
constexpr Library kLibraries[] = {
    {"cairo", "LGPL-2.1-only OR MPL-1.1"},
    {"FreeType", "FTL OR GPL-2.0-or-later"},
    {"fontconfig", "HPND-sell-variant (MIT-style)"},
    {"GNU libstdc++", "GPL-3.0-or-later WITH GCC-exception-3.1"},
};

}  // namespace

std::string aboutText(std::string_view settingsLocation) {
  std::string text = format(kProductLine, versionLabel()) + format(kLibrariesHeading);
  for (const Library& l : kLibraries) text += "  " + std::string(l.name) + ": " + std::string(l.licence) + "\n";
  if (!settingsLocation.empty()) text += format(kSettingsLine, settingsLocation);
  return text;
}

}  // namespace frame
