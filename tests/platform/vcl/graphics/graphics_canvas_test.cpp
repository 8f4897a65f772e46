// The framework's canvas: lazy selection into its context, pixels drawn on a
// bitmap, and no handle left behind.
#include <gtest/gtest.h>
#include <windows.h>

#include <set>

#include "platform/vcl/graphics/graphics.h"
#include "tests/script_samples.h"

using namespace Graphics;

namespace {

// Pixel (x, y) of a bitmap as 0x00RRGGBB-free TColor (0x00BBGGRR).
int At(TBitmap& b, int x, int y) {
  const auto* row = static_cast<const uint8_t*>(b.GetScanLine(y));
  return row ? RGB(row[4 * x + 2], row[4 * x + 1], row[4 * x]) : -1;
}

TEST(TCanvas, LazySelectionAndPixels) {
  TBitmap bmp;
  bmp.SetSize(40, 30);
  TCanvas* canvas = bmp.GetCanvas();
  canvas->GetBrush()->SetColor(TColor(0x00FF00));
  canvas->FillRect(MyRect{0, 0, 40, 30});
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
  canvas->SetPixels(35, 2, clYellow);
  EXPECT_EQ(clYellow, canvas->GetPixels(35, 2));

  // Text: width as GDI measures it in the canvas's font.
  canvas->GetFont()->SetHeight(-12);
  const int width = canvas->TextWidth("Wide text");
  SIZE s{};
  GetTextExtentPoint32A(dc, "Wide text", 9, &s);
  EXPECT_EQ(canvas->GetFont()->GetHandle(), GetCurrentObject(dc, OBJ_FONT));
  EXPECT_EQ(s.cx, width);
}

// Text in the process's code page is drawn and measured as the letters it
// stands for, however many bytes each takes: as the wide functions draw them.
TEST(TCanvas, TextAsItsLetters) {
  for (const auto& sample : script_samples::samples) {
    std::string text;
    if (!script_samples::InAnsi(sample.utf8, text)) continue;
    const std::wstring letters = script_samples::Wide(sample.utf8);
    TBitmap drawn, expected;
    SIZE size{};
    for (TBitmap* b : {&drawn, &expected}) {
      b->SetSize(160, 40);
      b->GetCanvas()->GetFont()->SetHeight(-12);
      b->GetCanvas()->TextOut(0, 0, "");  // the font and brush selected
    }
    TCanvas* canvas = drawn.GetCanvas();
    canvas->TextOut(2, 2, text.c_str());
    canvas->TextRect(MyRect{2, 20, 60, 38}, 4, 21, text.c_str());
    const HDC dc = expected.GetCanvas()->GetHandle();
    TextOutW(dc, 2, 2, letters.c_str(), static_cast<int>(letters.size()));
    const RECT clip{2, 20, 60, 38};
    ExtTextOutW(dc, 4, 21, ETO_CLIPPED | ETO_OPAQUE, &clip, letters.c_str(), static_cast<UINT>(letters.size()),
                nullptr);
    GetTextExtentPoint32W(dc, letters.c_str(), static_cast<int>(letters.size()), &size);
    EXPECT_EQ(size.cx, canvas->TextWidth(text.c_str())) << sample.what;
    EXPECT_EQ(2 + size.cx, canvas->GetPenPos().x) << sample.what << ": the pen after the text";
    int differ = 0;
    for (int y = 0; y < 40; ++y)
      for (int x = 0; x < 160; ++x) differ += At(drawn, x, y) != At(expected, x, y);
    EXPECT_EQ(0, differ) << sample.what << ": pixels unlike the letters'";
  }
}

TEST(TCanvas, NoHandleLeaks) {
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
    seen.insert({c->GetPen()->GetHandle(), c->GetBrush()->GetHandle(), c->GetFont()->GetHandle(), c->GetHandle()});
    b.SetSize(3, 3);  // drops the context and the DIB
    c->LineTo(1, 1);
    seen.insert({c->GetHandle(), b.GetHandle()});

    // A plain canvas over a caller's context puts its original objects back.
    TCanvas plain;
    plain.SetHandle(external);
    plain.GetPen()->SetColor(clRed);
    plain.TextOut(0, 0, "y");
    plain.LineTo(3, 3);
    seen.insert({plain.GetPen()->GetHandle(), plain.GetFont()->GetHandle()});
  }
  seen.erase(GetStockObject(NULL_BRUSH));
  int live = 0;
  for (HGDIOBJ h : seen) live += GetObjectType(h) != 0;
  EXPECT_EQ(0, live) << "of " << seen.size() << " handles";
  EXPECT_EQ(originalPen, GetCurrentObject(external, OBJ_PEN));
  EXPECT_EQ(originalFont, GetCurrentObject(external, OBJ_FONT));
  DeleteDC(external);
}

}  // namespace
