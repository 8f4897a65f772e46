#include "velkin/sync/brannock.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <atomic>
#include <cstdint>
#include <string>
#include <thread>
#include <vector>

#include "platform/ostrel/oslib.h"
#include "platform/vcl/sysutils.h"
#include "tests/velkin/sync/break_counter.h"
#include "tests/velkin/sync/wait_until.h"

namespace {

std::string Unique(const char* base) { return std::string(base) + "_" + std::to_string(GetCurrentProcessId()); }

// Runs f on another thread and returns its result.
template <class F>
auto OnOtherThread(F f) {
  decltype(f()) result{};
  std::thread t([&] { result = f(); });
  t.join();
  return result;
}

std::string ThrownText(const std::string& name) {
  try {
    COptex lock(name.c_str());
  } catch (const Sysutils::Exception& e) {
    return e.Message.c_str();
  }
  return "<no exception>";
}

// Several threads increment a plain counter under the lock, with a gap between
// read and write that a broken lock would let another thread into.
void Hammer(COptex& lock, int threads, int iterations, bool useTryEnter) {
  BreakCounter breaks;  // a broken lock shows up as a Leave by a non-owner: count it, do not die of it
  long counter = 0;
  int inside = 0;
  std::atomic<int> overlaps{0};
  std::vector<std::thread> pool;
  for (int t = 0; t < threads; ++t)
    pool.emplace_back([&] {
      for (int i = 0; i < iterations; ++i) {
        if (useTryEnter)
          while (!lock.TryEnter()) SwitchToThread();
        else
          lock.Enter();
        if (++inside != 1) ++overlaps;
        const long value = counter;
        if (i % 64 == 0) SwitchToThread();
        counter = value + 1;
        --inside;
        lock.Leave();
      }
    });
  for (auto& t : pool) t.join();
  EXPECT_EQ(static_cast<long>(threads) * iterations, counter);
  EXPECT_EQ(0, overlaps.load());
  EXPECT_EQ(0, breaks.Count());
}

TEST(KernelOptex, ThreadsCountingUnderTheLockEndExact) {
  for (unsigned long spin : {0ul, 4000ul}) {
    SCOPED_TRACE("spin count " + std::to_string(spin));
    COptex lock(spin);
    Hammer(lock, 4, 20000, false);
    if (HasFailure()) return;  // a broken lock may well hang the next round
    Hammer(lock, 3, 5000, true);
    if (HasFailure()) return;
  }
  COptex named(Unique("kern_hammer").c_str(), 100);
  Hammer(named, 4, 20000, false);
}

TEST(KernelOptex, OwnerNestsOthersWaitAndEachNestingNeedsItsLeave) {
  COptex lock(0ul);
  auto otherGets = [&] {
    return OnOtherThread([&] {
      if (!lock.TryEnter()) return false;
      lock.Leave();
      return true;
    });
  };
  ASSERT_TRUE(lock.TryEnter());
  EXPECT_TRUE(lock.TryEnter()) << "the owner nests at once";
  lock.Enter();
  EXPECT_FALSE(otherGets());
  lock.Leave();
  lock.Leave();
  EXPECT_FALSE(otherGets()) << "one nesting is still open";
  lock.Leave();
  EXPECT_TRUE(otherGets());

  // A blocked Enter sleeps on the event and is woken by the last Leave.
  const long waits = COptex::GetEventWaits(), sets = COptex::GetEventSets();
  lock.Enter();
  std::atomic<bool> in{false};
  std::thread t([&] {
    lock.Enter();
    in = true;
    lock.Leave();
  });
  EXPECT_TRUE(WaitUntil([&] { return COptex::GetEventWaits() == waits + 1; })) << "waits " << COptex::GetEventWaits();
  EXPECT_FALSE(in);
  lock.Leave();
  t.join();
  EXPECT_TRUE(in);
  EXPECT_EQ(sets + 1, COptex::GetEventSets());
}

TEST(KernelOptex, UncontendedUseMakesNoKernelCall) {
  COptex priv;
  COptex named(Unique("kern_quiet").c_str());
  const long waits = COptex::GetEventWaits(), sets = COptex::GetEventSets();
  for (COptex* lock : {&priv, &named}) {
    for (int i = 0; i < 100000; ++i) {
      lock->Enter();
      if (i % 3 == 0) {
        ASSERT_TRUE(lock->TryEnter());
        lock->Leave();
      }
      lock->Leave();
    }
  }
  EXPECT_EQ(waits, COptex::GetEventWaits());
  EXPECT_EQ(sets, COptex::GetEventSets());
}

TEST(KernelOptex, SameNameSharesOneRecordAndEvent) {
  const std::string name = Unique("kern_jobs");
  const std::wstring wide(name.begin(), name.end());
  COptex a(name.c_str()), b(name.c_str()), w(wide.c_str());
  EXPECT_FALSE(a.IsSingleProcessOptex());
  EXPECT_FALSE(w.IsSingleProcessOptex());
  EXPECT_TRUE(COptex(static_cast<const char*>(nullptr)).IsSingleProcessOptex());
  EXPECT_TRUE(COptex(static_cast<const wchar_t*>(nullptr)).IsSingleProcessOptex());

  HANDLE event = OpenEventA(SYNCHRONIZE, FALSE, ("Optex_Event_" + name).c_str());
  EXPECT_NE(nullptr, event);
  if (event) CloseHandle(event);
  HANDLE mapping = OpenFileMappingA(FILE_MAP_READ, FALSE, ("Optex_MMF_" + name).c_str());
  ASSERT_NE(nullptr, mapping);
  auto* record = static_cast<const volatile uint32_t*>(MapViewOfFile(mapping, FILE_MAP_READ, 0, 0, 16));
  ASSERT_NE(nullptr, record);

  b.SetSpinCount(77);
  a.Enter();
  EXPECT_TRUE(a.TryEnter());
  // spin count, lock count, owner thread id, recursion count
  EXPECT_EQ(77u, record[0]);
  EXPECT_EQ(2u, record[1]);
  EXPECT_EQ(GetCurrentThreadId(), record[2]);
  EXPECT_EQ(2u, record[3]);
  EXPECT_FALSE(OnOtherThread([&] { return b.TryEnter(); }));
  EXPECT_FALSE(OnOtherThread([&] { return w.TryEnter(); }));
  w.Leave();  // the same lock, so its owner may leave through any of them
  a.Leave();
  EXPECT_EQ(0u, record[1]);
  EXPECT_EQ(0u, record[2]);
  UnmapViewOfFile(const_cast<uint32_t*>(record));
  CloseHandle(mapping);

  char buffer[COptex::ObjectNameSize];
  EXPECT_STREQ("Optex_Event_Jobs", COptex::ConstructObjectName(buffer, "Optex_Event_", 0, const_cast<char*>("Jobs")));
  EXPECT_STREQ("Optex_MMF_Jobs", COptex::ConstructObjectName(buffer, "Optex_MMF_", 1, const_cast<wchar_t*>(L"Jobs")));
  EXPECT_EQ(nullptr, COptex::ConstructObjectName(buffer, "Optex_MMF_", 0, nullptr));
  EXPECT_STREQ("", buffer);
}

TEST(KernelOptex, NamesThatDoNotFitAreRefusedNotCut) {
  const std::string longest(COptex::MaxNameLength, 'n');
  {
    COptex fits(longest.c_str());
    EXPECT_FALSE(fits.IsSingleProcessOptex());
  }
  const std::string tooLong = "Optex name too long: 248 characters, at most 247 allowed";
  EXPECT_EQ(tooLong, ThrownText(longest + "a"));
  // Names that would be equal once cut must not end up sharing a lock.
  EXPECT_EQ("Optex name too long: 400 characters, at most 247 allowed", ThrownText(std::string(399, 'x') + "1"));
  try {
    COptex wide(std::wstring(248, L'w').c_str());
    ADD_FAILURE() << "a wide name of 248 characters was accepted";
  } catch (const Sysutils::Exception& e) {
    EXPECT_EQ(tooLong, e.Message.c_str());
  }
  // A character the ANSI code page lacks would become '?' and meet other names.
  BOOL lossy = FALSE;
  char probe[8];
  if (GetACP() != CP_UTF8 &&
      (WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, L"\x4E2D", -1, probe, sizeof probe, nullptr, &lossy), lossy)) {
    EXPECT_THROW(COptex(L"kern_\x4E2D"), Sysutils::Exception);
  }
}

