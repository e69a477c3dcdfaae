#pragma once
// Failures of reading outside data (scripts, settings files, menu files).
// They are thrown by the readers and turned into a one-line message at the
// edge (the command line or the program's main).
#include <stdexcept>
#include <string>

namespace standalone {

class InputError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// A script or typed input that cannot be read (not UTF-8 text, a NUL byte).
class ScriptError : public InputError {
 public:
  using InputError::InputError;
};

// A menu file that does not follow the menu format.
class MenuError : public InputError {
 public:
  using InputError::InputError;
};

// The settings file could not be written.
class SettingsError : public InputError {
 public:
  using InputError::InputError;
};

}  // namespace standalone

namespace standalone {

// An expression this host's small expression reader does not understand.
class ExpressionError : public InputError {
 public:
  using InputError::InputError;
};

}  // namespace standalone
