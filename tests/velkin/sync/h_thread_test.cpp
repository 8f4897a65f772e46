// Framework threads that run methods on the main thread: each call runs
// there, once, in order, before MTCallVoid returns; threads calling at once
// each get their own method.
#include "velkin/sync/h_thread.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <vector>

namespace {

// Logs "<thread>:<step>@<main or worker>" for each call it runs.
struct Recorder {
  std::vector<std::string> log;
  void Step(const std::string& what) {
    log.push_back(what + (GetCurrentThreadId() == Classes::GetMainThreadID() ? "@main" : "@worker"));
  }
};

class TCalls : public HVCLThread {
 public:
  TCalls(Recorder& recorder, std::string name) : HVCLThread(true), recorder_(recorder), name_(std::move(name)) {
    Start();
  }
  std::atomic<bool> done{false};
  std::vector<std::string> seenAfter;  // the log's size after each MTCallVoid returned

 protected:
  void Execute() override {
    for (step_ = 1; step_ <= 3; ++step_) {
      MTCallVoid(Classes::TThreadMethod(this, &TCalls::Call));
      seenAfter.push_back(std::to_string(count_));
    }
    done = true;
  }

 private:
  void Call() {
    ++count_;
    recorder_.Step(name_ + ":" + std::to_string(step_));
  }
  Recorder& recorder_;
  std::string name_;
  int step_ = 0;
  int count_ = 0;
};

TEST(HVCLThread, CallsRunOnTheMainThreadInOrderEachOnce) {
  Recorder recorder;
  TCalls a(recorder, "a"), b(recorder, "b"), c(recorder, "c");
  for (int i = 0; i < 1000 && !(a.done && b.done && c.done); ++i) Classes::CheckSynchronize(10);
  ASSERT_TRUE(a.done && b.done && c.done) << "calls still waiting";
  a.WaitFor();
  b.WaitFor();
  c.WaitFor();
  ASSERT_EQ(9u, recorder.log.size());
  for (const char* name : {"a", "b", "c"}) {
    std::string mine;
    for (const std::string& entry : recorder.log)
      if (entry[0] == name[0]) mine += entry + " ";
    EXPECT_EQ(std::string(name) + ":1@main " + name + ":2@main " + name + ":3@main ", mine);
  }
  EXPECT_EQ((std::vector<std::string>{"1", "2", "3"}), a.seenAfter) << "each call had run when MTCallVoid returned";
}

}  // namespace
