// Code-page conversion: converted text, cut to the buffer at a character
// boundary, never written past it.
#include "velkin/core/h_tcvt.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <cstring>
#include <string>

#include "tests/velkin/resources/string_texts.h"

namespace {

using string_texts::InCodePage;

TEST(HTextConvert, ConvertsCutsAtACharacterAndNeverWritesPastTheBuffer) {
  ASSERT_EQ(3u, InCodePage("aあ", 932).size()) << "code page 932 is not available";
  // Texts in UTF-8, given in `from` and expected in `to`. In code page 932
  // "a" and the half-width "ｱ" take one byte, "あ" and "い" two; "Пр" in
  // UTF-8 needs 4 bytes.
  const struct {
    unsigned from, to;
    const char* src;
    int dstSize;
    const char* kept;
  } cases[] = {
      // clang-format off
      {1251, 866, "Привет, мир", 40, "Привет, мир"}, {1251, 65001, "Привет, мир", 40, "Привет, мир"},
      {1251, 866, "Привет, мир", 1, ""}, {1251, 866, "Привет, мир", 2, "П"},
      {1251, 866, "Привет, мир", 11, "Привет, ми"}, {1251, 866, "Привет, мир", 12, "Привет, мир"},
      {1251, 65001, "Привет, мир", 4, "П"}, {CP_UTF8, 932, "aあい", 2, "a"},
      {CP_UTF8, 932, "aあい", 3, "a"}, {CP_UTF8, 932, "aあい", 4, "aあ"},
      {CP_UTF8, 932, "aあい", 5, "aあ"}, {CP_UTF8, 932, "aあい", 6, "aあい"},
      {CP_UTF8, 932, "ｱあ", 2, "ｱ"}, {CP_UTF8, 932, "ｱあ", 3, "ｱ"},
      {CP_UTF8, 932, "ｱあ", 4, "ｱあ"}, {CP_UTF8, 932, "あｱ", 2, ""},
      {CP_UTF8, 932, "あｱ", 3, "あ"}, {CP_UTF8, 932, "あｱ", 4, "あｱ"},
      {1252, CP_UTF8, "Crème", 40, "Crème"}, {1252, CP_UTF8, "Crème", 4, "Cr"},
      {CP_UTF8, 1252, "Crème", 40, "Crème"}, {CP_UTF8, 1251, "Щука", 3, "Щу"},
      {CP_UTF8, CP_UTF8, "a😀b", 40, "a😀b"}, {CP_UTF8, CP_UTF8, "a😀b", 5, "a"},
      {CP_UTF8, CP_UTF8, "a😀b", 6, "a😀"}, {CP_UTF8, 932, "中あ", 3, "中"},
      // clang-format on
  };
  auto expectInBuffer = [](const std::string& text, const char* dst, const std::string& what) {
    // The bytes after the terminator stay as they were.
    EXPECT_EQ(text + '\0' + std::string(39 - text.size(), '#'), std::string(dst, 40)) << what;
  };
  for (const auto& c : cases) {
    char dst[40];
    std::memset(dst, '#', sizeof dst);
    EXPECT_EQ(dst, HTextConvert(c.from, c.to, InCodePage(c.src, c.from).c_str(), dst, c.dstSize));
    expectInBuffer(InCodePage(c.kept, c.to), dst,
                   std::string(c.src) + " from " + std::to_string(c.from) + " to " + std::to_string(c.to) + " into " +
                       std::to_string(c.dstSize) + " bytes, expected " + c.kept);
  }
  // Into a string: the whole text, however many more bytes it takes.
  const struct {
    unsigned from, to;
    const char* text;
  } whole[] = {{1251, CP_UTF8, "Привет, мир"},
               {CP_UTF8, 1251, "Привет, мир"},
               {932, CP_UTF8, "aあｱ中"},
               {CP_UTF8, CP_UTF8, "a😀b"},
               {1252, 866, ""}};
  for (const auto& w : whole) {
    System::AnsiString converted = "left over";
    const char* at = HTextConvert(w.from, w.to, InCodePage(w.text, w.from).c_str(), converted);
    EXPECT_EQ(InCodePage(w.text, w.to), std::string(converted.c_str(), converted.Length()))
        << w.text << " from " << w.from << " to " << w.to;
    EXPECT_EQ(converted.c_str(), at);
  }

  // An unknown code page: a plain copy; no text: an empty one.
  char dst[40];
  std::memset(dst, '#', sizeof dst);
  HTextConvert(12345, 866, "\xCF\xF0\xE8\xE2\xE5\xF2", dst, 6);
  expectInBuffer("\xCF\xF0\xE8\xE2\xE5", dst, "unknown code page");
  std::memset(dst, '#', sizeof dst);
  HTextConvert(1251, 866, nullptr, dst, 6);
  expectInBuffer("", dst, "no text");
  EXPECT_EQ(nullptr, HTextConvert(1251, 866, "x", nullptr, 10));
  char untouched = '#';
  HTextConvert(1251, 866, "x", &untouched, 0);
  EXPECT_EQ('#', untouched);
}

}  // namespace
