#pragma once
// Texts in several scripts, written here in UTF-8, for the tests that run in
// a program of a single-byte code page and again in one whose code page is
// UTF-8: each text in the process's code page where that can write it.
#include <windows.h>

#include <string>

namespace script_samples {

struct Sample {
  const char* what;
  const char* utf8;
};

inline const Sample samples[] = {
    {"ASCII", "Plain text"},  {"accented Latin", "Crème brûlée, Ångström"}, {"Cyrillic", "Щука и ёж"},
    {"Greek", "Ωμέγα λόγος"}, {"outside the basic plane", "a😀b"},
};

inline std::wstring Wide(const char* utf8) {
  const int n = MultiByteToWideChar(CP_UTF8, 0, utf8, -1, nullptr, 0);
  std::wstring wide(n > 0 ? n : 1, L'\0');
  MultiByteToWideChar(CP_UTF8, 0, utf8, -1, wide.data(), n);
  wide.pop_back();
  return wide;
}

// UTF-16 in code page codePage.
inline std::string Narrow(const std::wstring& wide, UINT codePage) {
  const int n =
      WideCharToMultiByte(codePage, 0, wide.data(), static_cast<int>(wide.size()), nullptr, 0, nullptr, nullptr);
  std::string text(n > 0 ? n : 0, '\0');
  WideCharToMultiByte(codePage, 0, wide.data(), static_cast<int>(wide.size()), text.data(), n, nullptr, nullptr);
  return text;
}
inline std::string Utf8(const std::wstring& wide) { return Narrow(wide, CP_UTF8); }
// UTF-16 in the process's ANSI code page.
inline std::string Ansi(const std::wstring& wide) { return Narrow(wide, CP_ACP); }

// utf8 in the process's ANSI code page; false when that cannot write it.
inline bool InAnsi(const char* utf8, std::string& ansi) {
  const std::wstring wide = Wide(utf8);
  BOOL lossy = FALSE;
  const bool exact = GetACP() == CP_UTF8;                // takes neither flag nor report, and loses nothing
  const DWORD flags = exact ? 0 : WC_NO_BEST_FIT_CHARS;  // "\u0131" is no "i"
  const int n = WideCharToMultiByte(CP_ACP, flags, wide.c_str(), -1, nullptr, 0, nullptr, exact ? nullptr : &lossy);
  ansi.assign(n > 0 ? n : 1, '\0');
  WideCharToMultiByte(CP_ACP, flags, wide.c_str(), -1, ansi.data(), n, nullptr, nullptr);
  ansi.pop_back();
  return !lossy;
}

}  // namespace script_samples
