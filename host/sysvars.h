#pragma once
// System variables (acedGetVar / acedSetVar).
#include <string_view>

#include "host/resbuf.h"

namespace host {

class SystemVariables {
 public:
  virtual ~SystemVariables() = default;
  // RTNORM with the value and its RT* type, or RTERROR for an unknown name.
  virtual int getVar(std::string_view name, ResBuf& value) const = 0;
  // RTNORM, or RTERROR for an unknown or read-only name or a value of the wrong type.
  virtual int setVar(std::string_view name, const ResBuf& value) = 0;
};

}  // namespace host
