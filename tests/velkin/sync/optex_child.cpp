// Child process of the cross-process optex test:
//   velkin_sync_optex_child OPTEX_NAME COUNTER_MAPPING READY_SEMAPHORE START_EVENT ITERATIONS
// Releases READY_SEMAPHORE once and waits for START_EVENT, so that all
// children run at the same time; then ITERATIONS times enters the named optex (every
// seventh time twice, nested) and increments an unguarded counter in the
// shared mapping with a deliberate gap between its read and its write. The
// second counter word catches two processes inside at once. Exit code 0 on
// success, 2 on bad arguments, 3 when a kernel object is missing, 4 when the
// optex broke into the debugger (a Leave by a thread that did not own it).
#include <windows.h>

#include <cstdlib>

#include "velkin/sync/brannock.h"

namespace {
volatile LONG breaks = 0;

// Counts debugger breaks and steps over them: a failing child must end, not
// wait for a debugger.
LONG CALLBACK OnBreak(EXCEPTION_POINTERS* e) {
  if (e->ExceptionRecord->ExceptionCode != EXCEPTION_BREAKPOINT) return EXCEPTION_CONTINUE_SEARCH;
  InterlockedIncrement(&breaks);
  if (*reinterpret_cast<const unsigned char*>(e->ContextRecord->Rip) == 0xCC) ++e->ContextRecord->Rip;
  return EXCEPTION_CONTINUE_EXECUTION;
}
}  // namespace

int main(int argc, char** argv) {
  if (argc != 6) return 2;
  AddVectoredExceptionHandler(1, OnBreak);
  const int iterations = std::atoi(argv[5]);
  COptex lock(argv[1]);
  HANDLE mapping = OpenFileMappingA(FILE_MAP_WRITE, FALSE, argv[2]);
  HANDLE ready = OpenSemaphoreA(SEMAPHORE_MODIFY_STATE, FALSE, argv[3]);
  HANDLE start = OpenEventA(SYNCHRONIZE, FALSE, argv[4]);
  if (!mapping || !ready || !start) return 3;
  auto* shared = static_cast<volatile long*>(MapViewOfFile(mapping, FILE_MAP_WRITE, 0, 0, 0));
  if (!shared) return 3;
  ReleaseSemaphore(ready, 1, nullptr);
  WaitForSingleObject(start, 30000);

  for (int i = 0; i < iterations; ++i) {
    lock.Enter();
    const bool nested = i % 7 == 0;
    if (nested) lock.Enter();
    const long others = shared[1];
    shared[1] = others + 1;
    if (others != 0) shared[2] = shared[2] + 1;  // someone else is inside
    const long value = shared[0];
    if (i % 32 == 0) SwitchToThread();  // widen the window a broken lock would leave open
    shared[0] = value + 1;
    shared[1] = shared[1] - 1;
    if (nested) lock.Leave();
    lock.Leave();
  }
  UnmapViewOfFile(const_cast<long*>(shared));
  CloseHandle(start);
  CloseHandle(ready);
  CloseHandle(mapping);
  return breaks ? 4 : 0;
}
