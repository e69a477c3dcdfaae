#pragma once
// Where the dialog finds the preview picture of a curve: PNG files named by
// the row's picture id in the "formula" folder below the plug-in's folder.
#include <string>
#include <string_view>

namespace formula {

// The text shown in place of a picture that cannot be loaded.
inline constexpr std::string_view kPictureNotLoaded = "没加载成功";

// "formula_407.png" for picture 407.
inline std::string previewPictureFileName(int pictureId) {
  return "formula_" + std::to_string(pictureId) + ".png";
}

// The picture's path below the plug-in folder (which ends in a separator).
inline std::string previewPicturePath(std::string_view pluginFolder, int pictureId) {
  return std::string(pluginFolder) + "formula/" + previewPictureFileName(pictureId);
}

}  // namespace formula
