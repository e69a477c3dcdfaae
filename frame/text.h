#pragma once
// Message pairs: every user-visible text exists as an English and a Chinese
// literal with the same placeholders in the same order. The place that shows a
// text picks one by the language flag and formats it in the manner of printf
// on UTF-8 text (%s %d %i %u %x %c %f %e %g %% with flags, width, precision).
#include <concepts>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>
#include <vector>

#include "frame/language.h"

namespace frame {

// A pair of views, normally of string literals; it does not own its texts.
struct Text {
  std::string_view en;
  std::string_view zh;

  // The literal the language flag selects.
  std::string_view chosen() const { return isChinese() ? zh : en; }
};

// One argument of a printf-style format, already widened.
using FormatArg = std::variant<long long, unsigned long long, double, std::string_view, const void*>;

// Formats printf-style with type-checked arguments: a conversion whose
// argument is missing is copied as it stands, "%n" is never honoured, and an
// argument of another kind than its conversion is converted sensibly
// (a number for %s prints its decimal text, a text for %d prints the text).
std::string formatPrintf(std::string_view format, const std::vector<FormatArg>& args);

namespace detail {
inline FormatArg toFormatArg(std::string_view s) { return s; }
inline FormatArg toFormatArg(const std::string& s) { return std::string_view(s); }
inline FormatArg toFormatArg(const char* s) { return std::string_view(s ? s : "(null)"); }
template <std::floating_point T>
FormatArg toFormatArg(T v) { return static_cast<double>(v); }
template <std::integral T>
FormatArg toFormatArg(T v) {
  if constexpr (std::is_signed_v<T>)
    return static_cast<long long>(v);
  else
    return static_cast<unsigned long long>(v);
}
template <class T>
  requires std::is_enum_v<T>
FormatArg toFormatArg(T v) { return static_cast<long long>(v); }
}  // namespace detail

// The chosen literal of a pair formatted with the arguments.
template <class... Args>
std::string format(const Text& text, const Args&... args) {
  return formatPrintf(text.chosen(), {detail::toFormatArg(args)...});
}

}  // namespace frame
