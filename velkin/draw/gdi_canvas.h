#pragma once
/// \file
/// The drawing surface the drawing routines paint on.
#include <windows.h>

#include <optional>

#include "platform/ostrel/dc_changer.h"
#include "platform/ostrel/myarray.h"
#include "platform/ostrel/mygeom.h"
#include "platform/vcl/core/ansistring.h"
#include "platform/vcl/core/system.h"
#include "platform/vcl/graphics/color.h"
#include "velkin/draw/tc_draw_types.h"
#include "velkin/gdi/gdi_brush.h"
#include "velkin/gdi/gdi_font.h"
#include "velkin/gdi/gdi_pen.h"
#include "velkin/gdi/gdi_region.h"

namespace Graphics {
class TBitmap;
}

/// An abstract drawing surface over a device context. It owns a current pen,
/// brush and font, one saved copy of each, a stack of clip regions and the
/// state of the patterned line; the backings supply the context and the size.
///
/// Every GetHandle() selects the current pen, brush and font into the context,
/// which is how property changes reach it (an unchanged object already selected
/// there costs nothing). Colour arguments: clDefault keeps the current pen or
/// brush colour, clNone draws nothing.
class VELKIN_API HCustomCanvas : public System::TObject {
  VCL_CLASS();

 public:
  HCustomCanvas();
  ~HCustomCanvas() override;
  HCustomCanvas(const HCustomCanvas&) = delete;
  HCustomCanvas& operator=(const HCustomCanvas&) = delete;

  /// The context with the current pen, brush and font selected; null when the
  /// backing has none.
  void* GetHandle() { return DoGetHandle(); }
  int GetWidth() { return DoGetWidth(); }
  int GetHeight() { return DoGetHeight(); }
  void Resize(int width, int height) { DoResize(width, height); }
  void CopyTo(void* dc) { DoCopyTo(dc); }
  /// The whole surface to (0, 0) of dc.
  void SimpleCopyDC(void* dc);

  /// The canvas's own objects; SetPen/SetBrush/SetFont copy the given one's
  /// description into them and never keep the caller's object.
  HCustomGDIPen* GetPen() const { return pen_; }
  void SetPen(HCustomGDIPen* value);
  HCustomGDIBrush* GetBrush() const { return brush_; }
  void SetBrush(HCustomGDIBrush* value);
  HCustomGDIFont* GetFont() const { return font_; }
  void SetFont(HCustomGDIFont* value);
  /// One saved copy of each, not a stack: a second save overwrites the first.
  void SavePen();
  void RestorePen();
  void SaveBrush();
  void RestoreBrush();
  void SaveFont();
  void RestoreFont();

  /// Whether CopyTo of a bitmap canvas smooths the picture first.
  bool GetAntiAlias() const { return antiAlias_; }
  void SetAntiAlias(bool value) { antiAlias_ = value; }

  /// The newest clip cut to the surface, right and bottom exclusive; the whole
  /// surface when no clip is set.
  MyRect CurClip();
  /// Narrows the clip to r (edges inclusive, in any order) within the newest clip.
  void AddClip(const MyRect& r);
  /// Drops the newest clip; the older one, or none when it was the last, applies again.
  void RestoreClip();
  int GetClipCount() const { return clips_.Count(); }

  /// Starts a line (and the pen's dash pattern) at (x, y).
  void MoveTo(int x, int y);
  void MoveTo(const MyPoint& p) { MoveTo(p.x, p.y); }
  /// Line to (x, y), end point excluded, in color for this call only. A dashed
  /// pen's pattern goes on where the previous LineTo stopped, until MoveTo.
  /// A solid pen of width 0 or 1 draws one-pixel lines without end caps (as
  /// a framework canvas does); wider pens are drawn with their caps.
  void LineTo(int x, int y, Graphics::TColor color = Graphics::clDefault);
  void LineTo(const MyPoint& p, Graphics::TColor color = Graphics::clDefault) { LineTo(p.x, p.y, color); }
  MyPoint GetPenPos() const { return MyPoint{x_, y_}; }
  /// One pixel's step of the dash pattern (LineTo steps whole dashes at once;
  /// this is the same step for a caller walking a line through GR_LineDDA).
  /// Moves the pattern and the pen-down state; draws nothing.
  void idLineProc(int x, int y);

