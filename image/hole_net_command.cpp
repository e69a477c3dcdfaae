#include "image/hole_net_command.h"

#include <string>

#include "frame/output.h"
#include "frame/prompts.h"
#include "image/image_hole_net.h"

namespace image {

namespace {

constexpr frame::Text kFilePrompt{"\nPicture file (BMP, JPEG, PNG, GIF)", "\n图片文件（BMP、JPEG、PNG、GIF）"};
constexpr frame::Text kContrastPrompt{"\nContrast [0--100] <%d>: ", "\n对比度 [0--100] <%d>: "};
constexpr frame::Text kBrightnessPrompt{"\nBrightness [0--100] <%d>: ", "\n亮度 [0--100] <%d>: "};
constexpr frame::Text kRowsPrompt{"\nRows [1--10000] <%d>: ", "\n行数 [1--10000] <%d>: "};
constexpr frame::Text kSizePrompt{"\nSize [0--100] <%d>: ", "\n孔径 [0--100] <%d>: "};
constexpr frame::Text kInvertPrompt{"\nHoles for light areas (BlockWhiteInvert)? [Yes/No] <No>: ",
                                    "\n白色区域开孔（BlockWhiteInvert）? [Yes/No] <No>: "};
constexpr frame::Text kShapePrompt{"\nHole shape [Circle/Squart/Diamond/Select] <Circle>: ",
                                   "\n网孔形状 [Circle/Squart/Diamond/Select] <Circle>: "};
constexpr frame::Text kPreviewPrompt{"\nPreview picture file (PNG, Enter for none)", "\n预览图片文件（PNG，回车不保存）"};
constexpr frame::Text kPreviewNotSaved{"\nThe preview could not be written to %s.", "\n无法写入预览图片%s。"};
constexpr frame::Text kDrawn{"\n%d holes drawn.", "\n绘制了%d个网孔。"};

// A prompt of the active language with its default filled in.
struct Formatted {
  std::string text;
  frame::Text asText() const { return {text, text}; }
};

int askSlider(host::Host& host, const frame::Text& prompt, int current, int low, int high, int bits) {
  Formatted f{frame::format(prompt, current)};
  return frame::askInt(host, f.asText(), current, low, high, bits);
}

HoleShape askShape(host::Host& host) {
  std::string keyword;
  host.editor.initGet(0, "Circle Squart Diamond Select");
  if (host.editor.getKword(kShapePrompt.chosen(), keyword) != host::RTNORM) return HoleShape::kCircle;
  if (keyword == "Squart") return HoleShape::kSquare;
  if (keyword == "Diamond") return HoleShape::kDiamond;
  if (keyword == "Select") return HoleShape::kCopy;
  return HoleShape::kCircle;
}

// The preview written as PNG when a file is named; the dialog then counts as previewed.
void previewToFile(host::Host& host, ImageHoleNet& dialog) {
  std::string path;
  if (host.editor.getFileName(kPreviewPrompt.chosen(), "", "png", true, path) != host::RTNORM || path.empty()) return;
  dialog.onPreview();
  if (!savePng(dialog.paint(), path)) frame::print(host, kPreviewNotSaved, path);
}

}  // namespace

void imageHoleNet(frame::CommandContext& context) {
  host::Host& host = context.host;
  ImageHoleNet dialog(host);
  std::string path;
  // No name (Enter or a cancel) is loaded as "" and gets the dialog's "no file" message.
  if (host.editor.getFileName(kFilePrompt.chosen(), "", "bmp;jpg;jpeg;png;gif", false, path) != host::RTNORM)
    path.clear();
  if (!dialog.loadImage(path)) return;
  dialog.onContrastMoved(askSlider(host, kContrastPrompt, dialog.contrast(), 0, 100, host::RSG_NONEG));
  dialog.onBrightnessMoved(askSlider(host, kBrightnessPrompt, dialog.brightness(), 0, 100, host::RSG_NONEG));
  dialog.onRowsEdit(askSlider(host, kRowsPrompt, dialog.rows(), 1, kMostRows, frame::kPositiveBits));
  dialog.onSizeMoved(askSlider(host, kSizePrompt, dialog.size(), 0, 100, host::RSG_NONEG));
  dialog.onInvert(frame::askYesNo(host, kInvertPrompt, false));
  dialog.onShape(askShape(host));
  previewToFile(host, dialog);
  int drawn = dialog.onDoDrawing();
  if (drawn > 0) frame::print(host, kDrawn, drawn);
}

}  // namespace image
