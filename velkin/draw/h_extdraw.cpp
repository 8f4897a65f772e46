#include "velkin/draw/h_extdraw.h"

#include <windows.h>

#include <algorithm>

#include "platform/vcl/graphics/canvas.h"
#include "velkin/draw/tc_draw.h"
#include "velkin/draw/tc_text.h"

using Controls::TAlign;
using Graphics::TCanvas;
using Graphics::TColor;

namespace {

bool Inside(const MyRect& r, const MyPoint& p) {
  return p.x >= r.left && p.x < r.right && p.y >= r.top && p.y < r.bottom;
}

bool Horizontal(TAlign align) { return align == Controls::alTop || align == Controls::alBottom; }

}  // namespace

HCaptionLayout TC_WinCaptionLayout(const MyRect& bar, const HCaptionTypes& parts, TAlign align) {
  static constexpr HCaptionType order[5] = {HCT_Close, HCT_Restore, HCT_Maximize, HCT_Minimize, HCT_Help};
  HCaptionLayout l;
  const MyRect inner{bar.left + 2, bar.top + 2, bar.right - 2, bar.bottom - 2};
  l.Text = inner;
  if (Horizontal(align)) {
    const int s = inner.Height() + 1;
    int x = inner.right;
    for (HCaptionType k : order) {
      if (!parts.Contains(k)) continue;
      l.Kind[l.Count] = k;
      l.Button[l.Count++] = {x - s, inner.top, x, inner.bottom};
      x -= s;
    }
    l.Text.right = x > inner.left ? x : inner.left;
  } else {
    const int s = inner.Width() + 1;
    int y = inner.top;
    for (HCaptionType k : order) {
      if (!parts.Contains(k)) continue;
      l.Kind[l.Count] = k;
      l.Button[l.Count++] = {inner.left, y, inner.right, y + s};
      y += s;
    }
    l.Text.top = y < inner.bottom ? y : inner.bottom;
  }
  return l;
}

int TC_WinCaptionHitTest(const MyRect& bar, const HCaptionTypes& parts, TAlign align, const MyPoint& p) {
  if (!Inside(bar, p)) return 0;
  const HCaptionLayout l = TC_WinCaptionLayout(bar, parts, align);
  for (int i = 0; i < l.Count; ++i)
    if (Inside(l.Button[i], p)) return l.Kind[i];
  return parts.Contains(HCT_Caption) ? HCT_Caption : 0;
}

namespace {

UINT ButtonKind(HCaptionType t) {
  switch (t) {
    case HCT_Minimize:
      return DFCS_CAPTIONMIN;
    case HCT_Maximize:
      return DFCS_CAPTIONMAX;
    case HCT_Restore:
      return DFCS_CAPTIONRESTORE;
    case HCT_Help:
      return DFCS_CAPTIONHELP;
    default:
      return DFCS_CAPTIONCLOSE;
  }
}

int Mix(int from, int to, int i, int n) { return from + (to - from) * i / n; }

// From the brush colour where the text starts (left, or bottom of a vertical
// bar) to the button face colour at the buttons' end, one-pixel strips.
void GradientFill(TCanvas* c, const MyRect& bar, bool horizontal) {
  const int from = Graphics::ColorToRGB(c->GetBrush()->GetColor());
  const int to = Graphics::ColorToRGB(Graphics::clBtnFace);
  const int n = horizontal ? bar.Width() : bar.Height();
  const int d = std::max(n - 1, 1);
  for (int i = 0; i < n; ++i) {
    const int rgb = Mix(from & 0xFF, to & 0xFF, i, d) | Mix((from >> 8) & 0xFF, (to >> 8) & 0xFF, i, d) << 8 |
                    Mix((from >> 16) & 0xFF, (to >> 16) & 0xFF, i, d) << 16;
    if (horizontal)
      TC_Fill(c, bar.left + i, bar.top, bar.left + i + 1, bar.bottom, TColor(rgb));
    else
      TC_Fill(c, bar.left, bar.bottom - 1 - i, bar.right, bar.bottom - i, TColor(rgb));
  }
}

}  // namespace

