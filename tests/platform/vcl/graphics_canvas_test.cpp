// The framework's graphics: pen, brush and font handles as GDI sees them,
// lazy selection into a canvas's context, pixels drawn on a bitmap, and no
// handle left behind.
#include <gtest/gtest.h>
#include <windows.h>

#include <set>
#include <vector>

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

TEST(GraphicsTools, ColorsAndHandles) {
  EXPECT_EQ(static_cast<int>(GetSysColor(COLOR_BTNFACE)), ColorToRGB(clBtnFace));
  EXPECT_EQ(static_cast<int>(GetSysColor(COLOR_INFOBK)), ColorToRGB(clInfoBk));
  EXPECT_EQ(0x123456, ColorToRGB(TColor(0x123456)));
  EXPECT_EQ(0x1FFFFFFF, ColorToRGB(clNone));
  EXPECT_EQ(int(0x80000000u | 15), clBtnFace);

  TPen pen;
  EXPECT_EQ(clBlack, pen.GetColor());
  EXPECT_EQ(1, pen.GetWidth());
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
  EXPECT_EQ(clWhite, brush.GetColor());
  brush.SetStyle(bsDiagCross);
  brush.SetColor(clNavy);
  LOGBRUSH lb{};
  ASSERT_GT(GetObjectA(brush.GetHandle(), sizeof lb, &lb), 0);
  EXPECT_EQ(UINT(BS_HATCHED), lb.lbStyle);
  EXPECT_EQ(ULONG_PTR(HS_DIAGCROSS), lb.lbHatch);
  EXPECT_EQ(COLORREF(0x800000), lb.lbColor);
  brush.SetStyle(bsClear);
  ASSERT_GT(GetObjectA(brush.GetHandle(), sizeof lb, &lb), 0);
  EXPECT_EQ(UINT(BS_NULL), lb.lbStyle);

  TFont font;
  font.SetPixelsPerInch(96);
  font.SetSize(12);
  EXPECT_EQ(-16, font.GetHeight());
  EXPECT_EQ(12, font.GetSize());
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
  EXPECT_EQ(0x00FF00, At(bmp, 0, 0));
  EXPECT_EQ(0x00FF00, At(bmp, 39, 29));

  HDC dc = canvas->GetHandle();
  ASSERT_NE(nullptr, dc);
  EXPECT_EQ(canvas->GetPen()->GetHandle(), GetCurrentObject(dc, OBJ_PEN));
  EXPECT_EQ(bmp.GetHandle(), GetCurrentObject(dc, OBJ_BITMAP));

  // A pen change while selected deselects first, then drops the old handle;
  // the next drawing call selects the new one.
  HPEN old = canvas->GetPen()->GetHandle();
  canvas->GetPen()->SetColor(clRed);
  EXPECT_EQ(0u, GetObjectType(old));
  EXPECT_NE(old, GetCurrentObject(dc, OBJ_PEN));
  canvas->MoveTo(2, 5);
  canvas->LineTo(12, 5);
  EXPECT_EQ(canvas->GetPen()->GetHandle(), GetCurrentObject(dc, OBJ_PEN));
  EXPECT_EQ((MyPoint{12, 5}), canvas->GetPenPos());
  EXPECT_EQ(0x0000FF, At(bmp, 2, 5));
  EXPECT_EQ(0x0000FF, At(bmp, 11, 5));
  EXPECT_EQ(0x00FF00, At(bmp, 12, 5)) << "LineTo excludes the end point";

  canvas->GetBrush()->SetColor(clBlue);
  canvas->Rectangle(20, 10, 30, 20);
  EXPECT_EQ(0x0000FF, At(bmp, 20, 10));
  EXPECT_EQ(0x0000FF, At(bmp, 29, 19));
  EXPECT_EQ(0xFF0000, At(bmp, 25, 15));
  EXPECT_EQ(0x00FF00, At(bmp, 30, 20));

  canvas->GetBrush()->SetStyle(bsClear);
  canvas->GetPen()->SetColor(clBlack);
  canvas->Rectangle(0, 22, 8, 30);
  EXPECT_EQ(0x000000, At(bmp, 0, 22));
  EXPECT_EQ(0x00FF00, At(bmp, 4, 26)) << "a clear brush leaves the inside";

  canvas->GetBrush()->SetStyle(bsSolid);
  canvas->GetBrush()->SetColor(clWhite);
  const MyPoint triangle[] = {{1, 1}, {15, 1}, {1, 15}};
  canvas->Polygon(triangle, 3);
  EXPECT_EQ(0xFFFFFF, At(bmp, 4, 4));
  canvas->Polygon(nullptr, 3);
  canvas->Polyline(triangle, 1);

  // Ellipse and RoundRect: the middle of an edge is drawn, the corner is not.
  canvas->GetBrush()->SetColor(clPurple);
  canvas->GetPen()->SetColor(clMaroon);
  canvas->Ellipse(20, 0, 30, 10);
  EXPECT_EQ(0x800080, At(bmp, 25, 5));
  EXPECT_EQ(0x000080, At(bmp, 20, 5));
  EXPECT_EQ(0x00FF00, At(bmp, 20, 0));
  canvas->RoundRect(31, 0, 40, 9, 6, 6);
  EXPECT_EQ(0x000080, At(bmp, 35, 0));
  EXPECT_EQ(0x00FF00, At(bmp, 31, 0));
  EXPECT_EQ(0x800080, At(bmp, 35, 4));

  canvas->SetPixels(35, 2, clYellow);
  EXPECT_EQ(clYellow, canvas->GetPixels(35, 2));
  EXPECT_EQ((MyRect{0, 0, 40, 30}), canvas->GetClipRect());

  // Text: width as GDI measures it in the canvas's font; TextOut moves the pen.
  canvas->GetFont()->SetName("Arial");
  canvas->GetFont()->SetHeight(-12);
  canvas->GetFont()->SetColor(clRed);
  SIZE s{};
  GetTextExtentPoint32A(canvas->GetHandle(), "Wide text", 9, &s);
  EXPECT_EQ(canvas->GetFont()->GetHandle(), GetCurrentObject(canvas->GetHandle(), OBJ_FONT));
  EXPECT_EQ(s.cx, canvas->TextWidth("Wide text"));
  EXPECT_EQ(s.cy, canvas->TextHeight("Wide text"));
  canvas->TextOut(1, 16, "Wide text");
  EXPECT_EQ((MyPoint{1 + s.cx, 16}), canvas->GetPenPos());
  EXPECT_EQ(COLORREF(RGB(255, 0, 0)), GetTextColor(canvas->GetHandle()));
  canvas->GetBrush()->SetColor(clAqua);
  canvas->TextRect(MyRect{30, 25, 40, 30}, 30, 25, "");
  EXPECT_EQ(0xFFFF00, At(bmp, 35, 27)) << "an opaque brush fills the text rectangle";

  // Draw copies the bitmap's pixels.
  TBitmap target;
  target.SetSize(50, 50);
  target.GetCanvas()->Draw(5, 5, &bmp);
  EXPECT_EQ(At(bmp, 25, 15), At(target, 30, 20));
  EXPECT_EQ(0x000000, At(target, 2, 2));
  target.GetCanvas()->Draw(0, 0, nullptr);
}

