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

inline std::string Utf8(const std::wstring& wide) {
  const int n =
      WideCharToMultiByte(CP_UTF8, 0, wide.data(), static_cast<int>(wide.size()), nullptr, 0, nullptr, nullptr);
  std::string utf8(n > 0 ? n : 0, '\0');
  WideCharToMultiByte(CP_UTF8, 0, wide.data(), static_cast<int>(wide.size()), utf8.data(), n, nullptr, nullptr);
  return utf8;
}

// UTF-16 in the process's ANSI code page.
inline std::string Ansi(const std::wstring& wide) {
  const int n =
      WideCharToMultiByte(CP_ACP, 0, wide.data(), static_cast<int>(wide.size()), nullptr, 0, nullptr, nullptr);
  std::string ansi(n > 0 ? n : 0, '\0');
  WideCharToMultiByte(CP_ACP, 0, wide.data(), static_cast<int>(wide.size()), ansi.data(), n, nullptr, nullptr);
  return ansi;
}

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
