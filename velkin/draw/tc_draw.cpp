#include "velkin/draw/tc_draw.h"

#include "platform/vcl/graphics/canvas.h"
#include "velkin/draw/gdi_canvas.h"
#include "velkin/draw/tc_draw_impl.h"

using Graphics::clDefault;
using Graphics::clNone;
using Graphics::TCanvas;
using Graphics::TColor;

namespace tc_impl {

template <>
struct TCAccess<TCanvas> {
  static HDC Dc(TCanvas* c) { return c->GetHandle(); }
  static TColor PenColor(TCanvas* c) { return c->GetPen()->GetColor(); }
  static void SetPenColor(TCanvas* c, TColor v) { c->GetPen()->SetColor(v); }
  static int PenWidth(TCanvas* c) { return c->GetPen()->GetWidth(); }
  static void SetPenWidth(TCanvas* c, int v) { c->GetPen()->SetWidth(v); }
  static int PenStyle(TCanvas* c) { return c->GetPen()->GetStyle(); }
  static void SetPenStyle(TCanvas* c, int v) { c->GetPen()->SetStyle(static_cast<Graphics::TPenStyle>(v)); }
  static TColor BrushColor(TCanvas* c) { return c->GetBrush()->GetColor(); }
  static void MoveTo(TCanvas* c, int x, int y) { c->MoveTo(x, y); }
  static void LineTo(TCanvas* c, int x, int y, TColor color) {
    if (color == clNone) return c->MoveTo(x, y);
    Graphics::TPen* pen = c->GetPen();
    const TColor old = pen->GetColor();
    if (color != clDefault) pen->SetColor(color);
    c->LineTo(x, y);
    pen->SetColor(old);
  }
  static void Ellipse(TCanvas* c, const MyRect& r, TColor color) {
    Graphics::TPen* pen = c->GetPen();
    if (color == clNone || pen->GetStyle() == Graphics::psClear) return;
    const TColor old = pen->GetColor();
    if (color != clDefault) pen->SetColor(color);
    HDC dc = c->GetHandle();
    if (dc) {
      DCChanger use(dc);
      use.Select(static_cast<HBRUSH>(GetStockObject(NULL_BRUSH)));
      ::Ellipse(dc, r.left, r.top, r.right + 1, r.bottom + 1);
    }
    pen->SetColor(old);
  }
  // Through the canvas's brush, as the shaded fill always did.
  static void FlatStrip(TCanvas* c, const MyRect& r, TColor color) {
    c->GetBrush()->SetColor(color);
    c->FillRect(r);
  }
};

template <>
struct TCAccess<HCustomCanvas> {
  static HDC Dc(HCustomCanvas* c) { return static_cast<HDC>(c->GetHandle()); }
  static TColor PenColor(HCustomCanvas* c) { return c->GetPen()->GetColor(); }
  static void SetPenColor(HCustomCanvas* c, TColor v) { c->GetPen()->SetColor(v); }
  static int PenWidth(HCustomCanvas* c) { return c->GetPen()->GetWidth(); }
  static void SetPenWidth(HCustomCanvas* c, int v) { c->GetPen()->SetWidth(v); }
  static int PenStyle(HCustomCanvas* c) { return c->GetPen()->GetStyle(); }
  static void SetPenStyle(HCustomCanvas* c, int v) { c->GetPen()->SetStyle(static_cast<HPenStyle_Types>(v)); }
  static TColor BrushColor(HCustomCanvas* c) { return c->GetBrush()->GetColor(); }
  static void MoveTo(HCustomCanvas* c, int x, int y) { c->MoveTo(x, y); }
  static void LineTo(HCustomCanvas* c, int x, int y, TColor color) { c->LineTo(x, y, color); }
  static void Ellipse(HCustomCanvas* c, const MyRect& r, TColor color) { c->Ellipse(r, color); }
  static void FlatStrip(HCustomCanvas* c, const MyRect& r, TColor color) { c->Fill(r, color); }
};

}  // namespace tc_impl

