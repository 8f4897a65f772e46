// The cross-thread call window: which callback runs and how often, calls
// from its own thread, a stress run of four workers, calls without a window
// and its reference count.
#include "velkin/sync/hsync.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
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

// The callbacks log which ran with what: "record", "param" or "other".
std::string log;
void* record = nullptr;
int param = 0;
std::string Arg(void* arg) { return arg == &param ? "param" : arg == record ? "record" : "other"; }
struct Target {
  long Method(void* arg) { return log += "event " + Arg(arg) + ", ", 7; }
};
long Proc(void* arg) { return log += "proc " + Arg(arg) + ", ", 9; }

// A record that says when it is freed.
struct Tracked : HSyncData {
  explicit Tracked(bool* freed) : freed_(freed) { Proc = &::Proc; }
  ~Tracked() override { *freed_ = true; }
  bool* freed_;
};

// Gives the one reference back and waits for the window to go.
bool Release() {
  HSync_Delete();
  return Pump([] { return !HSync_Window(); });
}

TEST(HSync, WhichCallbackRunsWithWhatAndHowOften) {
  HSync_Add();
  Target target;
  const struct {
    const char* what;
    bool event, proc;
    long result;
    const char* log;
  } rows[] = {{"event and proc: event wins", true, true, 7, "event record, event param, "},
              {"proc only", false, true, 9, "proc record, proc param, "},
              {"neither", false, false, 0, ""}};
  for (const auto& r : rows) {
    HSyncData data;
    if (r.event) data.Event = HSyncEvent(&target, &Target::Method);
    if (r.proc) data.Proc = &Proc;
    data.Param = &param;
    record = &data;
    log.clear();
    // CallData runs the callback twice: with the record, then with Param.
    EXPECT_EQ(r.result, HSync_CallData(data)) << r.what;
    EXPECT_EQ(r.log, log) << r.what;
  }
  // From the window's own thread a call runs at once.
  log.clear();
  EXPECT_EQ(7, HSync_CallEvent(HSyncEvent(&target, &Target::Method), &param));
  EXPECT_EQ("event param, ", log);

  // A posted record runs later, with its own address, and is freed after its callback.
  bool freed = false;
  record = new Tracked(&freed);
  log.clear();
  HSync_PostData(static_cast<Tracked*>(record));
  EXPECT_FALSE(freed);
  ASSERT_TRUE(Pump([&] { return freed; }));
  EXPECT_EQ("proc record, ", log);
  EXPECT_TRUE(Release());
}

TEST(HSync, FourWorkersCallingAndPostingAtOnce) {
  HSync_Add();
  constexpr int kWorkers = 4, kCalls = 10000;
  struct Seen {
    std::vector<int> posted;  // sequence numbers of one worker's posts, as run
    int called = 0;
  };
  static Seen seen[kWorkers];
  static std::atomic<int> offThread{0};
  static DWORD ownerId;
  ownerId = GetCurrentThreadId();
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
    return finished == kWorkers &&
           std::all_of(seen, seen + kWorkers, [](auto& s) { return s.posted.size() == kCalls / 2; });
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

// Without a window (before the first HSync_Add or after the last release)
// every call does nothing. Deletes above one reference do nothing either, so
// the window made last stays for the rest of the process: this test runs last.
TEST(HSync, WithoutAWindowCallsDoNothingAndOnlyTheLastReleaseTakesIt) {
  HSync_Add();
  HWND old = static_cast<HWND>(HSync_Window());
  ASSERT_TRUE(Release());
  EXPECT_FALSE(IsWindow(old));
  log.clear();
  HSyncData data;
  data.Proc = &Proc;
  EXPECT_EQ(0, HSync_CallEvent(&Proc, nullptr));
  EXPECT_EQ(0, HSync_CallData(data));
  EXPECT_EQ(0, HSync_PostEvent(&Proc, nullptr));
  bool freed = false;
  HSync_PostData(new Tracked(&freed));
  EXPECT_TRUE(freed) << "HSync_PostData frees its record at once";
  HSync_Delete();
  Pump([] { return false; }, 100);
  EXPECT_EQ("", log) << "no callback ran";

  HSync_Add();
  EXPECT_EQ(9, HSync_CallEvent(&Proc, &param)) << "a fresh window works";
  HWND w = static_cast<HWND>(HSync_Window());
  HSync_Add();
  EXPECT_EQ(w, HSync_Window()) << "a second reference shares the window";
  HSync_Delete();
  HSync_Delete();
  Pump([] { return false; }, 200);
  EXPECT_TRUE(IsWindow(w)) << "two references, two deletes: still there";
  EXPECT_EQ(w, HSync_Window());
}

}  // namespace
