// Loads velkin.dll, starts and ends threads while it is loaded (one that began
// before the load, one during it), and writes to the file named by argv[1]: the
// library's instance handle as GetHInstance returns it (hex), the path of its
// log file, and the bytes of LoadStr(1010) and LoadStr(1002) in hex.
#include <windows.h>

#include <cstdint>
#include <cstdio>
#include <thread>

#include "platform/ostrel/filelog.h"
#include "platform/ostrel/oslib.h"
#include "platform/vcl/sysutils.h"

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
  for (int id : {1010, 1002}) {
    const Sysutils::AnsiString text = Sysutils::LoadStr(id);
    for (int k = 1; k <= text.Length(); ++k) std::fprintf(out, "%02X", static_cast<unsigned char>(text[k]));
    std::fprintf(out, "\n");
  }
  FreeLibrary(library);
  return std::fclose(out) == 0 ? 0 : 5;
}
