#include "platform/ostrel/strcompare.h"

#include <windows.h>

#include <array>

namespace {

// Upper-case map of the ANSI code page, made once: the code page does not
// change while a process runs.
struct AnsiFold {
  std::array<unsigned char, 256> upper{};
  bool dbcs = false;

  AnsiFold() {
    for (int c = 0; c < 256; ++c) {
      char ch = static_cast<char>(c);
      if (c) CharUpperBuffA(&ch, 1);
      upper[c] = static_cast<unsigned char>(ch);
    }
    CPINFO info{};
    dbcs = GetCPInfo(CP_ACP, &info) && info.MaxCharSize > 1;
  }
};

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
  for (long long i = 0; length < 0 || i < length; ++i) {
    unsigned char cx = x[i], cy = y[i];
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
