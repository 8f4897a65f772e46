// String lists: editing, text in and out, sorting with duplicates, change
// events and their update brackets, and the errors of bad indexes.
#include "platform/vcl/string_list.h"

#include <gtest/gtest.h>

#include <string>

using namespace Classes;

namespace {

std::string Lines(const TStrings& s) {
  std::string out;
  for (int i = 0; i < s.GetCount(); ++i) out += (i ? "|" : "") + std::string(s.Get(i).c_str());
  return out;
}

// Counts OnChanging and OnChange.
struct Events {
  int changing = 0, changed = 0;
  void Changing(System::TObject*) { ++changing; }
  void Changed(System::TObject*) { ++changed; }
  void Attach(TStringList& list) {
    list.SetOnChanging(System::TNotifyEvent(this, &Events::Changing));
    list.SetOnChange(System::TNotifyEvent(this, &Events::Changed));
  }
};

TEST(TStringList, TextSplitsAtEveryLineBreakAndJoinsWithCrLf) {
  struct Row {
    const char* text;
    const char* lines;
    int count;
  };
  const Row rows[] = {
      {"", "", 0},       {"a", "a", 1},         {"a\r\nb", "a|b", 2}, {"a\rb\nc", "a|b|c", 3},
      {"a\r\n", "a", 1}, {"a\n\nb", "a||b", 3}, {"\r\n\r\n", "|", 2}, {"a\n\r", "a|", 2},
  };
  TStringList list;
  for (const Row& r : rows) {
    list.SetText(r.text);
    EXPECT_EQ(r.lines, Lines(list)) << "text \"" << r.text << "\"";
    EXPECT_EQ(r.count, list.GetCount()) << "text \"" << r.text << "\"";
  }
  list.SetText("x\ny");
  EXPECT_EQ("x\r\ny\r\n", std::string(list.GetText().c_str()));
}

TEST(TStringList, EditsObjectsSearchesAndIndexErrors) {
  TStringList list;
  TStringList tagA, tagB;  // any objects will do
  list.Add("one");
  list.AddObject("Two", &tagA);
  list.Insert(0, "zero");
  list.InsertObject(3, "three", &tagB);
  EXPECT_EQ("zero|one|Two|three", Lines(list));
  EXPECT_EQ(&tagA, list.GetObjects(2));
  EXPECT_EQ(2, list.IndexOf("TWO")) << "case-insensitive";
  EXPECT_EQ(3, list.IndexOfObject(&tagB));
  EXPECT_EQ(-1, list.IndexOf("four"));
  list.Move(3, 0);
  list.Exchange(1, 2);
  list.Delete(3);
  EXPECT_EQ("three|one|zero", Lines(list));
  EXPECT_EQ(&tagB, list.GetObjects(0)) << "objects travel with their strings";
  list.SetValue("key", "v1");
  list.SetValue("KEY", "v2");
  EXPECT_EQ("v2", std::string(list.GetValue("Key").c_str()));
  EXPECT_EQ(4, list.GetCount());

  TStringList copy;
  copy.Assign(&list);
  EXPECT_TRUE(copy.Equals(&list));
  EXPECT_EQ(&tagB, copy.GetObjects(0));

  struct Bad {
    const char* what;
    void (*call)(TStringList&);
    const char* message;
  };
  const Bad bad[] = {
      {"Get(4)", [](TStringList& l) { l.Get(4); }, "List index out of bounds (4)"},
      {"Delete(-1)", [](TStringList& l) { l.Delete(-1); }, "List index out of bounds (-1)"},
      {"Insert(6)", [](TStringList& l) { l.Insert(6, "x"); }, "List index out of bounds (6)"},
      {"SetObjects(9)", [](TStringList& l) { l.SetObjects(9, nullptr); }, "List index out of bounds (9)"},
  };
  for (const Bad& b : bad) {
    std::string message;
    try {
      b.call(list);
    } catch (const EStringListError& e) {
      message = e.Message.c_str();
    }
    EXPECT_EQ(b.message, message) << b.what;
  }
  EXPECT_EQ(4, list.GetCount()) << "nothing changed by the failures";
}

TEST(TStringList, SortedListKeepsOrderAndHandlesDuplicates) {
  TStringList list;
  list.SetText("pear\napple\nFig\nbanana");
  list.SetSorted(true);
  EXPECT_EQ("apple|banana|Fig|pear", Lines(list));
  struct Row {
    TDuplicates duplicates;
    const char* add;
    int index;  // -2: refused
    int count;
  };
  const Row rows[] = {
      {dupIgnore, "cherry", 2, 5},  {dupIgnore, "FIG", 3, 5},   {dupAccept, "fig", 3, 6},
      {dupError, "zucchini", 6, 7}, {dupError, "Apple", -2, 7},
  };
  for (const Row& r : rows) {
    list.SetDuplicates(r.duplicates);
    int index = -2;
    try {
      index = list.Add(r.add);
    } catch (const EStringListError& e) {
      EXPECT_EQ("String list does not allow duplicates", std::string(e.Message.c_str()));
    }
    EXPECT_EQ(r.index, index) << "adding " << r.add;
    EXPECT_EQ(r.count, list.GetCount()) << "adding " << r.add;
  }
  EXPECT_EQ("apple|banana|cherry|fig|Fig|pear|zucchini", Lines(list));
  int at = -1;
  EXPECT_TRUE(list.Find("PEAR", at));
  EXPECT_EQ(5, at);
  EXPECT_FALSE(list.Find("grape", at));
  EXPECT_EQ(5, at) << "where it would go";
  EXPECT_THROW(list.Insert(0, "a"), EStringListError);
  EXPECT_THROW(list.Put(0, "a"), EStringListError);

  list.SetCaseSensitive(true);
  EXPECT_EQ(-1, list.IndexOf("PEAR"));
  EXPECT_EQ(5, list.IndexOf("pear"));
}

TEST(TStringList, ChangeEventsOnceAroundAnUpdateBracket) {
  TStringList list;
  Events e;
  e.Attach(list);
  list.Add("a");
  list.Add("b");
  EXPECT_EQ(2, e.changing);
  EXPECT_EQ(2, e.changed);

  list.BeginUpdate();
  list.BeginUpdate();
  list.Add("c");
  list.Delete(0);
  list.EndUpdate();
  EXPECT_EQ(3, e.changing) << "one Changing at the first BeginUpdate";
  EXPECT_EQ(2, e.changed) << "nothing until the last EndUpdate";
  list.EndUpdate();
  list.EndUpdate();  // unbalanced: ignored
  EXPECT_EQ(3, e.changed);

  list.SetText("x\ny\nz");  // one bracket
  EXPECT_EQ(4, e.changing);
  EXPECT_EQ(4, e.changed);
  list.Clear();
  list.Clear();  // empty already: no event
  EXPECT_EQ(5, e.changed);
}

}  // namespace
