#include "platform/ostrel/strutil.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "platform/ostrel/mbchar.h"

char* StrCpy(char* dst, const char* src, int size) {
  if (!dst || size <= 0) return dst;
  if (!src) src = "";
  // One byte past the room tells whether the text is cut, and where.
  const int seen = static_cast<int>(strnlen(src, static_cast<std::size_t>(size)));
  const int n = CharFit(src, seen, size - 1);
  std::memcpy(dst, src, static_cast<std::size_t>(n));
  dst[n] = '\0';
  return dst;
}

int Sprintf(char* buffer, int size, const char* format, ...) {
  if (!buffer || size <= 0 || !format) return 0;
  va_list args, again;
  va_start(args, format);
  va_copy(again, args);
  int n = std::vsnprintf(buffer, static_cast<std::size_t>(size), format, args);
  va_end(args);
  if (n >= size) {
    // Cut: made whole, then cut between characters.
    std::string whole(static_cast<std::size_t>(n) + 1, '\0');
    std::vsnprintf(whole.data(), whole.size(), format, again);
    n = CharFit(whole.c_str(), n, size - 1);
    std::memcpy(buffer, whole.c_str(), static_cast<std::size_t>(n));
    buffer[n] = '\0';
  }
  va_end(again);
  if (n < 0) {
    buffer[0] = '\0';
    return 0;
  }
  return n;
}

MyString MessageV(const char* format, va_list args) {
  if (!format) return MyString();
  va_list again;
  va_copy(again, args);
  int n = std::vsnprintf(nullptr, 0, format, args);
  MyString result;
  if (n > 0) std::vsnprintf(result.SetLength(n), static_cast<std::size_t>(n) + 1, format, again);
  va_end(again);
  return result;
}

MyString Message(const char* format, ...) {
  va_list args;
  va_start(args, format);
  MyString result = MessageV(format, args);
  va_end(args);
  return result;
}
