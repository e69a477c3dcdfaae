#include "frame/settings.h"

#include <algorithm>
#include <cstring>

namespace frame {

std::uint32_t Settings::readInt(std::string_view key, std::string_view name) const {
  return store_.readInt(key, name).value_or(0);
}

const char* Settings::readText(std::string_view key, std::string_view name) {
  textBuffer_[0] = '\0';
  auto value = store_.readText(key, name);
  if (value && value->size() < kTextBufferBytes) {
    std::memcpy(textBuffer_.data(), value->data(), value->size());
    textBuffer_[value->size()] = '\0';
  }
  return textBuffer_.data();
}

bool Settings::readBytes(std::string_view key, std::string_view name, std::vector<std::uint8_t>& out) const {
  auto value = store_.readBytes(key, name);
  if (!value || value->size() > kBytesValueSize) return false;
  out = std::move(*value);
  return true;
}

bool Settings::writeInt(std::string_view key, std::string_view name, std::uint32_t value) {
  return store_.writeInt(key, name, value);
}

bool Settings::writeText(std::string_view key, std::string_view name, std::string_view value) {
  return store_.writeText(key, name, value);
}

bool Settings::writeBytes(std::string_view key, std::string_view name, std::span<const std::uint8_t> data) {
  if (data.size() > kBytesValueSize) return false;
  std::vector<std::uint8_t> block(kBytesValueSize, 0);
  std::copy(data.begin(), data.end(), block.begin());
  return store_.writeBytes(key, name, block);
}

std::uint32_t Settings::incrementCounter(std::string_view name) {
  std::uint32_t value = readInt(name);
  writeInt(name, value + 1);
  return value;
}

namespace {
bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\v' || c == '\f'; }
}  // namespace

std::string asFolder(std::string_view path) {
  while (!path.empty() && isBlank(path.front())) path.remove_prefix(1);
  while (!path.empty() && isBlank(path.back())) path.remove_suffix(1);
  std::string folder(path);
  if (folder.empty() || folder.back() != kPathSeparator) folder += kPathSeparator;
  return folder;
}

std::string pluginFolder(Settings& settings, const host::Platform& platform) {
  std::string folder = settings.readText("Location");
  if (folder.empty()) {
    // The folder part of the host's path for the module; a path without a
    // separator has no folder part.
    std::string app = platform.appName();
    auto cut = app.rfind(kPathSeparator);
    folder = cut == std::string::npos ? std::string() : app.substr(0, cut);
  }
  if (folder.empty()) folder = platform.modulePath();
  return asFolder(folder);
}

}  // namespace frame
