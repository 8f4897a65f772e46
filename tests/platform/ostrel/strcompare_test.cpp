// Text comparison modes and lengths.
#include "platform/ostrel/strcompare.h"

#include <gtest/gtest.h>
#include <windows.h>

namespace {

int Sign(int v) { return v < 0 ? -1 : v > 0 ? 1 : 0; }

TEST(StrCmp, CompareModesAndLengths) {
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

}  // namespace
