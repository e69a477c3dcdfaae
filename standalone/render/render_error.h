#pragma once
// The one failure of the renderer that is not a programming error: the output
// file cannot be made. The message names the file and the reason.
#include <stdexcept>
#include <string>

namespace standalone {

class RenderError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace standalone
