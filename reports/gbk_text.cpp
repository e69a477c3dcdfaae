#include "reports/gbk_text.h"

#include <cerrno>
#include <iconv.h>

namespace reports {

namespace {

// Length of the UTF-8 sequence a lead byte starts; 1 for a stray byte.
std::size_t sequenceLength(unsigned char lead) {
  if (lead >= 0xF0 && lead <= 0xF4) return 4;
  if (lead >= 0xE0) return lead <= 0xEF ? 3 : 1;
  if (lead >= 0xC2) return 2;
  return 1;
}

bool isAscii(std::string_view s) {
  for (char c : s)
    if (static_cast<unsigned char>(c) >= 0x80) return false;
  return true;
}

class Converter {
 public:
  Converter() : cd_(iconv_open("CP936", "UTF-8")) {}
  ~Converter() {
    if (ok()) iconv_close(cd_);
  }
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;
  bool ok() const { return cd_ != reinterpret_cast<iconv_t>(-1); }

  // One UTF-8 character; false when the code page has no such character
  // or the bytes are no character at all.
  bool convertOne(std::string_view ch, std::string& out) {
    char buf[8];
    char* in = const_cast<char*>(ch.data());
    std::size_t inLeft = ch.size();
    char* o = buf;
    std::size_t outLeft = sizeof buf;
    std::size_t r = iconv(cd_, &in, &inLeft, &o, &outLeft);
    iconv(cd_, nullptr, nullptr, nullptr, nullptr);
    if (r == static_cast<std::size_t>(-1) || inLeft != 0) return false;
    out.append(buf, static_cast<std::size_t>(o - buf));
    return true;
  }

 private:
  iconv_t cd_;
};

}  // namespace

std::string toCodePage936(std::string_view utf8) {
  if (isAscii(utf8)) return std::string(utf8);
  Converter converter;
  std::string out;
  out.reserve(utf8.size());
  std::size_t i = 0;
  while (i < utf8.size()) {
    unsigned char lead = static_cast<unsigned char>(utf8[i]);
    if (lead < 0x80) {
      out += static_cast<char>(lead);
      ++i;
      continue;
    }
    std::size_t n = std::min(sequenceLength(lead), utf8.size() - i);
    // A sequence cut short ends at the first byte that does not continue it.
    for (std::size_t k = 1; k < n; ++k)
      if ((static_cast<unsigned char>(utf8[i + k]) & 0xC0) != 0x80) {
        n = k;
        break;
      }
    if (!converter.ok() || !converter.convertOne(utf8.substr(i, n), out)) out += '?';
    i += n;
  }
  return out;
}

}  // namespace reports
