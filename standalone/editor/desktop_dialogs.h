#pragma once
// Real dialogs that a desktop front end shows in place of the command line's
// forms of the host's message boxes and file-name prompts.
#include <optional>
#include <string>
#include <string_view>

namespace standalone {

class DesktopDialogs {
 public:
  virtual ~DesktopDialogs() = default;
  // A modal box with one OK button.
  virtual void messageBox(std::string_view caption, std::string_view text) = 0;
  // A file chosen in a file dialog. filter is in the host's form, caption and
  // pattern pairs each ended by a bar ("Text files(*.txt)|*.txt|"); the
  // dialog starts at defaultName. Nothing when the user cancels.
  virtual std::optional<std::string> fileName(std::string_view title, std::string_view defaultName,
                                              std::string_view filter, bool forSaving) = 0;
};

// The dialog filter of a file prompt's extensions ("bmp;png", empty for any
// file) in the host's form: one row for them all.
std::string dialogFilterFor(std::string_view extensions);

}  // namespace standalone
