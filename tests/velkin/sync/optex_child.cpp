// Child process of the cross-process optex tests.
//   velkin_sync_optex_child OPTEX_NAME COUNTER_MAPPING ITERATIONS
// Counts itself in the fourth word of the mapping, then ITERATIONS times
// enters the named optex and increments an unguarded counter in the first word
// with a gap between its read and its write. Exit code 0 on success, 2 on bad
// arguments, 3 when the mapping is missing, 4 when the optex was misused.
//   velkin_sync_optex_child hold OPTEX_NAME MS
// Enters the optex twice, sets the event OPTEX_NAME_held, holds it MS
// milliseconds and leaves; exit code 0.
//   velkin_sync_optex_child wait OPTEX_NAME
// Sets the event OPTEX_NAME_waiting, enters the optex and exits with 16 plus:
// 1 when WasAbandoned() said so, 2 when it said so a second time, 4 when after
// leaving, the optex could be entered again at once.
#include <windows.h>

#include <cstdlib>
#include <cstring>
#include <string>

#include "tests/velkin/sync/misuse_recorder.h"
#include "velkin/sync/brannock.h"

namespace {

// The event is left open: the parent may open it after this process has moved on.
void Signal(const char* optex, const char* what) {
  SetEvent(CreateEventA(nullptr, TRUE, FALSE, (std::string(optex) + what).c_str()));
}

int Hold(const char* name, int ms) {
  COptex lock(name);
  lock.Enter();
  lock.Enter();
  Signal(name, "_held");
  Sleep(ms);
  lock.Leave();
  lock.Leave();
  return 0;
}

int Wait(const char* name) {
  COptex lock(name);
  Signal(name, "_waiting");
  lock.Enter();
  int result = 16;
  if (lock.WasAbandoned()) result |= 1;
  if (lock.WasAbandoned()) result |= 2;
  lock.Leave();
  if (lock.TryEnter()) {
    result |= 4;
    lock.Leave();
  }
  return result;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 4 && std::strcmp(argv[1], "hold") == 0) return Hold(argv[2], std::atoi(argv[3]));
  if (argc == 3 && std::strcmp(argv[1], "wait") == 0) return Wait(argv[2]);
  if (argc != 4) return 2;
  MisuseRecorder misuse;  // a failing child must end, not wait for a debugger
  COptex lock(argv[1]);
  HANDLE mapping = OpenFileMappingA(FILE_MAP_WRITE, FALSE, argv[2]);
  auto* shared = mapping ? static_cast<volatile long*>(MapViewOfFile(mapping, FILE_MAP_WRITE, 0, 0, 0)) : nullptr;
  if (!shared) return 3;
  InterlockedIncrement(const_cast<long*>(shared + 3));
  for (int i = 0, iterations = std::atoi(argv[3]); i < iterations; ++i) {
    lock.Enter();
    const long value = shared[0];
    if (i % 32 == 0) SwitchToThread();  // widen the window a broken lock would leave open
    shared[0] = value + 1;
    lock.Leave();
  }
  UnmapViewOfFile(const_cast<long*>(shared));
  CloseHandle(mapping);
  return misuse.Reasons().empty() ? 0 : 4;
}
