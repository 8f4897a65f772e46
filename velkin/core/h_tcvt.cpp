#include "velkin/core/h_tcvt.h"

#include <windows.h>

#include <cstring>
#include <vector>

#include "platform/ostrel/mbchar.h"

namespace {
using ConvertFn = HRESULT(WINAPI*)(DWORD* mode, DWORD from, DWORD to, const char* src, int* srcSize, char* dst,
                                   int* dstSize);

// Found once and kept for the life of the process; never released.
HMODULE service = nullptr;
ConvertFn convert = nullptr;

// src copied as it is, cut between characters of its code page.
char* Copied(unsigned codePage, const char* src, char* dst, int dstSize) {
  const int seen = static_cast<int>(strnlen(src, static_cast<std::size_t>(dstSize)));
  const int kept = CharFit(src, seen, dstSize - 1, codePage);
  std::memcpy(dst, src, static_cast<std::size_t>(kept));
  dst[kept] = '\0';
  return dst;
}
}  // namespace

char* HTextConvert(unsigned fromCodePage, unsigned toCodePage, const char* src, char* dst, int dstSize) {
  if (!dst || dstSize <= 0) return dst;
  if (!src) src = "";
  if (!service) service = LoadLibraryA("mlang.dll");
  if (!service) return Copied(fromCodePage, src, dst, dstSize);
  if (!convert)
    convert = reinterpret_cast<ConvertFn>(reinterpret_cast<void*>(GetProcAddress(service, "ConvertINetString")));
  if (!convert) return Copied(fromCodePage, src, dst, dstSize);

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
    return Copied(fromCodePage, src, dst, dstSize);
  if (produced < 0 || produced > static_cast<int>(whole.size()) - 1) produced = static_cast<int>(whole.size()) - 1;
  whole[produced] = '\0';
  const int kept = CharFit(whole.data(), produced, dstSize - 1, toCodePage);
  std::memcpy(dst, whole.data(), kept);
  dst[kept] = '\0';
  return dst;
}

char* HTextConvert(unsigned fromCodePage, unsigned toCodePage, const char* src, System::AnsiString& dst) {
  // Room for what any conversion makes of it: a text converted into UTF-8
  // takes up to three times its bytes.
  const int length = src ? static_cast<int>(std::strlen(src)) : 0;
  dst.SetLength(length * 4 + 16);
  dst.Unique();
  HTextConvert(fromCodePage, toCodePage, src, dst.data(), dst.Length());
  // Drop the room that the conversion did not use.
  dst.SetLength(static_cast<int>(std::strlen(dst.data())));
  return dst.data();
}
