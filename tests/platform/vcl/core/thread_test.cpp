// Threads and calls run on the main thread: through CheckSynchronize, through
// any message loop (a plain one, ProcessMessages, a modal form's), at once on
// the main thread; failures carried back; the thread object's life from
// suspended to freed.
#include "platform/vcl/core/thread.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "platform/vcl/forms/application.h"
#include "tests/platform/vcl/test_helpers.h"

using namespace Classes;
using vcl_test::ErrorOf;

namespace {

// A thread whose work is a function given to it.
class TWorker : public TThread {
 public:
  explicit TWorker(std::function<void(TWorker&)> work, bool suspended = false, std::atomic<int>* freed = nullptr)
      : TThread(true), work_(std::move(work)), freed_(freed) {
    if (!suspended) Start();
  }
  ~TWorker() override {
    if (freed_) ++*freed_;
  }
  using TThread::GetTerminated;

 protected:
  void Execute() override { work_(*this); }

 private:
  std::function<void(TWorker&)> work_;
  std::atomic<int>* freed_;
};

// How the main thread serves calls: CheckSynchronize, a plain message loop
// that knows nothing of threads, or the application's ProcessMessages.
enum Serving { kCheckSynchronize, kPlainLoop, kProcessMessages };

// Runs the main thread's side until done() or 10 s.
bool Serve(const std::function<bool()>& done, Serving way = kCheckSynchronize) {
  for (int i = 0; i < 1000 && !done(); ++i) {
    if (way == kCheckSynchronize) {
      CheckSynchronize(10);
      continue;
    }
    MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
    if (way == kProcessMessages) {
      Forms::Application->ProcessMessages();
      continue;
    }
    MSG msg;
    while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) DispatchMessageA(&msg);
  }
  return done();
}

// Ends the process, failing, when its scope has not ended within 20 s: the
// main thread stuck waiting for a thread would otherwise stop the run for ever.
class Watchdog {
 public:
  explicit Watchdog(std::string what) : what_(std::move(what)) {
    watcher_.reset(CreateThread(nullptr, 0, &Watch, this, 0, nullptr));
  }
  ~Watchdog() {
    SetEvent(done_.get());
    WaitForSingleObject(watcher_.get(), INFINITE);
  }

 private:
  static DWORD WINAPI Watch(void* self) {
    auto* dog = static_cast<Watchdog*>(self);
    if (WaitForSingleObject(dog->done_.get(), 20000) == WAIT_OBJECT_0) return 0;
    std::fprintf(stderr, "hung: %s\n", dog->what_.c_str());
    std::fflush(stderr);
    TerminateProcess(GetCurrentProcess(), 3);
    return 0;
  }
  std::string what_;
  OwnedKernelHandle done_{CreateEventA(nullptr, TRUE, FALSE, nullptr)};
  OwnedKernelHandle watcher_;
};

TEST(TThread, SynchronizeRunsOnTheMainThreadAndReturnsAfterIt) {
  for (Serving way : {kCheckSynchronize, kPlainLoop, kProcessMessages}) {
    SCOPED_TRACE(way == kCheckSynchronize ? "CheckSynchronize" : way == kPlainLoop ? "plain loop" : "ProcessMessages");
    std::vector<std::string> log;
    DWORD ranOn = 0;
    System::TEventHandlers on;
    const TThreadMethod call = on.Add([&] {
      ranOn = GetCurrentThreadId();
      Sleep(20);
      log.push_back("method");
    });
    std::atomic<bool> done{false};
    TWorker worker([&](TWorker& self) {
      self.Synchronize(call);
      log.push_back("worker after");
      done = true;
    });
    ASSERT_TRUE(Serve([&] { return done.load(); }, way)) << "Synchronize never came back";
    EXPECT_EQ(GetMainThreadID(), ranOn) << "the test runs on the main thread";
    EXPECT_EQ((std::vector<std::string>{"method", "worker after"}), log);
  }
  // Inside a modal loop: the call ends it.
  Forms::TForm form(nullptr);
  DWORD ranOn = 0;
  System::TEventHandlers on;
  const TThreadMethod end = on.Add([&] {
    ranOn = GetCurrentThreadId();
    form.SetModalResult(Controls::mrOk);
  });
  TWorker modal([&](TWorker& self) { self.Synchronize(end); });
  const Controls::TModalResult result = loop_driver::Drive(
      {}, [&] { form.SetModalResult(Controls::mrAbort); }, [&] { return form.ShowModal(); });
  EXPECT_EQ(Controls::mrOk, result) << "3: the modal loop ran no call";
  EXPECT_EQ(GetCurrentThreadId(), ranOn);
  modal.WaitFor();

  // On the main thread: at once, nothing queued.
  ranOn = 0;
  TThread::Synchronize(nullptr, on.Add([&] { ranOn = GetCurrentThreadId(); }));
  EXPECT_EQ(GetCurrentThreadId(), ranOn);
  EXPECT_FALSE(CheckSynchronize(0));
}

