// The charset table and its four conversions.
#include "velkin/gdi/gdi_charset.h"

#include <gtest/gtest.h>
#include <windows.h>

namespace {

TEST(HFontCharset, TableConversions) {
  // Rows run 1..17; anything else, and unknown values, fall back.
  const struct {
    int row;
    HFontCharset expected;
  } rows[] = {{1, HFCS_Ansi}, {17, HFCS_Baltic}, {0, HFCS_Default}, {18, HFCS_Default}, {-1, HFCS_Default}};
  for (const auto& r : rows) EXPECT_EQ(r.expected, hfIndex2Charset(r.row)) << "hfIndex2Charset(" << r.row << ")";
  EXPECT_EQ(-1, hfCharset2Index(HFontCharset(99))) << "hfCharset2Index of an unknown charset";
  EXPECT_EQ(0, hfCharset2Index(HFCS_Default)) << "hfCharset2Index(HFCS_Default)";
  EXPECT_EQ(1, hfCharset2Index(HFCS_Ansi)) << "hfCharset2Index(HFCS_Ansi)";
  EXPECT_EQ(HFCS_Default, hfValue2Charset(99)) << "hfValue2Charset of an unknown byte";
  EXPECT_EQ(1, hfCharset2Value(HFCS_Ansi)) << "hfCharset2Value(HFCS_Ansi): the rows cross over";
  EXPECT_EQ(0, hfCharset2Value(HFCS_Default)) << "hfCharset2Value(HFCS_Default)";
  EXPECT_EQ(1, hfCharset2Value(HFontCharset(99))) << "hfCharset2Value of an unknown charset";
  // Every charset round-trips through its byte and its row.
  for (auto i = HFontCharset(0); i <= HFCS_Baltic; i = HFontCharset(i + 1)) {
    EXPECT_EQ(i, hfValue2Charset(hfCharset2Value(i))) << "charset " << i << " through its byte";
    EXPECT_EQ(i, hfIndex2Charset(hfCharset2Index(i))) << "charset " << i << " through its row";
  }
}

}  // namespace
