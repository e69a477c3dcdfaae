#pragma once
// Plain text from the control codes of TEXT (%%d, %%c, %%p, %%nnn, \U+nnnn)
// and the formatting codes of MTEXT (\P, \f...;, {...}, \S...;, ...). The
// database, the curve kernel's text extents and the renderer all read text
// through here, so what is measured is what is drawn.
#include <string>
#include <string_view>
#include <vector>

namespace standalone {

// TEXT content with its codes replaced by the characters they show: %%d
// degree, %%c diameter, %%p plus-minus, %%% percent, %%nnn (three digits)
// the character of that number, \U+nnnn (four hex digits) that code point;
// the %%u and %%o underline and overline switches are dropped. Anything
// else, a lone %% among it, stays as written.
std::string plainText(std::string_view raw);

// MTEXT content as plain lines: \P (paragraph), \N (column) and \X (the
// dimension-line break) and line feeds start a new line; \~ is a space;
// \\, \{ and \} are those characters; a stack \Sa^b; \Sa/b; or \Sa#b; reads
// inline as "a/b"; grouping braces, the switches \L \l \O \o \K \k and the
// codes with an argument up to ';' (\A \C \c \F \f \H \Q \T \W \p) are
// dropped; other codes show their letter; %% codes and \U+nnnn read as in
// TEXT. The text is read once, so an escaped backslash never starts a code.
std::vector<std::string> plainMTextLines(std::string_view raw);

}  // namespace standalone
