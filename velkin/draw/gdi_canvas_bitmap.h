#pragma once
/// \file
/// A drawing surface over an off-screen DIB.
#include "platform/ostrel/owned_handle.h"
#include "velkin/draw/gdi_canvas.h"
#include "velkin/gdi/gdi_dib.h"

/// A canvas over an off-screen 32-bit DIB, drawn through its own memory
/// context. A second DIB of the same size receives the smoothed picture when
/// the anti-alias flag is set and the canvas is copied out. Starts 1 x 1;
/// resizing loses the picture (the new DIB is black).
class VELKIN_API HBitmapCanvas : public HCustomCanvas {
  VCL_CLASS();

 public:
  HBitmapCanvas();
  ~HBitmapCanvas() override;

  /// The DIB drawn on, and the smoothing target.
  HGDIDib32* GetDib() const { return dib_; }
  HGDIDib32* GetAntiAliasDib() const { return aaDib_; }

 protected:
  void* DoGetHandle() override;
  void DoResize(int width, int height) override;
  /// With the anti-alias flag: the clip area smoothed (every other pixel, as
  /// HGDIDib32::AntiAlias samples; the rest as drawn) to the same place of dc.
  void DoCopyTo(void* dc) override;
  int DoGetWidth() override { return dib_->GetWidth(); }
  int DoGetHeight() override { return dib_->GetHeight(); }

 private:
  HGDIDib32* dib_;
  HGDIDib32* aaDib_;
  OwnedMemoryDC memDC_;
};
