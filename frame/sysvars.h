#pragma once
// Typed access to the host's system variables and the guard that puts a
// changed variable back: SdSysVarNode saves one variable's value and restores
// it when destroyed; SdSysVarStack holds nodes newest first and restores them
// in the reverse order of their pushing.
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ge/point.h"
#include "host/host.h"
#include "host/resbuf.h"

namespace frame {

// Results of the typed operations.
inline constexpr int kSysVarOk = 0;
inline constexpr int kSysVarFailed = 3;

// Typed reads: kSysVarOk with the value, or kSysVarFailed (value unchanged)
// when the host refuses or the variable holds another type.
int getSysVar(const host::Host& host, std::string_view name, int& value);
int getSysVar(const host::Host& host, std::string_view name, double& value);
int getSysVar(const host::Host& host, std::string_view name, std::string& value);
int getSysVar(const host::Host& host, std::string_view name, ge::Point2d& value);
int getSysVar(const host::Host& host, std::string_view name, ge::Point3d& value);

// Typed writes: kSysVarOk, or kSysVarFailed after the message box
// "Could not set system variable \"NAME\".".
int setSysVar(host::Host& host, std::string_view name, const host::ResBuf& value);
int setSysVarText(host::Host& host, std::string_view name, std::string_view value);
int setSysVarShort(host::Host& host, std::string_view name, std::int16_t value);
int setSysVarReal(host::Host& host, std::string_view name, double value);
int setSysVarPoint2d(host::Host& host, std::string_view name, ge::Point2d value);
int setSysVarPoint3d(host::Host& host, std::string_view name, ge::Point3d value);
// Sets a 16-bit integer without result or message ("cmdecho", "menubar").
void setSysVarShortQuietly(host::Host& host, std::string_view name, std::int16_t value);

// One guarded variable.
class SdSysVarNode {
 public:
  // Saves the variable's current value and, when a new value is given, sets
  // it. A variable that cannot be read shows "Could not save state of system
  // variable \"NAME\"." and is neither set nor restored later.
  SdSysVarNode(host::Host& host, std::string name, const std::optional<host::ResBuf>& newValue = std::nullopt);
  SdSysVarNode(const SdSysVarNode&) = delete;
  SdSysVarNode& operator=(const SdSysVarNode&) = delete;
  // Puts the saved value back.
  virtual ~SdSysVarNode();

  const std::string& name() const { return name_; }
  bool hasSavedValue() const { return saved_.has_value(); }

 private:
  host::Host& host_;
  std::string name_;
  std::optional<host::ResBuf> saved_;
};

// Guarded variables, restored newest first when the stack goes away.
class SdSysVarStack {
 public:
  explicit SdSysVarStack(host::Host& host) : host_(host) {}
  SdSysVarStack(const SdSysVarStack&) = delete;
  SdSysVarStack& operator=(const SdSysVarStack&) = delete;
  // Restores every variable, the newest push first.
  virtual ~SdSysVarStack();

  // Saves the variable and sets the new value (see SdSysVarNode).
  void push(std::string name, const host::ResBuf& newValue);
  void pushText(std::string name, std::string value) { push(std::move(name), host::ResBuf::text(std::move(value))); }
  void pushShort(std::string name, std::int16_t value) { push(std::move(name), host::ResBuf::shortInt(value)); }
  void pushReal(std::string name, double value) { push(std::move(name), host::ResBuf::real(value)); }
  void pushPoint2d(std::string name, ge::Point2d value) { push(std::move(name), host::ResBuf::point2d(value)); }
  void pushPoint3d(std::string name, ge::Point3d value) { push(std::move(name), host::ResBuf::point3d(value)); }

  // Restores and drops the newest node of that name (exact, case-sensitive);
  // an unknown name does nothing.
  void remove(std::string_view name);

  std::size_t size() const { return nodes_.size(); }

 private:
  // The list grows in blocks of this many entries.
  static constexpr std::size_t kGrowth = 10;

  host::Host& host_;
  std::vector<std::unique_ptr<SdSysVarNode>> nodes_;  // oldest first; the head is the back
};

}  // namespace frame
