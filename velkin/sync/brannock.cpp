#include "velkin/sync/brannock.h"

#include <windows.h>

#include <atomic>
#include <cstddef>
#include <cstring>
#include <new>

#include "platform/ostrel/ioerror.h"
#include "platform/ostrel/strutil.h"
#include "platform/vcl/core/sysutils.h"

using Sysutils::Exception;

int COptex::uniprocessorHost_ = -1;

namespace {
std::atomic<long> eventWaits{0};
std::atomic<long> eventSets{0};
std::atomic<HLockMisuseHandler> misuseHandler{nullptr};

void Misused(const char* reason) {
  if (HLockMisuseHandler handler = misuseHandler.load()) return handler(reason);
  DebugBreak();
}

// The line numbers are part of the texts callers see: they stay as they are.
constexpr int kLineUnnamedEvent = 82;
constexpr int kLineRecord = 85;
constexpr int kLineNamedEvent = 94;
constexpr int kLineMapping = 99;
constexpr int kLineView = 103;

// A private record gets a cache line of its own: no neighbour's writes slow its owner.
constexpr std::align_val_t kRecordAlignment{64};

[[noreturn]] void AssertFailed(const char* expression, int line) {
  char text[96];
  Sprintf(text, sizeof text, "Assert: [%s] in Brannock:%d", expression, line);
  throw Exception(text);
}

[[noreturn]] void NameTooLong(int length) {
  char text[128];
  Sprintf(text, sizeof text, "Optex name too long: %d characters, at most %d allowed", length, COptex::MaxNameLength);
  throw Exception(text);
}
}  // namespace

COptex::COptex(unsigned long spinCount) { CommonConstructor(spinCount, 0, nullptr); }

COptex::COptex(const char* name, unsigned long spinCount) { CommonConstructor(spinCount, 0, const_cast<char*>(name)); }

COptex::COptex(const wchar_t* name, unsigned long spinCount) {
  CommonConstructor(spinCount, 1, const_cast<wchar_t*>(name));
}

COptex::~COptex() {
  const uint32_t owner = __atomic_load_n(&shared_->OwnerThreadId, __ATOMIC_RELAXED);
  // Another process may legitimately own a shared optex that this one drops.
  if (IsSingleProcessOptex() ? owner != 0 : owner == ThreadId()) Misuse("optex destroyed while owned");
  Release();
}

void COptex::Release() {
  event_.reset();
  if (!view_ && shared_) {
    shared_->~SharedInfo();
    ::operator delete(shared_, kRecordAlignment);
  }
  shared_ = nullptr;
  view_.reset();
  mapping_.reset();
}

void COptex::CommonConstructor(unsigned long spinCount, int unicode, void* name) {
  if (__atomic_load_n(&uniprocessorHost_, __ATOMIC_RELAXED) == -1) {
    SYSTEM_INFO info;
    GetSystemInfo(&info);
    __atomic_store_n(&uniprocessorHost_, info.dwNumberOfProcessors == 1 ? 1 : 0, __ATOMIC_RELAXED);
  }
  Release();

  try {
    if (!name) {
      event_.reset(CreateEventA(nullptr, FALSE, FALSE, nullptr));
      if (!event_) AssertFailed("m_hevt != NULL", kLineUnnamedEvent);
      shared_ = new (kRecordAlignment, std::nothrow) SharedInfo{};
      if (!shared_) AssertFailed("m_psi != NULL", kLineRecord);
    } else {
      char objectName[ObjectNameSize];
      event_.reset(CreateEventA(nullptr, FALSE, FALSE, ConstructObjectName(objectName, "Optex_Event_", unicode, name)));
      if (!event_) AssertFailed("m_hevt != NULL", kLineNamedEvent);
      mapping_.reset(CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, sizeof(SharedInfo),
                                        ConstructObjectName(objectName, "Optex_MMF_", unicode, name)));
      if (!mapping_) AssertFailed("m_hfm != NULL", kLineMapping);
      view_.reset(MapViewOfFile(mapping_.get(), FILE_MAP_WRITE, 0, 0, 0));
      if (!view_) AssertFailed("m_psi != NULL", kLineView);
      shared_ = static_cast<SharedInfo*>(view_.get());
    }
  } catch (...) {
    Release();  // the destructor does not run for a half-built object
    throw;
  }
  SetSpinCount(spinCount);
}

