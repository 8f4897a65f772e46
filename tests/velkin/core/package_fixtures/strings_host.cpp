// Loads velkin.dll and writes, to the file named by argv[1], the active ANSI
// code page and UI language, then one line per string id given after it:
// "<id> <bytes of LoadStr(id) in hex>". Signals the named event argv[2] when
// done: a start through Wine's loader gives the parent no process handle.
#include <windows.h>

#include <cstdio>
#include <cstdlib>

#include "platform/vcl/sysutils.h"

int main(int argc, char** argv) {
  if (argc < 3) return 2;
  FILE* out = std::fopen(argv[1], "w");
  if (!out) return 3;
  std::fprintf(out, "acp %u ui %04X\n", GetACP(), GetUserDefaultUILanguage());
  if (HMODULE library = LoadLibraryA("velkin.dll")) {
    for (int i = 3; i < argc; ++i) {
      const int id = std::atoi(argv[i]);
      const Sysutils::AnsiString text = Sysutils::LoadStr(id);
      std::fprintf(out, "%d ", id);
      for (int k = 1; k <= text.Length(); ++k) std::fprintf(out, "%02X", static_cast<unsigned char>(text[k]));
      std::fprintf(out, "\n");
    }
    FreeLibrary(library);
  } else {
    std::fprintf(out, "velkin.dll not loaded: error %lu\n", GetLastError());
  }
  std::fclose(out);
  if (HANDLE done = OpenEventA(EVENT_MODIFY_STATE, FALSE, argv[2])) {
    SetEvent(done);
    CloseHandle(done);
  }
  return 0;
}
