#pragma once
// The about text: the product line with the build's version label, the
// libraries the program is built with and their licences, and where the
// settings are kept. The command line and the workbench's about box show it alike.
#include <string>
#include <string_view>

namespace frame {

// The whole text in the chosen language; settingsLocation empty leaves its line out.
std::string aboutText(std::string_view settingsLocation);

}  // namespace frame
