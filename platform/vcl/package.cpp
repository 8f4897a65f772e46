#include "platform/vcl/package.h"

#include <windows.h>

#include <string>

#include "platform/ostrel/ioerror.h"

namespace Sysutils {

TPackageInfo GetPackageInfo(void* module) {
  HMODULE h = static_cast<HMODULE>(module);
  HRSRC r = h ? FindResourceA(h, "PACKAGEINFO", MAKEINTRESOURCEA(10) /* RT_RCDATA */) : nullptr;
  HGLOBAL g = r ? LoadResource(h, r) : nullptr;
  const char* data = g ? static_cast<const char*>(LockResource(g)) : nullptr;
  if (!data) throw EPackageError("Module has no package descriptor");

  TPackageInfo info;
  const std::string text(data, SizeofResource(h, r));
  std::size_t at = 0;
  while (at < text.size()) {
    std::size_t end = text.find('\n', at);
    if (end == std::string::npos) end = text.size();
    std::string line = text.substr(at, end - at);
    at = end + 1;
    while (!line.empty() && (line.back() == '\r' || line.back() == '\0')) line.pop_back();
    if (line.rfind("requires ", 0) == 0) info.Requires.emplace_back(line.substr(9));
    if (line.rfind("contains ", 0) == 0) info.Contains.emplace_back(line.substr(9));
  }
  return info;
}

void* LoadPackage(const AnsiString& name) {
  HMODULE h = LoadLibraryA(name.c_str());
  if (!h) {
    const int error = static_cast<int>(GetLastError());  // before anything else can change it
    throw EPackageError("Can't load package " + name + ".\n" + GetIOErrorS_CON(error));
  }
  auto init = reinterpret_cast<void (*)()>(GetProcAddress(h, "Initialize"));
  if (!init || !FindResourceA(h, "PACKAGEINFO", MAKEINTRESOURCEA(10))) {
    FreeLibrary(h);
    throw EPackageError("Can't load package " + name + ".\nIt is not a package");
  }
  try {
    init();
  } catch (...) {
    FreeLibrary(h);
    throw;
  }
  return h;
}

void UnloadPackage(void* module) {
  HMODULE h = static_cast<HMODULE>(module);
  if (!h) return;
  if (auto fin = reinterpret_cast<void (*)()>(GetProcAddress(h, "Finalize"))) fin();
  FreeLibrary(h);
}

}  // namespace Sysutils

namespace Sysinit {

void InitializeUnits(const TUnitEntry* units, int count) {
  for (int i = 0; i < count; ++i)
    if (units[i].Initialize) units[i].Initialize();
}

void FinalizeUnits(const TUnitEntry* units, int count) {
  for (int i = count - 1; i >= 0; --i)
    if (units[i].Finalize) units[i].Finalize();
}

}  // namespace Sysinit
