#include "velkin/draw/gdi_canvas.h"

#include <algorithm>
#include <cstdint>

#include "platform/ostrel/owned_handle.h"
#include "platform/vcl/graphics/bitmap.h"
#include "velkin/draw/tc_draw.h"
#include "velkin/draw/tc_text.h"
#include "velkin/gdi/gdi_blt.h"
#include "velkin/gdi/gdi_lines.h"

using Graphics::clDefault;
using Graphics::clNone;
using Graphics::TColor;

VCL_CLASS_IMPL(HCustomCanvas, System::TObject)

HCustomCanvas::HCustomCanvas() : clips_(true, 20, 20) {
  pen_ = new HGDIPen;
  brush_ = new HGDIBrush;
  font_ = new HGDIFont;
  savedPen_ = new HGDIPen;
  savedBrush_ = new HGDIBrush;
  savedFont_ = new HGDIFont;
}

HCustomCanvas::~HCustomCanvas() {
  EndThin();  // backings have done so already while their context lived
  delete savedPen_;
  delete savedBrush_;
  delete savedFont_;
  // Deleting a selected wrapper restores the context first.
  delete pen_;
  delete brush_;
  delete font_;
  // Newest first, so each region puts back the clip that was there before it.
  while (clips_.Count() > 0) clips_.DeleteNum(clips_.Count() - 1);
}

void HCustomCanvas::SimpleCopyDC(void* dc) {
  BitBlt(static_cast<HDC>(dc), 0, 0, GetWidth(), GetHeight(), static_cast<HDC>(GetHandle()), 0, 0, SRCCOPY);
}

void HCustomCanvas::SetPen(HCustomGDIPen* value) {
  if (value && value != pen_) pen_->Assign(value);
}
void HCustomCanvas::SetBrush(HCustomGDIBrush* value) {
  if (value && value != brush_) brush_->Assign(value);
}
void HCustomCanvas::SetFont(HCustomGDIFont* value) {
  if (value && value != font_) font_->Assign(value);
}
void HCustomCanvas::SavePen() {
  EndThin();  // copying re-makes the current pen's handle
  savedPen_->Assign(pen_);
}
void HCustomCanvas::RestorePen() { pen_->Assign(savedPen_); }
void HCustomCanvas::SaveBrush() { savedBrush_->Assign(brush_); }
void HCustomCanvas::RestoreBrush() { brush_->Assign(savedBrush_); }
void HCustomCanvas::SaveFont() { savedFont_->Assign(font_); }
void HCustomCanvas::RestoreFont() { font_->Assign(savedFont_); }

void HCustomCanvas::SelectObjects(void* dc) {
  // Lines keep the thin pen between them while the canvas's pen, which it
  // displaced, stays as it was; anything else gets the canvas's pen.
  if (thin_ && !(keepThin_ && dc == thin_->GetDC() && !pen_->GetModified() && !pen_->GetDirty() &&
                 pen_->GetHandle() == thinDisplaced_))
    EndThin();
  if (!dc) return;
  pen_->Select(dc);
  brush_->Select(dc);
  font_->Select(dc);
}

void HCustomCanvas::ReleaseSelections() {
  EndThin();
  while (clips_.Count() > 0) RestoreClip();
  font_->Restore();
  brush_->Restore();
  pen_->Restore();
}

MyRect HCustomCanvas::CurClip() {
  MyRect r{0, 0, GetWidth(), GetHeight()};
  if (HGDIRegion* newest = clips_.Item(clips_.Count() - 1)) {
    const MyRect& c = newest->GetRect();
    r.left = std::max(r.left, c.left);
    r.top = std::max(r.top, c.top);
    r.right = std::min(r.right, c.right);
    r.bottom = std::min(r.bottom, c.bottom);
  }
  return r;
}

