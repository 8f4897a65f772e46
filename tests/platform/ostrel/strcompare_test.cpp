// Text comparison modes and lengths.
#include "platform/ostrel/strcompare.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "tests/script_samples.h"

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

// Each letter of the code page folds with its other case, however many bytes
// either takes; different letters stay apart.
TEST(StrCmp, LettersOfEveryScriptFold) {
  for (const auto& sample : script_samples::samples) {
    std::string lower, upper;
    std::wstring wide = script_samples::Wide(sample.utf8);
    CharLowerBuffW(wide.data(), static_cast<DWORD>(wide.size()));
    lower = script_samples::Ansi(wide);
    CharUpperBuffW(wide.data(), static_cast<DWORD>(wide.size()));
    upper = script_samples::Ansi(wide);
    std::string text;
    if (!script_samples::InAnsi(sample.utf8, text)) continue;
    EXPECT_EQ(0, StrCmp(lower.c_str(), upper.c_str(), -1, StrCmpIgnoreCase)) << sample.what << ": " << upper;
    EXPECT_EQ(0, StrCmp(text.c_str(), upper.c_str(), -1, StrCmpIgnoreCase)) << sample.what;
    EXPECT_NE(0, StrCmp((text + "a").c_str(), (upper + "b").c_str(), -1, StrCmpIgnoreCase)) << sample.what;
  }
  const struct {
    const char *a, *b;
  } apart[] = {{"\u00e9", "\u00fc"}, {"\u0434", "\u0436"}, {"\u03b1", "\u03b2"}, {"\U0001F600", "\U0001F601"}};
  for (const auto& p : apart) {
    std::string a, b;
    if (!script_samples::InAnsi(p.a, a) || !script_samples::InAnsi(p.b, b)) continue;
    EXPECT_EQ(-1, Sign(StrCmp(a.c_str(), b.c_str(), -1, StrCmpIgnoreCase))) << p.a << " before " << p.b;
  }
  if (GetACP() == CP_UTF8) {
    EXPECT_NE(0, StrCmp("\x80", "\x81", -1, StrCmpIgnoreCase)) << "bytes that are no letter";
  }
}

}  // namespace
