// The optex and the reader/writer lock: exclusion under real threads and
// processes, nesting, waits through the kernel only when blocked, names,
// failed creation, and misuse reported through the misuse handler.
#include "velkin/sync/brannock.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "platform/ostrel/oslib.h"
#include "platform/ostrel/owned_handle.h"
#include "platform/vcl/core/sysutils.h"
#include "tests/velkin/sync/misuse_recorder.h"

namespace {

// Misuse outside a MisuseRecorder fails the running test at once: without a
// handler it would break into a debugger and the run would wait for it.
struct FailOnMisuse {
  FailOnMisuse() { SetLockMisuseHandler(&Fail); }
  static void Fail(const char* reason) { ADD_FAILURE() << "lock misused: " << reason; }
} failOnMisuse;

// Polls cond until it holds or about ms have passed; the bound only keeps a
// broken lock from hanging the run, it never decides a result.
template <class Cond>
bool WaitUntil(Cond cond, int ms = 10000) {
  for (int i = 0; i < ms && !cond(); ++i) Sleep(1);
  return cond();
}

std::string Unique(const char* base) { return std::string(base) + "_" + std::to_string(GetCurrentProcessId()); }

// Whether another thread gets the lock at once (and leaves it again).
bool OtherGets(COptex& lock) {
  bool got = false;
  std::thread([&] {
    if ((got = lock.TryEnter())) lock.Leave();
  }).join();
  return got;
}

template <class Char>
std::string ThrownText(const Char* name) {
  try {
    COptex lock(name);
  } catch (const Sysutils::Exception& e) {
    return e.Message.c_str();
  }
  return "<no exception>";
}

// Several threads increment a plain counter under the lock, with a gap between
// read and write that a broken lock would let another thread into.
void Hammer(COptex& lock, int threads, int iterations, bool useTryEnter) {
  MisuseRecorder misuse;  // a broken lock shows up as a Leave by a non-owner
  long counter = 0;
  int inside = 0;
  std::atomic<int> overlaps{0};
  std::vector<std::thread> pool;
  for (int t = 0; t < threads; ++t)
    pool.emplace_back([&] {
      for (int i = 0; i < iterations; ++i) {
        if (!useTryEnter) lock.Enter();
        while (useTryEnter && !lock.TryEnter()) SwitchToThread();
        if (++inside != 1) ++overlaps;
        const long value = counter;
        if (i % 64 == 0) SwitchToThread();
        counter = value + 1;
        --inside;
        lock.Leave();
      }
    });
  for (auto& t : pool) t.join();
  EXPECT_EQ(long(threads) * iterations, counter) << "counter";
  EXPECT_EQ(0, overlaps.load()) << "threads inside together";
  EXPECT_EQ("", misuse.Reasons()) << "misuse";
}

TEST(COptex, ThreadsCountingUnderTheLockEndExact) {
  // Spin count 0 sends every contended Enter to the kernel; a broken lock may
  // well hang the next round, so each runs only after a clean one.
  COptex plain(0ul), spinning(4000ul), named(Unique("kern_hammer").c_str(), 100);
  Hammer(plain, 4, 20000, false);
  if (!HasFailure()) Hammer(spinning, 4, 20000, false);
  if (!HasFailure()) Hammer(plain, 3, 5000, true);
  if (!HasFailure()) Hammer(named, 4, 20000, false);
}

TEST(COptex, OwnerNestsOthersWaitAndOnlyABlockedEnterCallsTheKernel) {
  const std::string name = Unique("kern_nest");
  const std::wstring wide(name.begin(), name.end());
  COptex priv(0ul), named(name.c_str(), 0), sameName(wide.c_str(), 0);
  EXPECT_TRUE(priv.IsSingleProcessOptex()) << "no name";
  EXPECT_FALSE(sameName.IsSingleProcessOptex()) << "a wide name";
  EXPECT_TRUE(OwnedKernelHandle(OpenEventA(SYNCHRONIZE, FALSE, ("Optex_Event_" + name).c_str())))
      << "the failure test below looks for this name";

  // A wide and a narrow optex of one name are one lock: what one holds, the other waits for.
  for (auto [mine, others] : {std::pair{&priv, &priv}, std::pair{&named, &sameName}}) {
    const long waits = COptex::GetEventWaits(), sets = COptex::GetEventSets();
    for (int i = 0; i < 100000; ++i) {
      mine->Enter();
      if (i % 3 == 0 && mine->TryEnter()) mine->Leave();
      mine->Leave();
    }
    EXPECT_EQ(waits, COptex::GetEventWaits()) << "uncontended, event waits";
    EXPECT_EQ(sets, COptex::GetEventSets()) << "uncontended, event sets";

    ASSERT_TRUE(mine->TryEnter());
    EXPECT_TRUE(mine->TryEnter()) << "the owner nests at once";
    mine->Enter();
    EXPECT_FALSE(OtherGets(*others));
    mine->Leave();
    mine->Leave();
    EXPECT_FALSE(OtherGets(*others)) << "one nesting is still open";
    mine->Leave();
    EXPECT_TRUE(OtherGets(*others));

    // A blocked Enter sleeps on the event and is woken by the last Leave.
    mine->Enter();
    std::atomic<bool> in{false};
    std::thread t([&, others = others] { others->Enter(), in = true, others->Leave(); });
    EXPECT_TRUE(WaitUntil([&] { return COptex::GetEventWaits() == waits + 1; }))
        << "waits " << COptex::GetEventWaits() << ", expected " << waits + 1;
    EXPECT_FALSE(in);
    mine->Leave();
    t.join();
    EXPECT_TRUE(in.load()) << "the waiter got in";
    EXPECT_EQ(sets + 1, COptex::GetEventSets()) << "one wake-up";
  }
}

// Names that do not fit are refused, not cut; a failed creation throws the
// assertion's text and leaves none of its kernel objects behind.
TEST(COptex, FailedCreationThrowsItsTextAndLeaksNothing) {
  const std::string longest(COptex::MaxNameLength, 'n');
  EXPECT_FALSE(COptex(longest.c_str()).IsSingleProcessOptex());
  const std::string tooLong = "Optex name too long: 248 characters, at most 247 allowed";
  EXPECT_EQ(tooLong, ThrownText((longest + "a").c_str()));
  EXPECT_EQ(tooLong, ThrownText(std::wstring(248, L'w').c_str()));
  EXPECT_EQ("Assert: [m_hevt != NULL] in Brannock:94", ThrownText("no\\such\\namespace"));

  // Foreign objects under the mapping's name: an event, and a read-only
  // section of a file (this program), which cannot give a writable view.
  const std::string clash = Unique("kern_clash"), readOnly = Unique("kern_readonly");
  const OwnedKernelHandle squatter(CreateEventA(nullptr, FALSE, FALSE, ("Optex_MMF_" + clash).c_str()));
  char exe[MAX_PATH];
  GetModuleFileNameA(nullptr, exe, sizeof exe);
  const OwnedFile file(
      CreateFileA(exe, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING, 0, nullptr));
  const OwnedKernelHandle section(
      CreateFileMappingA(file.get(), nullptr, PAGE_READONLY, 0, 0, ("Optex_MMF_" + readOnly).c_str()));
  ASSERT_TRUE(squatter && section);
  EXPECT_EQ("Assert: [m_hfm != NULL] in Brannock:99", ThrownText(clash.c_str()));
  EXPECT_EQ("Assert: [m_psi != NULL] in Brannock:103", ThrownText(readOnly.c_str()));
  for (const std::string& name : {clash, readOnly})
    EXPECT_FALSE(OwnedKernelHandle(OpenEventA(SYNCHRONIZE, FALSE, ("Optex_Event_" + name).c_str())))
        << "the half-built optex " << name << " kept its event";
}

// Misuse of either lock is reported with its reason; the optex stays held.
TEST(COptex, MisuseOfEitherLockIsReportedWithItsReason) {
  const std::string stranger = "Leave by a thread that does not own the optex\n";
  MisuseRecorder misuse;
  {
    COptex lock;
    lock.Leave();  // nobody owns it
    EXPECT_EQ(stranger, misuse.Reasons()) << "Leave of a free optex";
    lock.Enter();
    std::thread([&] { lock.Leave(); }).join();  // not the owner
    EXPECT_EQ(stranger + stranger, misuse.Reasons()) << "Leave by another thread";
    EXPECT_FALSE(OtherGets(lock)) << "a stranger's Leave released the lock";
    lock.Leave();
    EXPECT_TRUE(OtherGets(lock));
    EXPECT_EQ(stranger + stranger, misuse.Reasons()) << "proper use";
    lock.Enter();
  }  // destroyed while owned
  const std::string optex = stranger + stranger + "optex destroyed while owned\n",
                    reasons = optex +
                              "Done on a reader/writer lock nobody is in\nreader/writer lock destroyed while in use\n";
  EXPECT_EQ(optex, misuse.Reasons());
  {
    CSingleWriteMultiRead lock;
    lock.Done();  // nobody is in
    EXPECT_EQ(0, lock.GetActive()) << "an idle Done let a phantom entry in";
    lock.WaitToRead();
  }  // destroyed with a reader inside
  EXPECT_EQ(reasons, misuse.Reasons());
  {
    CSingleWriteMultiRead lock;
    lock.WaitToWrite();
    lock.Done();
  }
  EXPECT_EQ(reasons, misuse.Reasons()) << "proper use of the reader/writer lock";
}

// A child process of velkin_sync_optex_child, killed if need be and closed
// when the object goes.
class Child {
 public:
  explicit Child(std::string args) {
    const std::string exe = std::string(GetStartupDir()) + "velkin_sync_optex_child.exe";
    args = "velkin_sync_optex_child.exe " + args;
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION info{};
    if (CreateProcessA(exe.c_str(), args.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &info)) {
      CloseHandle(info.hThread);
      process_.reset(info.hProcess);
    }
  }
  ~Child() {
    if (process_ && TerminateProcess(process_.get(), 99)) WaitForSingleObject(process_.get(), 5000);
  }
  bool Started() const { return bool(process_); }
  void Kill() { TerminateProcess(process_.get(), 9); }
  // The exit code, or -1 when the process is still running after ms.
  long ExitCode(DWORD ms) {
    DWORD code = 0;
    if (WaitForSingleObject(process_.get(), ms) != WAIT_OBJECT_0) return -1;
    GetExitCodeProcess(process_.get(), &code);
    return static_cast<long>(code);
  }

