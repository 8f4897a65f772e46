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

MyString ModuleFileName(void* module) {
  // Wide: the 8-bit call may cut a UTF-8 path between letters short of its
  // buffer's end, which then looks like the whole path. The wide one says it
  // cut by filling the buffer.
  std::wstring path(MAX_PATH + 1, L'\0');
  for (;;) {
    const DWORD n = GetModuleFileNameW(static_cast<HMODULE>(module), path.data(), static_cast<DWORD>(path.size()));
    if (n == 0) return MyString();
    if (n < path.size()) {
      path.resize(n);
      break;
    }
    if (path.size() > 32768) return MyString();  // longer than any path
    path.resize(path.size() * 2);
  }
  const int size =
      WideCharToMultiByte(CP_ACP, 0, path.data(), static_cast<int>(path.size()), nullptr, 0, nullptr, nullptr);
  MyString bytes;
  WideCharToMultiByte(CP_ACP, 0, path.data(), static_cast<int>(path.size()), bytes.SetLength(size), size, nullptr,
                      nullptr);
  return bytes;
}

const char* GetStartupDir() {
  // The executable does not move while the process runs: computed once.
  static const std::string dir = [] {
    const std::string s = ModuleFileName(nullptr).Text();
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
