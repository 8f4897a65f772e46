#include "platform/vcl/core/package.h"

#include <windows.h>

#include <iterator>
#include <memory>
#include <mutex>
#include <string>

#include "platform/ostrel/ioerror.h"
#include "platform/ostrel/oslib.h"
#include "platform/ostrel/owned_handle.h"

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

namespace {

// What LoadPackage took on for a package, given back by UnloadPackage in
// reverse: the packages and plain modules it requires.
struct Requirements {
  HMODULE package;
  std::vector<HMODULE> packages;       // loaded through LoadPackage
  std::vector<OwnedModule> libraries;  // required modules that are not packages
};
std::mutex loadedLock;
std::vector<Requirements*> loaded;
std::vector<std::string> loading;  // names being loaded, outermost first

bool IsPackage(HMODULE h) {
  return GetProcAddress(h, "Initialize") && FindResourceA(h, "PACKAGEINFO", MAKEINTRESOURCEA(10));
}

// The file a "requires NAME" line means: the framework's own package names
// are this DLL, any other NAME is NAME.dll beside the requiring package, or
// where the system finds it.
std::string RequiredFile(const std::string& name, HMODULE requirer) {
  const std::string up = AnsiString(name).UpperCase().c_str();
  const std::string file = (up == "VCL50" || up == "VCLX50") ? "vcl.dll" : name + ".dll";
  std::string beside = ModuleFileName(requirer).Text();
  beside = beside.substr(0, beside.find_last_of("\\/") + 1) + file;
  return GetFileAttributesA(beside.c_str()) != INVALID_FILE_ATTRIBUTES ? beside : file;
}

void Release(Requirements& r) {
  for (auto it = r.packages.rbegin(); it != r.packages.rend(); ++it) UnloadPackage(*it);
  r.packages.clear();
  while (!r.libraries.empty()) r.libraries.pop_back();
}

}  // namespace

void* LoadPackage(const AnsiString& name) {
  OwnedModule h(LoadLibraryA(name.c_str()));
  if (!h) {
    const int error = static_cast<int>(GetLastError());  // before anything else can change it
    throw EPackageError("Can't load package " + name + ".\n" + GetIOErrorS_CON(error));
  }
  auto init = reinterpret_cast<void (*)()>(GetProcAddress(h.get(), "Initialize"));
  if (!IsPackage(h.get())) throw EPackageError("Can't load package " + name + ".\nIt is not a package");
  {
    std::lock_guard<std::mutex> guard(loadedLock);
    for (const std::string& n : loading)
      if (Sysutils::SameText(n, name.c_str()))
        throw EPackageError("Can't load package " + name + ".\nIt requires itself");
    loading.push_back(name.c_str());
  }
  struct PopLoading {
    ~PopLoading() {
      std::lock_guard<std::mutex> guard(loadedLock);
      loading.pop_back();
    }
  } pop;

  // The packages it requires come first, each started before it.
  auto record = std::make_unique<Requirements>();
  record->package = h.get();
  try {
    const TPackageInfo info = GetPackageInfo(h.get());
    for (const AnsiString& required : info.Requires) {
      const std::string file = RequiredFile(required.c_str(), h.get());
      OwnedModule probe(LoadLibraryA(file.c_str()));
      if (!probe)
        throw EPackageError("Can't load package " + name + ".\nIt requires " + required + ", which cannot be loaded");
      if (IsPackage(probe.get()))
        record->packages.push_back(static_cast<HMODULE>(LoadPackage(file.c_str())));
      else
        record->libraries.push_back(std::move(probe));
    }
    init();
  } catch (...) {
    Release(*record);
    throw;
  }
  std::lock_guard<std::mutex> guard(loadedLock);
  loaded.push_back(record.release());
  return h.release();
}

void UnloadPackage(void* module) {
  HMODULE h = static_cast<HMODULE>(module);
  if (!h) return;
  if (auto fin = reinterpret_cast<void (*)()>(GetProcAddress(h, "Finalize"))) fin();
  Requirements* record = nullptr;
  {
    std::lock_guard<std::mutex> guard(loadedLock);
    for (auto it = loaded.rbegin(); it != loaded.rend(); ++it)
      if ((*it)->package == h) {
        record = *it;
        loaded.erase(std::next(it).base());
        break;
      }
  }
  OwnedModule::Close(h);
  // What it required goes after it, last first.
  if (record) {
    Release(*record);
    delete record;
  }
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