char* COptex::ConstructObjectName(char* buffer, const char* prefix, int unicode, void* name) {
  buffer[0] = '\0';
  if (!name) return nullptr;
  if (!prefix) prefix = "";
  const int prefixLength = static_cast<int>(std::strlen(prefix));
  const int room = ObjectNameSize - 1 - prefixLength;  // bytes left for the name
  int length;
  if (unicode) {
    const wchar_t* wide = static_cast<const wchar_t*>(name);
    // Two names must never meet in one kernel name: a character the code page
    // lacks would turn into '?', so such a name is refused.
    BOOL lossy = FALSE;
    const bool utf8 = GetACP() == CP_UTF8;  // takes no default-character flag, and loses nothing
    const DWORD flags = utf8 ? 0 : WC_NO_BEST_FIT_CHARS;
    length = WideCharToMultiByte(CP_ACP, flags, wide, -1, nullptr, 0, nullptr, utf8 ? nullptr : &lossy) - 1;
    if (lossy || length < 0) throw Exception("Optex name has characters that the ANSI code page cannot represent");
    if (length > room || length > MaxNameLength) NameTooLong(length);
    std::memcpy(buffer, prefix, prefixLength);
    WideCharToMultiByte(CP_ACP, flags, wide, -1, buffer + prefixLength, room + 1, nullptr, nullptr);
  } else {
    length = static_cast<int>(std::strlen(static_cast<const char*>(name)));
    if (length > room || length > MaxNameLength) NameTooLong(length);
    std::memcpy(buffer, prefix, prefixLength);
    std::memcpy(buffer + prefixLength, name, length + 1);
  }
  buffer[prefixLength + length] = '\0';
  return buffer;
}

void COptex::SetSpinCount(unsigned long spinCount) {
  if (__atomic_load_n(&uniprocessorHost_, __ATOMIC_RELAXED) == 1) return;
  __atomic_exchange_n(&shared_->SpinCount, static_cast<uint32_t>(spinCount), __ATOMIC_SEQ_CST);
}

bool COptex::TryEnterBusy(uint32_t me) {
  SharedInfo* const psi = shared_;
  // The first of the spin count + 1 attempts was made inline.
  uint32_t spins = __atomic_load_n(&psi->SpinCount, __ATOMIC_RELAXED);
  for (;;) {
    if (__atomic_load_n(&psi->OwnerThreadId, __ATOMIC_RELAXED) == me) {
      __atomic_add_fetch(&psi->LockCount, 1, __ATOMIC_RELAXED);
      ++psi->RecurseCount;
      return true;
    }
    if (spins == 0) return false;
    --spins;
    // Read before the compare-exchange: a busy lock is not written to while it stays busy.
    int32_t expected = 0;
    if (__atomic_load_n(&psi->LockCount, __ATOMIC_RELAXED) == 0 &&
        __atomic_compare_exchange_n(&psi->LockCount, &expected, 1, false, __ATOMIC_ACQUIRE, __ATOMIC_RELAXED)) {
      __atomic_store_n(&psi->OwnerThreadId, me, __ATOMIC_RELAXED);
      psi->RecurseCount = 1;
      return true;
    }
  }
}

void COptex::EnterWait() {
  const uint32_t me = ThreadId();
  if (__atomic_add_fetch(&shared_->LockCount, 1, __ATOMIC_ACQUIRE) == 1) {
    // Freed in the meantime.
    __atomic_store_n(&shared_->OwnerThreadId, me, __ATOMIC_RELAXED);
    shared_->RecurseCount = 1;
  } else if (__atomic_load_n(&shared_->OwnerThreadId, __ATOMIC_RELAXED) == me) {
    ++shared_->RecurseCount;
  } else {
    eventWaits.fetch_add(1, std::memory_order_relaxed);
    // Only a named optex can outlive its owner: another process may die with it.
    const DWORD slice = IsSingleProcessOptex() ? INFINITE : 100;
    while (WaitForSingleObject(event_.get(), slice) == WAIT_TIMEOUT)
      if (TakeOverFromDeadOwner(me)) return;
    __atomic_store_n(&shared_->OwnerThreadId, me, __ATOMIC_RELAXED);
    shared_->RecurseCount = 1;
  }
}

namespace {
// False only when the thread has surely ended (a killed process's threads
// have); one that cannot be opened for lack of rights is alive.
bool ThreadRuns(uint32_t id) {
  const OwnedKernelHandle thread(OpenThread(SYNCHRONIZE, FALSE, id));
  if (!thread) return GetLastError() != ERROR_INVALID_PARAMETER;
  return WaitForSingleObject(thread.get(), 0) == WAIT_TIMEOUT;
}
}  // namespace