  /// Outline of the ellipse in r, edges inclusive; nothing for a pen of width
  /// 0 or style HPS_None.
  void Ellipse(const MyRect& r, Graphics::TColor color = Graphics::clDefault);

  /// Forwarders to the drawing routines on this canvas.
  void Line(const MyPoint& a, const MyPoint& b, Graphics::TColor color = Graphics::clDefault);
  void Line(int x1, int y1, int x2, int y2, Graphics::TColor color = Graphics::clDefault);
  void Line(tagPOINT* points, int count, Graphics::TColor color = Graphics::clDefault);
  void Line(const MyRect& r, Graphics::TColor color = Graphics::clDefault);
  void Line(const MyPoint& a, const MyPoint& b, HFigureTypes figure, int size);
  void FillEllipse(const MyRect& r, Graphics::TColor color = Graphics::clDefault);
  void Fill(tagPOINT* points, int count, Graphics::TColor color = Graphics::clDefault);
  void Fill(const MyRect& r, Graphics::TColor color = Graphics::clDefault);
  void FillRect(const MyRect& r, Graphics::TColor color = Graphics::clDefault) { Fill(r, color); }
  void TextOut(const MyRect& r, const System::AnsiString& text, Graphics::TColor color, unsigned flags);
  void TextOut(MyRect& r, const System::AnsiString& text, unsigned flags);
  void TextOut(int x, int y, const System::AnsiString& text);
  void TextOut(const MyPoint& p, const System::AnsiString& text) { TextOut(p.x, p.y, text); }
  void Draw(const MyRect& r, Graphics::TBitmap* bitmap, HBT_Types mode);
  void Draw(const MyPoint& p, Graphics::TBitmap* bitmap);
  void TransDraw(const MyPoint& p, Graphics::TBitmap* bitmap, Graphics::TColor transparent);
  void ColorBox(const MyRect& r, Graphics::TColor frame, Graphics::TColor fill);
  void Box(const MyRect& r, Graphics::TColor color, HBOX_Types type);
  void Border(const MyRect& r, HBRD_Types type, const TC_Sides& sides, Graphics::TColor color);

 protected:
  virtual void* DoGetHandle() = 0;
  virtual void DoResize(int width, int height) = 0;
  virtual void DoCopyTo(void* dc) { SimpleCopyDC(dc); }
  virtual int DoGetWidth() = 0;
  virtual int DoGetHeight() = 0;

  /// Selects the current pen, brush and font into dc (backings call it from
  /// DoGetHandle).
  void SelectObjects(void* dc);
  /// Takes everything the canvas put into its context out again (clips,
  /// pen, brush, font), before a backing lets the context go.
  void ReleaseSelections();

 private:
  class LinePen;
  bool ThinPen() const;
  /// The context for a line: a thin pen already selected stays selected.
  HDC LineDC();
  /// Selects the context's own pen (DC_PEN) in color for thin lines; it stays
  /// selected from one line to the next until EndThin (or anything that needs
  /// the canvas's pen in the context) puts back the canvas's pen and the
  /// context's pen colour.
  void BeginThin(HDC dc, Graphics::TColor color);
  void EndThin();
  /// The dash pattern stepped over the line from the pen position to (x, y)
  /// inside the clip; each finished dash drawn on dc (null: none drawn).
  void DashTo(HDC dc, int x, int y);

  MyArray<HGDIRegion*> clips_;
  int step_ = 0;
  bool penDown_ = false;
  HCustomGDIPen* savedPen_ = nullptr;
  HCustomGDIBrush* savedBrush_ = nullptr;
  HCustomGDIFont* savedFont_ = nullptr;
  int x_ = 0, y_ = 0;
  bool antiAlias_ = false;
  HCustomGDIPen* pen_ = nullptr;
  HCustomGDIBrush* brush_ = nullptr;
  HCustomGDIFont* font_ = nullptr;
  /// Whether the context had no clip region before the first AddClip.
  bool unclippedBase_ = false;
  /// The thin-line state, changed only by BeginThin and EndThin: the
  /// context's pen selected there, the canvas pen it displaced and the colour
  /// it draws in.
  std::optional<DCChanger> thin_;
  HGDIOBJ thinDisplaced_ = nullptr;
  COLORREF thinColor_ = 0;
  bool keepThin_ = false;
};