TEST(TThread, FailuresReachTheCallerAndQueuedCallsKeepTheirOrder) {
  System::TEventHandlers on;
  const TThreadMethod failing = on.Add([] { throw Sysutils::EConvertError("no such colour"); });
  std::string caught;
  std::atomic<bool> synchronized{false};
  std::vector<int> order;
  std::vector<TThreadMethod> queued;
  for (int i = 0; i < 3; ++i) queued.push_back(on.Add([&order, i] { order.push_back(i); }));
  const OwnedKernelHandle allQueued(CreateEventA(nullptr, TRUE, FALSE, nullptr));
  const OwnedKernelHandle mainIdle(CreateEventA(nullptr, TRUE, FALSE, nullptr));
  TWorker worker([&](TWorker& self) {
    caught = ErrorOf<Sysutils::EConvertError>([&] { self.Synchronize(failing); });
    synchronized = true;
    WaitForSingleObject(mainIdle.get(), 10000);
    for (const TThreadMethod& c : queued) self.Queue(c);
    SetEvent(allQueued.get());
  });
  ASSERT_TRUE(Serve([&] { return synchronized.load(); }));
  EXPECT_EQ("no such colour", caught) << "the exception, of its own type, in the calling thread";
  // The main thread serves nothing now: the worker queues all three anyway.
  SetEvent(mainIdle.get());
  ASSERT_EQ(WAIT_OBJECT_0, WaitForSingleObject(allQueued.get(), 10000)) << "Queue waited for the main thread";
  EXPECT_TRUE(order.empty());
  ASSERT_TRUE(Serve([&] { return order.size() == 3; }));
  EXPECT_EQ((std::vector<int>{0, 1, 2}), order);

  std::string notMain;
  TWorker([&](TWorker&) { notMain = ErrorOf<EThread>([] { CheckSynchronize(0); }); }).WaitFor();
  EXPECT_NE(std::string::npos, notMain.find("which is not the main thread")) << notMain;
}

TEST(TThread, LifeFromSuspendedToFreed) {
  std::atomic<int> runs{0};
  auto* suspended = new TWorker(
      [&](TWorker& self) {
        ++runs;
        while (!self.GetTerminated()) Sleep(1);
        self.SetReturnValue(42);
      },
      true);
  Sleep(50);
  EXPECT_EQ(0, runs.load()) << "a suspended thread waits for Start";
  suspended->Resume();
  EXPECT_THROW(suspended->Start(), EThread);
  ASSERT_TRUE(Serve([&] { return runs == 1; }));
  EXPECT_FALSE(suspended->GetFinished());
  suspended->Terminate();
  EXPECT_EQ(42, suspended->WaitFor());
  EXPECT_TRUE(suspended->GetFinished());
  delete suspended;

  // OnTerminate runs on the main thread, then a free-on-terminate thread goes.
  std::atomic<int> freed{0};
  DWORD terminateRanOn = 0;
  auto* selfFreeing = new TWorker([](TWorker&) {}, true, &freed);
  selfFreeing->SetFreeOnTerminate(true);
  System::TEventHandlers on;
  selfFreeing->SetOnTerminate(on.Add([&](System::TObject*) { terminateRanOn = GetCurrentThreadId(); }));
  EXPECT_THROW(selfFreeing->WaitFor(), EThread) << "a free-on-terminate thread cannot be waited for";
  selfFreeing->Start();
  ASSERT_TRUE(Serve([&] { return freed == 1; }));
  EXPECT_EQ(GetCurrentThreadId(), terminateRanOn);

  // What escapes Execute is kept; waiting for oneself is refused; a thread
  // never started or still running goes with its object.
  std::string selfWait;
  TWorker failing([&](TWorker& self) {
    selfWait = ErrorOf<EThread>([&] { self.WaitFor(); });
    throw Sysutils::Exception("worker failed");
  });
  failing.WaitFor();
  EXPECT_EQ("Cannot call WaitFor on the current thread", selfWait);
  ASSERT_TRUE(failing.GetFatalException());
  EXPECT_EQ("worker failed",
            ErrorOf<Sysutils::Exception>([&] { std::rethrow_exception(failing.GetFatalException()); }));
  runs = 0;
  {
    TWorker neverStarted([&](TWorker&) { ++runs; }, true);
  }
  EXPECT_EQ(0, runs.load()) << "a thread terminated before it started does no work";
  std::atomic<bool> inside{false};
  auto* running = new TWorker([&](TWorker& self) {
    inside = true;
    while (!self.GetTerminated()) Sleep(1);
    ++runs;
  });
  ASSERT_TRUE(Serve([&] { return inside.load(); }));
  delete running;
  EXPECT_EQ(1, runs.load()) << "delete stopped the thread and waited for it";
}

