#include "velkin/draw/gdi_canvas_bitmap.h"

VCL_CLASS_IMPL(HBitmapCanvas, HCustomCanvas)

HBitmapCanvas::HBitmapCanvas()
    : dib_(new HGDIDib32(1, 1)), aaDib_(new HGDIDib32(1, 1)), memDC_(CreateCompatibleDC(nullptr)) {}

HBitmapCanvas::~HBitmapCanvas() {
  ReleaseSelections();
  delete aaDib_;
  delete dib_;  // restores the memory context's own bitmap before the context goes
}

void* HBitmapCanvas::DoGetHandle() {
  HDC dc = memDC_.get();
  if (!dc) return nullptr;
  dib_->Select(dc);
  SelectObjects(dc);
  return dc;
}

void HBitmapCanvas::DoResize(int width, int height) {
  dib_->Assign(width, height);
  aaDib_->Assign(width, height);
}

void HBitmapCanvas::DoCopyTo(void* dc) {
  if (!GetAntiAlias()) {
    SimpleCopyDC(dc);
    return;
  }
  MyRect clip = CurClip();
  HDC src = static_cast<HDC>(GetHandle());
  if (!src || !dc) return;
  // The filter writes every other pixel only: start the target as a copy so
  // the others show the picture as drawn.
  aaDib_->Assign(dib_->GetWidth(), dib_->GetHeight());
  const OwnedMemoryDC tmp(CreateCompatibleDC(src));
  if (!tmp) return;
  aaDib_->Select(tmp.get());
  BitBlt(tmp.get(), 0, 0, dib_->GetWidth(), dib_->GetHeight(), src, 0, 0, SRCCOPY);
  GdiFlush();
  MyRect r = clip;
  dib_->AntiAlias(aaDib_, r);
  aaDib_->Select(tmp.get());  // AntiAlias may have re-made the target
  BitBlt(static_cast<HDC>(dc), clip.left, clip.top, clip.Width(), clip.Height(), tmp.get(), clip.left, clip.top,
         SRCCOPY);
  aaDib_->Restore();  // before the context goes
}
