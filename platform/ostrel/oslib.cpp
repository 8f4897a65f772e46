#include "platform/ostrel/oslib.h"

#include <windows.h>

#include <cstring>
#include <string>

void* GetHInstance() { return GetModuleHandleA(nullptr); }

void* ModuleOf(const void* address) {
  HMODULE module = nullptr;
  GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                     static_cast<LPCSTR>(address), &module);
  return module;
}

const char* GetStartupDir() {
  // The executable does not move while the process runs: computed once.
  static const std::string dir = [] {
    char path[MAX_PATH * 2];
    DWORD n = GetModuleFileNameA(nullptr, path, sizeof path);
    std::string s(path, n < sizeof path ? n : 0);
    std::size_t cut = s.find_last_of("\\/");
    return cut == std::string::npos ? std::string(".\\") : s.substr(0, cut + 1);
  }();
  return dir.c_str();
}

bool CheckReadable(const void* p, std::size_t size) {
  if (!p) return false;
  auto at = reinterpret_cast<std::uintptr_t>(p);
  const std::uintptr_t end = at + size;
  if (end < at) return false;  // wraps round the address space
  do {
    MEMORY_BASIC_INFORMATION mbi;
    if (VirtualQuery(reinterpret_cast<void*>(at), &mbi, sizeof mbi) != sizeof mbi) return false;
    if (mbi.State != MEM_COMMIT) return false;
    // Execute-only pages are committed but cannot be read either.
    constexpr DWORD readable = PAGE_READONLY | PAGE_READWRITE | PAGE_WRITECOPY | PAGE_EXECUTE_READ |
                               PAGE_EXECUTE_READWRITE | PAGE_EXECUTE_WRITECOPY;
    if (!(mbi.Protect & readable) || (mbi.Protect & (PAGE_NOACCESS | PAGE_GUARD))) return false;
    at = reinterpret_cast<std::uintptr_t>(mbi.BaseAddress) + mbi.RegionSize;
  } while (at < end);
  return true;
}

// The C functions are undefined for null pointers even when size is 0.
void MemMove(void* dst, const void* src, std::size_t size) {
  if (dst && src && size) std::memmove(dst, src, size);
}

void MemSet(void* dst, int value, std::size_t size) {
  if (dst && size) std::memset(dst, value, size);
}
