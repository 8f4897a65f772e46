#include "platform/ostrel/strutil.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <vector>

char* StrCpy(char* dst, const char* src, int size) {
  if (!dst || size <= 0) return dst;
  if (!src) src = "";
  std::size_t n = strnlen(src, static_cast<std::size_t>(size - 1));
  std::memcpy(dst, src, n);
  dst[n] = '\0';
  return dst;
}

int Sprintf(char* buffer, int size, const char* format, ...) {
  if (!buffer || size <= 0 || !format) return 0;
  va_list args;
  va_start(args, format);
  int n = std::vsnprintf(buffer, static_cast<std::size_t>(size), format, args);
  va_end(args);
  if (n < 0) {
    buffer[0] = '\0';
    return 0;
  }
  return n < size ? n : size - 1;
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
