#pragma once
// The drawing routines written once over an access policy TCAccess<C>, which
// says how a canvas of type C reaches its context, pen, brush and lines:
//   static HDC Dc(C*)
//   static Graphics::TColor PenColor(C*);  static void SetPenColor(C*, TColor)
//   static int PenWidth(C*);               static void SetPenWidth(C*, int)
//   static int PenStyle(C*);               static void SetPenStyle(C*, int)
//   static Graphics::TColor BrushColor(C*)
//   static void MoveTo(C*, int x, int y)
//   static void LineTo(C*, int x, int y, TColor)   (clNone: only moves)
//   static void Ellipse(C*, const MyRect& inclusive, TColor)
//   static void FlatStrip(C*, const MyRect&, TColor)
// Private to the library's drawing units.
#include <windows.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "platform/ostrel/dc_changer.h"
#include "platform/vcl/graphics/color.h"
#include "velkin/draw/tc_draw_types.h"

namespace tc_impl {

using Graphics::clDefault;
using Graphics::clNone;
using Graphics::TColor;

constexpr TColor kWhite = TColor(0xFFFFFF);
constexpr TColor kGrey = TColor(0xFFFFFF - 0x7F7F7F);
constexpr TColor kBlack = TColor(0x000000);

template <class C>
struct TCAccess;

// Saves the pen parts named by mask (1 colour, 2 style, 4 width) and puts them
// back on every exit; writes only what differs, so an untouched pen is not
// re-made.
template <class C>
class PenGuard {
 public:
  PenGuard(C* c, unsigned mask)
      : c_(c),
        mask_(mask),
        color_(TCAccess<C>::PenColor(c)),
        style_(TCAccess<C>::PenStyle(c)),
        width_(TCAccess<C>::PenWidth(c)) {}
  ~PenGuard() {
    using A = TCAccess<C>;
    if ((mask_ & 1) && A::PenColor(c_) != color_) A::SetPenColor(c_, color_);
    if ((mask_ & 2) && A::PenStyle(c_) != style_) A::SetPenStyle(c_, style_);
    if ((mask_ & 4) && A::PenWidth(c_) != width_) A::SetPenWidth(c_, width_);
  }
  PenGuard(const PenGuard&) = delete;
  PenGuard& operator=(const PenGuard&) = delete;

