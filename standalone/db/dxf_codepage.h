#pragma once
// Text encoding of DXF files: up to R2004 the file is in the code page named
// by $DWGCODEPAGE and characters outside it are written as \U+nnnn; from
// R2007 the file is UTF-8. Records in memory always hold UTF-8.
#include <string>
#include <string_view>

namespace standalone {

struct TextEncoding {
  bool utf8 = true;
  std::string codepage = "ANSI_1252";  // $DWGCODEPAGE when !utf8

  static TextEncoding forFile(std::string_view version, std::string_view codepage);
};

// File text to UTF-8, resolving \U+nnnn escapes.
std::string decodeText(std::string_view fileText, const TextEncoding& enc);
// UTF-8 to file text; characters the code page lacks become \U+nnnn.
std::string encodeText(std::string_view utf8, const TextEncoding& enc);

}  // namespace standalone
