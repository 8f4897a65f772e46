#include "platform/ostrel/strcompare.h"

#include <windows.h>

#include <array>

#include "platform/ostrel/mbchar.h"

namespace {

// Upper-case map of the ANSI code page, made once: the code page does not
// change while a process runs.
struct AnsiFold {
  std::array<unsigned char, 256> upper{};
  bool dbcs = false;
  bool utf8 = false;

  AnsiFold() {
    utf8 = GetACP() == CP_UTF8;
    for (int c = 0; c < 256; ++c) {
      char ch = static_cast<char>(c);
      // A byte of a UTF-8 letter is no letter: folded with the whole letter below.
      if (c && !(utf8 && c >= 0x80)) CharUpperBuffA(&ch, 1);
      upper[c] = static_cast<unsigned char>(ch);
    }
    CPINFO info{};
    dbcs = !utf8 && GetCPInfo(CP_ACP, &info) && info.MaxCharSize > 1;
  }
};

// The UTF-8 character at text, upper-cased, as a code point, and its size in
// bytes; 0 for bytes that are no character.
unsigned UpperCodePoint(const unsigned char* text, int& size) {
  size = CharSize(reinterpret_cast<const char*>(text), 4, CP_UTF8);
  wchar_t wide[2] = {};
  const int n =
      size < 2 ? 0
               : MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, reinterpret_cast<const char*>(text), size, wide, 2);
  if (n <= 0) return 0;
  CharUpperBuffW(wide, static_cast<DWORD>(n));
  return n == 2 ? 0x10000 + ((wide[0] - 0xD800u) << 10) + (wide[1] - 0xDC00u) : wide[0];
}

const AnsiFold& Fold() {
  static const AnsiFold fold;
  return fold;
}

}  // namespace

int StrCmp(const char* a, const char* b, int length, int mode) {
  const auto* x = reinterpret_cast<const unsigned char*>(a ? a : "");
  const auto* y = reinterpret_cast<const unsigned char*>(b ? b : "");
  const bool fold = (mode & StrCmpIgnoreCase) != 0;
  const AnsiFold* map = fold ? &Fold() : nullptr;
  bool trail = false;  // the previous pair was an equal double-byte lead
  for (long long i = 0; length < 0 || i < length; ++i, ++y) {
    unsigned char cx = x[i], cy = *y;
    if (map && map->utf8 && cx >= 0x80 && cy >= 0x80) {
      // Two UTF-8 letters, compared whole: their upper cases may differ in size.
      int sx = 0, sy = 0;
      const unsigned ux = UpperCodePoint(x + i, sx), uy = UpperCodePoint(y, sy);
      if (ux && uy) {
        if (ux != uy) return ux < uy ? -1 : 1;
        i += sx - 1, y += sy - 1;
        continue;
      }
    }
    if (map) {
      if (trail) {
        trail = false;
      } else if (map->dbcs && IsDBCSLeadByte(cx)) {
        trail = true;
      } else {
        cx = map->upper[cx];
        cy = map->upper[cy];
      }
    }
    if (cx != cy) return cx < cy ? -1 : 1;
    if (!cx) return 0;
  }
  return 0;
}
