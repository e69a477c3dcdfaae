#pragma once
// The commands the frame itself provides: the about command, the eleven
// demonstration commands, and the message of commands not built yet. Pages
// open with the desktop's opener without waiting; the program makes no
// network requests of its own.
#include <string>

#include "frame/command_context.h"

namespace frame {

// Address of the about page.
inline constexpr std::string_view kAboutPage = "https://corvane.example/about";

// Address of demonstration page n (1 to 11) when the stored value "Demo<n>" is empty.
std::string defaultDemoPage(int n);
// Address of introduction page n (1 to 3), opened on some loads.
std::string introductionPage(int n);

// Prints the product line with its version label and opens the about page.
void aboutCommand(CommandContext& context);

// Opens demonstration page n: the stored value "Demo<n>", else the default page.
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
