#include "frame/text.h"

#include <cstdio>
#include <cstring>

namespace frame {

namespace {

// One parsed conversion: "%-08.3f" is flags "-0", width "8", precision ".3", conversion 'f'.
struct Conversion {
  std::string flags;
  std::string width;      // digits, or "*" taken from the arguments
  std::string precision;  // "" or ".digits" or ".*"
  char conversion = 0;
  std::size_t end = 0;    // index just past the conversion in the format
};

bool isLengthModifier(char c) { return std::strchr("hlLqjzt", c) != nullptr; }

// Parses the conversion that starts at format[start] == '%'; nothing when it is cut off.
bool parseConversion(std::string_view format, std::size_t start, Conversion& out) {
  std::size_t i = start + 1;
  auto at = [&](std::size_t k) { return k < format.size() ? format[k] : '\0'; };
  while (at(i) && std::strchr("-+ #0", at(i))) out.flags += format[i++];
  if (at(i) == '*') {
    out.width = "*";
    ++i;
  } else {
    while (at(i) >= '0' && at(i) <= '9') out.width += format[i++];
  }
  if (at(i) == '.') {
    out.precision = ".";
    ++i;
    if (at(i) == '*') {
      out.precision += '*';
      ++i;
    } else {
      while (at(i) >= '0' && at(i) <= '9') out.precision += format[i++];
    }
  }
  while (at(i) && isLengthModifier(at(i))) ++i;
  if (i >= format.size()) return false;
  out.conversion = format[i];
  out.end = i + 1;
  return true;
}

// snprintf into a std::string; the format is built here from checked pieces only.
template <class T>
std::string printOne(const std::string& conversion, T value) {
  int n = std::snprintf(nullptr, 0, conversion.c_str(), value);
  if (n <= 0) return {};
  std::string out(static_cast<std::size_t>(n) + 1, '\0');
  std::snprintf(out.data(), out.size(), conversion.c_str(), value);
  out.resize(static_cast<std::size_t>(n));
  return out;
}

long long asSigned(const FormatArg& a) {
  if (auto* v = std::get_if<long long>(&a)) return *v;
  if (auto* v = std::get_if<unsigned long long>(&a)) return static_cast<long long>(*v);
  if (auto* v = std::get_if<double>(&a)) return static_cast<long long>(*v);
  return 0;
}

unsigned long long asUnsigned(const FormatArg& a) {
  if (auto* v = std::get_if<unsigned long long>(&a)) return *v;
  if (auto* v = std::get_if<long long>(&a)) return static_cast<unsigned long long>(*v);
  if (auto* v = std::get_if<double>(&a)) return static_cast<unsigned long long>(static_cast<long long>(*v));
  return 0;
}

double asDouble(const FormatArg& a) {
  if (auto* v = std::get_if<double>(&a)) return *v;
  if (auto* v = std::get_if<long long>(&a)) return static_cast<double>(*v);
  if (auto* v = std::get_if<unsigned long long>(&a)) return static_cast<double>(*v);
  return 0;
}

// The decimal text of a number, or the text itself.
std::string asText(const FormatArg& a) {
  if (auto* v = std::get_if<std::string_view>(&a)) return std::string(*v);
  if (auto* v = std::get_if<long long>(&a)) return std::to_string(*v);
  if (auto* v = std::get_if<unsigned long long>(&a)) return std::to_string(*v);
  if (auto* v = std::get_if<double>(&a)) return printOne("%g", *v);
  return printOne("%p", std::get<const void*>(a));
}

// Widths and precisions from the arguments are bounded so a hostile value
// cannot ask for gigabytes of padding.
constexpr long long kMaxFieldWidth = 4096;

std::string boundedStar(const FormatArg& a) {
  long long v = asSigned(a);
  if (v > kMaxFieldWidth) v = kMaxFieldWidth;
  if (v < -kMaxFieldWidth) v = -kMaxFieldWidth;
  return std::to_string(v);
}

bool fieldTooWide(const std::string& digits) {
  return digits.size() > 4 || (!digits.empty() && std::stoll(digits) > kMaxFieldWidth);
}

}  // namespace

std::string formatPrintf(std::string_view format, const std::vector<FormatArg>& args) {
  std::string out;
  std::size_t next = 0;  // next argument
  std::size_t i = 0;
  while (i < format.size()) {
    char c = format[i];
    if (c != '%') {
      out += c;
      ++i;
      continue;
    }
    Conversion conv;
    if (!parseConversion(format, i, conv)) {
      out.append(format.substr(i));
      break;
    }
    std::string_view literal = format.substr(i, conv.end - i);
    i = conv.end;
    if (conv.conversion == '%') {
      out += '%';
      continue;
    }
    std::size_t needed = (conv.width == "*") + (conv.precision == ".*") + 1;
    bool known = std::strchr("diouxXcfFeEgGaAsp", conv.conversion) != nullptr;
    std::string precisionDigits = conv.precision.empty() ? "" : conv.precision.substr(1);
    if (!known || next + needed > args.size() || (conv.width != "*" && fieldTooWide(conv.width)) ||
        (precisionDigits != "*" && fieldTooWide(precisionDigits))) {
      out.append(literal);
      continue;
    }
    if (conv.width == "*") conv.width = boundedStar(args[next++]);
    if (conv.precision == ".*") conv.precision = "." + boundedStar(args[next++]);
    const FormatArg& arg = args[next++];
    std::string head = "%" + conv.flags + conv.width + conv.precision;
    switch (conv.conversion) {
      case 'd':
      case 'i':
        if (std::holds_alternative<std::string_view>(arg))
          out += printOne(head + "s", asText(arg).c_str());
        else
          out += printOne(head + "lld", asSigned(arg));
        break;
      case 'o':
      case 'u':
      case 'x':
      case 'X':
        out += printOne(head + "ll" + conv.conversion, asUnsigned(arg));
        break;
      case 'c':
        out += printOne(head + "c", static_cast<int>(asSigned(arg)));
        break;
      case 's':
        out += printOne(head + "s", asText(arg).c_str());
        break;
      case 'p':
        out += printOne(head + "p", std::holds_alternative<const void*>(arg) ? std::get<const void*>(arg) : nullptr);
        break;
      default:  // the floating conversions
        out += printOne(head + conv.conversion, asDouble(arg));
        break;
    }
  }
  return out;
}

}  // namespace frame
