// Copying text into a buffer of a given size.
#include "platform/ostrel/strutil.h"

#include <gtest/gtest.h>
#include <windows.h>

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

}  // namespace
