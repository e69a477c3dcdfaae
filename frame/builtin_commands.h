#pragma once
// The commands the frame itself provides: the about command, the eleven
// demonstration commands, and the message of commands not built yet. Pages
// open with the desktop's opener without waiting; the program makes no
// network requests of its own.
#include <optional>
#include <string>

#include "frame/command_context.h"

namespace frame {

// Number of demonstration pages (ZORL_DEMO1 .. ZORL_DEMO11).
inline constexpr int kDemoPages = 11;

// The local demonstration page n (1 to 11) shipped in the plug-in folder:
// "<folder>demo/demo<n>.html".
std::string localDemoPage(Settings& settings, const host::Platform& platform, int n);

// What demonstration page n opens: the stored value "Demo<n>" when there is
// one, else the local page when it exists; nothing when neither.
std::optional<std::string> demoPage(Settings& settings, const host::Platform& platform, int n);

// Prints the about text (version, libraries and licences, settings file).
void aboutCommand(CommandContext& context);

// Opens demonstration page n, or says that it is not installed.
void openDemoPage(CommandContext& context, int n);

template <int N>
void demoCommand(CommandContext& context) {
  openDemoPage(context, N);
}

// Says that the command of the context is not available in this build yet.
void notAvailableCommand(CommandContext& context);

// Opens a page with the desktop's opener without waiting.
void openPage(host::Host& host, std::string_view address);

}  // namespace frame
