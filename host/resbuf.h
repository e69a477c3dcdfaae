#pragma once
// A typed value as the host passes it around: system variables, selection
// filters (DXF group code + value) and tokens sent to host commands.
#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "ge/point.h"
#include "host/codes.h"
#include "host/object_id.h"

namespace host {

struct ResBuf {
  // For system variables and command tokens: an RT* value type. For filters: a DXF group code.
  int type = RTNONE;
  std::variant<std::monostate, std::int16_t, std::int32_t, double, std::string, ge::Point2d,
               ge::Point3d, ObjectId>
      value;

  static ResBuf text(std::string s) { return {RTSTR, std::move(s)}; }
  static ResBuf shortInt(std::int16_t v) { return {RTSHORT, v}; }
  static ResBuf longInt(std::int32_t v) { return {RTLONG, v}; }
  static ResBuf real(double v) { return {RTREAL, v}; }
  static ResBuf point2d(ge::Point2d p) { return {RTPOINT, p}; }
  static ResBuf point3d(ge::Point3d p) { return {RT3DPOINT, p}; }
  static ResBuf entity(ObjectId id) { return {RTENAME, id}; }
  static ResBuf group(int code, std::string s) { return {code, std::move(s)}; }
  // Enter, as a command token.
  static ResBuf enter() { return {RTSTR, std::string{}}; }

  bool operator==(const ResBuf&) const = default;
};

// A result-buffer list (acutBuildList's output) as a vector.
using ResBufList = std::vector<ResBuf>;

}  // namespace host
