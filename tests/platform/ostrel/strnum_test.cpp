// Numbers read from text in every base.
#include "platform/ostrel/strnum.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <climits>

namespace {

TEST(Str2Digit, BasesInvalidAndOverflow) {
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

}  // namespace
