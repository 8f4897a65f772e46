#include "velkin/core/h_tcvt.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <cstring>
#include <string>

namespace {

// The same conversion by the platform's own functions, to compare against.
std::string Reference(unsigned from, unsigned to, const std::string& text) {
  wchar_t wide[256];
  int n = MultiByteToWideChar(from, 0, text.c_str(), -1, wide, 256);
  char out[512];
  int m = WideCharToMultiByte(to, 0, wide, n, out, sizeof out, nullptr, nullptr);
  return m > 0 ? std::string(out) : std::string("<reference failed>");
}

std::string Hex(const std::string& s) {
  std::string out;
  char b[4];
  for (unsigned char c : s) {
    std::snprintf(b, sizeof b, "%02X ", c);
    out += b;
  }
  return out;
}

const std::string privet1251 = "\xCF\xF0\xE8\xE2\xE5\xF2, \xEC\xE8\xF0";  // "Привет, мир"

TEST(KernelHTextConvert, ConvertsBetweenCodePagesAndNeverWritesPastTheBuffer) {
  char dst[64];
  EXPECT_EQ(dst, HTextConvert(1251, 866, privet1251.c_str(), dst, sizeof dst));
  EXPECT_EQ(Hex(Reference(1251, 866, privet1251)), Hex(dst));
  EXPECT_EQ(Hex("\x8F\xE0\xA8\xA2\xA5\xE2, \xAC\xA8\xE0"), Hex(dst)) << "cp866 bytes";

  HTextConvert(1251, 65001, privet1251.c_str(), dst, sizeof dst);
  EXPECT_EQ(Hex(Reference(1251, 65001, privet1251)), Hex(dst));

  // Small buffers: the bytes after dstSize stay as they were, dst is terminated.
  for (int size : {1, 2, 5, 11, 12}) {
    char small[32];
    std::memset(small, '#', sizeof small);
    HTextConvert(1251, 866, privet1251.c_str(), small, size);
    for (int i = size; i < static_cast<int>(sizeof small); ++i)
      ASSERT_EQ('#', small[i]) << "byte " << i << " written with dstSize " << size;
    const std::string got(small, strnlen(small, size));
    ASSERT_LT(static_cast<int>(got.size()), size) << "not terminated with dstSize " << size;
    EXPECT_EQ(Hex(Reference(1251, 866, privet1251).substr(0, got.size())), Hex(got)) << "dstSize " << size;
  }
  // Into UTF-8 a cut never splits a character: "Пр" needs 4 bytes, 3 hold "П".
  HTextConvert(1251, 65001, privet1251.c_str(), dst, 4);
  EXPECT_EQ(Hex("\xD0\x9F"), Hex(dst));
  EXPECT_EQ(nullptr, HTextConvert(1251, 866, "x", nullptr, 10));
  char untouched = '#';
  HTextConvert(1251, 866, "x", &untouched, 0);
  EXPECT_EQ('#', untouched);
}

TEST(KernelHTextConvert, RefusedConversionCopiesAndStringFormFitsTheText) {
  // A code page the service does not know: plain copy, cut to the buffer.
  char dst[6];
  HTextConvert(12345, 866, privet1251.c_str(), dst, sizeof dst);
  EXPECT_EQ(Hex(privet1251.substr(0, 5)), Hex(dst));
  HTextConvert(1251, 866, nullptr, dst, sizeof dst);
  EXPECT_STREQ("", dst);

  System::AnsiString s("left over");
  const char* buffer = HTextConvert(1251, 866, privet1251.c_str(), s);
  EXPECT_EQ(buffer, s.c_str());
  EXPECT_EQ(Hex(Reference(1251, 866, privet1251)), Hex(s.str()));
  EXPECT_EQ(static_cast<int>(privet1251.size()), s.Length());
  HTextConvert(1251, 866, "", s);
  EXPECT_EQ(0, s.Length());
}

}  // namespace