 private:
  C* c_;
  unsigned mask_;
  TColor color_;
  int style_;
  int width_;
};

template <class C>
void SetWidth1(C* c) {
  if (TCAccess<C>::PenWidth(c) != 1) TCAccess<C>::SetPenWidth(c, 1);
}

inline COLORREF Rgb(TColor color) { return static_cast<COLORREF>(Graphics::ColorToRGB(color)) & 0xFFFFFF; }

template <class C>
void Line(C* c, int x1, int y1, int x2, int y2, TColor color) {
  TCAccess<C>::MoveTo(c, x1, y1);
  TCAccess<C>::LineTo(c, x2, y2, color);
}

// Fills solid through the context's own brush and pen (DC_BRUSH, DC_PEN), so
// both families give the same pixels and neither's objects change; the
// changer puts the context's objects and colours back.
inline void UseDCColors(DCChanger& use, COLORREF color) {
  use.SetDCBrushColor(color);
  use.SetDCPenColor(color);
  use.Select(static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
  use.Select(static_cast<HPEN>(GetStockObject(DC_PEN)));
}

// The fill colour, or false when nothing is to be drawn.
template <class C>
bool FillColor(C* c, TColor& color) {
  if (!c || color == clNone) return false;
  if (color == clDefault) color = TCAccess<C>::BrushColor(c);
  return color != clNone;
}

template <class C>
void Fill(C* c, const MyRect& r, TColor color) {
  if (!FillColor(c, color) || r.IsEmpty()) return;
  HDC dc = TCAccess<C>::Dc(c);
  if (!dc) return;
  DCChanger use(dc);
  use.SetDCBrushColor(Rgb(color));
  ::FillRect(dc, reinterpret_cast<const RECT*>(&r), static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
}

template <class C>
void RoundFill(C* c, const MyRect& r, int radius, TColor color) {
  if (radius < 1) return Fill(c, r, color);
  if (!FillColor(c, color) || r.IsEmpty()) return;
  HDC dc = TCAccess<C>::Dc(c);
  if (!dc) return;
  // Outline and inside in one colour: the outline keeps right and bottom out.
  DCChanger use(dc);
  UseDCColors(use, Rgb(color));
  ::RoundRect(dc, r.left, r.top, r.right, r.bottom, 2 * radius, 2 * radius);
}

template <class C>
void FillEllipse(C* c, const MyRect& r, TColor color) {
  if (!FillColor(c, color)) return;
  HDC dc = TCAccess<C>::Dc(c);
  if (!dc) return;
  DCChanger use(dc);
  UseDCColors(use, Rgb(color));
  ::Ellipse(dc, r.left, r.top, r.right + 1, r.bottom + 1);
}

template <class C>
void FillPoly(C* c, tagPOINT* points, int count, TColor color) {
  if (!points || count < 2 || !FillColor(c, color)) return;
  HDC dc = TCAccess<C>::Dc(c);
  if (!dc) return;
  DCChanger use(dc);
  UseDCColors(use, Rgb(color));
  ::Polygon(dc, points, count);
}

template <class C>
void LinePoly(C* c, tagPOINT* points, int count, TColor color) {
  if (!c || !points || count < 2) return;
  TCAccess<C>::MoveTo(c, points[0].x, points[0].y);
  for (int i = 1; i < count; ++i) TCAccess<C>::LineTo(c, points[i].x, points[i].y, color);
}

// Closed outline of r (right and bottom exclusive) as one path.
template <class C>
void Outline(C* c, const MyRect& r, TColor color) {
  if (!c || r.IsEmpty()) return;
  using A = TCAccess<C>;
  if (r.Width() == 1 || r.Height() == 1) {
    // A path that goes there and back would meet itself: one stroke does.
    Line(c, r.left, r.top, r.Width() == 1 ? r.left : r.right, r.Height() == 1 ? r.top : r.bottom, color);
    return;
  }
  A::MoveTo(c, r.left, r.top);
  A::LineTo(c, r.right - 1, r.top, color);
  A::LineTo(c, r.right - 1, r.bottom - 1, color);
  A::LineTo(c, r.left, r.bottom - 1, color);
  A::LineTo(c, r.left, r.top, color);
}

// The four edges of r as separate lines.
template <class C>
void Edges(C* c, const MyRect& r, TColor color) {
  if (!c || r.IsEmpty()) return;
  Line(c, r.left, r.top, r.right, r.top, color);
  Line(c, r.right - 1, r.top, r.right - 1, r.bottom, color);
  Line(c, r.left, r.bottom - 1, r.right, r.bottom - 1, color);
  Line(c, r.left, r.top, r.left, r.bottom, color);
}

// Left and top edge in first, right and bottom edge in second.
template <class C>
void Frame3D(C* c, const MyRect& r, TColor first, TColor second) {
  if (r.Width() < 2 || r.Height() < 2) return Outline(c, r, first);
  using A = TCAccess<C>;
  A::MoveTo(c, r.left, r.bottom - 1);
  A::LineTo(c, r.left, r.top, first);
  A::LineTo(c, r.right - 1, r.top, first);
  A::LineTo(c, r.right - 1, r.bottom - 1, second);
  A::LineTo(c, r.left, r.bottom - 1, second);
}

inline MyRect Ring(const MyRect& r, int k) { return MyRect{r.left + k, r.top + k, r.right - k, r.bottom - k}; }

template <class C>
void Box(C* c, const MyRect& r, TColor color, HBOX_Types type) {
  if (!c) return;
  PenGuard<C> guard(c, 5);
  if (type == HBOX_Nothing) return;
  SetWidth1(c);
  if (type != HBOX_Outline && type != HBOX_Outline2) Fill(c, Ring(r, TC_BoxWidth(type)), color);
  switch (type) {
    case HBOX_Raised:
      Frame3D(c, r, kWhite, kGrey);
      break;
    case HBOX_Lowered:
      Frame3D(c, r, kGrey, kWhite);
      break;
    case HBOX_Etched: {
      const MyRect inner{r.left + 1, r.top + 1, r.right, r.bottom};
      Outline(c, inner, kBlack);
      Outline(c, MyRect{inner.left - 1, inner.top - 1, inner.right - 1, inner.bottom - 1}, kWhite);
      break;
    }
    case HBOX_Black:
      Outline(c, r, kBlack);
      break;
    case HBOX_Thick:
    case HBOX_Thicker:
    case HBOX_Button: {
      const int w = TC_BoxWidth(type);
      Outline(c, r, kBlack);
      // Raised frames on the rings between; the inner black ring only when
      // the frame is wider than two.
      const int frames = w > 2 ? w - 2 : w - 1;
      for (int k = 1; k <= frames; ++k) Frame3D(c, Ring(r, k), kWhite, kGrey);
      if (w > 2) Outline(c, Ring(r, w - 1), kBlack);
      break;
    }
    case HBOX_Pushed:
      Outline(c, r, kBlack);
      Frame3D(c, Ring(r, 1), kGrey, kWhite);
      break;
    case HBOX_Outline:
    case HBOX_Outline2:
      if (color != clNone) Outline(c, r, color);
      break;
    case HBOX_GroupLowered:
    case HBOX_GroupRaised: {
      const TColor a = type == HBOX_GroupLowered ? kGrey : kWhite;
      const TColor b = type == HBOX_GroupLowered ? kWhite : kGrey;
      for (int k = 0; k < 4; ++k) Outline(c, Ring(r, k), k % 2 ? b : a);
      break;
    }
    default:  // HBOX_Fill and unknown types: the fill only
      break;
  }
}

template <class C>
void Border(C* c, int x1, int y1, int x2, int y2, Controls::TAlign side, HBRD_Types type, TColor color) {
  using Controls::alBottom;
  using Controls::alLeft;
  using Controls::alRight;
  using Controls::alTop;
  if (!c || type == HBRD_None || side == Controls::alNone) return;
  if (side == Controls::alClient) {
    for (Controls::TAlign s : {alRight, alBottom, alLeft, alTop}) Border(c, x1, y1, x2, y2, s, type, color);
    return;
  }
  if (side < alTop || side > alRight) return;
  PenGuard<C> guard(c, 5);
  SetWidth1(c);
  const int w = TC_BorderWidth(type);
  int ax = x1, ay = y1, bx = x2, by = y1, sx = 0, sy = 1;
  switch (side) {
    case alBottom:
      ay = by = y2 - w;
      break;
    case alLeft:
      bx = x1;
      by = y2;
      sx = 1;
      sy = 0;
      break;
    case alRight:
      ax = bx = x2 - w;
      by = y2;
      sx = 1;
      sy = 0;
      break;
    default:
      break;
  }
  const bool topLeft = side == alTop || side == alLeft;
  TColor lines[4];
  int count = 0;
  switch (type) {
    case HBRD_Lowered:
      lines[0] = topLeft ? kGrey : kWhite;
      lines[1] = topLeft ? kWhite : kGrey;
      count = 2;
      break;
    case HBRD_Raised:
      lines[0] = topLeft ? kWhite : kGrey;
      lines[1] = topLeft ? kGrey : kWhite;
      count = 2;
      break;
    case HBRD_Double:
      if (color == clNone) return;
      lines[0] = lines[1] = color;
      count = 2;
      break;
    case HBRD_Single:
      if (color == clNone) return;
      lines[0] = color;
      count = 1;
      break;
    case HBRD_ColorWhite:
      lines[0] = lines[2] = color;
      lines[1] = lines[3] = kWhite;
      count = 4;
      break;
    case HBRD_WhiteColor:
      lines[0] = lines[2] = kWhite;
      lines[1] = lines[3] = color;
      count = 4;
      break;
    default:
      return;
  }
  for (int i = 0; i < count; ++i) {
    Line(c, ax, ay, bx, by, lines[i]);
    ax += sx;
    bx += sx;
    ay += sy;
    by += sy;
  }
}

template <class C>
void Ellipse(C* c, const MyRect& r, TColor color) {
  if (c) TCAccess<C>::Ellipse(c, r, color);
}

template <class C>
void ColorBox(C* c, const MyRect& r, TColor frame, TColor fill) {
  if (!c) return;
  PenGuard<C> guard(c, 5);
  SetWidth1(c);
  Fill(c, Ring(r, 1), fill);
  if (frame != clNone) Outline(c, r, frame);
}

template <class C>
void ColorRect(C* c, const MyRect& r, TColor color, int width) {
  if (!c || width < 1 || r.IsEmpty()) return;
  const int wx = std::min(width, (r.Width() + 1) / 2), wy = std::min(width, (r.Height() + 1) / 2);
  Fill(c, MyRect{r.left, r.top, r.right, r.top + wy}, color);
  Fill(c, MyRect{r.left, r.bottom - wy, r.right, r.bottom}, color);
  Fill(c, MyRect{r.left, r.top + wy, r.left + wx, r.bottom - wy}, color);
  Fill(c, MyRect{r.right - wx, r.top + wy, r.right, r.bottom - wy}, color);
}

template <class C>
void LineShape(C* c, const MyPoint& a, const MyPoint& b, HFigureTypes figure, int size, int angle) {
  if (!c) return;
  using A = TCAccess<C>;
  Line(c, a.x, a.y, b.x, b.y, clDefault);
  if (figure == HFT_None || size < 1) return;
  const TColor color = A::PenColor(c);
  // Unit vector from the end point back along the line (leftwards for a
  // line of no length).
  double ux = a.x - b.x, uy = a.y - b.y;
  const double len = std::hypot(ux, uy);
  if (len > 0) {
    ux /= len;
    uy /= len;
  } else {
    ux = -1;
    uy = 0;
  }
  const double t = angle * std::numbers::pi / 180.0;
  auto wing = [&](double s) {
    const double ca = std::cos(s * t), sa = std::sin(s * t);
    return tagPOINT{static_cast<LONG>(std::lround(b.x + size * (ux * ca - uy * sa))),
                    static_cast<LONG>(std::lround(b.y + size * (ux * sa + uy * ca)))};
  };
  const int lo = size / 2, hi = size - 1 - lo;  // the square or circle round b, inclusive
  const MyRect box{b.x - lo, b.y - lo, b.x + hi, b.y + hi};
  switch (figure) {
    case HFT_Arrow: {
      const tagPOINT p = wing(1), q = wing(-1);
      Line(c, b.x, b.y, p.x, p.y, color);
      Line(c, b.x, b.y, q.x, q.y, color);
      break;
    }
    case HFT_FillArrow: {
      tagPOINT tri[3] = {tagPOINT{b.x, b.y}, wing(1), wing(-1)};
      FillPoly(c, tri, 3, color);
      break;
    }
    case HFT_Circle:
      A::Ellipse(c, box, color);
      break;
    case HFT_FillCircle:
      FillEllipse(c, box, color);
      break;
    case HFT_Square:
      Outline(c, MyRect{box.left, box.top, box.right + 1, box.bottom + 1}, color);
      break;
    case HFT_FillSquare:
      Fill(c, MyRect{box.left, box.top, box.right + 1, box.bottom + 1}, color);
      break;
    case HFT_Bar: {
      const double px = -uy, py = ux;  // across the line
      const double h = size / 2.0;
      Line(c, static_cast<int>(std::lround(b.x - px * h)), static_cast<int>(std::lround(b.y - py * h)),
           static_cast<int>(std::lround(b.x + px * h)), static_cast<int>(std::lround(b.y + py * h)), color);
      break;
    }
    default:
      break;
  }
}

template <class C>
void FlatFill(C* c, const MyRect& r, TColor color, int shade, bool vertical) {
  if (!FillColor(c, color)) return;
  const int size = vertical ? r.Height() : r.Width();
  const int half = size / 2;
  if (half < 1 || shade == 0 || shade >= 6) return Fill(c, r, color);
  const double* table = nullptr;
  const int n = TC_FlatShadeTable(shade, half, &table);
  const int rgb = Graphics::ColorToRGB(color);
  const int red = rgb & 0xFF, green = (rgb >> 8) & 0xFF, blue = (rgb >> 16) & 0xFF;
  for (int i = 0; i <= half; ++i) {
    const double f = table[(i * n) / half];
    // Rounded with the current FPU mode after adding 0.5, then cut to a byte
    // (a full 255 at factor 1 wraps to 0: kept as it always was).
    const int rr = static_cast<int>(std::lrint(red * f + 0.5)) & 0xFF;
    const int gg = static_cast<int>(std::lrint(green * f + 0.5)) & 0xFF;
    const int bb = static_cast<int>(std::lrint(blue * f + 0.5)) & 0xFF;
    const TColor shadeColor = TColor(rr | (gg << 8) | (bb << 16));
    if (vertical) {
      TCAccess<C>::FlatStrip(c, MyRect{r.left, r.top + i, r.right, r.top + i + 1}, shadeColor);
      TCAccess<C>::FlatStrip(c, MyRect{r.left, r.bottom - 1 - i, r.right, r.bottom - i}, shadeColor);
    } else {
      TCAccess<C>::FlatStrip(c, MyRect{r.left + i, r.top, r.left + i + 1, r.bottom}, shadeColor);
      TCAccess<C>::FlatStrip(c, MyRect{r.right - 1 - i, r.top, r.right - i, r.bottom}, shadeColor);
    }
  }
}

}  // namespace tc_impl
