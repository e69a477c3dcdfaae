// PLRNDArray: copies of the selected curves at array points whose spacing is
// random, follows a wave, or grows within repeating groups.
#include <chrono>

#include "commands/offset_array_commands.h"
#include "commands/random_array.h"
#include "commands/selection_set.h"
#include "frame/progress.h"
#include "frame/output.h"
#include "frame/prompts.h"
#include "frame/selection.h"
#include "geom/append.h"

namespace commands {

namespace {

constexpr SelectionTexts kSelection{{"Please select Curves >\n", "请选择各种线条>\n"},
                                    {"No Curve selected.\n", "未选中任何线条。\n"},
                                    {"No Curve selected.\n", "未选中任何线条。\n"}};
constexpr frame::Text kTotalPrompt{"\nPlease enter the array total number(1~1000)[10]:",
                                   "\n请输入阵列数量(1~1000)[10]:"};
constexpr frame::Text kStepPrompt{"\nPlease enter the equal distance:", "\n请输入最大间距:"};
constexpr frame::Text kAnglePrompt{"\nPlease enter the angle[0]:", "\n请输入阵列方向角度 0~360 [0]:"};
constexpr frame::Text kModePrompt{
    "\nMode: [random array(1), HalfWave(2), FullWave(3), Exponential(4), Logarithmic(5)]<1>:",
    "\n方式：[随机阵列(1), 半波阵列(2), 全波阵列(3), 指数阵列(4), 对数阵列(5)]<默认1>:"};
constexpr frame::Text kGroupPrompt{"\nPlease enter the number in a group(10~100)[10]:",
                                   "\n请输入每组数量(10~100)[10]:"};

// The stored value that fixes the random seed when it is not 0, so that a
// script gives the same drawing every time; 0 or missing: the clock's ticks.
constexpr std::string_view kSeedSetting = "RandomSeed";
constexpr double kShortestStep = 0.0001;

// An integer prompt whose result is not examined: the preset stays unless a number is given.
int askPlainInt(host::Host& host, const frame::Text& prompt, int preset, int bits) {
  int value = preset;
  if (bits != 0) host.editor.initGet(bits, "");
  int answer = preset;
  if (frame::getInt(host, prompt, answer) == host::RTNORM) value = answer;
  return value;
}

std::uint32_t randomSeed(const frame::Settings& settings) {
  if (std::uint32_t fixed = settings.readInt(kSeedSetting)) return fixed;
  return static_cast<std::uint32_t>(std::chrono::steady_clock::now().time_since_epoch().count());
}

}  // namespace

void randomArray(frame::CommandContext& context) {
  host::Host& host = context.host;
  std::optional<std::vector<host::ObjectId>> ids = selectForCommand(host, kSelection, frame::curveFilter());
  if (!ids) return;
  ArraySteps steps;
  steps.total = askPlainInt(host, kTotalPrompt, 10, frame::kPositiveBits);
  if (steps.total < 1) steps.total = 10;  // not 1: an empty answer's 0 means the default
  if (steps.total > 1000) steps.total = 1000;
  std::optional<double> step = frame::askDist(host, kStepPrompt);
  if (!step || *step < kShortestStep) return;
  steps.step = *step;
  steps.angleDegrees = askPlainInt(host, kAnglePrompt, 0, 0);
  steps.mode = static_cast<ArrayMode>(frame::clampToRange(askPlainInt(host, kModePrompt, 1, 0), 1, 5));
  if (steps.mode != ArrayMode::kRandom)
    steps.group = frame::clampToRange(askPlainInt(host, kGroupPrompt, 10, frame::kPositiveBits), 10, 100);

  ge::PointList points = arrayPoints(steps, randomSeed(context.settings));
  frame::ProgressMeter meter(host.editor, context.localName, points.size() - 1);
  for (std::size_t k = 1; k < points.size(); ++k) {
    ge::Matrix3d move = ge::Matrix3d::translation(points[k] - points[0]);
    for (host::ObjectId id : *ids) {
      std::optional<host::Entity> source = host.drawing.read(id);
      if (!source) continue;
      host::Entity copy{host::kNullId, host::kNullId, source->props, source->data};
      if (host.curves.transformBy(copy.data, move) != host::ErrorStatus::eOk) continue;
      geom::appendToCurrentSpace(host.drawing, copy);
    }
    meter.step(k);
  }
}

}  // namespace commands
