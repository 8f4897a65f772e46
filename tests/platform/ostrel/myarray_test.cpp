#include "platform/ostrel/myarray.h"

#include <gtest/gtest.h>

#include <cstring>
#include <stdexcept>
#include <string>
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

TEST(OstrelArray, GrowsByStepAndKeepsValues) {
  MyValArray<int> a;
  EXPECT_EQ(20, a.Capacity());
  EXPECT_EQ(sizeof(int), static_cast<std::size_t>(a.ElementSize()));
  std::vector<int> capacities;
  for (int i = 0; i < 61; ++i) {
    EXPECT_EQ(i, a.Add(i * 3));
    capacities.push_back(a.Capacity());
  }
  EXPECT_EQ(20, capacities[19]);
  EXPECT_EQ(40, capacities[20]);
  EXPECT_EQ(40, capacities[39]);
  EXPECT_EQ(60, capacities[40]);
  EXPECT_EQ(80, capacities[60]);
  for (int i = 0; i < 61; ++i) ASSERT_EQ(i * 3, *a.Item(i)) << "index " << i;

  a.DeleteAll();
  EXPECT_EQ(0, a.Count());
  EXPECT_EQ(20, a.Capacity());

  MyValArray<int> small(false, 5, 3);
  for (int i = 0; i < 9; ++i) small.Add(i);
  EXPECT_EQ(11, small.Capacity());  // 5 -> 8 -> 11

  EXPECT_THROW(BaseArray(0), std::invalid_argument);
  EXPECT_THROW(BaseArray(4, false, 0, 20), std::invalid_argument);
  EXPECT_THROW(BaseArray(4, false, 20, -1), std::invalid_argument);
}

TEST(OstrelArray, BadIndexesChangeNothing) {
  MyValArray<int> a;
  EXPECT_EQ(nullptr, a.Item(0));
  EXPECT_FALSE(a.DeleteNum(0));
  for (int v : {1, 2, 3}) a.Add(v);
  EXPECT_EQ(nullptr, a.Item(-1));
  EXPECT_EQ(nullptr, a.Item(3));
  EXPECT_EQ(-1, a.AddAt(-1, 9));
  EXPECT_EQ(-1, a.AddAt(4, 9));
  EXPECT_FALSE(a.DeleteNum(3));
  EXPECT_FALSE(a.DeleteNum(-1));
  EXPECT_EQ((std::vector<int>{1, 2, 3}), Values(a));

  EXPECT_EQ(3, a.AddAt(3, 4));  // at Count() appends
  EXPECT_EQ(0, a.AddAt(0, 0));
  EXPECT_EQ(2, a.AddAt(2, 9));
  EXPECT_EQ((std::vector<int>{0, 1, 9, 2, 3, 4}), Values(a));
  EXPECT_TRUE(a.DeleteNum(2));
  EXPECT_TRUE(a.DeleteNum(0));
  EXPECT_EQ((std::vector<int>{1, 2, 3, 4}), Values(a));
}

TEST(OstrelArray, AddsAnElementOfItselfAndZeroFills) {
  struct Rec {
    int a;
    char name[12];
  };
  MyValArray<Rec> a;
  for (int i = 0; i < 20; ++i) a.Add(Rec{i, "rec"});
  // Full: the storage grows while the source is one of its own elements.
  ASSERT_EQ(20, a.Add(*a.Item(5)));
  EXPECT_EQ(5, a.Item(20)->a);
  EXPECT_STREQ("rec", a.Item(20)->name);
  EXPECT_EQ(0, a.AddAt(0, *a.Item(20)));
  EXPECT_EQ(5, a.Item(0)->a);

  BaseArray raw(sizeof(Rec));
  ASSERT_EQ(0, raw.Add(nullptr));
  const Rec zero{};
  EXPECT_EQ(0, std::memcmp(&zero, raw.Item(0), sizeof zero));
}