TEST(KernelOptex, FailedCreationThrowsTheAssertionTextsAndLeaksNothing) {
  EXPECT_EQ("Assert: [m_hevt != NULL] in Brannock:94", ThrownText("no\\such\\namespace"));

  // A foreign object already holds the mapping's name.
  const std::string clash = Unique("kern_clash");
  HANDLE squatter = CreateEventA(nullptr, FALSE, FALSE, ("Optex_MMF_" + clash).c_str());
  ASSERT_NE(nullptr, squatter);
  EXPECT_EQ("Assert: [m_hfm != NULL] in Brannock:99", ThrownText(clash));
  HANDLE event = OpenEventA(SYNCHRONIZE, FALSE, ("Optex_Event_" + clash).c_str());
  EXPECT_EQ(nullptr, event) << "the half-built optex kept its event";
  if (event) CloseHandle(event);
  CloseHandle(squatter);

  // A read-only file mapping under the name cannot give a writable view.
  char path[MAX_PATH];
  GetTempPathA(sizeof path, path);
  const std::string file = std::string(path) + Unique("kern_readonly") + ".bin";
  HANDLE f = CreateFileA(file.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
  ASSERT_NE(INVALID_HANDLE_VALUE, f);
  DWORD written;
  WriteFile(f, "0123456789abcdef", 16, &written, nullptr);
  CloseHandle(f);
  f = CreateFileA(file.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(INVALID_HANDLE_VALUE, f);
  const std::string readOnly = Unique("kern_readonly");
  HANDLE section = CreateFileMappingA(f, nullptr, PAGE_READONLY, 0, 0, ("Optex_MMF_" + readOnly).c_str());
  ASSERT_NE(nullptr, section);
  EXPECT_EQ("Assert: [m_psi != NULL] in Brannock:103", ThrownText(readOnly));
  event = OpenEventA(SYNCHRONIZE, FALSE, ("Optex_Event_" + readOnly).c_str());
  EXPECT_EQ(nullptr, event) << "the half-built optex kept its event";
  if (event) CloseHandle(event);
  CloseHandle(section);
  CloseHandle(f);
  DeleteFileA(file.c_str());
}

TEST(KernelOptex, MisuseBreaksIntoTheDebuggerAndLeavesTheLockAlone) {
  BreakCounter breaks;
  {
    COptex lock;
    lock.Enter();
    lock.Leave();
    EXPECT_EQ(0, breaks.Count()) << "proper use";

    lock.Leave();  // nobody owns it
    EXPECT_EQ(1, breaks.Count());
    lock.Enter();
    OnOtherThread([&] {
      lock.Leave();  // not the owner
      return 0;
    });
    EXPECT_EQ(2, breaks.Count());
    EXPECT_FALSE(OnOtherThread([&] { return lock.TryEnter(); })) << "a stranger's Leave released the lock";
    lock.Leave();
    EXPECT_TRUE(OnOtherThread([&] {
      const bool got = lock.TryEnter();
      if (got) lock.Leave();
      return got;
    }));
    EXPECT_EQ(2, breaks.Count());
    lock.Enter();
  }  // destroyed while owned
  EXPECT_EQ(3, breaks.Count());
  {
    COptex named(Unique("kern_owned").c_str());
    named.Enter();
  }
  EXPECT_EQ(4, breaks.Count());
}

TEST(KernelOptex, ThreeProcessesShareOneNamedOptex) {
  const std::string lockName = Unique("kern_xproc"), counterName = Unique("kern_xproc_counter"),
                    readyName = Unique("kern_xproc_ready"), startName = Unique("kern_xproc_start");
  const int iterations = 20000, children = 3;
  HANDLE mapping = CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, 64, counterName.c_str());
  ASSERT_NE(nullptr, mapping);
  auto* shared = static_cast<volatile long*>(MapViewOfFile(mapping, FILE_MAP_WRITE, 0, 0, 0));
  ASSERT_NE(nullptr, shared);
  HANDLE ready = CreateSemaphoreA(nullptr, 0, children, readyName.c_str());
  HANDLE start = CreateEventA(nullptr, TRUE, FALSE, startName.c_str());

  const std::string exe = std::string(GetStartupDir()) + "velkin_sync_optex_child.exe";
  std::vector<HANDLE> processes;
  for (int i = 0; i < children; ++i) {
    std::string cmd = "\"" + exe + "\" " + lockName + " " + counterName + " " + readyName + " " + startName + " " +
                      std::to_string(iterations);
    STARTUPINFOA si{};
    si.cb = sizeof si;
    PROCESS_INFORMATION pi{};
    ASSERT_TRUE(CreateProcessA(exe.c_str(), cmd.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &si, &pi))
        << exe << " error " << GetLastError();
    CloseHandle(pi.hThread);
    processes.push_back(pi.hProcess);
  }
  // Start them together: each is slower to start than to count.
  for (int i = 0; i < children; ++i)
    EXPECT_EQ(WAIT_OBJECT_0, WaitForSingleObject(ready, 30000)) << "child " << i << " never got ready";
  SetEvent(start);
  const DWORD done = WaitForMultipleObjects(children, processes.data(), TRUE, 60000);
  EXPECT_NE(static_cast<DWORD>(WAIT_TIMEOUT), done) << "children still running after 60 s";
  for (HANDLE p : processes) {
    DWORD code = 0;
    if (done == WAIT_TIMEOUT) TerminateProcess(p, 1);
    GetExitCodeProcess(p, &code);
    EXPECT_EQ(0u, code);
    CloseHandle(p);
  }
  EXPECT_EQ(static_cast<long>(children) * iterations, shared[0]);
  EXPECT_EQ(0, shared[2]) << "entries that found another process inside";
  UnmapViewOfFile(const_cast<long*>(shared));
  CloseHandle(mapping);
  CloseHandle(ready);
  CloseHandle(start);
}

}  // namespace
