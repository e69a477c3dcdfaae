#pragma once
// Plain text from the control codes of TEXT (%%d, %%c, %%p, ...) and the
// formatting codes of MTEXT (\P, \f...;, {...}, \S...;, \U+nnnn, ...).
#include <string>
#include <string_view>
#include <vector>

namespace standalone {

// TEXT content with %% codes replaced by their characters (degree, diameter,
// plus-minus, percent) and the underline/overline toggles dropped.
std::string plainText(std::string_view raw);

// MTEXT content as plain lines: paragraph breaks split lines, formatting codes
// and grouping braces are dropped, stacked fractions read "a/b".
std::vector<std::string> plainMTextLines(std::string_view raw);

}  // namespace standalone
