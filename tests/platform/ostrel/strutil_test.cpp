// Copying text into a buffer of a given size.
#include "platform/ostrel/strutil.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "tests/script_samples.h"

namespace {

TEST(StrCpy, TruncatesAndTerminates) {
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

// A text cut to a buffer keeps whole letters of the code page: as many as
// their bytes fit.
TEST(StrCpy, CutsBetweenLetters) {
  for (const auto& sample : script_samples::samples) {
    std::string text;
    if (!script_samples::InAnsi(sample.utf8, text)) continue;
    const std::wstring letters = script_samples::Wide(sample.utf8);
    for (int size = 1; size <= static_cast<int>(text.size()) + 1; ++size) {
      std::string whole;  // the most letters that fit size - 1 bytes
      for (size_t n = 0; n <= letters.size(); ++n) {
        if (n < letters.size() && IS_LOW_SURROGATE(letters[n])) continue;  // not half a letter
        const std::string prefix = script_samples::Ansi(letters.substr(0, n));
        if (static_cast<int>(prefix.size()) < size) whole = prefix;
      }
      char copied[64], printed[64];
      StrCpy(copied, text.c_str(), size);
      const int n = Sprintf(printed, size, "%s", text.c_str());
      EXPECT_EQ(whole, copied) << sample.what << ", " << size << " bytes";
      EXPECT_EQ(whole, printed) << sample.what << ", " << size << " bytes, formatted";
      EXPECT_EQ(static_cast<int>(whole.size()), n) << sample.what << ", " << size << " bytes, formatted";
    }
  }
}

}  // namespace