bool COptex::TakeOverFromDeadOwner(uint32_t me) {
  SharedInfo* const psi = shared_;
  // Owner and recursion count sit side by side: the dead owner's pair is read
  // once and replaced in one step, so a live owner that came in meanwhile
  // (another pair) is never displaced and only one waiter wins.
  static_assert(offsetof(SharedInfo, RecurseCount) == offsetof(SharedInfo, OwnerThreadId) + 4);
  auto* const pair = reinterpret_cast<uint64_t*>(&psi->OwnerThreadId);
  uint64_t dead = __atomic_load_n(pair, __ATOMIC_ACQUIRE);
  const auto owner = static_cast<uint32_t>(dead);
  const auto entries = static_cast<int32_t>(dead >> 32);
  if (owner == 0 || owner == me || ThreadRuns(owner)) return false;
  if (!__atomic_compare_exchange_n(pair, &dead, me | (uint64_t{1} << 32), false, __ATOMIC_ACQUIRE, __ATOMIC_RELAXED))
    return false;
  // The dead owner's entries still count; this waiter's own entry stays.
  __atomic_sub_fetch(&psi->LockCount, entries, __ATOMIC_ACQUIRE);
  abandoned_ = true;
  return true;
}

void COptex::WakeWaiter() {
  eventSets.fetch_add(1, std::memory_order_relaxed);
  SetEvent(event_.get());  // auto-reset: exactly one waiter goes
}

HLockMisuseHandler GetLockMisuseHandler() { return misuseHandler.load(); }
void SetLockMisuseHandler(HLockMisuseHandler handler) { misuseHandler.store(handler); }

void COptex::Misuse(const char* reason) { Misused(reason); }

uint32_t COptex::SlowThreadId() { return GetCurrentThreadId(); }

long COptex::GetEventWaits() { return eventWaits.load(std::memory_order_relaxed); }
long COptex::GetEventSets() { return eventSets.load(std::memory_order_relaxed); }

// ---------------------------------------------------------------------------

namespace {
CRITICAL_SECTION* AsSection(unsigned char* storage) { return reinterpret_cast<CRITICAL_SECTION*>(storage); }
}  // namespace

CSingleWriteMultiRead::CSingleWriteMultiRead() {
  static_assert(sizeof(CRITICAL_SECTION) <= sizeof lock_);
  readerSemaphore_.reset(CreateSemaphoreA(nullptr, 0, 0x7FFFFFFF, nullptr));
  writerSemaphore_.reset(CreateSemaphoreA(nullptr, 0, 0x7FFFFFFF, nullptr));
  // The owners close whichever semaphore was made.
  if (!readerSemaphore_ || !writerSemaphore_)
    throw Exception(System::AnsiString("Cannot create the semaphores of a reader/writer lock: ") + GetIOErrorS_CON(-2));
  InitializeCriticalSection(AsSection(lock_));
}

CSingleWriteMultiRead::~CSingleWriteMultiRead() {
  if (active_ != 0) Misused("reader/writer lock destroyed while in use");
  waitingReaders_ = waitingWriters_ = active_ = 0;
  DeleteCriticalSection(AsSection(lock_));
}

void CSingleWriteMultiRead::EnterLock() const { EnterCriticalSection(AsSection(lock_)); }
void CSingleWriteMultiRead::LeaveLock() const { LeaveCriticalSection(AsSection(lock_)); }

void CSingleWriteMultiRead::WaitToRead() {
  EnterLock();
  // Never overtake a writer that is already waiting.
  const bool wait = waitingWriters_ != 0 || active_ < 0;
  if (wait)
    ++waitingReaders_;
  else
    ++active_;
  LeaveLock();
  if (wait) WaitForSingleObject(readerSemaphore_.get(), INFINITE);
}

void CSingleWriteMultiRead::WaitToWrite() {
  EnterLock();
  const bool wait = active_ != 0;
  if (wait)
    ++waitingWriters_;
  else
    active_ = -1;
  LeaveLock();
  if (wait) WaitForSingleObject(writerSemaphore_.get(), INFINITE);
}

void CSingleWriteMultiRead::Done() {
  HANDLE release = nullptr;
  LONG count = 1;
  EnterLock();
  if (active_ == 0) {
    // Nobody is inside: counting on would let a phantom entry in.
    LeaveLock();
    Misused("Done on a reader/writer lock nobody is in");
    return;
  }
  if (active_ > 0)
    --active_;
  else
    ++active_;
  if (active_ == 0) {
    if (waitingWriters_ > 0) {
      active_ = -1;
      --waitingWriters_;
      release = writerSemaphore_.get();
    } else if (waitingReaders_ > 0) {
      active_ = waitingReaders_;
      count = waitingReaders_;
      waitingReaders_ = 0;
      release = readerSemaphore_.get();
    }
  }
  LeaveLock();
  if (release) ReleaseSemaphore(release, count, nullptr);
}

int CSingleWriteMultiRead::GetActive() const {
  EnterLock();
  const int value = active_;
  LeaveLock();
  return value;
}

int CSingleWriteMultiRead::GetWaitingReaders() const {
  EnterLock();
  const int value = waitingReaders_;
  LeaveLock();
  return value;
}

int CSingleWriteMultiRead::GetWaitingWriters() const {
  EnterLock();
  const int value = waitingWriters_;
  LeaveLock();
  return value;
}
