// The cross-thread call window: calls before it exists, its reference count,
// which callback runs and how often, calls from its own thread, a stress run
// of four workers, and the window gone after the last release.
#include "velkin/sync/hsync.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <atomic>
#include <functional>
#include <string>
#include <thread>
#include <vector>

namespace {

// Pumps this thread's messages until done() or about ms milliseconds.
bool Pump(const std::function<bool()>& done, int ms = 10000) {
  for (int i = 0; i < ms / 10 && !done(); ++i) {
    MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
    MSG msg;
    while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) DispatchMessageA(&msg);
  }
  return done();
}

// Counts its runs and remembers the arguments.
struct Target {
  std::vector<void*> args;
  long Method(void* arg) {
    args.push_back(arg);
    return 7;
  }
};
std::vector<void*> procArgs;
long Proc(void* arg) {
  procArgs.push_back(arg);
  return 9;
}

// A record that says when it is freed.
struct Tracked : HSyncData {
  explicit Tracked(bool* freed) : freed_(freed) {}
  ~Tracked() override { *freed_ = true; }
  bool* freed_;
};

// Gives the one reference back and waits for the window to go.
bool Release() {
  HSync_Delete();
  return Pump([] { return !HSync_Window(); });
}

// Windows of the class on this thread.
int SyncWindows() {
  int count = 0;
  EnumThreadWindows(
      GetCurrentThreadId(),
      [](HWND w, LPARAM counter) {
        char name[32] = {};
        GetClassNameA(w, name, sizeof name);
        if (std::string(name) == "HSyncWindow") ++*reinterpret_cast<int*>(counter);
        return TRUE;
      },
      reinterpret_cast<LPARAM>(&count));
  return count;
}

TEST(HSync, WithoutWindowEveryCallIsANoOp) {
  ASSERT_EQ(nullptr, HSync_Window());
  procArgs.clear();
  HSyncData data;
  data.Proc = &Proc;
  data.Param = nullptr;
  EXPECT_EQ(0, HSync_CallEvent(&Proc, nullptr));
  EXPECT_EQ(0, HSync_CallData(data));
  HSync_PostEvent(&Proc, nullptr);
  bool freed = false;
  auto* posted = new Tracked(&freed);
  posted->Proc = &Proc;
  HSync_PostData(posted);
  EXPECT_TRUE(freed) << "HSync_PostData frees its record at once";
  HSync_Delete();
  Pump([] { return false; }, 100);
  EXPECT_TRUE(procArgs.empty()) << "no callback ran";
}

TEST(HSync, WhichCallbackRunsWithWhatAndHowOften) {
  HSync_Add();
  Target target;
  int param = 0;
  procArgs.clear();
  struct Row {
    const char* what;
    bool event, proc;
    long result;
    size_t eventRuns, procRuns;
  };
  const Row rows[] = {
      {"event and proc: event wins", true, true, 7 * 1, 1, 0},
      {"proc only", false, true, 9, 0, 1},
      {"neither", false, false, 0, 0, 0},
  };
  for (const Row& r : rows) {
    target.args.clear();
    procArgs.clear();
    HSyncData data;
    if (r.event) data.Event = HSyncEvent(&target, &Target::Method);
    if (r.proc) data.Proc = &Proc;
    data.Param = &param;
    // CallData runs the callback twice: with the record, then with Param.
    EXPECT_EQ(r.result, HSync_CallData(data)) << r.what;
    const std::vector<void*> twice{&data, &param};
    EXPECT_EQ(r.eventRuns ? twice : std::vector<void*>{}, target.args) << r.what;
    EXPECT_EQ(r.procRuns ? twice : std::vector<void*>{}, procArgs) << r.what;
  }
  // From the window's own thread a call runs at once.
  target.args.clear();
  EXPECT_EQ(7, HSync_CallEvent(HSyncEvent(&target, &Target::Method), &param));
  EXPECT_EQ(std::vector<void*>{&param}, target.args);

  // A posted record runs later and is freed after its callback.
  bool freed = false;
  auto* posted = new Tracked(&freed);
  posted->Proc = &Proc;
  procArgs.clear();
  HSync_PostData(posted);
  EXPECT_FALSE(freed);
  ASSERT_TRUE(Pump([&] { return freed; }));
  EXPECT_EQ(std::vector<void*>{posted}, procArgs) << "called with the record's address";
  EXPECT_TRUE(Release());
}

