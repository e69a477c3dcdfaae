#pragma once
// The per-user settings store: the host's registry key kept as a text file in
// the form of a registry export, UTF-8:
//
//   Windows Registry Editor Version 5.00
//
//   [HKEY_CURRENT_USER\Software\Brightvale\Corvane]
//   "ChineseVersion"=dword:00000001
//   "Location"="/opt/corvane/"
//   "Blob"=hex:01,02,ff
//
// Every operation reads the file, does one access and, for writes, replaces
// the file through a temporary file and a rename. A file that does not parse
// reads as missing values; the first write moves it aside (FILE.damaged,
// FILE.damaged.1, ...) instead of overwriting it.
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "host/settings.h"

namespace standalone {

struct RegValue {
  std::string name;  // "" is the key's default value (@)
  std::variant<std::uint32_t, std::string, std::vector<std::uint8_t>> data;
  bool operator==(const RegValue&) const = default;
};

struct RegKey {
  std::string path;  // full path, "HKEY_CURRENT_USER\Software\..."
  std::vector<RegValue> values;
  bool operator==(const RegKey&) const = default;
};

struct RegDocument {
  std::vector<RegKey> keys;
  bool operator==(const RegDocument&) const = default;

  // Key and value names compare without regard to ASCII case, as in the registry.
  const RegKey* findKey(std::string_view path) const;
  RegKey* findKey(std::string_view path);
  const RegValue* findValue(std::string_view keyPath, std::string_view name) const;
};

// Parses the text of a settings file; throws SettingsError naming the line.
RegDocument parseRegText(std::string_view text);
// The text of a settings file; parseRegText gives the same document back.
std::string formatRegText(const RegDocument& doc);

// The settings file of this user: $CORVANE_SETTINGS, else
// $XDG_CONFIG_HOME/corvane/settings.reg, else ~/.config/corvane/settings.reg.
std::string defaultSettingsPath();

// The root every key of the host's interface lives under.
inline constexpr std::string_view kUserRoot = "HKEY_CURRENT_USER";
// The plug-in's own key.
inline constexpr std::string_view kCorvaneKey = "Software\\Brightvale\\Corvane";

class SettingsFile : public host::SettingsStore {
 public:
  // warn receives one-line notices (a damaged file moved aside).
  explicit SettingsFile(std::string path, std::function<void(const std::string&)> warn = {});

  const std::string& path() const { return path_; }
  std::string location() const override { return path_; }

  std::optional<std::uint32_t> readInt(std::string_view key, std::string_view name) const override;
  std::optional<std::string> readText(std::string_view key, std::string_view name) const override;
  std::optional<std::vector<std::uint8_t>> readBytes(std::string_view key, std::string_view name) const override;
  bool writeInt(std::string_view key, std::string_view name, std::uint32_t value) override;
  bool writeText(std::string_view key, std::string_view name, std::string_view value) override;
  bool writeBytes(std::string_view key, std::string_view name, const std::vector<std::uint8_t>& value) override;

  // Replaces all values of a key (creating it) in one write.
  bool writeKey(std::string_view key, std::vector<RegValue> values);
  // All values of a key in file order (empty when the key or the file is missing or damaged).
  std::vector<RegValue> list(std::string_view key) const;

 private:
  // The file's document; empty when missing or damaged (damaged tells which).
  RegDocument load(bool* damaged) const;
  bool store(std::string_view key, RegValue value, bool createKey);
  // Loads, changes and writes the document back; false when it cannot be written.
  bool update(const std::function<bool(RegDocument&)>& change);
  void moveDamagedAside();

  std::string path_;
  std::function<void(const std::string&)> warn_;
};

}  // namespace standalone
