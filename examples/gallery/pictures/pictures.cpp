#include "examples/gallery/pictures/pictures.h"

#include <objbase.h>
#include <windows.h>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <memory>
#include <vector>

#include "examples/gallery/pictures/picture_sheet.h"
#include "platform/ostrel/dc_changer.h"
#include "velkin/draw/gdi_canvas_bitmap.h"
#include "velkin/draw/h_abrush.h"
#include "velkin/draw/h_extdraw.h"
#include "velkin/draw/tc_draw.h"
#include "velkin/draw/tc_gsr.h"
#include "velkin/draw/tc_text.h"

using namespace Graphics;
using Controls::TAlign;

namespace {

using Sheet = std::unique_ptr<PictureSheet>;

constexpr TColor kPanel = TColor(0xD8D8D8);
constexpr TColor kInk = TColor(0x800000);  // navy
constexpr TColor kWarm = TColor(0x2060C0);

// ---- borders ----

Sheet Borders() {
  const int cw = 104, ch = 76;
  auto s = std::make_unique<PictureSheet>(8 * 2 + cw * 8, 34 + ch * 6 + 8, "TC_Border: every style on every side");
  TCanvas* c = s->GetCanvas();
  static const char* types[] = {"",         "1 lowered",      "2 raised",      "3 double",
                                "4 single", "5 colour/white", "6 white/colour"};
  struct Sides {
    const char* name;
    TC_Sides set;
  } sides[] = {{"top", {Controls::alTop}},
               {"bottom", {Controls::alBottom}},
               {"left", {Controls::alLeft}},
               {"right", {Controls::alRight}},
               {"all four", {Controls::alTop, Controls::alBottom, Controls::alLeft, Controls::alRight}},
               {"top+left", {Controls::alTop, Controls::alLeft}},
               {"bottom+right", {Controls::alBottom, Controls::alRight}}};
  for (int t = 1; t <= 6; ++t) {
    const MyRect head = s->Cell(0, t - 1, cw, ch);
    s->Note(MyRect{head.left, head.top + PictureSheet::kLabelHeight, head.right, head.bottom}, types[t],
            DT_VCENTER | DT_SINGLELINE);
    for (int i = 0; i < 7; ++i) {
      const MyRect cell = s->Cell(i + 1, t - 1, cw, ch);
      s->Label(cell, sides[i].name);
      const MyRect body = PictureSheet::Body(cell);
      const MyRect panel{body.left + 4, body.top + 2, body.right - 4, body.bottom - 4};
      TC_Fill(c, panel, kPanel);
      const MyRect r{panel.left + 12, panel.top + 10, panel.right - 12, panel.bottom - 10};
      TC_Border(c, r, HBRD_Types(t), sides[i].set, kInk);
    }
  }
  return s;
}

// ---- boxes ----

Sheet Boxes() {
  const int cw = 128, ch = 92;
  auto s = std::make_unique<PictureSheet>(16 + cw * 7, 34 + ch * 2 + 8, "TC_Box: every style (fill colour light blue)");
  TCanvas* c = s->GetCanvas();
  static const char* names[] = {"0 raised",   "1 lowered",  "2 etched",         "3 black",        "4 thick",
                                "5 thicker",  "6 button",   "7 pushed",         "8 fill",         "9 nothing",
                                "10 outline", "11 outline", "12 group lowered", "13 group raised"};
  for (int t = 0; t < 14; ++t) {
    const MyRect cell = s->Cell(t % 7, t / 7, cw, ch);
    s->Label(cell, names[t]);
    const MyRect body = PictureSheet::Body(cell);
    const MyRect panel{body.left + 4, body.top + 2, body.right - 4, body.bottom - 4};
    TC_Fill(c, panel, kPanel);
    TC_Box(c, MyRect{panel.left + 16, panel.top + 12, panel.right - 16, panel.bottom - 12}, TColor(0xF0D8A8),
           HBOX_Types(t));
  }
  return s;
}

// ---- flat fills ----

Sheet FlatFills() {
  const int cw = 112, ch = 112;
  auto s = std::make_unique<PictureSheet>(16 + cw * 7, 34 + ch * 2 + 8,
                                          "TC_FlatFill: shades 0-6, across the width and across the height");
  TCanvas* c = s->GetCanvas();
  char label[32];
  for (int v = 0; v < 2; ++v)
    for (int shade = 0; shade <= 6; ++shade) {
      const MyRect cell = s->Cell(shade, v, cw, ch);
      std::snprintf(label, sizeof label, "shade %d %s", shade, v ? "vertical" : "horizontal");
      s->Label(cell, label);
      const MyRect body = PictureSheet::Body(cell);
      TC_FlatFill(c, MyRect{body.left + 6, body.top + 2, body.right - 6, body.bottom - 6}, kWarm, shade, v != 0);
    }
  return s;
}

// ---- patterned pens (on an HBitmapCanvas, copied into the sheet) ----

Sheet PatternedPens() {
  const int cw = 560, ch = 52;
  static const char* patterns[] = {"1", "4,2", "2,2", "8,3,2,3", "1,3", "12,4,2,4,2,4"};
  const int n = static_cast<int>(std::size(patterns));
  auto s = std::make_unique<PictureSheet>(16 + cw + 120, 34 + ch * (n + 1) + 8,
                                          "HBitmapCanvas::LineTo with dash patterns (pattern goes on across LineTo "
                                          "calls)");
  char label[64];
  for (int i = 0; i < n; ++i) {
    const MyRect cell = s->Cell(0, i, cw, ch);
    const MyRect body = PictureSheet::Body(cell);
    std::snprintf(label, sizeof label, "pattern \"%s\"", patterns[i]);
    s->Label(MyRect{cell.left, cell.top, cell.left + 200, cell.bottom}, label);
    HBitmapCanvas bc;
    bc.Resize(body.Width(), body.Height());
    bc.Fill(MyRect{0, 0, body.Width(), body.Height()}, clWhite);
    HCustomGDIPen* pen = bc.GetPen();
    pen->SetPattern(patterns[i]);
    pen->SetColor(kInk);
    pen->SetWidth(1);
    bc.Line(4, 10, 200, 10);                  // horizontal
    bc.Line(210, 2, 300, body.Height() - 3);  // slanted
    bc.MoveTo(320, body.Height() - 4);        // zigzag: one pattern across four LineTo calls
    for (int k = 1; k <= 4; ++k) bc.LineTo(320 + k * 50, k % 2 ? 2 : body.Height() - 4);
    pen->SetColor(kWarm);
    pen->SetWidth(3);
    bc.Line(4, 24, 200, 24, kWarm);
    BitBlt(s->GetDC(), body.left, body.top, body.Width(), body.Height(), static_cast<HDC>(bc.GetHandle()), 0, 0,
           SRCCOPY);
  }
  const MyRect legend = s->Cell(0, n, cw + 100, ch);
  s->Note(legend, "each row: a 1-pixel line, a slanted line, a zigzag of four LineTo calls, a 3-pixel line (orange)",
          DT_VCENTER | DT_SINGLELINE);
  return s;
}

// ---- line figures ----

Sheet Figures() {
  const int cw = 110, ch = 100;
  auto s = std::make_unique<PictureSheet>(16 + cw * 8, 34 + ch * 2 + 8,
                                          "TC_LineShape: figures at the line end (top: TCanvas, angle 30; bottom: "
                                          "HCustomCanvas::Line, angle 45)");
  static const char* names[] = {"none",          "arrow",  "filled arrow",  "circle",
                                "filled circle", "square", "filled square", "bar"};
  TCanvas* c = s->GetCanvas();
  c->GetPen()->SetColor(kInk);
  for (int f = 0; f < 8; ++f) {
    const MyRect cell = s->Cell(f, 0, cw, ch);
    s->Label(cell, names[f]);
    const MyRect b = PictureSheet::Body(cell);
    TC_LineShape(c, MyPoint{b.left + 14, b.bottom - 14}, MyPoint{b.right - 24, b.top + 16}, HFigureTypes(f), 14, 30);
  }
  for (int f = 0; f < 8; ++f) {
    const MyRect cell = s->Cell(f, 1, cw, ch);
    s->Label(cell, names[f]);
    const MyRect b = PictureSheet::Body(cell);
    HBitmapCanvas bc;
    bc.Resize(b.Width(), b.Height());
    bc.Fill(MyRect{0, 0, b.Width(), b.Height()}, clWhite);
    bc.GetPen()->SetColor(kWarm);
    bc.Line(MyPoint{12, b.Height() / 2}, MyPoint{b.Width() - 22, b.Height() / 2}, HFigureTypes(f), 16);
    BitBlt(s->GetDC(), b.left, b.top, b.Width(), b.Height(), static_cast<HDC>(bc.GetHandle()), 0, 0, SRCCOPY);
  }
  return s;
}

// ---- ellipses and other shapes ----

Sheet Shapes() {
  const int cw = 120, ch = 100;
  auto s =
      std::make_unique<PictureSheet>(16 + cw * 6, 34 + ch * 2 + 8, "Ellipses, polygons, rounded and framed rectangles");
  TCanvas* c = s->GetCanvas();
  auto body = [&](int col, int row, const char* label) {
    const MyRect cell = s->Cell(col, row, cw, ch);
    s->Label(cell, label);
    const MyRect b = PictureSheet::Body(cell);
    return MyRect{b.left + 14, b.top + 6, b.right - 14, b.bottom - 10};
  };
  TC_Ellipse(c, body(0, 0, "TC_Ellipse"), kInk);
  TC_FillEllipse(c, body(1, 0, "TC_FillEllipse"), kWarm);
  {
    const MyRect r = body(2, 0, "Ellipse, 3-pixel pen");
    HBitmapCanvas bc;
    bc.Resize(r.Width() + 1, r.Height() + 1);
    bc.Fill(MyRect{0, 0, r.Width() + 1, r.Height() + 1}, clWhite);
    bc.GetPen()->SetWidth(3);
    bc.Ellipse(MyRect{1, 1, r.Width() - 1, r.Height() - 1}, TColor(0x008000));
    BitBlt(s->GetDC(), r.left, r.top, r.Width() + 1, r.Height() + 1, static_cast<HDC>(bc.GetHandle()), 0, 0, SRCCOPY);
  }
  TC_RoundFill(c, body(3, 0, "TC_RoundFill r=10"), 10, TColor(0x80A0F0));
  TC_ColorBox(c, body(4, 0, "TC_ColorBox"), kInk, TColor(0xC0F0C0));
  TC_ColorRect(c, body(5, 0, "TC_ColorRect w=4"), kWarm, 4);
  {
    const MyRect r = body(0, 1, "TC_FillPoly");
    const int cx = (r.left + r.right) / 2, cy = (r.top + r.bottom) / 2;
    tagPOINT star[5];
    for (int i = 0; i < 5; ++i) {
      const double a = -1.5707963 + i * 2.5132741;
      star[i] = {cx + static_cast<int>(36 * std::cos(a)), cy + static_cast<int>(36 * std::sin(a))};
    }
    TC_FillPoly(c, star, 5, TColor(0x00A0E0));
  }
  {
    const MyRect r = body(1, 1, "TC_LinePoly");
    tagPOINT zig[6];
    for (int i = 0; i < 6; ++i) zig[i] = {r.left + i * (r.Width() - 1) / 5, i % 2 ? r.top : r.bottom - 1};
    TC_LinePoly(c, zig, 6, kInk);
  }
  TC_Rect(c, body(2, 1, "TC_Rect"), kInk);
  TC_Line(c, body(3, 1, "TC_Line (rect)"), kWarm);
  {
    const MyRect r = body(4, 1, "TC_Fill + TC_Line");
    TC_Fill(c, r, TColor(0xE0E0FF));
    TC_Line(c, r.left, r.top, r.right, r.bottom, kInk);
    TC_Line(c, r.left, r.bottom - 1, r.right, r.top - 1, kInk);
  }
  {
    const MyRect r = body(5, 1, "TC_TextOut / V");
    TC_Fill(c, r, kPanel);
    TC_TextOut(c, MyRect{r.left + 20, r.top, r.right, r.bottom}, "Text", kInk, DT_CENTER | DT_VCENTER);
    TC_TextOutV(c, MyRect{r.left, r.top, r.left + 20, r.bottom}, "Upward", kWarm, DT_CENTER | DT_VCENTER);
  }
  return s;
}

// ---- caption bars ----

Sheet Captions() {
  auto s = std::make_unique<PictureSheet>(720, 340, "TC_WinCaptionDraw: caption bars in their states and orientations");
  TCanvas* c = s->GetCanvas();
  struct Bar {
    const char* label;
    HCaptionTypes parts;
    bool active;
  } bars[] = {
      {"fill, active", {HCT_Fill, HCT_Minimize, HCT_Maximize, HCT_Close}, true},
      {"gradient, help + restore", {HCT_Gradient, HCT_Help, HCT_Restore, HCT_Close}, true},
      {"buttons pushed", {HCT_Fill, HCT_Pushed, HCT_Minimize, HCT_Close}, true},
      {"inactive: buttons and text", {HCT_Fill, HCT_Inactive, HCT_Minimize, HCT_Maximize, HCT_Close}, false},
      {"flat buttons", {HCT_Fill, HCT_Flat, HCT_Minimize, HCT_Close}, true},
      {"edge, centred text", {HCT_Fill, HCT_Edge, HCT_CenterText, HCT_Close}, true},
      {"no fill, close only", {HCT_Close}, true},
  };
  int y = PictureSheet::kTitleHeight + 8;
  for (const Bar& b : bars) {
    s->Note(MyRect{8, y, 190, y + 22}, b.label, DT_VCENTER | DT_SINGLELINE | DT_RIGHT);
    c->GetBrush()->SetColor(b.active ? clActiveCaption : clInactiveCaption);
    c->GetFont()->SetColor(b.active ? clCaptionText : clInactiveCaptionText);
    TC_WinCaptionDraw(c, MyRect{200, y, 520, y + 22}, b.parts, "Velkin caption", Controls::alTop, b.active);
    y += 32;
  }
  // Vertical bars, text reading upwards.
  const TAlign aligns[] = {Controls::alLeft, Controls::alRight, Controls::alLeft, Controls::alLeft};
  const HCaptionTypes vparts[] = {{HCT_Fill, HCT_Minimize, HCT_Close},
                                  {HCT_Gradient, HCT_Close},
                                  {HCT_Fill, HCT_Pushed, HCT_Close},
                                  {HCT_Fill, HCT_Edge, HCT_CenterText, HCT_Close}};
  const char* vlabels[] = {"left", "right, gradient", "pushed", "edge"};
  for (int i = 0; i < 4; ++i) {
    const int x = 540 + i * 44;
    c->GetBrush()->SetColor(clActiveCaption);
    c->GetFont()->SetColor(clCaptionText);
    TC_WinCaptionDraw(c, MyRect{x, PictureSheet::kTitleHeight + 8, x + 22, PictureSheet::kTitleHeight + 260}, vparts[i],
                      "Vertical bar", aligns[i], true);
    TC_TextOutV(c, MyRect{x + 22, PictureSheet::kTitleHeight + 8, x + 40, PictureSheet::kTitleHeight + 260}, vlabels[i],
                TColor(0x404040), DT_VCENTER);
  }
  c->GetFont()->SetColor(clWindowText);
  // Hit-test map of one bar: each part in its own colour.
  const MyRect bar{200, y + 20, 520, y + 42};
  const HCaptionTypes parts{HCT_Caption, HCT_Help, HCT_Minimize, HCT_Maximize, HCT_Close};
  s->Note(MyRect{8, bar.top, 190, bar.bottom}, "TC_WinCaptionHitTest map", DT_VCENTER | DT_SINGLELINE | DT_RIGHT);
  for (int py = bar.top - 3; py < bar.bottom + 3; ++py)
    for (int px = bar.left - 3; px < bar.right + 3; ++px) {
      static const TColor colors[14] = {clWhite,          clWhite,          clWhite,          clWhite,
                                        clWhite,          clWhite,          clWhite,          TColor(0xA0D0F0),
                                        clWhite,          TColor(0x40C040), TColor(0x40A0F0), TColor(0xF0A040),
                                        TColor(0x4040E0), TColor(0xC040C0)};
      const int part = TC_WinCaptionHitTest(bar, parts, Controls::alTop, MyPoint{px, py});
      SetPixel(s->GetDC(), px, py, ColorToRGB(colors[part]));
    }
  s->Note(MyRect{200, bar.bottom + 4, 700, bar.bottom + 20},
          "caption (beige), help (violet), minimise (green), maximise (orange), close (red); margin counts as caption",
          DT_SINGLELINE);
  return s;
}

// ---- decorations ----

Sheet Decorations() {
  auto s = std::make_unique<PictureSheet>(660, 330, "TC_DrawNSPattern, TC_DrawArrow, TC_DrawNSPanel");
  TCanvas* c = s->GetCanvas();
  const int top = PictureSheet::kTitleHeight + 8;
  s->Label(MyRect{8, top, 208, top + 16}, "grip patterns");
  TC_Fill(c, MyRect{8, top + 18, 208, top + 130}, clSilver);
  TC_DrawNSPattern(c, MyRect{16, top + 24, 100, top + 40}, clBtnShadow);
  TC_DrawNSPattern(c, MyRect{16, top + 48, 40, top + 124}, clBtnShadow);
  TC_DrawNSPattern(c, MyRect{60, top + 48, 200, top + 124}, kInk);

  s->Label(MyRect{220, top, 420, top + 16}, "arrows: top, bottom, left, right");
  const TAlign dirs[] = {Controls::alTop, Controls::alBottom, Controls::alLeft, Controls::alRight};
  const int sizes[] = {3, 5, 8};
  for (int k = 0; k < 3; ++k)
    for (int d = 0; d < 4; ++d)
      TC_DrawArrow(c, 226 + d * 48, top + 24 + k * 36, sizes[k], k == 1 ? kWarm : clBlack, dirs[d]);

  s->Label(MyRect{8, top + 140, 420, top + 156}, "panels: top, bottom (raised / pushed), none");
  int y = top + 160;
  for (TAlign a : {Controls::alTop, Controls::alBottom}) {
    TC_DrawNSPanel(c, MyRect{16, y, 216, y + 12}, clSilver, a, false);
    TC_DrawNSPanel(c, MyRect{230, y, 430, y + 12}, clSilver, a, true);
    y += 22;
  }
  TC_DrawNSPanel(c, MyRect{16, y, 216, y + 10}, clSilver, Controls::alNone, false);
  TC_DrawNSPanel(c, MyRect{230, y, 430, y + 16}, TColor(0xF0D8A8), Controls::alBottom, false);
  s->Label(MyRect{440, top, 650, top + 16}, "panels: left, right, none");
  int x = 460;
  for (TAlign a : {Controls::alLeft, Controls::alRight}) {
    TC_DrawNSPanel(c, MyRect{x, top + 24, x + 12, top + 260}, clSilver, a, false);
    TC_DrawNSPanel(c, MyRect{x + 24, top + 24, x + 36, top + 260}, clSilver, a, true);
    x += 60;
  }
  TC_DrawNSPanel(c, MyRect{x, top + 24, x + 10, top + 260}, clSilver, Controls::alNone, false);
  return s;
}

// ---- GetScaledRect ----

Sheet ScaledRects() {
  const int cw = 210, ch = 150;
  auto s = std::make_unique<PictureSheet>(16 + cw * 4, 34 + ch * 3 + 8,
                                          "GetScaledRect: grey = area 140x90, blue = where the picture goes");
  TCanvas* c = s->GetCanvas();
  struct Case {
    const char* label;
    int w, h;
    unsigned long flags;
  } cases[] = {
      {"fit width, 80x50", 80, 50, gsrFitWidth},
      {"fit height, 80x50", 80, 50, gsrFitHeight},
      {"fit, wide 200x60, v-centre", 200, 60, gsrFit | gsrVCenter},
      {"fit, tall 40x120, h-centre", 40, 120, gsrFit | gsrHCenter},
      {"own size 60x40", 60, 40, gsrOwnSize},
      {"own size, centred", 60, 40, gsrOwnSize | gsrHCenter | gsrVCenter},
      {"own size, right+bottom", 60, 40, gsrOwnSize | gsrRight | gsrBottom},
      {"stretch", 60, 40, gsrStretch},
      {"wide 180x40, centre (none)", 180, 40, gsrOwnSize | gsrHCenter | gsrVCenter},
      {"wide 180x40, right", 180, 40, gsrOwnSize | gsrRight},
      {"wide, right, clamp left", 180, 40, gsrOwnSize | gsrRight | gsrClampLeft},
      {"tall 50x120, bottom, clamp", 50, 120, gsrOwnSize | gsrBottom | gsrClampTop},
  };
  HDC dc = s->GetDC();
  for (int i = 0; i < 12; ++i) {
    const MyRect cell = s->Cell(i % 4, i / 4, cw, ch);
    s->Label(cell, cases[i].label);
    const MyRect body = PictureSheet::Body(cell);
    const MyRect area{body.left + 35, body.top + 16, body.left + 175, body.top + 106};
    const MyRect r = GetScaledRect(area, cases[i].w, cases[i].h, cases[i].flags);
    // Drawn cut to the cell, so pictures that leave the area show it.
    DCChanger cut(dc);
    cut.IntersectClip(RECT{body.left + 2, body.top + 2, body.right - 2, body.bottom - 2});
    TC_Fill(c, area, kPanel);
    TC_Fill(c, r, TColor(0xF0C890));
    TC_Rect(c, r, TColor(0xA04000));
    TC_Line(c, r.left, r.top, r.right, r.bottom, TColor(0xA04000));
    TC_Line(c, r.left, r.bottom - 1, r.right, r.top - 1, TColor(0xA04000));
    TC_Rect(c, area, TColor(0x606060));
  }
  return s;
}

// ---- animated brush ----

Sheet AnimatedBrush() {
  const int cw = 150, ch = 120;
  auto s = std::make_unique<PictureSheet>(16 + cw * 4, 34 + ch * 3 + 8,
                                          "HAniBrush: an inverted frame through stages 0-3 (pattern moves 2 rows a "
                                          "stage)");
  TCanvas* c = s->GetCanvas();
  // 8x8 diagonal stripes, 4 stages: 14 rows so every stage has a full pattern.
  std::vector<TColor> table(8 * 14);
  for (int y = 0; y < 14; ++y)
    for (int x = 0; x < 8; ++x) table[y * 8 + x] = ((x + y) % 8) < 4 ? clWhite : clBlack;
  std::vector<std::unique_ptr<HAniBrush>> keep;  // frames stay drawn; the brushes go at the end
  for (int row = 0; row < 2; ++row)
    for (int stage = 0; stage < 4; ++stage) {
      const MyRect cell = s->Cell(stage, row, cw, ch);
      char label[48];
      std::snprintf(label, sizeof label, "%s, stage %d", row ? "two-tone" : "one tone", stage);
      s->Label(cell, label);
      const MyRect b = PictureSheet::Body(cell);
      const MyRect panel{b.left + 6, b.top + 4, b.right - 6, b.bottom - 6};
      TC_FlatFill(c, panel, TColor(0xD8E8F8), 2, true);
      TC_TextOut(c, panel, "content", kInk, DT_CENTER | DT_VCENTER);
      auto ab = std::make_unique<HAniBrush>(row == 1);
      ab->Assign(table.data(), 8, 8, 4);
      ab->StartDrawRect(s->GetDC(), MyRect{panel.left + 12, panel.top + 10, panel.right - 12, panel.bottom - 10}, 4);
      ab->SetStage(stage);
      keep.push_back(std::move(ab));
    }
  // Drawing the frame again restores the picture.
  const MyRect cell = s->Cell(0, 2, cw * 4, ch);
  s->Label(cell, "left: frame shown and moved twice; right: the same after EndDrawRect (every pixel restored)");
  for (int k = 0; k < 2; ++k) {
    const MyRect p{cell.left + 6 + k * 300, cell.top + 20, cell.left + 290 + k * 300, cell.bottom - 6};
    TC_FlatFill(c, p, TColor(0xC0E0C0), 3, false);
    TC_TextOut(c, p, "restored?", kInk, DT_CENTER | DT_VCENTER);
    HAniBrush ab(true);
    ab.Assign(table.data(), 8, 8, 4);
    ab.StartDrawRect(s->GetDC(), MyRect{p.left + 10, p.top + 10, p.left + 150, p.bottom - 10}, 3);
    ab.DrawRect(MyRect{p.left + 60, p.top + 20, p.right - 20, p.bottom - 20});
    ab.SetStage(1);
    ab.DrawRect(MyRect{p.left + 30, p.top + 6, p.right - 60, p.bottom - 6});
    if (k == 1) ab.EndDrawRect();
  }
  return s;
}

// ---- AntiAlias ----

Sheet AntiAliased() {
  const int w = 120, h = 80, zoom = 3;
  auto s = std::make_unique<PictureSheet>(16 + 2 * (w * zoom + 16), 34 + 20 + h * zoom + 16,
                                          "HBitmapCanvas copied out plain and with AntiAlias (magnified 3x)");
  HBitmapCanvas bc;
  bc.Resize(w, h);
  bc.Fill(MyRect{0, 0, w, h}, clWhite);
  bc.GetPen()->SetWidth(1);
  bc.Ellipse(MyRect{6, 6, 70, 70}, clBlack);
  bc.Line(80, 5, 115, 75, kInk);
  bc.Line(75, 70, 118, 40, kWarm);
  bc.FillEllipse(MyRect{30, 30, 50, 50}, TColor(0x0000C0));
  bc.TextOut(MyRect{72, 4, 120, 30}, "Aa", clBlack, DT_LEFT);
  // Plain and smoothed copies into two scratch DIBs, then magnified.
  for (int k = 0; k < 2; ++k) {
    PictureSheet out(w, h, "");
    bc.SetAntiAlias(k == 1);
    bc.CopyTo(out.GetDC());
    const int x = 8 + k * (w * zoom + 16), y = PictureSheet::kTitleHeight + 24;
    s->Label(MyRect{x, y - 20, x + w * zoom, y - 2}, k ? "after AntiAlias" : "before");
    GdiFlush();
    StretchBlt(s->GetDC(), x, y, w * zoom, h * zoom, out.GetDC(), 0, 0, w, h, SRCCOPY);
  }
  return s;
}

struct Picture {
  const char* file;
  Sheet (*make)();
};

const Picture kPictures[] = {
    {"borders.png", Borders},          {"boxes.png", Boxes},
    {"flat-fills.png", FlatFills},     {"pens.png", PatternedPens},
    {"figures.png", Figures},          {"shapes.png", Shapes},
    {"captions.png", Captions},        {"decorations.png", Decorations},
    {"scaled-rects.png", ScaledRects}, {"animated-brush.png", AnimatedBrush},
    {"antialias.png", AntiAliased},
};

}  // namespace

