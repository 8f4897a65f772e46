#pragma once
/// \file
/// Scoped changes to a device context, put back when the changer goes.
#include <windows.h>

#include <type_traits>

#include "platform/ostrel/owned_handle.h"

/// Changes a device context for a while and, when it goes (or at Restore()),
/// puts back exactly what it changed: each attribute the first time it is
/// changed remembers its old value, and only those are written back. Other
/// attributes, and changes made by others meanwhile to attributes this changer
/// did not touch, are left alone (unlike SaveDC/RestoreDC, which would undo
/// them too and break the selection bookkeeping of the GDI wrappers).
///
///   DCChanger use(dc);
///   use.Select(GetStockObject(NULL_BRUSH));
///   use.SetTextColor(RGB(0, 0, 0));
///   ... draw ...                 // on scope exit: brush and colour restored
class DCChanger {
 public:
  explicit DCChanger(HDC dc) : dc_(dc) {}
  DCChanger(const DCChanger&) = delete;
  DCChanger& operator=(const DCChanger&) = delete;
  ~DCChanger() { Restore(); }

  HDC GetDC() const { return dc_; }

  /// Selects a pen, brush, font or bitmap; a null object is ignored. The typed
  /// forms skip asking GDI what the object is.
  void Select(HPEN pen) { SelectInto(PenSlot, pen); }
  void Select(HBRUSH brush) { SelectInto(BrushSlot, brush); }
  void Select(HFONT font) { SelectInto(FontSlot, font); }
  void Select(HBITMAP bitmap) { SelectInto(BitmapSlot, bitmap); }
  void Select(HGDIOBJ object) {
    if (object) SelectInto(ObjectSlot(object), object);
  }
  /// Puts back only the object of one kind that the first Select of that kind
  /// displaced; the others stay. For holders that let one object go (to delete
  /// or re-make it) while the rest stay selected.
  void RestorePen() { PutBack(PenSlot); }
  void RestoreBrush() { PutBack(BrushSlot); }
  void RestoreFont() { PutBack(FontSlot); }
  void RestoreBitmap() { PutBack(BitmapSlot); }
  /// Each setter remembers the value it displaced the first time; a call that
  /// GDI refuses changed nothing and is not remembered.
  void SetTextColor(COLORREF c) { Keep(textColor_, ::SetTextColor(dc_, c), CLR_INVALID, fTextColor); }
  void SetBkColor(COLORREF c) { Keep(bkColor_, ::SetBkColor(dc_, c), CLR_INVALID, fBkColor); }
  void SetBkMode(int mode) { Keep(bkMode_, ::SetBkMode(dc_, mode), 0, fBkMode); }
  void SetTextAlign(UINT align) { Keep(textAlign_, ::SetTextAlign(dc_, align), GDI_ERROR, fTextAlign); }
  void SetROP2(int rop) { Keep(rop2_, ::SetROP2(dc_, rop), 0, fRop2); }
  void SetPolyFillMode(int mode) { Keep(polyFillMode_, ::SetPolyFillMode(dc_, mode), 0, fPolyFillMode); }
  void SetStretchBltMode(int mode) { Keep(stretchMode_, ::SetStretchBltMode(dc_, mode), 0, fStretchMode); }
  void SetDCPenColor(COLORREF c) { Keep(dcPenColor_, ::SetDCPenColor(dc_, c), CLR_INVALID, fDCPenColor); }
  void SetDCBrushColor(COLORREF c) { Keep(dcBrushColor_, ::SetDCBrushColor(dc_, c), CLR_INVALID, fDCBrushColor); }

  /// Narrows the clip to r (logical units).
  void IntersectClip(const RECT& r) {
    if (!dc_) return;
    SaveClip();
    IntersectClipRect(dc_, r.left, r.top, r.right, r.bottom);
  }
  /// Replaces the clip by a copy of region (null: no clipping).
  void SelectClip(HRGN region) {
    if (!dc_) return;
    SaveClip();
    SelectClipRgn(dc_, region);
  }

  /// Puts everything back now; the changer can be used again afterwards.
  void Restore() {
    if (!dc_) return;
    if (clipSaved_) {
      SelectClipRgn(dc_, clip_.get());  // null: the context had no clip
      clip_.reset();
      clipSaved_ = false;
    }
    for (int slot = 0; slot < Slots; ++slot) PutBack(slot);
    if (flags_ & fTextColor) ::SetTextColor(dc_, textColor_);
    if (flags_ & fBkColor) ::SetBkColor(dc_, bkColor_);
    if (flags_ & fBkMode) ::SetBkMode(dc_, bkMode_);
    if (flags_ & fTextAlign) ::SetTextAlign(dc_, textAlign_);
    if (flags_ & fRop2) ::SetROP2(dc_, rop2_);
    if (flags_ & fPolyFillMode) ::SetPolyFillMode(dc_, polyFillMode_);
    if (flags_ & fStretchMode) ::SetStretchBltMode(dc_, stretchMode_);
    if (flags_ & fDCPenColor) ::SetDCPenColor(dc_, dcPenColor_);
    if (flags_ & fDCBrushColor) ::SetDCBrushColor(dc_, dcBrushColor_);
    flags_ = 0;
  }

 private:
  static constexpr int PenSlot = 0, BrushSlot = 1, FontSlot = 2, BitmapSlot = 3, Slots = 4;
  enum : unsigned {
    fTextColor = 1,
    fBkColor = 2,
    fBkMode = 4,
    fTextAlign = 8,
    fRop2 = 16,
    fPolyFillMode = 32,
    fStretchMode = 64,
    fDCPenColor = 128,
    fDCBrushColor = 256,
  };

  template <class T>
  void Keep(T& slot, T old, std::type_identity_t<T> failed, unsigned flag) {
    if ((flags_ & flag) || old == failed) return;
    slot = old;
    flags_ |= flag;
  }

  void SelectInto(int slot, HGDIOBJ object) {
    if (!dc_ || !object || slot < 0) return;
    HGDIOBJ old = SelectObject(dc_, object);
    if (!objects_[slot]) objects_[slot] = old;
  }

  void PutBack(int slot) {
    if (!objects_[slot]) return;
    SelectObject(dc_, objects_[slot]);
    objects_[slot] = nullptr;
  }

  static int ObjectSlot(HGDIOBJ object) {
    switch (GetObjectType(object)) {
      case OBJ_PEN:
      case OBJ_EXTPEN:
        return PenSlot;
      case OBJ_BRUSH:
        return BrushSlot;
      case OBJ_FONT:
        return FontSlot;
      case OBJ_BITMAP:
        return BitmapSlot;
      default:
        return -1;
    }
  }

  void SaveClip() {
    if (clipSaved_) return;
    OwnedRegion copy(CreateRectRgn(0, 0, 0, 0));
    // 1: the context has a clip region, now copied; 0: it has none.
    if (GetClipRgn(dc_, copy.get()) == 1) clip_ = std::move(copy);
    clipSaved_ = true;
  }

  HDC dc_;
  HGDIOBJ objects_[Slots] = {};
  OwnedRegion clip_;
  bool clipSaved_ = false;
  unsigned flags_ = 0;
  COLORREF textColor_ = 0, bkColor_ = 0, dcPenColor_ = 0, dcBrushColor_ = 0;
  int bkMode_ = 0, rop2_ = 0, polyFillMode_ = 0, stretchMode_ = 0;
  UINT textAlign_ = 0;
};