// A call the thread waits for deletes it (or waits for it): no hang, the
// object freed once, after the call, by whoever frees it last: the thread
// (with or without FreeOnTerminate), or a delete already waiting.
TEST(TThread, DeletedByACallItWaitsFor) {
  enum Main { kServes, kWaitsFor, kDeletes };
  struct Row {
    const char* name;
    bool freeOnTerminate, fromExecute;
    Main main;
    bool callWaits;  // the call waits for the thread instead of deleting it
    const char* error;
  };
  const Row rows[] = {
      {"OnTerminate", false, false, kServes, false, ""},
      {"OnTerminate of a free-on-terminate thread", true, false, kServes, false, ""},
      {"a call made in Execute, which is asked to stop", false, true, kServes, false, ""},
      {"OnTerminate during WaitFor", false, false, kWaitsFor, false, ""},
      {"OnTerminate during delete", false, false, kDeletes, false, ""},
      {"WaitFor in OnTerminate", false, false, kServes, true, "Cannot wait for a thread from a call it is waiting for"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    std::atomic<int> freed{0};
    std::string error;
    TWorker* worker = nullptr;
    System::TEventHandlers on;
    const TThreadMethod act = on.Add([&] {
      if (row.callWaits)
        error = ErrorOf<EThread>([&] { worker->WaitFor(); });
      else
        delete worker;
    });
    worker = new TWorker(
        [&](TWorker& self) {
          self.SetReturnValue(7);
          if (!row.fromExecute) return;
          self.Synchronize(act);
          for (int i = 0; i < 10000 && !self.GetTerminated(); ++i) Sleep(1);
        },
        true, &freed);
    worker->SetFreeOnTerminate(row.freeOnTerminate);
    if (!row.fromExecute) worker->SetOnTerminate(on.Add([&](System::TObject*) { act(); }));
    HANDLE ended = nullptr;
    DuplicateHandle(GetCurrentProcess(), worker->GetHandle(), GetCurrentProcess(), &ended, SYNCHRONIZE, FALSE, 0);
    const OwnedKernelHandle endedOwner(ended);
    {
      const Watchdog watch(row.name);
      worker->Start();
      if (row.main == kWaitsFor) {
        EXPECT_EQ(7, worker->WaitFor()) << "ReturnValue of a thread freed meanwhile";
      }
      if (row.main == kDeletes) delete worker;
      Serve([&] { return freed > 0 || !error.empty(); });
      EXPECT_EQ(row.error, error);
      if (!error.empty()) {
        worker->WaitFor();
        delete worker;
      }
    }
    EXPECT_EQ(WAIT_OBJECT_0, WaitForSingleObject(ended, 10000)) << "the thread ended";
    EXPECT_EQ(1, freed.load()) << "freed once";
  }
}

}  // namespace