void HCustomCanvas::AddClip(const MyRect& r) {
  MyRect n{std::min(r.left, r.right), std::min(r.top, r.bottom), std::max(r.left, r.right), std::max(r.top, r.bottom)};
  HDC dc = static_cast<HDC>(GetHandle());
  if (HGDIRegion* newest = clips_.Item(clips_.Count() - 1)) {
    // The stored rectangle is exclusive, n is inclusive.
    const MyRect& c = newest->GetRect();
    n.left = std::max(n.left, c.left);
    n.top = std::max(n.top, c.top);
    n.right = std::min(n.right, c.right - 1);
    n.bottom = std::min(n.bottom, c.bottom - 1);
  } else if (dc) {
    OwnedRegion probe(CreateRectRgn(0, 0, 0, 0));
    unclippedBase_ = GetClipRgn(dc, probe.get()) == 0;
  }
  auto* region = new HGDIRegion(n);
  clips_.Add(region);
  if (dc) region->Select(dc);
}

void HCustomCanvas::RestoreClip() {
  const int last = clips_.Count() - 1;
  if (last < 0) return;
  HDC dc = static_cast<HDC>(clips_.Item(last)->GetSelectedDC());
  // Destroying the region selects the clip it displaced.
  clips_.DeleteNum(last);
  // The region that displaced "no clip" can only hand back an empty one.
  if (last == 0 && unclippedBase_ && dc) SelectClipRgn(dc, nullptr);
}

void HCustomCanvas::MoveTo(int x, int y) {
  if (HDC dc = LineDC()) MoveToEx(dc, x, y, nullptr);
  x_ = x;
  y_ = y;
  step_ = 0;
  penDown_ = true;
}

bool HCustomCanvas::ThinPen() const { return pen_->GetWidth() <= 1 && pen_->GetStyle() == HPS_Solid; }

HDC HCustomCanvas::LineDC() {
  keepThin_ = true;
  HDC dc = static_cast<HDC>(GetHandle());
  keepThin_ = false;
  return dc;
}

void HCustomCanvas::BeginThin(HDC dc, TColor color) {
  const COLORREF rgb = static_cast<COLORREF>(Graphics::ColorToRGB(color)) & 0xFFFFFF;
  if (thin_ && thin_->GetDC() != dc) EndThin();
  if (!thin_) {
    thin_.emplace(dc);
    thin_->SetDCPenColor(rgb);
    // LineDC has just selected the canvas's pen there (when it could).
    thinDisplaced_ = pen_->GetSelected() && pen_->GetSelectedDC() == dc ? pen_->GetHandle() : nullptr;
    thin_->Select(static_cast<HPEN>(GetStockObject(DC_PEN)));
  } else if (rgb != thinColor_) {
    thin_->SetDCPenColor(rgb);
  }
  thinColor_ = rgb;
}

void HCustomCanvas::EndThin() {
  thin_.reset();  // the canvas's pen and the context's pen colour go back
  thinDisplaced_ = nullptr;
}

// Sets the pen for one line or outline: the context's own pen for a thin
// one, else the canvas's pen recoloured for the call (and put back after).
class HCustomCanvas::LinePen {
 public:
  LinePen(HCustomCanvas* canvas, HDC dc, TColor color) : canvas_(canvas) {
    HCustomGDIPen* pen = canvas->pen_;
    if (canvas->ThinPen()) {
      canvas->BeginThin(dc, color == clDefault ? pen->GetColor() : color);
      return;
    }
    canvas->EndThin();
    if (color != clDefault && color != pen->GetColor()) {
      oldColor_ = pen->GetColor();
      recolored_ = true;
      pen->SetColor(color);
      pen->Select(dc);
    }
  }
  ~LinePen() {
    if (recolored_) canvas_->pen_->SetColor(oldColor_);
  }
  LinePen(const LinePen&) = delete;
  LinePen& operator=(const LinePen&) = delete;

 private:
  HCustomCanvas* canvas_;
  TColor oldColor_ = Graphics::clBlack;
  bool recolored_ = false;
};