 private:
  OwnedKernelHandle process_;
};

TEST(COptex, ThreeProcessesShareOneNamedOptex) {
  const std::string lockName = Unique("kern_xproc"), counterName = Unique("kern_xproc_counter");
  const OwnedKernelHandle mapping(
      CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, 64, counterName.c_str()));
  const OwnedView view(mapping ? MapViewOfFile(mapping.get(), FILE_MAP_WRITE, 0, 0, 0) : nullptr);
  auto* shared = static_cast<volatile long*>(view.get());
  ASSERT_NE(nullptr, shared);
  // Held until all children run, so that they start counting together: each
  // is slower to start than to count.
  COptex gate(lockName.c_str());
  gate.Enter();
  std::vector<std::unique_ptr<Child>> children;
  for (int i = 0; i < 3; ++i) {
    children.push_back(std::make_unique<Child>(lockName + " " + counterName + " 20000"));
    ASSERT_TRUE(children.back()->Started());
  }
  WaitUntil([&] { return shared[3] == 3; }, 60000);
  gate.Leave();
  for (auto& child : children) EXPECT_EQ(0, child->ExitCode(60000)) << "exit code (-1: still running)";
  EXPECT_EQ(3 * 20000L, shared[0]);
}

// Waits up to ms for the event a child sets; true when it was set.
bool ChildSignalled(const std::string& name, DWORD ms) {
  const OwnedKernelHandle event(CreateEventA(nullptr, TRUE, FALSE, name.c_str()));
  return WaitForSingleObject(event.get(), ms) == WAIT_OBJECT_0;
}

