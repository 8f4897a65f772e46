// The framework's pen, brush and font: their handles as GDI sees them.
#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "platform/vcl/graphics/graphics.h"
#include "tests/script_samples.h"

using namespace Graphics;

namespace {

TEST(GraphicsTools, PenBrushAndFontAsGdiSeesThem) {
  TPen pen;
  pen.SetColor(clRed);
  pen.SetStyle(psDot);
  LOGPEN lp{};
  ASSERT_GT(GetObjectA(pen.GetHandle(), sizeof lp, &lp), 0);
  EXPECT_EQ(UINT(PS_DOT), lp.lopnStyle);
  EXPECT_EQ(COLORREF(RGB(255, 0, 0)), lp.lopnColor);

  TBrush brush;
  brush.SetStyle(bsDiagCross);
  brush.SetColor(clNavy);
  LOGBRUSH lb{};
  ASSERT_GT(GetObjectA(brush.GetHandle(), sizeof lb, &lb), 0);
  EXPECT_EQ(UINT(BS_HATCHED), lb.lbStyle);
  EXPECT_EQ(ULONG_PTR(HS_DIAGCROSS), lb.lbHatch);
  EXPECT_EQ(COLORREF(0x800000), lb.lbColor);

  TFont font;
  font.SetPixelsPerInch(96);
  font.SetSize(12);
  font.SetStyle(TFontStyles{fsBold, fsUnderline});
  font.SetName("Arial");
  LOGFONTA lf{};
  ASSERT_GT(GetObjectA(font.GetHandle(), sizeof lf, &lf), 0);
  EXPECT_EQ(-16, lf.lfHeight);
  EXPECT_EQ(FW_BOLD, lf.lfWeight);
  EXPECT_EQ(1, lf.lfUnderline);
  EXPECT_STREQ("Arial", lf.lfFaceName);
}

// A face name is given to GDI whole, up to the 31 characters a font record
// holds, however many bytes each takes in the code page.
TEST(GraphicsTools, FontNameOfAnyScript) {
  const struct {
    const char* name;
    std::size_t kept;  // UTF-16 units
  } names[] = {{"Шрифт с длинным именем", 22}, {"Ωμέγα λόγος και ακόμη περισσότερο", 31}, {"ＭＳ ゴシック", 7}};
  for (const auto& n : names) {
    std::string name;
    if (!script_samples::InAnsi(n.name, name)) continue;
    TFont font;
    font.SetName(name.c_str());
    LOGFONTW lf{};
    ASSERT_GT(GetObjectW(font.GetHandle(), sizeof lf, &lf), 0);
    EXPECT_EQ(script_samples::Wide(n.name).substr(0, n.kept), std::wstring(lf.lfFaceName)) << n.name;
  }
}

}  // namespace
