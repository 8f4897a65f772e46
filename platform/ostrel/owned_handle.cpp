#include "platform/ostrel/owned_handle.h"

#include <atomic>

namespace {
std::atomic<long> live[OK_Count];
}

void OwnedHandleTally(OwnedKind_Types kind, int delta) {
  if (kind >= 0 && kind < OK_Count) live[kind].fetch_add(delta, std::memory_order_relaxed);
}

long OwnedHandleCount(OwnedKind_Types kind) {
  return kind >= 0 && kind < OK_Count ? live[kind].load(std::memory_order_relaxed) : 0;
}