TEST(COptex, NamedOptexOutlivesItsOwnersProcessButNotALiveOwner) {
  using Clock = std::chrono::steady_clock;
  const struct {
    const char* what;
    const char* holdMs;
    bool kill;
    long waiterExit;    // 16 + 1 abandoned + 4 free again afterwards
    long minMs, maxMs;  // from the kill or from the hold, until the waiter has the lock and ended
  } cases[] = {
      {"owner killed while holding", "60000", true, 16 + 1 + 4, 0, 1000},
      {"owner alive and slow", "2000", false, 16 + 4, 1500, 10000},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    const std::string name = Unique(c.kill ? "kern_dead_owner" : "kern_slow_owner");
    Child holder("hold " + name + " " + c.holdMs);
    ASSERT_TRUE(holder.Started());
    ASSERT_TRUE(ChildSignalled(name + "_held", 20000)) << "the holder did not take the lock";
    auto from = Clock::now();
    Child waiter("wait " + name);
    ASSERT_TRUE(waiter.Started());
    ASSERT_TRUE(ChildSignalled(name + "_waiting", 20000)) << "the waiter did not start";
    Sleep(300);  // the waiter sleeps in Enter by now
    if (c.kill) from = Clock::now(), holder.Kill();
    EXPECT_EQ(c.waiterExit, waiter.ExitCode(c.kill ? 5000 : 20000)) << "waiter's result (-1: still waiting)";
    const long took = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - from).count();
    EXPECT_GE(took, c.minMs) << "the lock was taken from a live owner";
    EXPECT_LE(took, c.maxMs);
    if (!c.kill) {
      EXPECT_EQ(0, holder.ExitCode(5000)) << "holder";
    }
  }
}

