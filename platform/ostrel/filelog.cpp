#include "platform/ostrel/filelog.h"

#include <windows.h>

#include <cstdarg>
#include <cstdio>
#include <mutex>
#include <string>
#include <vector>

#include "platform/ostrel/oslib.h"
#include "platform/ostrel/strutil.h"

namespace {
std::mutex logMutex;
}

const char* FILELogPath() {
  static const std::string path = [] {
    std::string s = ModuleFileName(nullptr).Text();
    std::size_t slash = s.find_last_of("\\/");
    std::size_t dot = s.find_last_of('.');
    if (dot != std::string::npos && (slash == std::string::npos || dot > slash)) s.resize(dot);
    return s + ".log";
  }();
  return path.c_str();
}

void FILELog(const char* format, ...) {
  if (!format) return;
  va_list args;
  va_start(args, format);
  const MyString text = MessageV(format, args);
  va_end(args);

  SYSTEMTIME t;
  GetLocalTime(&t);
  char stamp[32];
  std::snprintf(stamp, sizeof stamp, "%04u-%02u-%02u %02u:%02u:%02u.%03u ", t.wYear, t.wMonth, t.wDay, t.wHour,
                t.wMinute, t.wSecond, t.wMilliseconds);

  std::lock_guard<std::mutex> lock(logMutex);
  if (FILE* f = std::fopen(FILELogPath(), "ab")) {
    std::fputs(stamp, f);
    std::fputs(text.Text(), f);
    std::fputs("\r\n", f);
    std::fclose(f);
  }
}
