#include "platform/vcl/core/sysutils.h"

#include <windows.h>

#include <cstring>
#include <mutex>
#include <string>

namespace Sysutils {

VCL_CLASS_IMPL(Exception, System::TObject)
VCL_CLASS_IMPL(EConvertError, Exception)
VCL_CLASS_IMPL(EPackageError, Exception)

AnsiString IntToStr(int value) { return AnsiString(value); }

namespace {
std::mutex modulesMutex;
TLibModule* modules = nullptr;
}  // namespace

void RegisterModule(TLibModule* module) {
  if (!module) return;
  std::lock_guard<std::mutex> lock(modulesMutex);
  // A second registration would link the module to itself.
  for (TLibModule* m = modules; m; m = m->Next)
    if (m == module) return;
  module->Next = modules;
  modules = module;
}

void UnregisterModule(TLibModule* module) {
  std::lock_guard<std::mutex> lock(modulesMutex);
  for (TLibModule** p = &modules; *p; p = &(*p)->Next) {
    if (*p == module) {
      *p = module->Next;
      module->Next = nullptr;
      return;
    }
  }
}

void* LoadResourceModule(const char* moduleFileName) {
  if (!moduleFileName || !*moduleFileName) return nullptr;
  std::string base(moduleFileName);
  std::size_t slash = base.find_last_of("\\/");
  std::size_t dot = base.find_last_of('.');
  if (dot != std::string::npos && (slash == std::string::npos || dot > slash)) base.resize(dot);

  char lang[16] = {};
  LCID ui = MAKELCID(GetUserDefaultUILanguage(), SORT_DEFAULT);
  if (!GetLocaleInfoA(ui, LOCALE_SABBREVLANGNAME, lang, sizeof lang) || !*lang) return nullptr;
  const std::string full(lang);
  for (const std::string& ext : {full, full.substr(0, 2)}) {
    std::string path = base + "." + ext;
    if (GetFileAttributesA(path.c_str()) == INVALID_FILE_ATTRIBUTES) continue;
    if (HMODULE h = LoadLibraryExA(path.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE)) return h;
  }
  return nullptr;
}

namespace {

// text in the ANSI code page; false when the code page has no letter for one
// of its characters (they come out as '?').
bool ToAnsi(const wchar_t* text, int length, AnsiString& out) {
  const UINT codePage = GetACP();
  // UTF-8 and UTF-7 write every character and take neither the flag nor the report.
  const bool whole = codePage == CP_UTF8 || codePage == CP_UTF7;
  BOOL lost = FALSE;
  const DWORD flags = whole ? 0 : WC_NO_BEST_FIT_CHARS;
  const int size = WideCharToMultiByte(CP_ACP, flags, text, length, nullptr, 0, nullptr, nullptr);
  std::string bytes(size > 0 ? size : 0, '\0');
  if (size > 0) WideCharToMultiByte(CP_ACP, flags, text, length, bytes.data(), size, nullptr, whole ? nullptr : &lost);
  out = AnsiString(bytes.data(), static_cast<int>(bytes.size()));
  return !lost;
}

// The English (United States) entry ident of module's string table: its
// length, with text pointing into the resource; 0 when there is none.
int EnglishEntry(HMODULE module, UINT ident, const wchar_t*& text) {
  const HRSRC found = FindResourceExW(module, reinterpret_cast<LPCWSTR>(RT_STRING), MAKEINTRESOURCEW(ident / 16 + 1),
                                      MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US));
  const HGLOBAL loaded = found ? LoadResource(module, found) : nullptr;
  const auto* at = static_cast<const WORD*>(loaded ? LockResource(loaded) : nullptr);
  if (!at) return 0;
  // A block is 16 counted strings; a damaged one must not be read past its end.
  const WORD* end = at + SizeofResource(module, found) / sizeof(WORD);
  for (UINT i = ident % 16; i > 0 && at < end; --i) at += *at + 1;
  if (at >= end || *at == 0 || at + 1 + *at > end) return 0;
  text = reinterpret_cast<const wchar_t*>(at + 1);
  return *at;
}

// Entry ident of module's string table for the thread's UI language, in the
// ANSI code page. A language whose letters the code page cannot write (a
// Russian interface over a Western code page) gives the English entry instead
// of a row of question marks.
AnsiString LoadFrom(HMODULE module, int ident) {
  const wchar_t* text = nullptr;
  const int length = LoadStringW(module, static_cast<UINT>(ident), reinterpret_cast<LPWSTR>(&text), 0);
  if (length <= 0 || !text) return AnsiString();
  AnsiString out;
  if (ToAnsi(text, length, out)) return out;
  if (const int english = EnglishEntry(module, static_cast<UINT>(ident), text)) ToAnsi(text, english, out);
  return out;
}

void* ResourceModule(void* instance) {
  for (TLibModule* m = modules; m; m = m->Next)
    if (m->Instance == instance) return m->ResInstance ? m->ResInstance : m->Instance;
  return instance;
}

}  // namespace

void* FindResourceHInstance(void* instance) {
  std::lock_guard<std::mutex> lock(modulesMutex);
  return ResourceModule(instance);
}

AnsiString LoadStr(int ident) {
  std::lock_guard<std::mutex> lock(modulesMutex);
  for (TLibModule* m = modules; m; m = m->Next) {
    AnsiString text = LoadFrom(static_cast<HMODULE>(m->ResInstance ? m->ResInstance : m->Instance), ident);
    if (!text.IsEmpty()) return text;
  }
  return AnsiString();
}

AnsiString LoadStr(void* instance, int ident) {
  std::lock_guard<std::mutex> lock(modulesMutex);
  return LoadFrom(static_cast<HMODULE>(ResourceModule(instance)), ident);
}

bool SameText(const char* a, const char* b) {
  const auto up = [](unsigned char c) { return c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c; };
  a = a ? a : "";
  b = b ? b : "";
  for (; *a && *b; ++a, ++b)
    if (up(static_cast<unsigned char>(*a)) != up(static_cast<unsigned char>(*b))) return false;
  return *a == *b;
}

}  // namespace Sysutils
