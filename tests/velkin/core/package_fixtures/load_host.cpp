// Loads velkin.dll, starts and ends threads while it is loaded (one that began
// before the load, one during it), and writes to the file named by argv[1]: the
// library's instance handle as GetHInstance returns it (hex) and the path of its
// log file.
#include <windows.h>

#include <cstdint>
#include <cstdio>
#include <thread>

#include "platform/ostrel/filelog.h"
#include "platform/ostrel/oslib.h"

int main(int argc, char** argv) {
  if (argc < 2) return 2;
  HANDLE release = CreateEventA(nullptr, TRUE, FALSE, nullptr);
  std::thread before([release] { WaitForSingleObject(release, INFINITE); });
  HMODULE library = LoadLibraryA("velkin.dll");
  if (!library) return 3;
  std::thread([] {}).join();
  SetEvent(release);
  before.join();
  CloseHandle(release);

  FILE* out = std::fopen(argv[1], "w");
  if (!out) return 4;
  std::fprintf(out, "%llX\n%s\n", static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(GetHInstance())),
               FILELogPath());
  FreeLibrary(library);
  return std::fclose(out) == 0 ? 0 : 5;
}
