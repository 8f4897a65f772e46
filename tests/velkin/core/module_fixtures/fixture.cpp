// A DLL that counts its loads and unloads in the process environment, which
// outlives it: KMOD_<NAME>_ATTACH and KMOD_<NAME>_DETACH.
#include <windows.h>

#include <cstdio>
#include <cstdlib>

namespace {
void Count(const char* event) {
  char var[64], value[32] = "0";
  std::snprintf(var, sizeof var, "%s_%s", KMOD_NAME, event);
  GetEnvironmentVariableA(var, value, sizeof value);
  std::snprintf(value, sizeof value, "%d", std::atoi(value) + 1);
  SetEnvironmentVariableA(var, value);
}
}  // namespace

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID) {
  if (reason == DLL_PROCESS_ATTACH) Count("ATTACH");
  if (reason == DLL_PROCESS_DETACH) Count("DETACH");
  return TRUE;
}
