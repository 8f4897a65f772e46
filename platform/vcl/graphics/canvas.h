#pragma once
/// \file
/// The canvas: drawing on a device context with a pen, a brush and a font.
#include <windows.h>

#include <optional>

#include "platform/ostrel/dc_changer.h"
#include "platform/ostrel/mygeom.h"
#include "platform/vcl/core/ansistring.h"
#include "platform/vcl/core/classes.h"
#include "platform/vcl/core/set.h"
#include "platform/vcl/graphics/brush.h"
#include "platform/vcl/graphics/color.h"
#include "platform/vcl/graphics/font.h"
#include "platform/vcl/graphics/pen.h"

namespace Graphics {

class TBitmap;

/// What a canvas has selected into its device context.
enum TCanvasStates { csHandleValid, csFontValid, csPenValid, csBrushValid };
using TCanvasState = System::Set<TCanvasStates, csHandleValid, csBrushValid>;

/// Drawing surface over a device context. Pen, brush and font are selected into
/// the context only when a drawing call needs them, and deselected (the
/// context's original objects put back) when they change, when the handle
/// changes and when the canvas goes, so no handle is ever deleted while selected.
/// A plain TCanvas draws on a context set with SetHandle, which stays the
/// caller's; subclasses make their own context in CreateHandle.
class VCL_API TCanvas : public Classes::TPersistent {
  VCL_CLASS();

 public:
  TCanvas();
  ~TCanvas() override;
  TCanvas(const TCanvas&) = delete;
  TCanvas& operator=(const TCanvas&) = delete;

  /// The context, made through CreateHandle when there is none yet.
  HDC GetHandle();
  /// Deselects everything from the old context (not deleting it) and takes dc.
  void SetHandle(HDC dc);
  bool HandleAllocated() const { return handle_ != nullptr; }

  TPen* GetPen() const { return pen_; }
  void SetPen(TPen* value) { pen_->Assign(value); }
  TBrush* GetBrush() const { return brush_; }
  void SetBrush(TBrush* value) { brush_->Assign(value); }
  TFont* GetFont() const { return font_; }
  void SetFont(TFont* value) { font_->Assign(value); }

  MyPoint GetPenPos();
  void SetPenPos(const MyPoint& value);
  MyRect GetClipRect();
  TColor GetPixels(int x, int y);
  void SetPixels(int x, int y, TColor color);

  void MoveTo(int x, int y);
  void LineTo(int x, int y);
  /// Fills with the brush, pen untouched, right and bottom edges excluded.
  void FillRect(const MyRect& r);
  void FrameRect(const MyRect& r);
  void Rectangle(int x1, int y1, int x2, int y2);
  void Rectangle(const MyRect& r) { Rectangle(r.left, r.top, r.right, r.bottom); }
  void Ellipse(int x1, int y1, int x2, int y2);
  void Ellipse(const MyRect& r) { Ellipse(r.left, r.top, r.right, r.bottom); }
  void RoundRect(int x1, int y1, int x2, int y2, int x3, int y3);
  /// count points; fewer than 2 (or a null array) draws nothing.
  void Polygon(const MyPoint* points, int count);
  void Polyline(const MyPoint* points, int count);
  void TextOut(int x, int y, const System::AnsiString& text);
  /// Text at (x, y) clipped to r; the brush fills r unless it is bsClear.
  void TextRect(const MyRect& r, int x, int y, const System::AnsiString& text);
  /// (width, height) of the text in the canvas's font.
  MyPoint TextExtent(const System::AnsiString& text);
  int TextWidth(const System::AnsiString& text) { return TextExtent(text).x; }
  int TextHeight(const System::AnsiString& text) { return TextExtent(text).y; }
  /// Copies the whole bitmap with its top-left corner at (x, y); null or empty draws nothing.
  void Draw(int x, int y, TBitmap* bitmap);
  void CopyRect(const MyRect& dest, TCanvas* source, const MyRect& sourceRect);

  System::TNotifyEvent GetOnChange() const { return onChange_; }
  void SetOnChange(System::TNotifyEvent value) { onChange_ = value; }
  System::TNotifyEvent GetOnChanging() const { return onChanging_; }
  void SetOnChanging(System::TNotifyEvent value) { onChanging_ = value; }

 protected:
  /// Makes the context when GetHandle finds none; the default makes none.
  virtual void CreateHandle() {}
  /// Selects what state asks for (and makes the handle) before drawing.
  void RequiredState(const TCanvasState& state);
  /// Puts the context's original pen, brush and font back.
  void DeselectHandles();
  virtual void Changing();
  virtual void Changed();

 private:
  void PenChanged(System::TObject* sender);
  void BrushChanged(System::TObject* sender);
  void FontChanged(System::TObject* sender);
  void SelectPen();
  void SelectBrush();
  void SelectFont();

  HDC handle_ = nullptr;
  TCanvasState state_;
  TPen* pen_;
  TBrush* brush_;
  TFont* font_;
  /// Pen, brush and font selected into handle_, each put back on its own when
  /// it changes and all together by DeselectHandles. Present while handle_ is.
  std::optional<DCChanger> selection_;
  System::TNotifyEvent onChange_;
  System::TNotifyEvent onChanging_;
};

}  // namespace Graphics