void TC_WinCaptionDraw(TCanvas* canvas, const MyRect& bar, const HCaptionTypes& parts, const System::AnsiString& text,
                       TAlign align, bool active) {
  if (!canvas || bar.IsEmpty()) return;
  const bool horizontal = Horizontal(align);
  UINT state = 0;
  if (parts.Contains(HCT_Pushed)) state |= DFCS_PUSHED;
  if (parts.Contains(HCT_Flat)) state |= DFCS_FLAT;
  if (parts.Contains(HCT_Inactive)) state |= DFCS_INACTIVE;

  if (parts.Contains(HCT_Gradient))
    GradientFill(canvas, bar, horizontal);
  else if (parts.Contains(HCT_Fill))
    TC_Fill(canvas, bar, Graphics::clDefault);
  HDC dc = canvas->GetHandle();
  if (parts.Contains(HCT_Edge)) {
    RECT e{bar.left, bar.top, bar.right, bar.bottom};
    DrawEdge(dc, &e, BDR_RAISEDINNER, BF_RECT);
  }

  const HCaptionLayout l = TC_WinCaptionLayout(bar, parts, align);
  for (int i = 0; i < l.Count; ++i) {
    RECT b{l.Button[i].left, l.Button[i].top, l.Button[i].right, l.Button[i].bottom};
    DrawFrameControl(dc, &b, DFC_CAPTION, ButtonKind(l.Kind[i]) | state);
  }

  if (text.IsEmpty()) return;
  const TColor color = active ? Graphics::clNone : Graphics::clInactiveCaptionText;
  MyRect t = l.Text;
  // Keep the text off the bar's start and the first button.
  if (horizontal) {
    t.left = std::min(t.left + 2, t.right);
    t.right = std::max(t.right - 1, t.left);
    TC_TextOut(canvas, t, text, color, DT_VCENTER | (parts.Contains(HCT_CenterText) ? DT_CENTER : 0u));
  } else {
    t.bottom = std::max(t.bottom - 2, t.top);
    t.top = std::min(t.top + 1, t.bottom);
    // Vertical text reads upwards, centred along and across the bar.
    TC_TextOutV(canvas, t, text, color, DT_CENTER | DT_VCENTER);
  }
}

void TC_DrawNSPattern(TCanvas* canvas, const MyRect& r, TColor color) {
  if (!canvas || color == Graphics::clNone) return;
  for (int y = r.top + 1; y + 1 < r.bottom; y += 4)
    for (int x = r.left + 1; x + 1 < r.right; x += 4) {
      TC_Fill(canvas, x, y, x + 1, y + 1, Graphics::clWhite);
      TC_Fill(canvas, x + 1, y + 1, x + 2, y + 2, color);
    }
}

void TC_DrawArrow(TCanvas* canvas, int x, int y, int size, TColor color, TAlign direction) {
  if (!canvas || size < 1 || color == Graphics::clNone) return;
  const int across = 2 * size - 1;
  // Strip i is one pixel thick, i pixels from the base, and shorter by i at
  // each end.
  for (int i = 0; i < size; ++i) {
    switch (direction) {
      case Controls::alBottom:
        TC_Fill(canvas, x + i, y + i, x + across - i, y + i + 1, color);
        break;
      case Controls::alTop:
        TC_Fill(canvas, x + i, y + size - 1 - i, x + across - i, y + size - i, color);
        break;
      case Controls::alRight:
        TC_Fill(canvas, x + i, y + i, x + i + 1, y + across - i, color);
        break;
      case Controls::alLeft:
        TC_Fill(canvas, x + size - 1 - i, y + i, x + size - i, y + across - i, color);
        break;
      default:
        return;
    }
  }
}

void TC_DrawNSPanel(TCanvas* canvas, const MyRect& r, TColor color, TAlign align, bool pushed) {
  if (!canvas || r.IsEmpty()) return;
  TC_Box(canvas, r, color, pushed ? HBOX_Lowered : HBOX_Raised);

  const bool withArrow = align == Controls::alTop || align == Controls::alBottom || align == Controls::alLeft ||
                         align == Controls::alRight;
  const bool horizontal = withArrow ? Horizontal(align) : r.Width() >= r.Height();
  const int length = horizontal ? r.Width() : r.Height();
  const int thickness = horizontal ? r.Height() : r.Width();
  // The grip is one row of dots (3 pixels) across the middle, 3 pixels in
  // from the ends.
  const int gripAt = (thickness - 3) / 2;
  int gapFrom = 0, gapTo = 0;  // along the length, relative to r's start
  if (withArrow) {
    const int size = std::clamp((thickness - 2) / 2, 1, 6);
    const int along = 2 * size - 1;
    const int a0 = (length - along) / 2;
    const int c0 = (thickness - size) / 2 + (pushed ? 1 : 0);
    const int shift = pushed ? 1 : 0;
    if (horizontal)
      TC_DrawArrow(canvas, r.left + a0 + shift, r.top + c0, size, Graphics::clBtnText, align);
    else
      TC_DrawArrow(canvas, r.left + c0, r.top + a0 + shift, size, Graphics::clBtnText, align);
    gapFrom = a0 - 4;
    gapTo = a0 + along + 4;
  }
  auto grip = [&](int from, int to) {
    from = std::max(from, 3);
    to = std::min(to, length - 3);
    if (to - from < 3) return;
    if (horizontal)
      TC_DrawNSPattern(canvas, MyRect{r.left + from, r.top + gripAt, r.left + to, r.top + gripAt + 3},
                       Graphics::clBtnShadow);
    else
      TC_DrawNSPattern(canvas, MyRect{r.left + gripAt, r.top + from, r.left + gripAt + 3, r.top + to},
                       Graphics::clBtnShadow);
  };
  if (withArrow) {
    grip(3, gapFrom);
    grip(gapTo, length - 3);
  } else {
    grip(3, length - 3);
  }
}
