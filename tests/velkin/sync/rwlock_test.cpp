#include <gtest/gtest.h>
#include <windows.h>

#include <atomic>
#include <thread>
#include <vector>

#include "tests/velkin/sync/break_counter.h"
#include "tests/velkin/sync/wait_until.h"
#include "velkin/sync/brannock.h"

namespace {

TEST(KernelRWLock, WaitingWriterGoesFirstThenAllWaitingReadersTogether) {
  CSingleWriteMultiRead lock;
  // The last of three readers, with nobody waiting, must release nothing: a
  // stale wake-up would let a later reader past the waiting writer below.
  for (int i = 0; i < 3; ++i) lock.WaitToRead();
  for (int i = 0; i < 3; ++i) lock.Done();
  ASSERT_EQ(0, lock.GetActive());

  lock.WaitToRead();
  lock.WaitToRead();  // two readers inside (the lock is not bound to threads)
  ASSERT_EQ(2, lock.GetActive());

  std::atomic<int> order{0}, writerAt{0}, readersIn{0};
  std::atomic<bool> writerMayLeave{false};
  std::thread writer([&] {
    lock.WaitToWrite();
    writerAt = ++order;
    while (!writerMayLeave) Sleep(1);
    lock.Done();
  });
  ASSERT_TRUE(WaitUntil([&] { return lock.GetWaitingWriters() == 1; }));

  // Readers that come after the waiting writer wait too.
  std::vector<std::thread> readers;
  for (int r = 0; r < 2; ++r)
    readers.emplace_back([&] {
      lock.WaitToRead();
      ++order;
      ++readersIn;
      // Both must be inside at once: wait for the other before leaving.
      WaitUntil([&] { return readersIn == 2; });
      lock.Done();
    });
  ASSERT_TRUE(WaitUntil([&] { return lock.GetWaitingReaders() == 2; }));
  EXPECT_EQ(2, lock.GetActive()) << "a new reader overtook the waiting writer";

  lock.Done();
  EXPECT_EQ(1, lock.GetActive());
  EXPECT_EQ(1, lock.GetWaitingWriters()) << "the writer went in beside a reader";
  lock.Done();
  ASSERT_TRUE(WaitUntil([&] { return writerAt != 0; }));
  EXPECT_EQ(1, writerAt.load()) << "the writer was not first";
  EXPECT_EQ(-1, lock.GetActive());
  EXPECT_EQ(2, lock.GetWaitingReaders());

  writerMayLeave = true;
  writer.join();
  for (auto& t : readers) t.join();
  EXPECT_EQ(2, readersIn.load());
  EXPECT_EQ(0, lock.GetActive());
  EXPECT_EQ(0, lock.GetWaitingReaders());
  EXPECT_EQ(0, lock.GetWaitingWriters());
}

TEST(KernelRWLock, NoWriterEverOverlapsAnyone) {
  CSingleWriteMultiRead lock;
  std::atomic<int> readersInside{0}, writersInside{0}, violations{0};
  long a = 0, b = 0;  // writers keep them equal; readers must never see them differ
  const int readers = 4, writers = 2, iterations = 3000;
  std::vector<std::thread> pool;
  for (int r = 0; r < readers; ++r)
    pool.emplace_back([&] {
      for (int i = 0; i < iterations; ++i) {
        lock.WaitToRead();
        ++readersInside;
        if (writersInside != 0) ++violations;
        if (a != b) ++violations;
        if (i % 50 == 0) SwitchToThread();
        --readersInside;
        lock.Done();
      }
    });
  for (int w = 0; w < writers; ++w)
    pool.emplace_back([&] {
      for (int i = 0; i < iterations; ++i) {
        lock.WaitToWrite();
        if (++writersInside != 1 || readersInside != 0) ++violations;
        ++a;
        if (i % 50 == 0) SwitchToThread();
        ++b;
        --writersInside;
        lock.Done();
      }
    });
  for (auto& t : pool) t.join();
  EXPECT_EQ(0, violations.load());
  EXPECT_EQ(static_cast<long>(writers) * iterations, a);
  EXPECT_EQ(a, b);
  EXPECT_EQ(0, lock.GetActive());
}

TEST(KernelRWLock, MisuseBreaksIntoTheDebugger) {
  BreakCounter breaks;
  {
    CSingleWriteMultiRead lock;
    lock.Done();  // nothing to end
    EXPECT_EQ(1, breaks.Count());
    EXPECT_EQ(0, lock.GetActive()) << "a phantom entry was counted";
    lock.WaitToWrite();
    lock.Done();
    EXPECT_EQ(1, breaks.Count()) << "proper use";
    lock.WaitToRead();
  }  // destroyed with a reader inside
  EXPECT_EQ(2, breaks.Count());
}

}  // namespace
