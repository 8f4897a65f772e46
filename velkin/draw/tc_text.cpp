#include "velkin/draw/tc_text.h"

#include <windows.h>

#include "platform/ostrel/dc_changer.h"
#include "platform/ostrel/owned_handle.h"
#include "platform/vcl/graphics/canvas.h"
#include "platform/vcl/graphics/measuring_dc.h"
#include "velkin/draw/gdi_canvas.h"

using Graphics::clDefault;
using Graphics::clNone;
using Graphics::TColor;

namespace {

// Transparent background and the text colour for one call.
void TransparentText(DCChanger& use, COLORREF color) {
  use.SetBkMode(TRANSPARENT);
  use.SetTextColor(color);
}

COLORREF TextColor(TColor color, TColor fontColor) {
  if (color == clNone || color == clDefault) color = fontColor;
  return static_cast<COLORREF>(Graphics::ColorToRGB(color)) & 0xFFFFFF;
}

unsigned LayoutFlags(unsigned flags) {
  // DrawText ignores the vertical placements without a single line.
  if (flags & (DT_VCENTER | DT_BOTTOM)) flags |= DT_SINGLELINE;
  return flags;
}

void DrawIn(HDC dc, RECT& r, const System::AnsiString& text, COLORREF color, unsigned flags) {
  if (!dc) return;
  DCChanger use(dc);
  TransparentText(use, color);
  const std::wstring drawn = Graphics::DrawnText(dc, text.c_str(), text.Length());
  DrawTextW(dc, drawn.c_str(), static_cast<int>(drawn.size()), &r, LayoutFlags(flags));
}

void DrawAt(HDC dc, int x, int y, const System::AnsiString& text, COLORREF color) {
  if (!dc) return;
  DCChanger use(dc);
  TransparentText(use, color);
  use.SetTextAlign(TA_LEFT | TA_TOP | TA_NOUPDATECP);
  const std::wstring drawn = Graphics::DrawnText(dc, text.c_str(), text.Length());
  TextOutW(dc, x, y, drawn.c_str(), static_cast<int>(drawn.size()));
}

void DrawVertical(HDC dc, const MyRect& r, const System::AnsiString& text, COLORREF color, unsigned flags) {
  if (!dc || r.IsEmpty() || text.IsEmpty()) return;
  LOGFONTA lf{};
  if (!GetObjectA(GetCurrentObject(dc, OBJ_FONT), sizeof lf, &lf)) return;
  const std::wstring drawn = Graphics::DrawnText(dc, text.c_str(), text.Length());
  SIZE extent{};
  GetTextExtentPoint32W(dc, drawn.c_str(), static_cast<int>(drawn.size()), &extent);
  lf.lfEscapement = lf.lfOrientation = 900;
  // Bitmap fonts do not turn: ask for an outline face.
  lf.lfOutPrecision = OUT_TT_ONLY_PRECIS;
  const OwnedFont rotated(CreateFontIndirectA(&lf));
  if (!rotated) return;
  DCChanger use(dc);  // after the font: the old font is back before the rotated one goes
  use.Select(rotated.get());
  // Turned a quarter to the left, the text runs up from the reference point and
  // its body lies to the right of it.
  const int along = extent.cx, across = extent.cy;
  int y = r.bottom;
  if (flags & DT_CENTER)
    y = r.bottom - (r.Height() - along) / 2;
  else if (flags & DT_RIGHT)
    y = r.top + along;
  int x = r.left;
  if (flags & DT_VCENTER)
    x = r.left + (r.Width() - across) / 2;
  else if (flags & DT_BOTTOM)
    x = r.right - across;
  TransparentText(use, color);
  use.SetTextAlign(TA_LEFT | TA_TOP | TA_NOUPDATECP);
  ExtTextOutW(dc, x, y, ETO_CLIPPED, reinterpret_cast<const RECT*>(&r), drawn.c_str(), static_cast<UINT>(drawn.size()),
              nullptr);
}

HDC Dc(Graphics::TCanvas* c) { return c->GetHandle(); }
HDC Dc(HCustomCanvas* c) { return static_cast<HDC>(c->GetHandle()); }

}  // namespace

#define VELKIN_TC_TEXT_DEFINE(Canvas)                                                                          \
  void TC_TextOut(Canvas* c, const MyRect& r, const System::AnsiString& text, TColor color, unsigned flags) {  \
    if (!c) return;                                                                                            \
    RECT box{r.left, r.top, r.right, r.bottom};                                                                \
    DrawIn(Dc(c), box, text, TextColor(color, c->GetFont()->GetColor()), flags);                               \
  }                                                                                                            \
  void TC_TextOut(Canvas* c, MyRect& r, const System::AnsiString& text, unsigned flags) {                      \
    if (!c) return;                                                                                            \
    RECT box{r.left, r.top, r.right, r.bottom};                                                                \
    DrawIn(Dc(c), box, text, TextColor(clDefault, c->GetFont()->GetColor()), flags);                           \
    r = MyRect{box.left, box.top, box.right, box.bottom};                                                      \
  }                                                                                                            \
  void TC_TextOut(Canvas* c, int x, int y, const System::AnsiString& text) {                                   \
    if (c) DrawAt(Dc(c), x, y, text, TextColor(clDefault, c->GetFont()->GetColor()));                          \
  }                                                                                                            \
  void TC_TextOutV(Canvas* c, const MyRect& r, const System::AnsiString& text, TColor color, unsigned flags) { \
    if (c) DrawVertical(Dc(c), r, text, TextColor(color, c->GetFont()->GetColor()), flags);                    \
  }

VELKIN_TC_TEXT_DEFINE(Graphics::TCanvas)
VELKIN_TC_TEXT_DEFINE(HCustomCanvas)
