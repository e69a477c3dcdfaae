#include "image/vectorize_command.h"

#include <string>

#include "frame/output.h"
#include "frame/prompts.h"
#include "image/external_trace.h"
#include "image/outline_dlg.h"

namespace image {

namespace {

constexpr frame::Text kTracerPromptNo{"\nTrace with the external tracer? [Yes/No] <No>: ",
                                      "\n使用外部描图程序? [Yes/No] <No>: "};
constexpr frame::Text kTracerPromptYes{"\nTrace with the external tracer? [Yes/No] <Yes>: ",
                                       "\n使用外部描图程序? [Yes/No] <Yes>: "};
constexpr frame::Text kFilePrompt{"\nPicture file (BMP, JPEG, PNG, GIF)", "\n图片文件（BMP、JPEG、PNG、GIF）"};
constexpr frame::Text kColoursPrompt{"\nColours [2--16] <%d>: ", "\n颜色数 [2--16] <%d>: "};
constexpr frame::Text kAreaPrompt{"\nSmallest area in pixels [1--10000] <%d>: ", "\n最小面积（像素） [1--10000] <%d>: "};
constexpr frame::Text kTolerancePrompt{"\nTolerance [0--100] <%d>: ", "\n优化容差 [0--100] <%d>: "};
constexpr frame::Text kProcessedPrompt{"\nProcessed picture file (PNG, Enter for none)",
                                       "\n处理后图片文件（PNG，回车不保存）"};
constexpr frame::Text kDrawn{"\n%d outlines drawn.", "\n绘制了%d条轮廓线。"};

int askNumber(host::Host& host, const frame::Text& prompt, int current, int low, int high, int bits) {
  std::string text = frame::format(prompt, current);
  return frame::askInt(host, {text, text}, current, low, high, bits);
}

}  // namespace

void bitmapVectorize(frame::CommandContext& context) {
  host::Host& host = context.host;
  COutlineDlg dialog(host, context.settings);
  bool tracer = dialog.tracerBox();
  tracer = frame::askYesNo(host, tracer ? kTracerPromptYes : kTracerPromptNo, tracer);
  dialog.onTracerBox(tracer);
  if (tracer) {
    traceBitmapFile(host, context.settings, "");
    return;
  }
  std::string path;
  if (host.editor.getFileName(kFilePrompt.chosen(), "", "bmp;jpg;jpeg;png;gif", false, path) != host::RTNORM)
    path.clear();
  if (!dialog.loadImage(path)) return;
  dialog.onColours(askNumber(host, kColoursPrompt, dialog.colours(), 2, 16, frame::kPositiveBits));
  dialog.onSmallestArea(askNumber(host, kAreaPrompt, dialog.smallestArea(), 1, 10000, frame::kPositiveBits));
  dialog.onTolerance(askNumber(host, kTolerancePrompt, dialog.tolerance(), 0, 100, host::RSG_NONEG));
  std::string processed;
  if (host.editor.getFileName(kProcessedPrompt.chosen(), "", "png", true, processed) == host::RTNORM &&
      !processed.empty()) {
    dialog.onProcess();
    savePng(dialog.shown(), processed);
  }
  int drawn = dialog.onDoVectorize();
  if (drawn > 0) frame::print(host, kDrawn, drawn);
}

}  // namespace image
