#pragma once
// The plug-in's stored settings: six typed operations on named values under
// one per-user key, with the defaults callers rely on (a missing value, or one
// of another type, reads as 0 or the empty text), and the plug-in folder rule.
#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/platform.h"
#include "host/settings.h"

namespace frame {

// The key every value of the plug-in lives under.
inline constexpr std::string_view kSettingsKey = "Software\\Brightvale\\Corvane";
// Size of the one shared read-text buffer, terminating zero included.
inline constexpr std::size_t kTextBufferBytes = 8192;
// Size of every stored byte block.
inline constexpr std::size_t kBytesValueSize = 262144;
// Path separator of this platform, ending the plug-in folder.
inline constexpr char kPathSeparator = '/';

class Settings {
 public:
  explicit Settings(host::SettingsStore& store) : store_(store) {}
  Settings(const Settings&) = delete;
  Settings& operator=(const Settings&) = delete;

  // The integer value, or 0 when it is missing, of another type, or the key is missing.
  std::uint32_t readInt(std::string_view key, std::string_view name) const;
  // The text value in the one shared buffer, valid until the next readText
  // call; the empty text when missing, of another type, or too long for the
  // buffer (more than kTextBufferBytes - 1 bytes of UTF-8).
  const char* readText(std::string_view key, std::string_view name);
  // Copies a byte value of at most kBytesValueSize bytes into out; true only
  // when the value exists and is of the byte type. out is untouched on failure.
  bool readBytes(std::string_view key, std::string_view name, std::vector<std::uint8_t>& out) const;
  // Stores an integer, creating the key when missing.
  bool writeInt(std::string_view key, std::string_view name, std::uint32_t value);
  // Stores a text, creating the key when missing.
  bool writeText(std::string_view key, std::string_view name, std::string_view value);
  // Stores exactly kBytesValueSize bytes (the data, then zeros) under an
  // existing key; fails while the key is missing or when data is longer.
  bool writeBytes(std::string_view key, std::string_view name, std::span<const std::uint8_t> data);

  // The same operations under the plug-in's own key.
  std::uint32_t readInt(std::string_view name) const { return readInt(kSettingsKey, name); }
  const char* readText(std::string_view name) { return readText(kSettingsKey, name); }
  bool readBytes(std::string_view name, std::vector<std::uint8_t>& out) const {
    return readBytes(kSettingsKey, name, out);
  }
  bool writeInt(std::string_view name, std::uint32_t value) { return writeInt(kSettingsKey, name, value); }
  bool writeText(std::string_view name, std::string_view value) { return writeText(kSettingsKey, name, value); }
  bool writeBytes(std::string_view name, std::span<const std::uint8_t> data) {
    return writeBytes(kSettingsKey, name, data);
  }

  // Where the store keeps the values (the settings file's path); empty when not known.
  std::string location() const { return store_.location(); }

  // Read, add 1, write back; returns the value read (a missing value reads as 0).
  std::uint32_t incrementCounter(std::string_view name);

 private:
  host::SettingsStore& store_;
  std::array<char, kTextBufferBytes> textBuffer_{};
};

// The plug-in's folder, ending in the path separator: the stored Location,
// else the folder of the host's module path for the plug-in, else the
// plug-in's own file path; blanks trimmed at both ends.
std::string pluginFolder(Settings& settings, const host::Platform& platform);

// Trims blanks at both ends and appends the path separator when the text does not end in one.
std::string asFolder(std::string_view path);

}  // namespace frame
