#pragma once
/// \file
/// Rectangular clip regions behind a lazy handle.
#include "platform/ostrel/mygeom.h"
#include "velkin/gdi/gdi_object.h"

/// A rectangular clipping region. Selecting it makes it the context's clip
/// region and keeps a copy of the previous one; restoring selects that copy.
/// A context that had no clip region gets the empty region back, so drawing
/// there stays clipped away until the caller resets the clip.
class VELKIN_API HGDIRegion : public HGDIObject {
  VCL_CLASS();

 public:
  /// Edges are inclusive; the stored rectangle is exclusive (right + 1, bottom + 1).
  explicit HGDIRegion(const MyRect& r);
  HGDIRegion(int left, int top, int right, int bottom);
  ~HGDIRegion() override;

  /// The stored, exclusive rectangle.
  const MyRect& GetRect() const { return rect_; }

  HGDI_OBJECT_SLOTS();

 private:
  MyRect rect_;
};