std::string State(CSingleWriteMultiRead& lock) {
  return "active " + std::to_string(lock.GetActive()) + ", waiting readers " +
         std::to_string(lock.GetWaitingReaders()) + ", writers " + std::to_string(lock.GetWaitingWriters());
}

TEST(CSingleWriteMultiRead, WaitingWriterGoesFirstThenAllWaitingReadersTogether) {
  CSingleWriteMultiRead lock;
  // The last of three readers, with nobody waiting, must release nothing: a
  // stale wake-up would let a later reader past the waiting writer below.
  for (int i = 0; i < 3; ++i) lock.WaitToRead();
  for (int i = 0; i < 3; ++i) lock.Done();
  lock.WaitToRead();
  lock.WaitToRead();  // two readers inside (the lock is not bound to threads)
  ASSERT_EQ(2, lock.GetActive());

  std::atomic<int> order{0}, writerAt{0}, readersIn{0}, apart{0};
  std::atomic<bool> writerMayLeave{false};
  std::thread writer([&] {
    lock.WaitToWrite();
    writerAt = ++order;
    WaitUntil([&] { return writerMayLeave.load(); });
    lock.Done();
  });
  ASSERT_TRUE(WaitUntil([&] { return lock.GetWaitingWriters() == 1; }));
  // Readers that come after the waiting writer wait too.
  std::vector<std::thread> readers;
  for (int r = 0; r < 2; ++r)
    readers.emplace_back([&] {
      lock.WaitToRead();
      ++order, ++readersIn;
      if (!WaitUntil([&] { return readersIn == 2; })) ++apart;  // both must be inside at once
      lock.Done();
    });
  ASSERT_TRUE(WaitUntil([&] { return lock.GetWaitingReaders() == 2; }));
  EXPECT_EQ("active 2, waiting readers 2, writers 1", State(lock)) << "a new reader overtook the waiting writer";
  lock.Done();
  EXPECT_EQ("active 1, waiting readers 2, writers 1", State(lock)) << "one reader left";
  lock.Done();
  ASSERT_TRUE(WaitUntil([&] { return writerAt != 0; }));
  // The writer first, alone; both readers still waiting.
  EXPECT_EQ(1, writerAt.load()) << "writer's turn";
  EXPECT_EQ("active -1, waiting readers 2, writers 0", State(lock)) << "the writer alone, both readers waiting";

  writerMayLeave = true;
  writer.join();
  for (auto& t : readers) t.join();
  EXPECT_EQ(0, apart.load()) << "the waiting readers were not let in together";
  EXPECT_EQ("active 0, waiting readers 0, writers 0", State(lock)) << "at the end";
}

TEST(CSingleWriteMultiRead, NoWriterEverOverlapsAnyone) {
  CSingleWriteMultiRead lock;
  std::atomic<int> readersInside{0}, writersInside{0}, violations{0};
  long a = 0, b = 0;  // writers keep them equal; readers must never see them differ
  const int readers = 4, writers = 2, iterations = 3000;
  std::vector<std::thread> pool;
  for (int t = 0; t < readers + writers; ++t)
    pool.emplace_back([&, writer = t < writers] {
      for (int i = 0; i < iterations; ++i) {
        writer ? lock.WaitToWrite() : lock.WaitToRead();
        auto& mine = writer ? writersInside : readersInside;
        auto& others = writer ? readersInside : writersInside;
        if ((++mine != 1 && writer) || others != 0 || a != b) ++violations;
        if (writer) ++a;
        if (i % 50 == 0) SwitchToThread();
        if (writer) ++b;
        --mine;
        lock.Done();
      }
    });
  for (auto& t : pool) t.join();
  EXPECT_EQ(0, violations.load()) << "overlaps seen";
  EXPECT_EQ(long(writers) * iterations, a) << "writes to a";
  EXPECT_EQ(long(writers) * iterations, b) << "writes to b";
  EXPECT_EQ("active 0, waiting readers 0, writers 0", State(lock)) << "at the end";
}

}  // namespace
