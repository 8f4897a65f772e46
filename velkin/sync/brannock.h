#pragma once
#include <cstdint>
#include <utility>

#include "platform/ostrel/owned_handle.h"
#include "velkin/velkin_api.h"

/// \file
/// Unit Brannock: two locks for application threads.

/// Called with the reason when either lock is misused, in place of the debugger
/// break; null (the default) breaks into the debugger. A test program installs
/// one so that misuse shows up as a failure at once, not as a debugger that
/// never comes back.
using HLockMisuseHandler = void (*)(const char* reason);
///@{
/// The misuse handler in force, and its replacement.
VELKIN_API HLockMisuseHandler GetLockMisuseHandler();
VELKIN_API void SetLockMisuseHandler(HLockMisuseHandler handler);
///@}

/// A recursive mutex that spins on an interlocked counter before it sleeps on a
/// kernel event. Private to one process, or, with a name, shared by every
/// process that builds an optex of that name (state in a named shared-memory
/// block, wake-ups through a named event). Uncontended Enter/Leave touch no
/// kernel object: one compare-exchange and one decrement, inline.
///
/// Failed creation of a kernel object throws Sysutils::Exception; a name that
/// does not fit a kernel object name is refused the same way, never cut.
/// Misuse (Leave by a thread that does not own the lock, destroying an owned
/// lock) breaks into the debugger and leaves the lock as it was.
///
/// A named optex survives the death of its owner: a waiter that has slept
/// 100 ms checks whether the owning thread still runs and, if it ended (its
/// process killed, say), takes the lock over and learns it from WasAbandoned().
class VELKIN_API COptex {
 public:
  /// Bytes a ConstructObjectName buffer must hold: the longest kernel object
  /// name (MAX_PATH less the terminator) and its terminator.
  static constexpr int ObjectNameSize = 260;
  /// Longest name: the longer prefix ("Optex_Event_") plus the name must fit a kernel object name.
  static constexpr int MaxNameLength = ObjectNameSize - 1 - 12;

  explicit COptex(unsigned long spinCount = 4000);
  /// A null name gives a private optex.
  explicit COptex(const char* name, unsigned long spinCount = 4000);
  explicit COptex(const wchar_t* name, unsigned long spinCount = 4000);
  COptex(const COptex&) = delete;
  COptex& operator=(const COptex&) = delete;
  ~COptex();

  /// Attempts beyond the first that TryEnter makes; ignored on a one-processor
  /// machine, where spinning cannot help. Shared by all users of a named optex.
  void SetSpinCount(unsigned long spinCount);

  /// Blocks until owned; the owner may enter again and leaves once per entry.
  void Enter() {
    if (!TryEnter()) EnterWait();
  }

  bool TryEnter() {
    SharedInfo* const psi = shared_;
    const uint32_t me = ThreadId();
    int32_t expected = 0;
    if (__atomic_compare_exchange_n(&psi->LockCount, &expected, 1, false, __ATOMIC_ACQUIRE, __ATOMIC_RELAXED)) {
      __atomic_store_n(&psi->OwnerThreadId, me, __ATOMIC_RELAXED);
      psi->RecurseCount = 1;
      return true;
    }
    return TryEnterBusy(me);
  }

  void Leave() {
    SharedInfo* const psi = shared_;
    if (__atomic_load_n(&psi->OwnerThreadId, __ATOMIC_RELAXED) != ThreadId())
      return Misuse("Leave by a thread that does not own the optex");
    if (--psi->RecurseCount > 0) {
      __atomic_sub_fetch(&psi->LockCount, 1, __ATOMIC_RELEASE);
      return;
    }
    __atomic_store_n(&psi->OwnerThreadId, 0, __ATOMIC_RELAXED);
    if (__atomic_sub_fetch(&psi->LockCount, 1, __ATOMIC_RELEASE) > 0) WakeWaiter();
  }

  /// True once after an Enter of this object took a named optex over from an
  /// owner that ended without leaving: what the lock guarded may be half written.
  bool WasAbandoned() { return std::exchange(abandoned_, false); }

  bool IsSingleProcessOptex() const { return !mapping_; }

  /// Writes prefix and name ("Optex_Event_" + "Jobs") into buffer, which holds
  /// ObjectNameSize bytes. Returns buffer, or null (buffer emptied) for a null
  /// name. Throws Sysutils::Exception for a name longer than fits, or a wide
  /// name that the ANSI code page cannot represent exactly.
  static char* ConstructObjectName(char* buffer, const char* prefix, int unicode, void* name);

  /// Kernel calls made so far by all optexes of this process: waits on and
  /// wake-ups through the event. The uncontended path makes none.
  static long GetEventWaits();
  static long GetEventSets();

 protected:
  void CommonConstructor(unsigned long spinCount, int unicode, void* name);

 private:
  /// Layout shared between processes: keep it fixed.
  struct SharedInfo {
    uint32_t SpinCount;
    int32_t LockCount;  // 0 free, else 1 + entries waiting or nested
    uint32_t OwnerThreadId;
    int32_t RecurseCount;
  };
  static_assert(sizeof(SharedInfo) == 16);

  /// The calling thread's id, read from its thread block: no call.
  static uint32_t ThreadId() {
#if defined(__x86_64__)
    uint32_t id;
    __asm__("movl %%gs:0x48, %0" : "=r"(id));
    return id;
#elif defined(__i386__)
    uint32_t id;
    __asm__("movl %%fs:0x24, %0" : "=r"(id));
    return id;
#else
    return SlowThreadId();
#endif
  }
  static uint32_t SlowThreadId();

  /// Takes the lock over when its owning thread has ended; for a waiter that
  /// is counted in LockCount already.
  bool TakeOverFromDeadOwner(uint32_t me);

  /// The rest of TryEnter once the first attempt failed: nesting, then spinning.
  bool TryEnterBusy(uint32_t me);
  void EnterWait();
  void WakeWaiter();
  void Release();
  static void Misuse(const char* reason);

  OwnedKernelHandle event_;
  OwnedKernelHandle mapping_;  // none for a private optex
  /// The record: on the heap for a private optex, else the view of the mapping
  /// (held by view_, while shared_ is what the inline paths read).
  SharedInfo* shared_ = nullptr;
  OwnedView view_;
  bool abandoned_ = false;

  static int uniprocessorHost_;
};

/// Any number of readers or one writer. A waiting writer goes before readers
/// that come after it; when a writer is done, every waiting reader is let in
/// together. Not recursive, not bound to threads: Done ends whichever entry
/// the lock is in.
class VELKIN_API CSingleWriteMultiRead {
 public:
  CSingleWriteMultiRead();
  CSingleWriteMultiRead(const CSingleWriteMultiRead&) = delete;
  CSingleWriteMultiRead& operator=(const CSingleWriteMultiRead&) = delete;
  ~CSingleWriteMultiRead();

  void WaitToRead();
  void WaitToWrite();
  void Done();

  /// A snapshot of the counters: readers inside (or -1 for a writer), and the
  /// readers and writers asleep.
  int GetActive() const;
  int GetWaitingReaders() const;
  int GetWaitingWriters() const;

 private:
  void EnterLock() const;
  void LeaveLock() const;

  alignas(8) mutable unsigned char lock_[40];  // CRITICAL_SECTION, kept opaque here
  OwnedKernelHandle readerSemaphore_;
  OwnedKernelHandle writerSemaphore_;
  int32_t waitingReaders_ = 0;
  int32_t waitingWriters_ = 0;
  int32_t active_ = 0;
};
