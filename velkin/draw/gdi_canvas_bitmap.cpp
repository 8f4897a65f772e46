#include "velkin/draw/gdi_canvas_bitmap.h"

VCL_CLASS_IMPL(HBitmapCanvas, HCustomCanvas)

HBitmapCanvas::HBitmapCanvas()
    : dib_(new HGDIDib32(1, 1)), aaDib_(new HGDIDib32(1, 1)), memDC_(CreateCompatibleDC(nullptr)) {}

HBitmapCanvas::~HBitmapCanvas() {
  ReleaseSelections();
  delete aaDib_;
  delete dib_;  // restores the memory context's own bitmap first
  if (memDC_) DeleteDC(memDC_);
}

void* HBitmapCanvas::DoGetHandle() {
  if (!memDC_) return nullptr;
  dib_->Select(memDC_);
  SelectObjects(memDC_);
  return memDC_;
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
  HDC tmp = CreateCompatibleDC(src);
  if (!tmp) return;
  aaDib_->Select(tmp);
  BitBlt(tmp, 0, 0, dib_->GetWidth(), dib_->GetHeight(), src, 0, 0, SRCCOPY);
  GdiFlush();
  MyRect r = clip;
  dib_->AntiAlias(aaDib_, r);
  aaDib_->Select(tmp);  // AntiAlias may have re-made the target
  BitBlt(static_cast<HDC>(dc), clip.left, clip.top, clip.Width(), clip.Height(), tmp, clip.left, clip.top, SRCCOPY);
  aaDib_->Restore();
  DeleteDC(tmp);
}
