#pragma once
// Per-user store of named typed values (the registry key of the original host).
// Every operation opens the store, does one access and closes it again.
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host {

class SettingsStore {
 public:
  virtual ~SettingsStore() = default;
  // The value when it exists and is an integer; nothing otherwise (also when the key is missing).
  virtual std::optional<std::uint32_t> readInt(std::string_view key, std::string_view name) const = 0;
  virtual std::optional<std::string> readText(std::string_view key, std::string_view name) const = 0;
  virtual std::optional<std::vector<std::uint8_t>> readBytes(std::string_view key, std::string_view name) const = 0;
  // Creates the key when missing.
  virtual bool writeInt(std::string_view key, std::string_view name, std::uint32_t value) = 0;
  virtual bool writeText(std::string_view key, std::string_view name, std::string_view value) = 0;
  // Fails when the key is missing (does not create it).
  virtual bool writeBytes(std::string_view key, std::string_view name, const std::vector<std::uint8_t>& value) = 0;
  // Where the values are kept, for the user to read: a file path, or the
  // registry root on a host that keeps them there; empty when not known.
  virtual std::string location() const { return {}; }
};

}  // namespace host
