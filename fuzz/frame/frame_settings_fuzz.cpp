// Stored values come from outside the plug-in (the settings file, written by
// hand or by an installer): the folder, the demonstration addresses, the
// counters. This target loads the module over arbitrary values and checks
// that the queued menu expression always carries a correctly escaped path.
// Input: fields separated by NUL bytes: Location, host module path, Demo1,
// a format text, then the raw bytes of pagetimes.
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "frame/language.h"
#include "frame/menu.h"
#include "frame/module.h"
#include "frame/text.h"
#include "tests/frame/fake_host.h"

namespace {

std::vector<std::string> splitFields(const std::uint8_t* data, std::size_t size, std::size_t count) {
  std::vector<std::string> fields(count);
  std::size_t field = 0;
  for (std::size_t i = 0; i < size; ++i) {
    if (data[i] == 0 && field + 1 < count)
      ++field;
    else
      fields[field] += static_cast<char>(data[i]);
  }
  return fields;
}

// Undoes doubleBackslashes; false when a single backslash is left over.
bool undouble(std::string_view text, std::string& out) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    out += text[i];
    if (text[i] == '\\') {
      if (i + 1 >= text.size() || text[i + 1] != '\\') return false;
      ++i;
    }
  }
  return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  auto fields = splitFields(data, size, 5);
  frame_test::FakeHost fake;
  auto key = std::string(frame::kSettingsKey);
  if (!fields[0].empty()) fake.settings.writeText(key, "Location", fields[0]);
  fake.platform.app = fields[1];
  fake.settings.writeText(key, "Demo1", fields[2]);
  std::uint32_t loads = 0;
  std::memcpy(&loads, fields[4].data(), std::min(fields[4].size(), sizeof loads));
  fake.settings.writeInt(key, "pagetimes", loads);
  fake.settings.writeInt(key, "ChineseVersion", size % 2);

  frame::Module module(fake.host);
  module.acrxEntryPoint(frame::AppMsg::kInitAppMsg);
  std::string menu = frame::menuFilePath(module.settings(), fake.platform);
  fake.platform.files.insert(menu);
  module.acrxEntryPoint(frame::AppMsg::kLoadDwgMsg);
  if (fake.hostCommands.queued.size() != 2) __builtin_trap();
  std::string expected = frame::menuLoadExpression(frame::doubleBackslashes(menu));
  if (fake.hostCommands.queued[0] != expected) __builtin_trap();
  std::string back;
  if (!undouble(frame::doubleBackslashes(menu), back) || back != menu) __builtin_trap();
  if (std::uint32_t after = *fake.settings.readInt(key, "pagetimes");
      after != (loads >= frame::kLoadCounterLimit ? 0 : loads + 1))
    __builtin_trap();

  fake.commandStack.run("ZORL_DEMO1");
  (void)frame::format({fields[3], fields[3]}, fields[0], static_cast<int>(loads), 0.5 * loads);
  module.acrxEntryPoint(frame::AppMsg::kUnloadAppMsg);
  frame::setChinese(false);
  return 0;
}
