#include <gtest/gtest.h>
#include <windows.h>

#include <atomic>
#include <thread>
#include <vector>

#include "tests/velkin/sync/break_counter.h"
#include "velkin/sync/brannock.h"

namespace {

TEST(KernelRWLock, WaitingWriterGoesFirstThenAllWaitingReadersTogether) {
  CSingleWriteMultiRead lock;
  // The last of three readers, with nobody waiting, must release nothing: a
  // stale wake-up would let a later reader past the waiting writer below.
  for (int i = 0; i < 3; ++i) lock.WaitToRead();
  for (int i = 0; i < 3; ++i) lock.Done();
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
      WaitUntil([&] { return readersIn == 2; });  // both must be inside at once
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
  EXPECT_EQ(0, violations.load());
  EXPECT_EQ(static_cast<long>(writers) * iterations, a);
  EXPECT_EQ(a, b);
  EXPECT_EQ(0, lock.GetActive());
}

}  // namespace
