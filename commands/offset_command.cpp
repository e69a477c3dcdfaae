// PLOFFSET: offset copies of every selected curve on one or both sides, at
// one spacing or a list of spacings.
#include "commands/batch_offset.h"
#include "commands/offset_array_commands.h"
#include "commands/selection_set.h"
#include "frame/progress.h"
#include "frame/output.h"
#include "frame/prompts.h"
#include "frame/selection.h"

namespace commands {

namespace {

constexpr SelectionTexts kSelection{{"Please select Curves >\n", "请选择线条>\n"},
                                    {"No Curves selected.\n", "未选中线条。\n"},
                                    {"No Curves selected.\n", "未选中线条。\n"}};
constexpr frame::Text kDirectionPrompt{"\nOffset direction[Double(D),Inner(I),Out(O)][D]:",
                                       "\n请问偏移复制方向[双向(D),内侧(I),外侧(O)][默认D]:"};
constexpr frame::Text kCountPrompt{"\nNumber of one side offset elements[1]:", "\n单侧偏移根数[1]:"};
constexpr frame::Text kDistancePrompt{"\nOffset distance:", "\n请输入偏移距离:"};
constexpr frame::Text kDistanceOrListPrompt{"\nOffset distance[Multiple(M)]:", "\n请输入偏移距离[多个不同间距(M)]:"};
constexpr frame::Text kListPrompt{
    "\nPlease enter multiple offset distances（eg: offset 5 times, and distance are 9,2,1,1,1, then you can "
    "enter:9,2,1,1,1 or 9,2,1）: ",
    "\n请输入多个偏移距离（如偏移5次，以此间距为9、2、1、1、1，则可以输入：9,2,1,1,1 或 9,2,1）: "};
constexpr frame::Text kInputError{"\nInput parameter error.", "\n输入参数错误。"};

// The single distance must reach this; with several copies a smaller bound
// applies, as it always has.
constexpr double kSmallestSingleDistance = 0.0001;
constexpr double kSmallestEqualSpacing = 1e-5;

std::optional<OffsetSide> askSide(host::Host& host) {
  std::string keyword = "Double";
  host.editor.initGet(0, "Double Inner Outside");
  int result = host.editor.getKword(kDirectionPrompt.chosen(), keyword);
  if (result == host::RTNONE) return OffsetSide::kBoth;
  if (result != host::RTNORM) return std::nullopt;
  return offsetSideOfKeyword(keyword);
}

// The list prompt until a line that reads as a valid list comes back.
Spacings askSpacingList(host::Host& host) {
  for (;;) {
    std::string text;
    host.editor.initGet(host::RSG_NONULL, "");
    if (host.editor.getString(true, kListPrompt.chosen(), text) == host::RTNORM) {
      SpacingList list = parseSpacingList(text);
      if (list.valid) return list.spacings;
    }
    frame::print(host, kInputError);
  }
}

std::optional<Spacings> askSpacings(host::Host& host, int count) {
  Spacings spacings;
  spacings.fill(-1.0);
  if (count == 1) {
    std::optional<double> d = frame::askDist(host, kDistancePrompt);
    if (!d || *d < kSmallestSingleDistance) return std::nullopt;
    spacings[0] = *d;
    return spacings;
  }
  double d = -1.0;
  frame::Answer answer = frame::askDistOrKeyword(host, kDistanceOrListPrompt, "M", d);
  if (answer.result == host::RTKWORD) return askSpacingList(host);
  if (answer.result != host::RTNORM || d < kSmallestEqualSpacing) return std::nullopt;
  spacings.fill(d);
  return spacings;
}

}  // namespace

void plBatchOffset(frame::CommandContext& context) {
  host::Host& host = context.host;
  std::optional<std::vector<host::ObjectId>> ids = selectForCommand(host, kSelection, frame::curveFilter());
  if (!ids) return;
  std::optional<OffsetSide> side = askSide(host);
  if (!side) return;
  int count = frame::askInt(host, kCountPrompt, 1, 1, kMostCopiesPerSide);
  std::optional<Spacings> spacings = askSpacings(host, count);
  if (!spacings) return;
  frame::ProgressMeter meter(host.editor, context.localName, ids->size());
  offsetCopiesOfAll(host, *ids, *side, count, *spacings, [&](std::size_t done) { meter.step(done); });
}

}  // namespace commands