int RenderPictures(const char* folderName) {
  const std::string folder = folderName ? folderName : "pictures";
  using Clock = std::chrono::steady_clock;
  const auto start = Clock::now();
  CreateDirectoryA(folder.c_str(), nullptr);
  const bool comStarted = SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
  bool ok = true;
  // The overview: every picture at half size, three to a row.
  const int thumbW = 470, thumbH = 260, perRow = 3;
  const int count = static_cast<int>(std::size(kPictures));
  PictureSheet overview(16 + perRow * (thumbW + 8), 34 + ((count + perRow - 1) / perRow) * (thumbH + 8),
                        "Velkin drawing gallery");
  SetStretchBltMode(overview.GetDC(), HALFTONE);
  SetBrushOrgEx(overview.GetDC(), 0, 0, nullptr);
  for (int i = 0; i < count; ++i) {
    const auto t0 = Clock::now();
    Sheet sheet = kPictures[i].make();
    const std::string path = folder + "\\" + kPictures[i].file;
    const bool saved = sheet->SavePng(path);
    if (!saved) std::fprintf(stderr, "gallery: cannot write %s\n", path.c_str());
    ok = ok && saved;
    // Scale to fit the thumbnail, keeping the aspect.
    const MyRect slot = overview.Cell(i % perRow, i / perRow, thumbW + 8, thumbH + 8);
    const MyRect t = GetScaledRect(MyRect{slot.left, slot.top, slot.left + thumbW, slot.top + thumbH},
                                   sheet->GetWidth(), sheet->GetHeight(), gsrFit | gsrHCenter);
    StretchBlt(overview.GetDC(), t.left, t.top, t.Width(), t.Height(), sheet->GetDC(), 0, 0, sheet->GetWidth(),
               sheet->GetHeight(), SRCCOPY);
    const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - t0).count();
    std::printf("   [%2d/%d] %-20s %4dx%-4d %s (%lld ms)\n", i + 1, count, kPictures[i].file, sheet->GetWidth(),
                sheet->GetHeight(), saved ? "written" : "FAILED", static_cast<long long>(ms));
    std::fflush(stdout);
  }
  const std::string overviewPath = folder + "\\overview.png";
  const bool overviewSaved = overview.SavePng(overviewPath);
  if (!overviewSaved) std::fprintf(stderr, "gallery: cannot write %s\n", overviewPath.c_str());
  ok = ok && overviewSaved;
  std::printf("   overview.png %s\n", overviewSaved ? "written" : "FAILED");
  if (comStarted) CoUninitialize();
  if (!ok) return 0;
  const auto total = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start).count();
  std::printf("   %d pictures in %lld ms; output folder: %s\n", count + 1, static_cast<long long>(total),
              folder.c_str());
  return 1;
}
