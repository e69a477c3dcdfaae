#include "frame/sysvars.h"

#include <algorithm>

#include "frame/output.h"

namespace frame {

namespace {

// These two texts exist only in English, in both language modes.
constexpr Text kCannotSet{"Could not set system variable \"%s\".", "Could not set system variable \"%s\"."};
constexpr Text kCannotSave{"Could not save state of system variable \"%s\".",
                           "Could not save state of system variable \"%s\"."};

// Reads a variable into value when the host gives it and the type fits.
template <class T>
int readTyped(const host::Host& host, std::string_view name, T& value, std::initializer_list<int> types) {
  host::ResBuf rb;
  if (host.sysvars.getVar(name, rb) != host::RTNORM) return kSysVarFailed;
  if (std::find(types.begin(), types.end(), rb.type) == types.end()) return kSysVarFailed;
  if (auto* v = std::get_if<T>(&rb.value)) {
    value = *v;
    return kSysVarOk;
  }
  return kSysVarFailed;
}

}  // namespace

int getSysVar(const host::Host& host, std::string_view name, int& value) {
  host::ResBuf rb;
  if (host.sysvars.getVar(name, rb) != host::RTNORM) return kSysVarFailed;
  if (auto* s = std::get_if<std::int16_t>(&rb.value)) {
    value = *s;
    return kSysVarOk;
  }
  if (auto* l = std::get_if<std::int32_t>(&rb.value)) {
    value = *l;
    return kSysVarOk;
  }
  return kSysVarFailed;
}

int getSysVar(const host::Host& host, std::string_view name, double& value) {
  return readTyped(host, name, value, {host::RTREAL, host::RTANG});
}

int getSysVar(const host::Host& host, std::string_view name, std::string& value) {
  return readTyped(host, name, value, {host::RTSTR});
}

int getSysVar(const host::Host& host, std::string_view name, ge::Point2d& value) {
  return readTyped(host, name, value, {host::RTPOINT});
}

int getSysVar(const host::Host& host, std::string_view name, ge::Point3d& value) {
  return readTyped(host, name, value, {host::RT3DPOINT});
}

int setSysVar(host::Host& host, std::string_view name, const host::ResBuf& value) {
  if (host.sysvars.setVar(name, value) == host::RTNORM) return kSysVarOk;
  messageBox(host, kCannotSet, name);
  return kSysVarFailed;
}

int setSysVarText(host::Host& host, std::string_view name, std::string_view value) {
  return setSysVar(host, name, host::ResBuf::text(std::string(value)));
}

int setSysVarShort(host::Host& host, std::string_view name, std::int16_t value) {
  return setSysVar(host, name, host::ResBuf::shortInt(value));
}

int setSysVarReal(host::Host& host, std::string_view name, double value) {
  return setSysVar(host, name, host::ResBuf::real(value));
}

int setSysVarPoint2d(host::Host& host, std::string_view name, ge::Point2d value) {
  return setSysVar(host, name, host::ResBuf::point2d(value));
}

int setSysVarPoint3d(host::Host& host, std::string_view name, ge::Point3d value) {
  return setSysVar(host, name, host::ResBuf::point3d(value));
}

void setSysVarShortQuietly(host::Host& host, std::string_view name, std::int16_t value) {
  host.sysvars.setVar(name, host::ResBuf::shortInt(value));
}

SdSysVarNode::SdSysVarNode(host::Host& host, std::string name, const std::optional<host::ResBuf>& newValue)
    : host_(host), name_(std::move(name)) {
  host::ResBuf current;
  if (host_.sysvars.getVar(name_, current) != host::RTNORM) {
    messageBox(host_, kCannotSave, name_);
    return;
  }
  saved_ = std::move(current);
  if (newValue) setSysVar(host_, name_, *newValue);
}

SdSysVarNode::~SdSysVarNode() {
  if (saved_) setSysVar(host_, name_, *saved_);
}

SdSysVarStack::~SdSysVarStack() {
  while (!nodes_.empty()) nodes_.pop_back();
}

void SdSysVarStack::push(std::string name, const host::ResBuf& newValue) {
  if (nodes_.size() == nodes_.capacity()) nodes_.reserve(nodes_.capacity() + kGrowth);
  nodes_.push_back(std::make_unique<SdSysVarNode>(host_, std::move(name), newValue));
}

void SdSysVarStack::remove(std::string_view name) {
  auto newest = std::find_if(nodes_.rbegin(), nodes_.rend(), [&](const auto& n) { return n->name() == name; });
  if (newest == nodes_.rend()) return;
  nodes_.erase(std::next(newest).base());
}

}  // namespace frame
