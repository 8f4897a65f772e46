// A DLL that counts its loads and unloads in the process environment, which
// outlives it: KMOD_ATTACH and KMOD_DETACH.
#include <windows.h>

#include <cstdlib>
#include <string>

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID) {
  const char* name = reason == DLL_PROCESS_ATTACH ? "KMOD_ATTACH" : reason == DLL_PROCESS_DETACH ? "KMOD_DETACH" : "";
  char value[32] = "0";
  if (*name && GetEnvironmentVariableA(name, value, sizeof value) < sizeof value)
    SetEnvironmentVariableA(name, std::to_string(std::atoi(value) + 1).c_str());
  return TRUE;
}
