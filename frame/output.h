#pragma once
// Showing message pairs on the host: the command line and message boxes.
#include <string_view>

#include "frame/text.h"
#include "host/editor.h"
#include "host/host.h"

namespace frame {

// The build's version label ("0.1.0"), shown in the greeting and the about text.
std::string_view versionLabel();

// Prints the chosen literal of a pair, formatted with the arguments (acutPrintf).
template <class... Args>
void print(host::Editor& editor, const Text& text, const Args&... args) {
  editor.print(format(text, args...));
}

template <class... Args>
void print(host::Host& host, const Text& text, const Args&... args) {
  print(host.editor, text, args...);
}

// A modal message box with one OK button. In Chinese its caption is the
// product name with the version label; in English it is the plain product
// name, as the application's standard message box shows it.
void showMessageBox(host::Editor& editor, std::string_view text);

template <class... Args>
void messageBox(host::Host& host, const Text& text, const Args&... args) {
  showMessageBox(host.editor, format(text, args...));
}

}  // namespace frame
