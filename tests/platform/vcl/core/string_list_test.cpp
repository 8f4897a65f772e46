// String lists: editing, text in and out, sorting with duplicates, change
// events and their update brackets, and the errors of bad indexes.
#include "platform/vcl/core/string_list.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "tests/platform/vcl/test_helpers.h"

using namespace Classes;
using namespace vcl_test;

namespace {

// The user's locale order, ignoring case, as a sorted list compares.
int CompareText(const std::string& a, const std::string& b) {
  return CompareStringA(LOCALE_USER_DEFAULT, NORM_IGNORECASE, a.data(), static_cast<int>(a.size()), b.data(),
                        static_cast<int>(b.size())) -
         CSTR_EQUAL;
}

std::string Lines(const TStrings& s) {
  std::string out;
  for (int i = 0; i < s.GetCount(); ++i) out += (i ? "|" : "") + std::string(s.Get(i).c_str());
  return out;
}

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
  EXPECT_EQ("x\r\ny\r\n", Str(list.GetText()));
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
  EXPECT_EQ("v2", Str(list.GetValue("Key")));
  EXPECT_EQ(4, list.GetCount());

  TStringList copy;
  copy.Assign(&list);
  EXPECT_TRUE(copy.Equals(&list));
  EXPECT_EQ(&tagB, copy.GetObjects(0));

  const std::pair<const char*, std::function<void()>> bad[] = {
      {"List index out of bounds (4)", [&] { list.Get(4); }},
      {"List index out of bounds (-1)", [&] { list.Delete(-1); }},
      {"List index out of bounds (6)", [&] { list.Insert(6, "x"); }},
      {"List index out of bounds (9)", [&] { list.SetObjects(9, nullptr); }},
  };
  for (const auto& [message, call] : bad) EXPECT_EQ(message, ErrorOf<EStringListError>(call));
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
      {dupIgnore, "cherry", 2, 5},  {dupIgnore, "fig", 3, 5},   {dupAccept, "FIG", 3, 6},
      {dupError, "zucchini", 6, 7}, {dupError, "Apple", -2, 7},
  };
  for (const Row& r : rows) {
    list.SetDuplicates(r.duplicates);
    int index = -2;
    const std::string error = ErrorOf<EStringListError>([&] { index = list.Add(r.add); });
    EXPECT_EQ(index == -2 ? "String list does not allow duplicates" : "", error) << "adding " << r.add;
    EXPECT_EQ(r.index, index) << "adding " << r.add;
    EXPECT_EQ(r.count, list.GetCount()) << "adding " << r.add;
  }
  EXPECT_EQ("apple|banana|cherry|FIG|Fig|pear|zucchini", Lines(list)) << "equal but for case: the last added first";
  int at = -1;
  EXPECT_TRUE(list.Find("PEAR", at));
  EXPECT_EQ(5, at);
  EXPECT_FALSE(list.Find("grape", at));
  EXPECT_EQ(5, at) << "where it would go";
  EXPECT_THROW(list.Insert(0, "a"), EStringListError);
  EXPECT_THROW(list.Put(0, "a"), EStringListError);

  list.SetCaseSensitive(true);
  EXPECT_EQ("apple|banana|cherry|Fig|FIG|pear|zucchini", Lines(list)) << "sorted again, lower case first";
  EXPECT_EQ(-1, list.IndexOf("PEAR"));
  EXPECT_EQ(5, list.IndexOf("pear"));
}

TEST(TStringList, LongListsKeepEveryLineInPlaceThroughEdits) {
  // Lines inserted and deleted all over a list long enough to be held in parts.
  TStringList list;
  std::vector<std::string> model;
  for (int i = 0; i < 1500; ++i) {
    const size_t at = i * 37u % (model.size() + 1);
    model.insert(model.begin() + static_cast<std::ptrdiff_t>(at), "s" + std::to_string(i));
    list.Insert(static_cast<int>(at), model[at].c_str());
  }
  for (int i = 0; i < 1000; ++i) {
    const size_t at = i * 53u % model.size();
    model.erase(model.begin() + static_cast<std::ptrdiff_t>(at));
    list.Delete(static_cast<int>(at));
  }
  list.Exchange(3, 400);
  std::swap(model[3], model[400]);
  std::string expected;
  for (const auto& line : model) expected += (expected.empty() ? "" : "|") + line;
  EXPECT_EQ(expected, Lines(list));

  // Sorted with duplicates ignored: the order and equality the locale gives,
  // the first of equal strings kept.
  const char alphabet[] = "aAbBcC09-' .\xe9\xc9zZ";
  static_assert(sizeof alphabet == 17, "16 letters");
  std::vector<std::string> added;
  list.Clear();
  list.SetSorted(true);
  list.SetDuplicates(dupIgnore);
  for (unsigned i = 0, seed = 1; i < 1500; ++i) {
    std::string text;
    for (unsigned n = (seed = seed * 1103515245u + 12345u) >> 28; n > 0; --n)
      text += alphabet[(seed = seed * 1103515245u + 12345u) >> 16 & 15];
    added.push_back(text);
    const int at = list.Add(text.c_str());
    ASSERT_EQ(0, CompareText(list.Get(at).c_str(), text)) << "added \"" << text << "\" at " << at;
  }
  std::stable_sort(added.begin(), added.end(), [](const auto& a, const auto& b) { return CompareText(a, b) < 0; });
  added.erase(
      std::unique(added.begin(), added.end(), [](const auto& a, const auto& b) { return CompareText(a, b) == 0; }),
      added.end());
  expected.clear();
  for (const auto& line : added) expected += "|" + line;
  EXPECT_EQ(expected, "|" + Lines(list));
}

TEST(TStringList, ChangeEventsOnceAroundAnUpdateBracket) {
  TStringList list;
  Counter changing, changed;
  list.SetOnChanging(changing.Event());
  list.SetOnChange(changed.Event());
  list.Add("a");
  list.Add("b");
  EXPECT_EQ(2, changing.n);
  EXPECT_EQ(2, changed.n);

  list.BeginUpdate();
  list.BeginUpdate();
  list.Add("c");
  list.Delete(0);
  list.EndUpdate();
  EXPECT_EQ(3, changing.n) << "one Changing at the first BeginUpdate";
  EXPECT_EQ(2, changed.n) << "nothing until the last EndUpdate";
  list.EndUpdate();
  list.EndUpdate();  // unbalanced: ignored
  EXPECT_EQ(3, changed.n);

  list.SetText("x\ny\nz");  // one bracket
  EXPECT_EQ(4, changing.n);
  EXPECT_EQ(4, changed.n);
  list.Clear();
  list.Clear();  // empty already: no event
  EXPECT_EQ(5, changed.n);
}

}  // namespace
