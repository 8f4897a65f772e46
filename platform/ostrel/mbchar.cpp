#include "platform/ostrel/mbchar.h"

#include <windows.h>

#include <cstring>

namespace {

unsigned Resolved(unsigned codePage) { return codePage == CP_ACP ? GetACP() : codePage; }

bool IsContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

// The bytes a UTF-8 character takes by its first byte; 1 for a byte that starts none.
int LeadSize(unsigned char lead) {
  return lead >= 0xF0 && lead <= 0xF4 ? 4 : lead >= 0xE0 && lead <= 0xEF ? 3 : lead >= 0xC2 && lead <= 0xDF ? 2 : 1;
}

// Whether the code page has characters of two bytes whose first tells them
// (asked once for the ANSI code page, which does not change while a process runs).
bool IsDoubleByte(unsigned codePage) {
  const auto ask = [](unsigned page) {
    CPINFO info{};
    return GetCPInfo(page, &info) && info.MaxCharSize == 2;
  };
  if (codePage == GetACP()) {
    static const bool ansi = ask(GetACP());
    return ansi;
  }
  return ask(codePage);
}

}  // namespace

int CharSize(const char* text, int length, unsigned codePage) {
  if (!text) return 0;
  if (length < 0) length = static_cast<int>(std::strlen(text));
  if (length == 0) return 0;
  codePage = Resolved(codePage);
  const auto lead = static_cast<unsigned char>(text[0]);
  if (codePage == CP_UTF8) {
    const int size = LeadSize(lead);
    if (size > length) return 1;
    for (int i = 1; i < size; ++i)
      if (!IsContinuation(text[i])) return 1;
    return size;
  }
  if (length >= 2 && text[1] && IsDoubleByte(codePage) && IsDBCSLeadByteEx(codePage, lead)) return 2;
  return 1;
}

int CharFit(const char* text, int length, int room, unsigned codePage) {
  if (!text || room <= 0 || length <= 0) return 0;
  if (length <= room) return length;
  codePage = Resolved(codePage);
  if (codePage == CP_UTF8) {
    // Back to the start of the character that would be cut, if any (the text
    // may be seen only a little past room: the first byte tells the size).
    int end = room;
    while (end > 0 && IsContinuation(text[end])) --end;
    return end + LeadSize(static_cast<unsigned char>(text[end])) <= room ? room : end;
  }
  if (!IsDoubleByte(codePage)) return room;
  int end = 0;
  for (int step; end < length; end += step) {
    step = CharSize(text + end, length - end, codePage);
    if (end + step > room) break;
  }
  return end;
}
