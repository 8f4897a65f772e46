#include "platform/ostrel/myarray.h"

#include <gtest/gtest.h>

#include <cstring>
#include <stdexcept>
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

TEST(OstrelArray, GrowthIndexesAndSelfReferences) {
  MyValArray<int> a;
  EXPECT_EQ(20, a.Capacity());
  for (int i = 0; i < 41; ++i) {
    ASSERT_EQ(i, a.Add(i * 3));
    const int expected = i < 20 ? 20 : i < 40 ? 40 : 60;
    EXPECT_EQ(expected, a.Capacity()) << "with " << i + 1 << " items";
  }
  for (int i = 0; i < 41; ++i) ASSERT_EQ(i * 3, *a.Item(i)) << "index " << i;
  a.DeleteAll();
  EXPECT_EQ(0, a.Count());
  EXPECT_EQ(20, a.Capacity());
  EXPECT_THROW(BaseArray(4, false, 0, 20), std::invalid_argument);

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
  EXPECT_TRUE(a.DeleteNum(2));
  EXPECT_TRUE(a.DeleteNum(0));
  EXPECT_EQ((std::vector<int>{1, 2, 3, 4}), Values(a));

  // The source of an add may be an element that moves while the array grows or shifts.
  MyValArray<int> r;
  for (int i = 0; i < 20; ++i) r.Add(i * 7);
  ASSERT_EQ(20, r.Add(*r.Item(5)));
  EXPECT_EQ(35, *r.Item(20));
  EXPECT_EQ(0, r.AddAt(0, *r.Item(20)));
  EXPECT_EQ(35, *r.Item(0));
  BaseArray raw(16);
  ASSERT_EQ(0, raw.Add(nullptr));
  const char zero[16] = {};
  EXPECT_EQ(0, std::memcmp(zero, raw.Item(0), sizeof zero)) << "a null source adds zeros";
}

TEST(OstrelArray, OwnedItemsAreDeletedOnceWhenTheyLeave) {
  Counted::live = 0;
  {
    MyArray<Counted*> a(true);
    for (int i = 0; i < 25; ++i) a.Add(new Counted(i));
    EXPECT_TRUE(a.DeleteNum(3));
    EXPECT_EQ(24, Counted::live);
    EXPECT_EQ(4, a.Item(3)->value);
    EXPECT_FALSE(a.DeleteNum(24));
    EXPECT_EQ(24, Counted::live);
    a.DeleteAll();
    EXPECT_EQ(0, Counted::live);
    for (int i = 0; i < 3; ++i) a.Add(new Counted(i));
  }
  EXPECT_EQ(0, Counted::live) << "destruction of an owning array";

  Counted keep1(1), keep2(2);
  {
    MyArray<Counted*> a;  // not owning
    a.Add(&keep1);
    a.Add(&keep2);
    EXPECT_EQ(1, a.IndexOf(&keep2));
    a.DeleteNum(0);
  }
  EXPECT_EQ(2, Counted::live);
}

int IntOrder(const int* item, const int* key) { return *item < *key ? -1 : *item > *key ? 1 : 0; }

// Orders by the virtual hook instead of a comparer argument.
class IntArray : public MyValArray<int> {
 protected:
  int Compare(const int* item, const int* key) const override { return IntOrder(item, key); }
};

TEST(OstrelArray, SearchGivesTheInsertionPoint) {
  IntArray a;
  int at = -7;
  EXPECT_FALSE(a.Search(5, &at));
  EXPECT_EQ(0, at) << "empty array";
  for (int v : {10, 20, 20, 20, 30}) a.Add(v);
  struct {
    int key;
    bool found;
    int index;
  } const cases[] = {{5, false, 0},  {10, true, 0}, {15, false, 1}, {20, true, 1},
                     {25, false, 4}, {30, true, 4}, {35, false, 5}};
  for (const auto& c : cases) {
    int hookAt = -1, fnAt = -1;
    EXPECT_EQ(c.found, a.Search(c.key, &hookAt)) << "key " << c.key;
    EXPECT_EQ(c.index, hookAt) << "key " << c.key;
    EXPECT_EQ(c.found, a.Search(c.key, &fnAt, &IntOrder)) << "key " << c.key << " with comparer";
    EXPECT_EQ(c.index, fnAt) << "key " << c.key << " with comparer";
  }
  EXPECT_TRUE(a.Search(30, nullptr));

  // A pointer array compares the items, not the pointers.
  MyArray<Counted*> sorted(true);
  for (int v : {0, 1, 3}) sorted.Add(new Counted(v));
  Counted probe(3);
  int pos = -1;
  EXPECT_TRUE(sorted.Search(&probe, &pos, [](const Counted* i, const Counted* k) { return i->value - k->value; }));
  EXPECT_EQ(2, pos);
}

}  // namespace
