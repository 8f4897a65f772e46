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

// A UTF-8 text in a code page.
std::string InCodePage(const std::string& utf8, unsigned codePage) {
  wchar_t wide[64];
  const int n = MultiByteToWideChar(CP_UTF8, 0, utf8.c_str(), -1, wide, 64);
  char bytes[128];
  return std::string(bytes, WideCharToMultiByte(codePage, 0, wide, n - 1, bytes, sizeof bytes, nullptr, nullptr));
}

TEST(HTextConvert, DoubleByteTextIsCutAtACharacterBoundary) {
  // In code page 932 "a" and the half-width "ｱ" take one byte, "あ" and "い" two.
  const struct {
    const char* src;
    int dstSize;
    const char* kept;
  } rows[] = {{"aあい", 2, "a"},     {"aあい", 3, "a"}, {"aあい", 4, "aあ"}, {"aあい", 5, "aあ"},
              {"aあい", 6, "aあい"}, {"ｱあ", 2, "ｱ"},   {"ｱあ", 3, "ｱ"},     {"ｱあ", 4, "ｱあ"},
              {"あｱ", 2, ""},        {"あｱ", 3, "あ"},  {"あｱ", 4, "あｱ"}};
  ASSERT_EQ(3u, InCodePage("aあ", 932).size()) << "code page 932 is not available";
  for (const auto& r : rows) {
    char dst[16];
    std::memset(dst, '#', sizeof dst);
    HTextConvert(CP_UTF8, 932, r.src, dst, r.dstSize);
    const std::string kept = InCodePage(r.kept, 932);
    EXPECT_EQ(kept + '\0' + std::string(sizeof dst - kept.size() - 1, '#'), std::string(dst, sizeof dst))
        << "\"" << r.src << "\" into " << r.dstSize << " bytes: expected \"" << r.kept << "\"";
  }
}

}  // namespace