TEST(HSync, FourWorkersCallingAndPostingAtOnce) {
  HSync_Add();
  const DWORD owner = GetCurrentThreadId();
  constexpr int kWorkers = 4, kCalls = 10000;
  struct Seen {
    std::vector<int> posted;  // sequence numbers of one worker's posts, as run
    int called = 0;
  };
  static Seen seen[kWorkers];
  static std::atomic<int> offThread{0};
  static DWORD ownerId = 0;
  ownerId = owner;
  offThread = 0;
  for (Seen& s : seen) s = Seen{};
  // The argument packs worker and sequence number; a post is marked by bit 30.
  static auto callback = [](void* arg) -> long {
    const auto v = reinterpret_cast<intptr_t>(arg);
    if (GetCurrentThreadId() != ownerId) ++offThread;
    const int worker = static_cast<int>((v >> 20) & 0xF), seq = static_cast<int>(v & 0xFFFFF);
    if (v & (intptr_t{1} << 30))
      seen[worker].posted.push_back(seq);
    else
      ++seen[worker].called;
    return static_cast<long>(v ^ 0x5A5A);
  };
  std::atomic<int> wrongResults{0}, finished{0};
  std::vector<std::thread> workers;
  for (int w = 0; w < kWorkers; ++w)
    workers.emplace_back([&, w] {
      for (int i = 0; i < kCalls; ++i) {
        const intptr_t v = (intptr_t{w} << 20) | i;
        if (i % 2) {
          HSync_PostEvent(+callback, reinterpret_cast<void*>(v | (intptr_t{1} << 30)));
        } else if (HSync_CallEvent(+callback, reinterpret_cast<void*>(v)) != static_cast<long>(v ^ 0x5A5A)) {
          ++wrongResults;
        }
      }
      ++finished;
    });
  const bool done = Pump([&] {
    if (finished < kWorkers) return false;
    for (const Seen& s : seen)
      if (s.posted.size() < kCalls / 2) return false;
    return true;
  });
  for (std::thread& t : workers) t.join();  // they finish: every blocking call was served above
  ASSERT_TRUE(done) << "calls still pending";
  EXPECT_EQ(0, offThread.load()) << "callbacks run on the window's thread only";
  EXPECT_EQ(0, wrongResults.load()) << "each blocking result came back to its own caller";
  for (int w = 0; w < kWorkers; ++w) {
    EXPECT_EQ(kCalls / 2, seen[w].called) << "worker " << w;
    ASSERT_EQ(size_t{kCalls / 2}, seen[w].posted.size()) << "worker " << w;
    for (int k = 0; k < kCalls / 2; ++k)
      if (seen[w].posted[k] != 2 * k + 1) {
        ADD_FAILURE() << "worker " << w << ": post " << k << " ran as " << seen[w].posted[k];
        break;
      }
  }
  EXPECT_TRUE(Release());
}

TEST(HSync, LastReleaseTakesTheWindowAndAFreshAddWorks) {
  HSync_Add();
  HWND old = static_cast<HWND>(HSync_Window());
  EXPECT_EQ(1, SyncWindows());
  ASSERT_TRUE(Release());
  EXPECT_FALSE(IsWindow(old));
  EXPECT_EQ(0, SyncWindows());
  EXPECT_EQ(0, HSync_CallEvent(&Proc, nullptr)) << "calls after the release do nothing";

  HSync_Add();
  procArgs.clear();
  int param = 0;
  EXPECT_EQ(9, HSync_CallEvent(&Proc, &param)) << "a fresh window works";
  EXPECT_TRUE(Release());
}

// Last: the window it leaves stays for the rest of the process.
TEST(HSync, DeletesAboveOneReferenceDoNothing) {
  HSync_Add();
  HSync_Add();
  HWND w = static_cast<HWND>(HSync_Window());
  HSync_Delete();
  HSync_Delete();
  Pump([] { return false; }, 200);
  EXPECT_TRUE(IsWindow(w)) << "two references, two deletes: still there";
  EXPECT_EQ(w, HSync_Window());
}

}  // namespace
