#pragma once
// Failures of reading or writing outside data (files, pictures, programs)
// inside a command. They are thrown where the failure is found and caught by
// the frame around every command, which prints the chosen message as it
// stands (with its own line breaks) and ends the command;
// nothing is thrown across the host boundary.
#include <stdexcept>
#include <string>

#include "frame/text.h"

namespace frame {

class PluginError : public std::runtime_error {
 public:
  // The English and the Chinese message, already formatted.
  PluginError(std::string english, std::string chinese)
      : std::runtime_error(english), english_(std::move(english)), chinese_(std::move(chinese)) {}

  // The message the language flag selects.
  const std::string& chosen() const { return isChinese() ? chinese_ : english_; }

 private:
  std::string english_, chinese_;
};

// A file could not be read or written, or its content is not what it should be.
class FileError : public PluginError {
 public:
  using PluginError::PluginError;
};

// An external program could not be started or failed.
class ProgramError : public PluginError {
 public:
  using PluginError::PluginError;
};

// Builds an error from a message pair formatted with the arguments.
template <class E, class... Args>
E makeError(const Text& text, const Args&... args) {
  std::vector<FormatArg> formatArgs{detail::toFormatArg(args)...};
  return E(formatPrintf(text.en, formatArgs), formatPrintf(text.zh, formatArgs));
}

}  // namespace frame
