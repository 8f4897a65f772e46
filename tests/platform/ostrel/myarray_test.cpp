#include "platform/ostrel/myarray.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace {

struct Counted {
  static int live;
  explicit Counted(int v = 0) : value(v) { ++live; }
  ~Counted() { --live; }
  int value;
};
int Counted::live = 0;

std::vector<int> Values(const MyValArray<int>& a) {
  std::vector<int> out;
  for (int i = 0; i < a.Count(); ++i) out.push_back(*a.Item(i));
  return out;
}

TEST(MyArray, GrowthIndexesAndSelfReferences) {
  MyValArray<int> a;
  for (int i = 0; i < 41; ++i) {
    ASSERT_EQ(i, a.Add(i * 3));
    EXPECT_EQ(i < 20 ? 20 : i < 40 ? 40 : 60, a.Capacity()) << "with " << i + 1 << " items";
  }
  for (int i = 0; i < 41; ++i) ASSERT_EQ(i * 3, *a.Item(i)) << "index " << i;
  a.DeleteAll();
  EXPECT_EQ(20, a.Capacity());
  EXPECT_EQ(20, a.Step());

  // Past twice the step, each growth adds half the capacity: few growths for
  // many appends, no move while there is room, every value kept.
  MyValArray<int> big;
  int growths = 0;
  const int* storage = nullptr;
  for (int i = 0; i < 100000; ++i) {
    const int capacity = big.Capacity(), step = big.Step();
    ASSERT_EQ(std::max(20, capacity / 2), step) << "step at capacity " << capacity;
    big.Add(i);
    if (big.Capacity() != capacity) {
      ++growths;
      ASSERT_EQ(capacity + step, big.Capacity()) << "growth at " << i;
    }
    if (big.Capacity() != capacity || i == 0) storage = big.Item(0);
    ASSERT_EQ(storage, big.Item(0)) << "moved without growing, at " << i;
  }
  EXPECT_LE(growths, 25);
  for (int i = 0; i < big.Count(); ++i)
    if (*big.Item(i) != i) {
      ADD_FAILURE() << "index " << i << " holds " << *big.Item(i);
      break;
    }

  // Bad indexes change nothing; AddAt(Count()) appends.
  for (int v : {1, 2, 3}) a.Add(v);
  for (int bad : {-1, 3}) {
    EXPECT_EQ(nullptr, a.Item(bad)) << bad;
    EXPECT_FALSE(a.DeleteNum(bad)) << bad;
    EXPECT_EQ(-1, a.AddAt(bad < 0 ? bad : bad + 1, 9)) << bad;
  }
  EXPECT_EQ(3, a.AddAt(3, 4));
  EXPECT_EQ(0, a.AddAt(0, 0));
  EXPECT_EQ(2, a.AddAt(2, 9));
  EXPECT_EQ((std::vector<int>{0, 1, 9, 2, 3, 4}), Values(a));
  EXPECT_TRUE(a.DeleteNum(2) && a.DeleteNum(0));
  EXPECT_EQ((std::vector<int>{1, 2, 3, 4}), Values(a));

  // The source of an add may be an element that moves while the array grows or shifts.
  MyValArray<int> r;
  for (int i = 0; i < 20; ++i) r.Add(i * 7);
  r.Add(*r.Item(5));
  r.AddAt(0, *r.Item(20));
  EXPECT_EQ(35, *r.Item(0));
  EXPECT_EQ(35, *r.Item(21));
}

TEST(MyArray, OwnedItemsAreDeletedOnceWhenTheyLeave) {
  Counted::live = 0;
  Counted keep(1);
  {
    MyArray<Counted*> a(true), view;  // view does not own
    view.Add(&keep);
    view.DeleteNum(0);
    view.Add(&keep);
    for (int i = 0; i < 25; ++i) a.Add(new Counted(i));
    EXPECT_TRUE(a.DeleteNum(3));
    EXPECT_EQ(25, Counted::live);
    EXPECT_EQ(4, a.Item(3)->value);
    a.DeleteAll();
    EXPECT_EQ(1, Counted::live);
    for (int i = 0; i < 3; ++i) a.Add(new Counted(i));
  }
  EXPECT_EQ(1, Counted::live) << "destruction of an owning array";
}

// Orders by the virtual hook.
class IntArray : public MyValArray<int> {
 protected:
  int Compare(const int* item, const int* key) const override { return *item < *key ? -1 : *item > *key ? 1 : 0; }
};

TEST(MyArray, SearchGivesTheInsertionPoint) {
  IntArray a;
  int at = -7;
  EXPECT_FALSE(a.Search(5, &at));
  EXPECT_EQ(0, at) << "empty array";
  for (int v : {10, 20, 20, 20, 30}) a.Add(v);
  // key, found, index
  const int cases[][3] = {{5, 0, 0}, {10, 1, 0}, {15, 0, 1}, {20, 1, 1}, {25, 0, 4}, {30, 1, 4}, {35, 0, 5}};
  for (const auto& c : cases) {
    EXPECT_EQ(c[1] != 0, a.Search(c[0], &at)) << "key " << c[0];
    EXPECT_EQ(c[2], at) << "key " << c[0];
  }
  EXPECT_TRUE(a.Search(30, nullptr));

  // A pointer array with a comparer argument compares the items, not the pointers.
  MyArray<Counted*> sorted(true);
  for (int v : {0, 1, 3}) sorted.Add(new Counted(v));
  Counted probe(3);
  EXPECT_TRUE(sorted.Search(&probe, &at, [](const Counted* i, const Counted* k) { return i->value - k->value; }));
  EXPECT_EQ(2, at);
}

}  // namespace
