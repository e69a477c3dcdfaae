// The formula dialog fed with outside input: stored choices of any value and
// a stream of user actions (list selections, edit texts of any bytes, slider
// positions). Whatever comes in, every shown value stays inside its range and
// the edit shows a number that reads back as that value.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "formula/main_dlg.h"
#include "tests/frame/fake_host.h"

namespace {

struct Input {
  const std::uint8_t* data;
  std::size_t size;
  std::size_t at = 0;

  bool more() const { return at < size; }
  std::uint8_t byte() { return at < size ? data[at++] : 0; }
  std::uint32_t word() {
    std::uint32_t w = 0;
    for (int i = 0; i < 4; ++i) w = (w << 8) | byte();
    return w;
  }
  std::string text() {
    std::size_t n = byte() % 24;
    std::string s;
    while (n-- && more()) s.push_back(static_cast<char>(byte()));
    return s;
  }
};

void require(bool condition) {
  if (!condition) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input in{data, size};
  frame_test::FakeEditor editor;
  test_support::MemoryDrawing drawing;
  frame_test::FakeCurves curves;
  frame_test::FakeSystemVariables sysvars;
  frame_test::FakeCommandStack commandStack;
  frame_test::FakeHostCommands hostCommands;
  frame_test::FakeDemandLoad demandLoad;
  frame_test::FakeSettingsStore store;
  frame_test::FakePlatform platform;
  host::Host host{editor, drawing, curves, sysvars, commandStack, hostCommands, demandLoad, store, platform};
  frame::Settings settings(store);
  settings.writeInt(formula::kSettingListIndex, in.word());
  settings.writeInt(formula::kSettingCurveIsPline, in.word());
  settings.writeInt(formula::kSettingDrawUcs, in.word());

  formula::CMainDlgDlg dialog(host, settings);
  dialog.onInitDialog();
  require(dialog.selectedIndex() >= 0 && dialog.selectedIndex() < formula::kCurveCount);
  while (in.more()) {
    int slot = in.byte() % formula::kParamCount;
    switch (in.byte() % 3) {
      case 0: dialog.onSelectionChange(static_cast<int>(in.word())); break;
      case 1: dialog.onEditChange(slot, in.text()); break;
      default: dialog.onSliderMoved(slot, static_cast<int>(in.word())); break;
    }
    const formula::ParamGroupView& group = dialog.group(slot);
    int value = dialog.values()[slot];
    require(group.rangeMin <= value && value <= group.rangeMax);
    require(group.sliderPos == value);
    require(formula::parseEditInteger(group.editText) == value);
  }
  return 0;
}
