#include "velkin/core/h_tcvt.h"

#include <windows.h>

#include <cstring>
#include <vector>

#include "platform/ostrel/strutil.h"

namespace {
using ConvertFn = HRESULT(WINAPI*)(DWORD* mode, DWORD from, DWORD to, const char* src, int* srcSize, char* dst,
                                   int* dstSize);

// Found once and kept for the life of the process; never released.
HMODULE service = nullptr;
ConvertFn convert = nullptr;

// Length of the longest prefix of text (length bytes) that fits room bytes and
// does not end inside a character of the code page.
int FittingPrefix(unsigned codePage, const char* text, int length, int room) {
  if (length <= room) return length;
  if (codePage == CP_UTF8) {
    int end = room;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;
    return end;
  }
  CPINFO info;
  if (!GetCPInfo(codePage, &info) || info.MaxCharSize < 2) return room;
  int end = 0;
  while (end < length) {
    const int step = IsDBCSLeadByteEx(codePage, static_cast<BYTE>(text[end])) ? 2 : 1;
    if (end + step > room) break;
    end += step;
  }
  return end;
}
}  // namespace

char* HTextConvert(unsigned fromCodePage, unsigned toCodePage, const char* src, char* dst, int dstSize) {
  if (!dst || dstSize <= 0) return dst;
  if (!src) src = "";
  if (!service) service = LoadLibraryA("mlang.dll");
  if (!service) return StrCpy(dst, src, dstSize);
  if (!convert)
    convert = reinterpret_cast<ConvertFn>(reinterpret_cast<void*>(GetProcAddress(service, "ConvertINetString")));
  if (!convert) return StrCpy(dst, src, dstSize);

  // The service neither terminates its output nor counts a terminator: the
  // last byte stays ours.
  int produced = dstSize - 1;
  if (convert(nullptr, fromCodePage, toCodePage, src, nullptr, dst, &produced) == S_OK) {
    if (produced < 0 || produced > dstSize - 1) produced = dstSize - 1;
    dst[produced] = '\0';
    return dst;
  }
  // The service refuses a text that does not fit: convert it whole elsewhere
  // and keep what fits, rather than hand back bytes of the wrong code page.
  // No code page needs more than four bytes for one source byte.
  std::vector<char> whole(std::strlen(src) * 4 + 16);
  produced = static_cast<int>(whole.size()) - 1;
  if (convert(nullptr, fromCodePage, toCodePage, src, nullptr, whole.data(), &produced) != S_OK)
    return StrCpy(dst, src, dstSize);
  if (produced < 0 || produced > static_cast<int>(whole.size()) - 1) produced = static_cast<int>(whole.size()) - 1;
  whole[produced] = '\0';
  const int kept = FittingPrefix(toCodePage, whole.data(), produced, dstSize - 1);
  std::memcpy(dst, whole.data(), kept);
  dst[kept] = '\0';
  return dst;
}

char* HTextConvert(unsigned fromCodePage, unsigned toCodePage, const char* src, System::AnsiString& dst) {
  const int length = src ? static_cast<int>(std::strlen(src)) : 0;
  dst.SetLength(length + 1);
  dst.Unique();
  HTextConvert(fromCodePage, toCodePage, src, dst.data(), length + 1);
  // Drop the room that the conversion did not use.
  dst.SetLength(static_cast<int>(std::strlen(dst.data())));
  return dst.data();
}