TEST(GraphicsBitmap, SizeAssignAndScanLines) {
  TBitmap b;
  EXPECT_TRUE(b.GetEmpty());
  EXPECT_EQ(nullptr, b.GetHandle());
  b.SetSize(10, 10);
  b.GetCanvas()->GetBrush()->SetColor(clRed);
  b.GetCanvas()->FillRect(MyRect{0, 0, 10, 10});
  b.SetSize(20, 5);  // keeps the top-left part
  EXPECT_EQ(0x0000FF, At(b, 9, 4));
  EXPECT_EQ(0x000000, At(b, 10, 0));
  EXPECT_EQ(nullptr, b.GetScanLine(5));
  EXPECT_EQ(nullptr, b.GetScanLine(-1));
  b.GetCanvas()->SetPixels(15, 1, clBlue);  // the canvas follows the new bitmap
  EXPECT_EQ(0xFF0000, At(b, 15, 1));

  TBitmap c;
  c.Assign(&b);
  EXPECT_EQ(20, c.GetWidth());
  EXPECT_EQ(0xFF0000, At(c, 15, 1));
  EXPECT_EQ(0x0000FF, At(c, 0, 0));
  c.Assign(nullptr);
  EXPECT_TRUE(c.GetEmpty());
  b.SetWidth(-4);
  EXPECT_EQ(0, b.GetWidth());
}

TEST(GraphicsCanvas, NoHandleLeaks) {
  std::set<HGDIOBJ> seen;
  HDC external = CreateCompatibleDC(nullptr);
  HGDIOBJ originalPen = GetCurrentObject(external, OBJ_PEN);
  HGDIOBJ originalFont = GetCurrentObject(external, OBJ_FONT);
  for (int i = 0; i < 1500; ++i) {
    TBitmap b;
    b.SetSize(8 + i % 5, 8);
    TCanvas* c = b.GetCanvas();
    c->GetPen()->SetColor(TColor(i & 0xFFFFFF));
    c->LineTo(5, 5);
    seen.insert(c->GetPen()->GetHandle());
    c->GetPen()->SetWidth(1 + i % 3);
    c->GetBrush()->SetStyle(TBrushStyle(i % 8));
    c->Rectangle(0, 0, 4, 4);
    seen.insert(c->GetPen()->GetHandle());
    seen.insert(c->GetBrush()->GetHandle());
    c->GetFont()->SetHeight(-(8 + i % 9));
    c->TextOut(0, 0, "x");
    seen.insert(c->GetFont()->GetHandle());
    seen.insert(c->GetHandle());
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
