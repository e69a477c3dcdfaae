#include "image/external_trace.h"

#include <filesystem>

#include "frame/output.h"
#include "frame/sysvars.h"

namespace image {

namespace {

constexpr frame::Text kSelectBmp{"Please select a BMP picture", "请选择一个BMP图片"};
constexpr frame::Text kTracerMissing{"%sProgram file not found, please reinstall.", "%s程序文件未找到，请重新安装。"};
constexpr frame::Text kWaiting{"waiting... \n ", "waiting... \n "};

void removeQuietly(const std::string& path) {
  std::error_code ignored;
  std::filesystem::remove(path, ignored);
}

// A fresh temporary name with its extension replaced by ".dxf", nothing at that path.
std::string freshDxfName(host::Platform& platform) {
  std::string temp = platform.temporaryFileName(".tmp");
  if (temp.empty()) return {};
  removeQuietly(temp);
  std::string dxf = std::filesystem::path(temp).replace_extension(".dxf").string();
  removeQuietly(dxf);
  return dxf;
}

}  // namespace

std::string tracerPath(frame::Settings& settings, const host::Platform& platform) {
  return frame::pluginFolder(settings, platform) + "autotrace" + frame::kPathSeparator + "autotrace";
}

std::optional<std::string> runTracer(host::Host& host, frame::Settings& settings, const std::string& bmpPath) {
  std::string tracer = tracerPath(settings, host.platform);
  std::string dxf = freshDxfName(host.platform);
  if (!host.platform.fileExists(tracer)) {
    frame::print(host, kTracerMissing, tracer);
    return std::nullopt;
  }
  if (dxf.empty()) return std::nullopt;
  frame::print(host, kWaiting);
  // An argument vector, never a shell: names with blanks or quotes pass as they are.
  host.platform.runProgramWithin(tracer, {bmpPath, "-color-count", "2", "-output-format", "dxf", "-output-file", dxf},
                                 kTracerWaitMs);
  if (!host.platform.fileExists(dxf)) return std::nullopt;
  return dxf;
}

bool traceBitmapFile(host::Host& host, frame::Settings& settings, std::string bmpPath) {
  if (bmpPath.empty()) {
    std::string title = std::string(kSelectBmp.chosen());
    if (host.editor.getFileName(title, "", "bmp", false, bmpPath) != host::RTNORM || bmpPath.empty()) return false;
  }
  std::optional<std::string> dxf = runTracer(host, settings, bmpPath);
  if (!dxf) return false;
  frame::setSysVarShortQuietly(host, "CMDECHO", 0);
  host::ResBufList tokens{host::ResBuf::text("_INSERT"), host::ResBuf::text(*dxf), host::ResBuf::text("\\"),
                          host::ResBuf::real(1.0), host::ResBuf::real(1.0), host::ResBuf::real(0.0)};
  int result = host.hostCommands.command(tokens);
  removeQuietly(*dxf);
  frame::setSysVarShortQuietly(host, "CMDECHO", 1);
  return result == host::RTNORM;
}

}  // namespace image