void HCustomCanvas::LineTo(int x, int y, TColor color) {
  if (HDC dc = LineDC()) {
    const bool dashed = pen_->GetPatternLength() > 1;
    if (color == clNone) {
      if (dashed) DashTo(nullptr, x, y);  // nothing drawn, but the pattern goes on
      MoveToEx(dc, x, y, nullptr);
    } else {
      LinePen use(this, dc, color);
      if (dashed) {
        DashTo(dc, x, y);
        MoveToEx(dc, x, y, nullptr);
      } else {
        ::LineTo(dc, x, y);  // leaves the context's position at (x, y)
      }
    }
  }
  x_ = x;
  y_ = y;
}

namespace {

// Where in a pattern of length entries the step counter stands.
int PatternIndex(int step, int length) {
  const int at = step % length;
  return at < 0 ? at + length : at;  // only after the counter wrapped round
}

// The finished dashes of a line, drawn a batch at a time: a two-point
// polyline draws what LineTo from its first point to its second does, and
// one PolyPolyline call costs far less than a MoveToEx and a LineTo a dash.
// Not so for a wide pen in a mix mode other than copying (GDI may paint the
// batch's outline once, where dashes overlap): then each dash is a LineTo.
class DashBatch {
 public:
  DashBatch(HDC dc, bool oneByOne) : dc_(dc), oneByOne_(oneByOne) {
    std::fill(std::begin(counts_), std::end(counts_), 2);
  }
  ~DashBatch() { Flush(); }
  DashBatch(const DashBatch&) = delete;
  DashBatch& operator=(const DashBatch&) = delete;

  void MoveTo(const MyPoint& p) {
    from_ = POINT{p.x, p.y};
    placed_ = true;
  }
  // A dash from the pen position to p, p excluded; the first one starts
  // where the context's position stands.
  void LineTo(const MyPoint& p) {
    if (oneByOne_) {
      if (placed_) MoveToEx(dc_, from_.x, from_.y, nullptr);
      ::LineTo(dc_, p.x, p.y);
    } else {
      if (!placed_) GetCurrentPositionEx(dc_, &from_);
      if (count_ == kBatch) Flush();
      points_[2 * count_] = from_;
      points_[2 * count_ + 1] = POINT{p.x, p.y};
      ++count_;
    }
    MoveTo(p);
  }

 private:
  static constexpr int kBatch = 64;
  void Flush() {
    if (count_) PolyPolyline(dc_, points_, counts_, static_cast<DWORD>(count_));
    count_ = 0;
  }

  HDC dc_;
  bool oneByOne_;
  POINT from_{};
  bool placed_ = false;
  int count_ = 0;
  POINT points_[2 * kBatch];
  DWORD counts_[kBatch];
};

}  // namespace

// The pattern is stepped pixel by pixel over the line's pixels inside the
// clip, as idLineProc would be, but only the pixels where a dash starts or
// ends are worked out, and the dashes are drawn in batches.
void HCustomCanvas::DashTo(HDC dc, int x, int y) {
  const MyRect clip = CurClip();
  const HLineSteps steps(x_, y_, x, y, clip.left, clip.top, clip.right, clip.bottom);
  if (steps.GetFirst() >= steps.GetEnd()) return;  // no pixel inside: the pattern stays
  const int length = pen_->GetPatternLength();
  const bool* bits = pen_->GetPatternBits();
  std::optional<DashBatch> dashes;
  if (dc) dashes.emplace(dc, !ThinPen() && GetROP2(dc) != R2_COPYPEN);
  bool down = penDown_;
  int at = PatternIndex(step_, length);
  for (int64_t i = steps.GetFirst(); i < steps.GetEnd(); ++i) {
    const bool on = bits && bits[at];
    if (on != down) {
      if (dashes) {
        const MyPoint p = steps.At(i);
        if (down) dashes->LineTo(p);
        dashes->MoveTo(p);
      }
      down = on;
    }
    if (++at == length) at = 0;
  }
  penDown_ = down;
  // The counter wraps round as a 32-bit one, without overflowing.
  step_ = static_cast<int>(static_cast<uint32_t>(step_) + static_cast<uint32_t>(steps.GetEnd() - steps.GetFirst()));
  if (dashes && down) dashes->LineTo(MyPoint{x, y});  // the last dash runs to the end
}

