#pragma once
// Identity of an object in a drawing. The embedded host uses the object's
// handle as its id, so ids are stable across a save and load.
#include <compare>
#include <cstdint>
#include <functional>

namespace host {

struct ObjectId {
  std::uint64_t value = 0;  // 0 is the null id

  constexpr bool isNull() const { return value == 0; }
  constexpr explicit operator bool() const { return value != 0; }
  constexpr auto operator<=>(const ObjectId&) const = default;
};

inline constexpr ObjectId kNullId{};

}  // namespace host

template <>
struct std::hash<host::ObjectId> {
  std::size_t operator()(const host::ObjectId& id) const noexcept { return std::hash<std::uint64_t>{}(id.value); }
};
