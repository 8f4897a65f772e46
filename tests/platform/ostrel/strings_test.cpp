#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <string>

#include "platform/ostrel/strcol.h"
#include "platform/ostrel/strcompare.h"
#include "platform/ostrel/strnum.h"
#include "platform/ostrel/strutil.h"

namespace {

TEST(OstrelStrings, ColumnsSplitAtEverySeparator) {
  // text, separators, the columns joined by '|'
  // clang-format off
  const char* const cases[][3] = {{"a,b,c", ",", "a|b|c"}, {"a,,b", ",", "a||b"}, {",a", ",", "|a"}, {"a,", ",", "a|"},
      {"abc", ",", "abc"}, {"a;b,c d", ",; ", "a|b|c|d"}, {"one\r\ntwo", "\n\r", "one||two"}, {"a,b", "", "a,b"},
      {"a,b", nullptr, "a,b"}, {"", ",", ""}, {nullptr, ",", ""}};
  // clang-format on
  for (const auto& [text, seps, expected] : cases) {
    const std::string label = std::string("text \"") + (text ? text : "(null)") + "\"";
    const int n = StrColCount(text, seps);
    EXPECT_EQ(text && *text ? 1 + std::count(expected, expected + std::strlen(expected), '|') : 0, n) << label;
    std::string joined;
    for (int i = 1; i <= n; ++i) joined += (i > 1 ? "|" : "") + std::string(StrGetCol(text, i, seps).Str());
    EXPECT_EQ(expected, joined) << label;
    EXPECT_TRUE(StrGetCol(text, 0, seps).IsEmpty()) << label;
    EXPECT_TRUE(StrGetCol(text, n + 1, seps).IsEmpty()) << label;
  }
  EXPECT_TRUE(StrGetCol("a,b", -5, ",").IsEmpty());

  char buf[4] = "xyz";
  EXPECT_STREQ("lon", StrGetCol("x,longer", 2, ",", buf, sizeof buf));
  EXPECT_STREQ("", StrGetCol("x,longer", 3, ",", buf, sizeof buf));
}

int Sign(int v) { return v < 0 ? -1 : v > 0 ? 1 : 0; }

TEST(OstrelStrings, CompareModesAndLengths) {
  struct CmpCase {
    const char *a, *b;
    int length, mode, sign;
  };
  // "[" (0x5B) sorts after "a" folded to 'A' (0x41).
  // clang-format off
  const CmpCase cases[] = {{"abc", "abc", -1, 0, 0}, {"abc", "abd", -1, 0, -1}, {"abc", "ABC", -1, 0, 1},
      {"abc", "ABC", -1, 1, 0}, {"abc", "abcd", -1, 0, -1}, {"abcd", "abc", -1, 1, 1}, {"abcX", "abcY", 3, 0, 0},
      {"abcX", "ABCY", 3, 1, 0}, {"abcX", "abcY", 4, 0, -1}, {"ab", "abc", 5, 0, -1}, {"xyz", "abc", 0, 0, 0},
      {"a", "b", -7, 0, -1}, {"0x1F", "0x", 2, 0, 0}, {"\xE9", "a", -1, 0, 1}, {"[", "a", -1, 1, 1},
      {nullptr, "", -1, 0, 0}, {nullptr, nullptr, -1, 1, 0}, {nullptr, "a", -1, 0, -1}, {"a", nullptr, -1, 1, 1},
      {"alpha", "Beta", -1, 1, -1}};
  // clang-format on
  for (const CmpCase& c : cases)
    EXPECT_EQ(c.sign, Sign(StrCmp(c.a, c.b, c.length, c.mode)))
        << "StrCmp(\"" << (c.a ? c.a : "(null)") << "\", \"" << (c.b ? c.b : "(null)") << "\", " << c.length << ", "
        << c.mode << ")";
  // Letters beyond ASCII fold too, in the code pages where 0xE9 and 0xC9 are a
  // lower/upper pair (Western and Cyrillic).
  if (GetACP() == 1252 || GetACP() == 1251) {
    EXPECT_EQ(0, StrCmp("x\xE9", "X\xC9", -1, 1)) << "code page " << GetACP();
    EXPECT_NE(0, StrCmp("x\xE9", "X\xC9", -1, 0));
  }
}

TEST(OstrelStrings, Str2DigitBasesInvalidAndOverflow) {
  struct Case {
    const char* text;
    int base, expected;
  };
  // 32 bits wrap to negative; one bit more is not a number.
  // clang-format off
  const Case numbers[] = {{"123", 10, 123}, {"-123", 10, -123}, {"+7", 10, 7}, {"101", 2, 5}, {"777", 8, 511},
      {"ff", 16, 255}, {"FF", 16, 255}, {"0x1F", 16, 31}, {"0XaB", 16, 171}, {"-0x10", 16, -16}, {"zz", 36, 1295},
      {"Zz", 36, 1295}, {"007", 10, 7}, {"2", 2, -99}, {"0x", 16, -99}, {"1", 1, -99}, {"1", 37, -99}, {"1", 0, -99},
      {"12a", 10, -99}, {"0x1F", 10, -99}, {" 1", 10, -99}, {"1 ", 10, -99}, {"-", 10, -99}, {"--1", 10, -99},
      {"+-1", 10, -99}, {"", 10, -99}, {nullptr, 16, -99}, {"FFFFFFFF", 16, -1}, {"0x80000005", 16, INT_MIN + 5},
      {"4294967295", 10, -1}, {"-2147483648", 10, INT_MIN}, {"2147483647", 10, INT_MAX}, {"4294967296", 10, -99},
      {"100000000", 16, -99}, {"-2147483649", 10, -99}};
  // clang-format on
  for (const Case& c : numbers)
    EXPECT_EQ(c.expected, Str2Digit(c.text, c.base, -99))
        << "Str2Digit(\"" << (c.text ? c.text : "(null)") << "\", " << c.base << ")";
}

TEST(OstrelStrings, StrCpyTruncatesAndTerminates) {
  char buf[7] = "xxxxxx";
  EXPECT_EQ(buf, StrCpy(buf, "hello world", 4));
  EXPECT_STREQ("hel", buf);
  EXPECT_EQ('x', buf[4]) << "wrote past size";
  EXPECT_STREQ("hello", StrCpy(buf, "hello", sizeof buf));
  EXPECT_STREQ("", StrCpy(buf, nullptr, sizeof buf));
  buf[0] = 'q';
  StrCpy(buf, "abc", 0);
  EXPECT_EQ('q', buf[0]) << "size 0 writes nothing";
  StrCpy(buf, "abc", 1);
  EXPECT_EQ('\0', buf[0]);
  EXPECT_EQ(nullptr, StrCpy(nullptr, "abc", 5));
}

}  // namespace
