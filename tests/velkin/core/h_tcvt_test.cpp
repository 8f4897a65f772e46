// Code-page conversion: converted text, cut to the buffer at a character
// boundary, never written past it.
#include "velkin/core/h_tcvt.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <cstring>
#include <string>

namespace {

// "Привет, мир" in code pages 1251, 866 and UTF-8.
const std::string privet1251 = "\xCF\xF0\xE8\xE2\xE5\xF2, \xEC\xE8\xF0";
const std::string privet866 = "\x8F\xE0\xA8\xA2\xA5\xE2, \xAC\xA8\xE0";
const std::string privetUtf8 = "Привет, мир";

TEST(HTextConvert, ConvertsAndNeverWritesPastTheBuffer) {
  const struct {
    unsigned from, to;
    const char* src;
    int dstSize;
    std::string text;  // what dst holds after the call, terminator not included
  } cases[] = {
      {1251, 866, privet1251.c_str(), 40, privet866},
      {1251, 65001, privet1251.c_str(), 40, privetUtf8},
      {1251, 866, privet1251.c_str(), 1, ""},
      {1251, 866, privet1251.c_str(), 2, privet866.substr(0, 1)},
      {1251, 866, privet1251.c_str(), 11, privet866.substr(0, 10)},
      {1251, 866, privet1251.c_str(), 12, privet866},
      {1251, 65001, privet1251.c_str(), 4, "П"},  // "Пр" needs 4 bytes: a cut never splits a character
      {12345, 866, privet1251.c_str(), 6, privet1251.substr(0, 5)},  // unknown code page: plain copy
      {1251, 866, nullptr, 6, ""},
  };
  for (const auto& c : cases) {
    char dst[40];
    std::memset(dst, '#', sizeof dst);
    EXPECT_EQ(dst, HTextConvert(c.from, c.to, c.src, dst, c.dstSize));
    // The bytes after the terminator stay as they were.
    EXPECT_EQ(c.text + '\0' + std::string(sizeof dst - c.text.size() - 1, '#'), std::string(dst, sizeof dst))
        << c.from << " to " << c.to << ", dstSize " << c.dstSize;
  }
  EXPECT_EQ(nullptr, HTextConvert(1251, 866, "x", nullptr, 10));
  char untouched = '#';
  HTextConvert(1251, 866, "x", &untouched, 0);
  EXPECT_EQ('#', untouched);
}

}  // namespace
