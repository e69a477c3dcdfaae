#pragma once
// The command line of the corvane program.
#include <optional>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

#include "batch.h"

namespace corvane_app {

// A command line that does not fit the usage.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct HelpRequest {};
struct CommandsListing {};
struct MenuListing {};
struct SettingsRequest {
  enum class Op { kList, kGet, kSet } op = Op::kList;
  std::string name;
  std::string value;
};
struct RunRequest {
  std::string drawing;
  std::optional<std::string> script;       // -s
  std::optional<std::string> commandText;  // -c
  std::optional<std::string> output;       // -o
  std::optional<std::string> svg;
  std::optional<std::string> png;
  std::optional<std::string> pdf;
  std::optional<std::string> paper;  // --paper: a name or WIDTHxHEIGHT in mm (checked when parsed)
  std::optional<std::string> scale;  // --scale: 1:100, 2:1, a factor or fit (checked when parsed)
  bool landscape = false;
  bool plotView = false;  // --plot-view: the view the run ends in, not the extents
  bool openPages = true;  // --no-pages: nothing is handed to the desktop's opener
};

using Request = std::variant<HelpRequest, CommandsListing, MenuListing, SettingsRequest, RunRequest, BatchRequest>;

// What the arguments (without the program name) ask for; throws UsageError.
Request parseArguments(const std::vector<std::string>& args);
// The text of --help.
std::string usageText();

}  // namespace corvane_app
