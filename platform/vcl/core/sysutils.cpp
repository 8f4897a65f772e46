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

void* FindResourceHInstance(void* instance) {
  std::lock_guard<std::mutex> lock(modulesMutex);
  for (TLibModule* m = modules; m; m = m->Next)
    if (m->Instance == instance) return m->ResInstance ? m->ResInstance : m->Instance;
  return instance;
}

AnsiString LoadStr(int ident) {
  std::lock_guard<std::mutex> lock(modulesMutex);
  char buffer[4096];
  for (TLibModule* m = modules; m; m = m->Next) {
    void* res = m->ResInstance ? m->ResInstance : m->Instance;
    int n = LoadStringA(static_cast<HINSTANCE>(res), static_cast<UINT>(ident), buffer, sizeof buffer);
    if (n > 0) return AnsiString(buffer, n);
  }
  return AnsiString();
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
