#include "standalone/editor/system_variables.h"

#include <algorithm>

#include "standalone/editor/answer_parse.h"

namespace standalone {

using host::ResBuf;

namespace {

bool zeroOrOne(const ResBuf& v) {
  auto i = std::get<std::int16_t>(v.value);
  return i == 0 || i == 1;
}
// Point display: 0..4, plus 32 (circle), 64 (square) or 96 (both).
bool pointMode(const ResBuf& v) {
  auto i = std::get<std::int16_t>(v.value);
  return i >= 0 && (i & 31) <= 4 && (i & ~(31 | 96)) == 0;
}
bool pickBox(const ResBuf& v) {
  auto i = std::get<std::int16_t>(v.value);
  return i >= 0 && i <= 50;
}
bool surfaceTabs(const ResBuf& v) {
  auto i = std::get<std::int16_t>(v.value);
  return i >= 2 && i <= 32766;
}
// 5 quadratic, 6 cubic B-spline.
bool splineType(const ResBuf& v) {
  auto i = std::get<std::int16_t>(v.value);
  return i == 5 || i == 6;
}
bool gapTolerance(const ResBuf& v) {
  double d = std::get<double>(v.value);
  return d >= 0 && d <= 5000;
}
bool nonZero(const ResBuf& v) { return std::get<std::int16_t>(v.value) != 0; }
bool layerName(const ResBuf& v) { return !std::get<std::string>(v.value).empty(); }
bool colorName(const ResBuf& v) { return colorIndexFromText(std::get<std::string>(v.value)).has_value(); }

ResBuf shortValue(int v) { return ResBuf::shortInt(static_cast<std::int16_t>(v)); }

}  // namespace

std::string colorText(int index) {
  if (index == 256) return "BYLAYER";
  if (index == 0) return "BYBLOCK";
  return std::to_string(index);
}

std::optional<int> colorIndexFromText(std::string_view text) {
  if (equalsNoCase(text, "BYLAYER")) return 256;
  if (equalsNoCase(text, "BYBLOCK")) return 0;
  std::optional<int> i = parseInteger(text);
  if (i && *i >= 1 && *i <= 255) return i;
  return std::nullopt;
}

SystemVariableTable::SystemVariableTable(DrawingHeader& header, host::SettingsStore& settings, const View& view)
    : header_(header), settings_(settings), view_(view) {
  using host::RTREAL, host::RTSHORT, host::RTSTR, host::RT3DPOINT;
  definitions_ = {
      {"CECOLOR", RTSTR, Home::kHeader, 62, ResBuf::text("BYLAYER"), colorName},
      {"CLAYER", RTSTR, Home::kHeader, 8, ResBuf::text("0"), layerName},
      {"CMDECHO", RTSHORT, Home::kSession, 0, shortValue(1), zeroOrOne},
      {"FILEDIA", RTSHORT, Home::kRegistry, 0, shortValue(1), zeroOrOne},
      {"HPBOUND", RTSHORT, Home::kSession, 0, shortValue(1), zeroOrOne},
      {"HPGAPTOL", RTREAL, Home::kSession, 0, ResBuf::real(0.0), gapTolerance},
      {"MENUBAR", RTSHORT, Home::kRegistry, 0, shortValue(0), zeroOrOne},
      {"MIRRHATCH", RTSHORT, Home::kSession, 0, shortValue(0), zeroOrOne},
      {"MIRRTEXT", RTSHORT, Home::kHeader, 70, shortValue(0), zeroOrOne},
      {"PDMODE", RTSHORT, Home::kHeader, 70, shortValue(0), pointMode},
      {"PDSIZE", RTREAL, Home::kHeader, 40, ResBuf::real(0.0), nullptr},
      {"PICKBOX", RTSHORT, Home::kRegistry, 0, shortValue(3), pickBox},
      {"SPLFRAME", RTSHORT, Home::kHeader, 70, shortValue(0), zeroOrOne},
      {"SPLINESEGS", RTSHORT, Home::kHeader, 70, shortValue(8), nonZero},
      {"SPLINETYPE", RTSHORT, Home::kHeader, 70, shortValue(6), splineType},
      {"SURFTAB1", RTSHORT, Home::kHeader, 70, shortValue(6), surfaceTabs},
      {"VIEWCTR", RT3DPOINT, Home::kViewCenter, 0, ResBuf::point3d({}), nullptr},
      {"VIEWSIZE", RTREAL, Home::kViewSize, 0, ResBuf::real(0.0), nullptr},
  };
}

const SystemVariableTable::Definition* SystemVariableTable::find(std::string_view name) const {
  for (const Definition& d : definitions_)
    if (equalsNoCase(d.name, name)) return &d;
  return nullptr;
}

std::vector<std::string> SystemVariableTable::names() const {
  std::vector<std::string> out;
  for (const Definition& d : definitions_) out.push_back(d.name);
  std::sort(out.begin(), out.end());
  return out;
}

std::optional<ResBuf> SystemVariableTable::convert(const Definition& def, const ResBuf& value) {
  std::optional<ResBuf> out;
  switch (def.type) {
    case host::RTSHORT:
      if (const auto* s = std::get_if<std::int16_t>(&value.value)) out = shortValue(*s);
      if (const auto* l = std::get_if<std::int32_t>(&value.value); l && *l >= -32768 && *l <= 32767)
        out = shortValue(*l);
      break;
    case host::RTREAL:
      if (const auto* d = std::get_if<double>(&value.value)) out = ResBuf::real(*d);
      if (const auto* s = std::get_if<std::int16_t>(&value.value)) out = ResBuf::real(*s);
      if (const auto* l = std::get_if<std::int32_t>(&value.value)) out = ResBuf::real(*l);
      break;
    case host::RTSTR:
      if (const auto* t = std::get_if<std::string>(&value.value)) out = ResBuf::text(*t);
      break;
    default:
      break;
  }
  if (out && def.valid && !def.valid(*out)) out.reset();
  return out;
}

int SystemVariableTable::getVar(std::string_view name, ResBuf& value) const {
  const Definition* def = find(name);
  if (!def) return host::RTERROR;
  switch (def->home) {
    case Home::kViewSize:
      value = ResBuf::real(view_.height);
      return host::RTNORM;
    case Home::kViewCenter:
      value = ResBuf::point3d({view_.center.x, view_.center.y, 0});
      return host::RTNORM;
    case Home::kSession: {
      auto it = session_.find(def->name);
      value = it != session_.end() ? it->second : def->initial;
      return host::RTNORM;
    }
    case Home::kRegistry: {
      std::optional<std::uint32_t> stored = settings_.readInt(kHostVariablesKey, def->name);
      std::optional<ResBuf> v;
      if (stored) v = convert(*def, ResBuf::longInt(static_cast<std::int32_t>(*stored)));
      value = v ? *v : def->initial;
      return host::RTNORM;
    }
    case Home::kHeader: {
      std::optional<ResBuf> stored = header_.get("$" + def->name);
      std::optional<ResBuf> v;
      if (stored && def->name == "CECOLOR") {
        if (const auto* s = std::get_if<std::int16_t>(&stored->value); s && (*s >= 0 && *s <= 256))
          v = ResBuf::text(colorText(*s));
      } else if (stored) {
        v = convert(*def, *stored);
      }
      value = v ? *v : def->initial;
      return host::RTNORM;
    }
  }
  return host::RTERROR;
}

int SystemVariableTable::setVar(std::string_view name, const ResBuf& value) {
  const Definition* def = find(name);
  if (!def) return host::RTERROR;
  std::optional<ResBuf> v = convert(*def, value);
  if (!v) return host::RTERROR;
  switch (def->home) {
    case Home::kViewSize:
    case Home::kViewCenter:
      return host::RTERROR;  // read-only: ZOOM changes the view
    case Home::kSession:
      session_[def->name] = *v;
      return host::RTNORM;
    case Home::kRegistry: {
      auto i = std::get<std::int16_t>(v->value);
      return settings_.writeInt(kHostVariablesKey, def->name, static_cast<std::uint32_t>(i)) ? host::RTNORM
                                                                                             : host::RTERROR;
    }
    case Home::kHeader:
      if (def->name == "CECOLOR") {
        int index = *colorIndexFromText(std::get<std::string>(v->value));
        header_.set("$CECOLOR", def->group, shortValue(index));
      } else {
        header_.set("$" + def->name, def->group, *v);
      }
      return host::RTNORM;
  }
  return host::RTERROR;
}

}  // namespace standalone
