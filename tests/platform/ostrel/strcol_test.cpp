// Columns of a text split at separators.
#include "platform/ostrel/strcol.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <cstring>
#include <string>

namespace {

TEST(StrGetCol, ColumnsSplitAtEverySeparator) {
  // text, separators, the columns joined by '|'
  // clang-format off
  const char* const cases[][3] = {{"a,b,c", ",", "a|b|c"}, {"a,,b", ",", "a||b"}, {",a", ",", "|a"}, {"a,", ",", "a|"},
      {"abc", ",", "abc"}, {"a;b,c d", ",; ", "a|b|c|d"}, {"a,b", "", "a,b"},
      {"one\r\ntwo\n\nthree\n\rfour\r", "\n\r", "one|two||three||four|"}, {"a\r\nb", "\r", "a|\nb"},
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

}  // namespace
