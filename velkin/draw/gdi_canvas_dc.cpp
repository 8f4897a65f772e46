#include "velkin/draw/gdi_canvas_dc.h"

#include "platform/vcl/controls/controls.h"
#include "platform/vcl/graphics/canvas.h"

VCL_CLASS_IMPL(HControlCanvas, HCustomCanvas)
VCL_CLASS_IMPL(HCanvasCanvas, HCustomCanvas)
VCL_CLASS_IMPL(HAPICanvas, HCustomCanvas)

HControlCanvas::HControlCanvas(Controls::TWinControl* control) : control_(control) {}

HControlCanvas::~HControlCanvas() { ReleaseContext(); }

void HControlCanvas::ReleaseContext() {
  if (!dc_) return;
  ReleaseSelections();
  dc_.reset();
}

void* HControlCanvas::DoGetHandle() {
  if (!control_) return nullptr;
  HWND window = control_->GetHandle();
  if (dc_ && window != dc_.window()) ReleaseContext();
  if (!dc_ && window) dc_ = OwnedWindowDC(window);
  SelectObjects(dc_.get());
  return dc_.get();
}

int HControlCanvas::DoGetWidth() { return control_ ? control_->GetWidth() : 0; }
int HControlCanvas::DoGetHeight() { return control_ ? control_->GetHeight() : 0; }

HCanvasCanvas::HCanvasCanvas(Graphics::TCanvas* canvas, int width, int height)
    : dc_(canvas ? canvas->GetHandle() : nullptr), width_(width), height_(height) {}

HCanvasCanvas::~HCanvasCanvas() { ReleaseSelections(); }

void* HCanvasCanvas::DoGetHandle() {
  SelectObjects(dc_);
  return dc_;
}

HAPICanvas::~HAPICanvas() { ReleaseSelections(); }

void HAPICanvas::SetHDC(void* dc, int width, int height) {
  if (dc_ && dc != dc_) ReleaseSelections();
  dc_ = static_cast<HDC>(dc);
  width_ = width;
  height_ = height;
  SelectObjects(dc_);
}

void* HAPICanvas::DoGetHandle() {
  SelectObjects(dc_);
  return dc_;
}
