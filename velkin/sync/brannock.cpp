#include "velkin/sync/brannock.h"

#include <windows.h>

#include <atomic>
#include <cstring>
#include <new>

#include "platform/ostrel/ioerror.h"
#include "platform/ostrel/strutil.h"
#include "platform/vcl/sysutils.h"

using Sysutils::Exception;

int COptex::sm_fUniprocessorHost = -1;

namespace {
std::atomic<long> eventWaits{0};
std::atomic<long> eventSets{0};

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
  const uint32_t owner = __atomic_load_n(&m_psi->OwnerThreadId, __ATOMIC_RELAXED);
  // Another process may legitimately own a shared optex that this one drops.
  if (IsSingleProcessOptex() ? owner != 0 : owner == ThreadId()) Misuse();
  Release();
}

void COptex::Release() {
  if (m_hevt) CloseHandle(m_hevt);
  if (m_hfm) {
    if (m_psi) UnmapViewOfFile(m_psi);
    CloseHandle(m_hfm);
  } else if (m_psi) {
    m_psi->~SharedInfo();
    ::operator delete(m_psi, kRecordAlignment);
  }
  m_hevt = m_hfm = nullptr;
  m_psi = nullptr;
}

void COptex::CommonConstructor(unsigned long spinCount, int unicode, void* name) {
  if (__atomic_load_n(&sm_fUniprocessorHost, __ATOMIC_RELAXED) == -1) {
    SYSTEM_INFO info;
    GetSystemInfo(&info);
    __atomic_store_n(&sm_fUniprocessorHost, info.dwNumberOfProcessors == 1 ? 1 : 0, __ATOMIC_RELAXED);
  }
  m_hevt = m_hfm = nullptr;
  m_psi = nullptr;

  try {
    if (!name) {
      m_hevt = CreateEventA(nullptr, FALSE, FALSE, nullptr);
      if (!m_hevt) AssertFailed("m_hevt != NULL", kLineUnnamedEvent);
      m_psi = new (kRecordAlignment, std::nothrow) SharedInfo{};
      if (!m_psi) AssertFailed("m_psi != NULL", kLineRecord);
    } else {
      char objectName[ObjectNameSize];
      m_hevt = CreateEventA(nullptr, FALSE, FALSE, ConstructObjectName(objectName, "Optex_Event_", unicode, name));
      if (!m_hevt) AssertFailed("m_hevt != NULL", kLineNamedEvent);
      m_hfm = CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, sizeof(SharedInfo),
                                 ConstructObjectName(objectName, "Optex_MMF_", unicode, name));
      if (!m_hfm) AssertFailed("m_hfm != NULL", kLineMapping);
      m_psi = static_cast<SharedInfo*>(MapViewOfFile(m_hfm, FILE_MAP_WRITE, 0, 0, 0));
      if (!m_psi) AssertFailed("m_psi != NULL", kLineView);
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
  if (__atomic_load_n(&sm_fUniprocessorHost, __ATOMIC_RELAXED) == 1) return;
  __atomic_exchange_n(&m_psi->SpinCount, static_cast<uint32_t>(spinCount), __ATOMIC_SEQ_CST);
}

bool COptex::TryEnterBusy(uint32_t me) {
  SharedInfo* const psi = m_psi;
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
  if (__atomic_add_fetch(&m_psi->LockCount, 1, __ATOMIC_ACQUIRE) == 1) {
    // Freed in the meantime.
    __atomic_store_n(&m_psi->OwnerThreadId, me, __ATOMIC_RELAXED);
    m_psi->RecurseCount = 1;
  } else if (__atomic_load_n(&m_psi->OwnerThreadId, __ATOMIC_RELAXED) == me) {
    ++m_psi->RecurseCount;
  } else {
    eventWaits.fetch_add(1, std::memory_order_relaxed);
    WaitForSingleObject(m_hevt, INFINITE);
    __atomic_store_n(&m_psi->OwnerThreadId, me, __ATOMIC_RELAXED);
    m_psi->RecurseCount = 1;
  }
}

void COptex::WakeWaiter() {
  eventSets.fetch_add(1, std::memory_order_relaxed);
  SetEvent(m_hevt);  // auto-reset: exactly one waiter goes
}

void COptex::Misuse() { DebugBreak(); }

uint32_t COptex::SlowThreadId() { return GetCurrentThreadId(); }

long COptex::GetEventWaits() { return eventWaits.load(std::memory_order_relaxed); }
long COptex::GetEventSets() { return eventSets.load(std::memory_order_relaxed); }

// ---------------------------------------------------------------------------

namespace {
CRITICAL_SECTION* AsSection(unsigned char* storage) { return reinterpret_cast<CRITICAL_SECTION*>(storage); }
}  // namespace

CSingleWriteMultiRead::CSingleWriteMultiRead() {
  static_assert(sizeof(CRITICAL_SECTION) <= sizeof Lock);
  ReaderSemaphore = CreateSemaphoreA(nullptr, 0, 0x7FFFFFFF, nullptr);
  WriterSemaphore = CreateSemaphoreA(nullptr, 0, 0x7FFFFFFF, nullptr);
  if (!ReaderSemaphore || !WriterSemaphore) {
    const Exception error(System::AnsiString("Cannot create the semaphores of a reader/writer lock: ") +
                          GetIOErrorS_CON(-2));
    if (ReaderSemaphore) CloseHandle(ReaderSemaphore);
    if (WriterSemaphore) CloseHandle(WriterSemaphore);
    throw error;
  }
  InitializeCriticalSection(AsSection(Lock));
}

CSingleWriteMultiRead::~CSingleWriteMultiRead() {
  if (Active != 0) DebugBreak();
  WaitingReaders = WaitingWriters = Active = 0;
  DeleteCriticalSection(AsSection(Lock));
  CloseHandle(ReaderSemaphore);
  CloseHandle(WriterSemaphore);
}

void CSingleWriteMultiRead::EnterLock() const { EnterCriticalSection(AsSection(Lock)); }
void CSingleWriteMultiRead::LeaveLock() const { LeaveCriticalSection(AsSection(Lock)); }

void CSingleWriteMultiRead::WaitToRead() {
  EnterLock();
  // Never overtake a writer that is already waiting.
  const bool wait = WaitingWriters != 0 || Active < 0;
  if (wait)
    ++WaitingReaders;
  else
    ++Active;
  LeaveLock();
  if (wait) WaitForSingleObject(ReaderSemaphore, INFINITE);
}

void CSingleWriteMultiRead::WaitToWrite() {
  EnterLock();
  const bool wait = Active != 0;
  if (wait)
    ++WaitingWriters;
  else
    Active = -1;
  LeaveLock();
  if (wait) WaitForSingleObject(WriterSemaphore, INFINITE);
}

void CSingleWriteMultiRead::Done() {
  HANDLE release = nullptr;
  LONG count = 1;
  EnterLock();
  if (Active == 0) {
    // Nobody is inside: counting on would let a phantom entry in.
    LeaveLock();
    DebugBreak();
    return;
  }
  if (Active > 0)
    --Active;
  else
    ++Active;
  if (Active == 0) {
    if (WaitingWriters > 0) {
      Active = -1;
      --WaitingWriters;
      release = WriterSemaphore;
    } else if (WaitingReaders > 0) {
      Active = WaitingReaders;
      count = WaitingReaders;
      WaitingReaders = 0;
      release = ReaderSemaphore;
    }
  }
  LeaveLock();
  if (release) ReleaseSemaphore(release, count, nullptr);
}

int CSingleWriteMultiRead::GetActive() const {
  EnterLock();
  const int value = Active;
  LeaveLock();
  return value;
}

int CSingleWriteMultiRead::GetWaitingReaders() const {
  EnterLock();
  const int value = WaitingReaders;
  LeaveLock();
  return value;
}

int CSingleWriteMultiRead::GetWaitingWriters() const {
  EnterLock();
  const int value = WaitingWriters;
  LeaveLock();
  return value;
}
