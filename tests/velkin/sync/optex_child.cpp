// Child process of the cross-process optex test:
//   velkin_sync_optex_child OPTEX_NAME COUNTER_MAPPING ITERATIONS
// Counts itself in the fourth word of the mapping, then ITERATIONS times
// enters the named optex and increments an unguarded counter in the first word
// with a gap between its read and its write. Exit code 0 on success, 2 on bad
// arguments, 3 when the mapping is missing, 4 when the optex was misused.
#include <windows.h>

#include <cstdlib>

#include "tests/velkin/sync/misuse_recorder.h"
#include "velkin/sync/brannock.h"

int main(int argc, char** argv) {
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