void HCustomCanvas::idLineProc(int x, int y) {
  const int length = pen_->GetPatternLength();
  const bool* bits = pen_->GetPatternBits();
  const bool on = length > 0 && bits && bits[PatternIndex(step_, length)];
  if (on != penDown_) {
    x_ = x;
    y_ = y;
    penDown_ = on;
  }
  step_ = static_cast<int>(static_cast<uint32_t>(step_) + 1);
}

void HCustomCanvas::Ellipse(const MyRect& r, TColor color) {
  if (pen_->GetWidth() == 0 || pen_->GetStyle() == HPS_None || color == clNone) return;
  HDC dc = LineDC();
  if (!dc) return;
  LinePen use(this, dc, color);
  DCChanger outline(dc);
  outline.Select(static_cast<HBRUSH>(GetStockObject(NULL_BRUSH)));
  ::Ellipse(dc, r.left, r.top, r.right + 1, r.bottom + 1);
}

void HCustomCanvas::Line(const MyPoint& a, const MyPoint& b, TColor color) {
  MoveTo(a);
  LineTo(b, color);
}
void HCustomCanvas::Line(int x1, int y1, int x2, int y2, TColor color) {
  MoveTo(x1, y1);
  LineTo(x2, y2, color);
}
void HCustomCanvas::Line(tagPOINT* points, int count, TColor color) { TC_LinePoly(this, points, count, color); }
void HCustomCanvas::Line(const MyRect& r, TColor color) { TC_Rect(this, r, color); }
void HCustomCanvas::Line(const MyPoint& a, const MyPoint& b, HFigureTypes figure, int size) {
  TC_LineShape(this, a, b, figure, size, 45);
}
void HCustomCanvas::FillEllipse(const MyRect& r, TColor color) { TC_FillEllipse(this, r, color); }
void HCustomCanvas::Fill(tagPOINT* points, int count, TColor color) { TC_FillPoly(this, points, count, color); }
void HCustomCanvas::Fill(const MyRect& r, TColor color) { TC_Fill(this, r, color); }
void HCustomCanvas::TextOut(const MyRect& r, const System::AnsiString& text, TColor color, unsigned flags) {
  TC_TextOut(this, r, text, color, flags);
}
void HCustomCanvas::TextOut(MyRect& r, const System::AnsiString& text, unsigned flags) {
  TC_TextOut(this, r, text, flags);
}
void HCustomCanvas::TextOut(int x, int y, const System::AnsiString& text) { TC_TextOut(this, x, y, text); }

void HCustomCanvas::Draw(const MyRect& r, Graphics::TBitmap* bitmap, HBT_Types mode) {
  GDI_Blt(GetHandle(), bitmap, r, mode, Graphics::clBlack);
}

void HCustomCanvas::Draw(const MyPoint& p, Graphics::TBitmap* bitmap) {
  if (!bitmap || bitmap->GetEmpty()) return;
  BitBlt(static_cast<HDC>(GetHandle()), p.x, p.y, bitmap->GetWidth(), bitmap->GetHeight(),
         bitmap->GetCanvas()->GetHandle(), 0, 0, SRCCOPY);
}

void HCustomCanvas::TransDraw(const MyPoint& p, Graphics::TBitmap* bitmap, TColor transparent) {
  if (!bitmap) return;
  GDI_Blt(GetHandle(), bitmap, MyRect{p.x, p.y, p.x + bitmap->GetWidth(), p.y + bitmap->GetHeight()},
          HBT_Transparent | HBT_Stretch, transparent);
}

void HCustomCanvas::ColorBox(const MyRect& r, TColor frame, TColor fill) { TC_ColorBox(this, r, frame, fill); }
void HCustomCanvas::Box(const MyRect& r, TColor color, HBOX_Types type) { TC_Box(this, r, color, type); }
void HCustomCanvas::Border(const MyRect& r, HBRD_Types type, const TC_Sides& sides, TColor color) {
  TC_Border(this, r, type, sides, color);
}
