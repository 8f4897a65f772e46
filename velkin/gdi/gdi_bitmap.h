#pragma once
/// \file
/// Bitmaps and DIB sections behind a lazy handle.
#include "platform/ostrel/mygeom.h"
#include "velkin/gdi/gdi_object.h"

/// A device-compatible bitmap of a given size. A size change re-makes the
/// handle (re-selecting it where it was selected); pixels are never kept.
class VELKIN_API HCustomGDIBitmap : public HGDIObject {
  VCL_CLASS();

 public:
  /// Assign(width, height): sizes below 1 become 1.
  HCustomGDIBitmap(int width, int height);
  ~HCustomGDIBitmap() override;

  int GetWidth() const { return width_; }
  /// Stored as given, without a lower bound (handles ask GDI for at least 1).
  void SetWidth(int value);
  int GetHeight() const { return height_; }
  void SetHeight(int value);

  /// A new size, each side at least 1; nothing when both are unchanged.
  void Assign(int width, int height);
  /// The source's size only (the source is refreshed first), never its pixels.
  void Assign(HCustomGDIBitmap* source);
  /// Does nothing, whatever the source.
  void Assign(Classes::TPersistent* source) override;

  /// Orders the edges of r, then clamps it to 0..width, 0..height.
  void CorrectRect(MyRect& r) const;

  HGDI_OBJECT_SLOTS();

  int width_ = 0;
  int height_ = 0;
};

/// The bitmap wrapper to make instances of.
class VELKIN_API HGDIBitmap : public HCustomGDIBitmap {
  VCL_CLASS();

 public:
  HGDIBitmap() : HCustomGDIBitmap(1, 1) {}
};