#define VELKIN_TC_DRAW_DEFINE(Canvas)                                                                                  \
  void TC_MoveTo(Canvas* c, const MyPoint& p) {                                                                        \
    if (c) tc_impl::TCAccess<Canvas>::MoveTo(c, p.x, p.y);                                                             \
  }                                                                                                                    \
  void TC_LineTo(Canvas* c, int x, int y, TColor color) {                                                              \
    if (c) tc_impl::TCAccess<Canvas>::LineTo(c, x, y, color);                                                          \
  }                                                                                                                    \
  void TC_LineTo(Canvas* c, const MyPoint& p, TColor color) { TC_LineTo(c, p.x, p.y, color); }                         \
  void TC_Line(Canvas* c, const MyPoint& a, const MyPoint& b, TColor color) {                                          \
    if (c) tc_impl::Line(c, a.x, a.y, b.x, b.y, color);                                                                \
  }                                                                                                                    \
  void TC_Line(Canvas* c, int x1, int y1, int x2, int y2, TColor color) {                                              \
    if (c) tc_impl::Line(c, x1, y1, x2, y2, color);                                                                    \
  }                                                                                                                    \
  void TC_Line(Canvas* c, const MyRect& r, TColor color) { tc_impl::Edges(c, r, color); }                              \
  void TC_Rect(Canvas* c, const MyRect& r, TColor color) { tc_impl::Outline(c, r, color); }                            \
  void TC_LinePoly(Canvas* c, tagPOINT* points, int count, TColor color) {                                             \
    tc_impl::LinePoly(c, points, count, color);                                                                        \
  }                                                                                                                    \
  void TC_LineShape(Canvas* c, const MyPoint& a, const MyPoint& b, HFigureTypes figure, int size, int angle) {         \
    tc_impl::LineShape(c, a, b, figure, size, angle);                                                                  \
  }                                                                                                                    \
  void TC_Box(Canvas* c, const MyRect& r, TColor color, HBOX_Types type) { tc_impl::Box(c, r, color, type); }          \
  void TC_Border(Canvas* c, int x1, int y1, int x2, int y2, Controls::TAlign side, HBRD_Types type, TColor color) {    \
    tc_impl::Border(c, x1, y1, x2, y2, side, type, color);                                                             \
  }                                                                                                                    \
  void TC_Border(Canvas* c, const MyRect& r, Controls::TAlign side, HBRD_Types type, TColor color) {                   \
    tc_impl::Border(c, r.left, r.top, r.right, r.bottom, side, type, color);                                           \
  }                                                                                                                    \
  void TC_Border(Canvas* c, const MyRect& r, HBRD_Types type, const TC_Sides& sides, TColor color) {                   \
    for (Controls::TAlign s : {Controls::alTop, Controls::alBottom, Controls::alLeft, Controls::alRight})              \
      if (sides.Contains(s)) tc_impl::Border(c, r.left, r.top, r.right, r.bottom, s, type, color);                     \
  }                                                                                                                    \
  void TC_ColorBox(Canvas* c, const MyRect& r, TColor frame, TColor fill) { tc_impl::ColorBox(c, r, frame, fill); }    \
  void TC_ColorRect(Canvas* c, const MyRect& r, TColor color, int width) { tc_impl::ColorRect(c, r, color, width); }   \
  void TC_Ellipse(Canvas* c, const MyRect& r, TColor color) { tc_impl::Ellipse(c, r, color); }                         \
  void TC_FillEllipse(Canvas* c, const MyRect& r, TColor color) { tc_impl::FillEllipse(c, r, color); }                 \
  void TC_FillPoly(Canvas* c, tagPOINT* points, int count, TColor color) {                                             \
    tc_impl::FillPoly(c, points, count, color);                                                                        \
  }                                                                                                                    \
  void TC_Fill(Canvas* c, const MyRect& r, TColor color) { tc_impl::Fill(c, r, color); }                               \
  void TC_Fill(Canvas* c, int x1, int y1, int x2, int y2, TColor color) {                                              \
    tc_impl::Fill(c, MyRect{x1, y1, x2, y2}, color);                                                                   \
  }                                                                                                                    \
  void TC_RoundFill(Canvas* c, const MyRect& r, int radius, TColor color) { tc_impl::RoundFill(c, r, radius, color); } \
  void TC_RoundFill(Canvas* c, int x1, int y1, int x2, int y2, int radius, TColor color) {                             \
    tc_impl::RoundFill(c, MyRect{x1, y1, x2, y2}, radius, color);                                                      \
  }                                                                                                                    \
  void TC_FlatFill(Canvas* c, const MyRect& r, TColor color, int shade, bool vertical) {                               \
    tc_impl::FlatFill(c, r, color, shade, vertical);                                                                   \
  }

VELKIN_TC_DRAW_DEFINE(TCanvas)
VELKIN_TC_DRAW_DEFINE(HCustomCanvas)
