#pragma once
// Text in the Chinese Windows code page (936, GBK), the one the report pages
// declare as gb2312.
#include <string>
#include <string_view>

namespace reports {

// UTF-8 to code page 936. A character the code page lacks becomes "?", as the
// host's own wide-to-code-page conversion writes its default character; a
// byte that is not UTF-8 becomes "?" as well. Never fails.
std::string toCodePage936(std::string_view utf8);

}  // namespace reports