TEST(OstrelArray, OwnedPointersAreDeletedWhenTheyLeave) {
  Counted::live = 0;
  {
    MyArray<Counted*> a(true);
    for (int i = 0; i < 25; ++i) a.Add(new Counted(i));
    EXPECT_EQ(25, Counted::live);
    EXPECT_TRUE(a.DeleteNum(3));
    EXPECT_EQ(24, Counted::live);
    EXPECT_EQ(4, a.Item(3)->value);
    EXPECT_FALSE(a.DeleteNum(24));
    EXPECT_EQ(24, Counted::live);
    a.DeleteAll();
    EXPECT_EQ(0, Counted::live);
    EXPECT_EQ(0, a.Count());
    for (int i = 0; i < 3; ++i) a.Add(new Counted(i));
  }
  EXPECT_EQ(0, Counted::live) << "destruction of an owning array";

  Counted keep1(1), keep2(2);
  const int before = Counted::live;
  {
    MyArray<Counted*> a;  // not owning
    a.Add(&keep1);
    a.Add(&keep2);
    EXPECT_EQ(1, a.IndexOf(&keep2));
    EXPECT_EQ(-1, a.IndexOf(nullptr));
    a.DeleteNum(0);
    a.DeleteAll();
    a.Add(&keep1);
  }
  EXPECT_EQ(before, Counted::live);
}

// Records each release and checks the array is consistent while it runs.
class LoggingArray : public MyArray<Counted*> {
 public:
  LoggingArray() : MyArray<Counted*>(true) {}
  ~LoggingArray() override { DeleteAll(); }
  std::vector<std::string> log;

 protected:
  void ReleaseItem(Counted* item) override {
    log.push_back(std::to_string(item->value) + "@" + std::to_string(Count()));
    MyArray<Counted*>::ReleaseItem(item);
  }
};

TEST(OstrelArray, ReleaseHookSeesEachItemOnce) {
  Counted::live = 0;
  {
    LoggingArray a;
    for (int i = 0; i < 4; ++i) a.Add(new Counted(i));
    a.DeleteNum(1);
    EXPECT_EQ((std::vector<std::string>{"1@3"}), a.log);
    a.DeleteAll();
    EXPECT_EQ((std::vector<std::string>{"1@3", "0@0", "2@0", "3@0"}), a.log);
    a.Add(new Counted(7));
  }
  EXPECT_EQ(0, Counted::live);
}

struct SearchCase {
  int key;
  bool found;
  int index;
};

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
  const SearchCase cases[] = {{5, false, 0},  {10, true, 0}, {15, false, 1}, {20, true, 1},
                              {25, false, 4}, {30, true, 4}, {35, false, 5}};
  for (const SearchCase& c : cases) {
    int hookAt = -1, fnAt = -1;
    EXPECT_EQ(c.found, a.Search(c.key, &hookAt)) << "key " << c.key;
    EXPECT_EQ(c.index, hookAt) << "key " << c.key;
    EXPECT_EQ(c.found, a.Search(c.key, &fnAt, &IntOrder)) << "key " << c.key << " with comparer";
    EXPECT_EQ(c.index, fnAt) << "key " << c.key << " with comparer";
  }
  EXPECT_TRUE(a.Search(30, nullptr));

  // Sorted insertion as callers do it: equal keys go before the existing ones.
  MyArray<Counted*> sorted(true);
  auto byValue = [](const Counted* item, const Counted* key) { return item->value - key->value; };
  Counted::live = 0;
  std::vector<Counted*> made;
  for (int v : {2, 1, 3, 2, 0}) {
    made.push_back(new Counted(v));
    int pos = -1;
    sorted.Search(made.back(), &pos, byValue);
    sorted.AddAt(pos, made.back());
  }
  std::vector<int> order;
  for (int i = 0; i < sorted.Count(); ++i) order.push_back(sorted[i]->value);
  EXPECT_EQ((std::vector<int>{0, 1, 2, 2, 3}), order);
  Counted probe(2);
  int pos = -1;
  EXPECT_TRUE(sorted.Search(&probe, &pos, byValue));
  EXPECT_EQ(2, pos);
  EXPECT_EQ(made[3], sorted[2]) << "the later 2 goes first";
  EXPECT_EQ(made[0], sorted[3]);
}

}  // namespace
