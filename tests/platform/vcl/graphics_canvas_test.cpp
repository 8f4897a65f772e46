// The framework's graphics: pen, brush and font handles as GDI sees them,
// lazy selection into a canvas's context, pixels drawn on a bitmap, and no
// handle left behind.
#include <gtest/gtest.h>
#include <windows.h>

#include <set>

#include "platform/vcl/graphics.h"

using namespace Graphics;

namespace {

// Pixel (x, y) of a bitmap as 0x00RRGGBB-free TColor (0x00BBGGRR).
int At(TBitmap& b, int x, int y) {
  const auto* row = static_cast<const uint8_t*>(b.GetScanLine(y));
  if (!row) return -1;
  const uint8_t* p = row + 4 * x;
  return RGB(p[2], p[1], p[0]);
}

struct ChangeCounter {
  int count = 0;
  void Changed(System::TObject*) { ++count; }
};

TEST(GraphicsTools, PenBrushAndFontAsGdiSeesThem) {
  EXPECT_EQ(static_cast<int>(GetSysColor(COLOR_BTNFACE)), ColorToRGB(clBtnFace));

  TPen pen;
  ChangeCounter c;
  pen.OnChange = System::TNotifyEvent(&c, &ChangeCounter::Changed);
  pen.SetColor(clRed);
  pen.SetColor(clRed);
  pen.SetWidth(0);  // stored as 1: no change
  pen.SetStyle(psDot);
  EXPECT_EQ(2, c.count);
  LOGPEN lp{};
  ASSERT_GT(GetObjectA(pen.GetHandle(), sizeof lp, &lp), 0);
  EXPECT_EQ(UINT(PS_DOT), lp.lopnStyle);
  EXPECT_EQ(COLORREF(RGB(255, 0, 0)), lp.lopnColor);
  HPEN first = pen.GetHandle();
  pen.SetWidth(3);
  EXPECT_EQ(0u, GetObjectType(first)) << "a change drops the old handle";

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
  EXPECT_EQ(0, lf.lfItalic);
  EXPECT_STREQ("Arial", lf.lfFaceName);
  TFont copy;
  copy.Assign(&font);
  EXPECT_EQ(-16, copy.GetHeight());
  EXPECT_TRUE(copy.GetStyle() == font.GetStyle());
  EXPECT_THROW(copy.Assign(&pen), Sysutils::EConvertError);
}

TEST(GraphicsCanvas, LazySelectionAndPixels) {
  TBitmap bmp;
  bmp.SetSize(40, 30);
  TCanvas* canvas = bmp.GetCanvas();
  canvas->GetBrush()->SetColor(TColor(0x00FF00));
  canvas->FillRect(MyRect{0, 0, 40, 30});
  EXPECT_EQ(0x00FF00, At(bmp, 39, 29));
  HDC dc = canvas->GetHandle();
  EXPECT_EQ(bmp.GetHandle(), GetCurrentObject(dc, OBJ_BITMAP));

  // A pen change while selected deselects first, then drops the old handle;
  // the next drawing call selects the new one.
  HPEN old = canvas->GetPen()->GetHandle();
  EXPECT_EQ(old, GetCurrentObject(dc, OBJ_PEN));
  canvas->GetPen()->SetColor(clRed);
  EXPECT_EQ(0u, GetObjectType(old));
  canvas->MoveTo(2, 5);
  canvas->LineTo(12, 5);
  EXPECT_EQ(canvas->GetPen()->GetHandle(), GetCurrentObject(dc, OBJ_PEN));
  EXPECT_EQ((MyPoint{12, 5}), canvas->GetPenPos());
  EXPECT_EQ(0x0000FF, At(bmp, 2, 5));
  EXPECT_EQ(0x00FF00, At(bmp, 12, 5)) << "LineTo excludes the end point";

  canvas->GetBrush()->SetColor(clBlue);
  canvas->Rectangle(20, 10, 30, 20);
  EXPECT_EQ(0x0000FF, At(bmp, 29, 19));
  EXPECT_EQ(0xFF0000, At(bmp, 25, 15));
  EXPECT_EQ(0x00FF00, At(bmp, 30, 20));
  canvas->GetBrush()->SetStyle(bsClear);
  canvas->Rectangle(0, 22, 8, 30);
  EXPECT_EQ(0x00FF00, At(bmp, 4, 26)) << "a clear brush leaves the inside";
  canvas->SetPixels(35, 2, clYellow);
  EXPECT_EQ(clYellow, canvas->GetPixels(35, 2));

  // Text: width as GDI measures it in the canvas's font; TextOut moves the pen.
  canvas->GetFont()->SetHeight(-12);
  SIZE s{};
  GetTextExtentPoint32A(canvas->GetHandle(), "Wide text", 9, &s);
  EXPECT_EQ(canvas->GetFont()->GetHandle(), GetCurrentObject(canvas->GetHandle(), OBJ_FONT));
  EXPECT_EQ(s.cx, canvas->TextWidth("Wide text"));
  canvas->TextOut(1, 16, "Wide text");
  EXPECT_EQ((MyPoint{1 + s.cx, 16}), canvas->GetPenPos());

  // Draw copies pixels; a resized bitmap keeps its top-left part and its
  // canvas follows; Assign copies.
  TBitmap target;
  target.SetSize(50, 50);
  target.GetCanvas()->Draw(5, 5, &bmp);
  EXPECT_EQ(0xFF0000, At(target, 30, 20));
  EXPECT_EQ(0x000000, At(target, 2, 2));
  bmp.SetSize(36, 20);
  EXPECT_EQ(0xFF0000, At(bmp, 25, 15));
  EXPECT_EQ(nullptr, bmp.GetScanLine(20));
  bmp.GetCanvas()->SetPixels(1, 1, clBlue);
  TBitmap copy;
  copy.Assign(&bmp);
  EXPECT_EQ(36, copy.GetWidth());
  EXPECT_EQ(0xFF0000, At(copy, 1, 1));
}

TEST(GraphicsCanvas, NoHandleLeaks) {
  std::set<HGDIOBJ> seen;
  HDC external = CreateCompatibleDC(nullptr);
  HGDIOBJ originalPen = GetCurrentObject(external, OBJ_PEN), originalFont = GetCurrentObject(external, OBJ_FONT);
  for (int i = 0; i < 1500; ++i) {
    TBitmap b;
    b.SetSize(8 + i % 5, 8);
    TCanvas* c = b.GetCanvas();
    c->GetPen()->SetColor(TColor(i & 0xFFFFFF));
    c->LineTo(5, 5);
    seen.insert(c->GetPen()->GetHandle());
    c->GetPen()->SetWidth(1 + i % 3);
    c->GetBrush()->SetStyle(TBrushStyle(i % 8));
    c->GetFont()->SetHeight(-(8 + i % 9));
    c->Rectangle(0, 0, 4, 4);
    c->TextOut(0, 0, "x");
    for (HGDIOBJ h : {HGDIOBJ(c->GetPen()->GetHandle()), HGDIOBJ(c->GetBrush()->GetHandle()),
                      HGDIOBJ(c->GetFont()->GetHandle()), HGDIOBJ(c->GetHandle())})
      seen.insert(h);
    b.SetSize(3, 3);  // drops the context and the DIB
    c->LineTo(1, 1);
    seen.insert(c->GetHandle());
    seen.insert(b.GetHandle());

    // A plain canvas over a caller's context puts its original objects back.
    TCanvas plain;
    plain.SetHandle(external);
    plain.GetPen()->SetColor(clRed);
    plain.TextOut(0, 0, "y");
    plain.LineTo(3, 3);
    seen.insert(plain.GetPen()->GetHandle());
    seen.insert(plain.GetFont()->GetHandle());
  }
  seen.erase(GetStockObject(NULL_BRUSH));
  int live = 0;
  for (HGDIOBJ h : seen)
    if (GetObjectType(h) != 0 && ++live <= 5) ADD_FAILURE() << "handle " << h << " type " << GetObjectType(h);
  EXPECT_EQ(0, live) << "of " << seen.size() << " handles";
  EXPECT_EQ(originalPen, GetCurrentObject(external, OBJ_PEN));
  EXPECT_EQ(originalFont, GetCurrentObject(external, OBJ_FONT));
  DeleteDC(external);
}

}  // namespace
