#include "platform/ostrel/ioerror.h"

#include <windows.h>

#include <cstdio>
#include <string>

namespace {
thread_local int ioError = 0;
thread_local std::string errorText;
}  // namespace

int GetIOErrorN() { return ioError; }

void SetErrorN(int code) { ioError = code; }

const char* GetIOErrorS_CON(int code) {
  const DWORD err = code < 0 ? GetLastError() : static_cast<DWORD>(code);
  char* msg = nullptr;
  DWORD n = FormatMessageA(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
                           nullptr, err, 0, reinterpret_cast<char*>(&msg), 0, nullptr);
  std::string text = n && msg ? std::string(msg, n) : std::string("Unknown error");
  if (msg) LocalFree(msg);
  while (!text.empty() && (text.back() == '\r' || text.back() == '\n' || text.back() == ' ')) text.pop_back();
  errorText = text + " (" + std::to_string(err) + ")";
  return errorText.c_str();
}
