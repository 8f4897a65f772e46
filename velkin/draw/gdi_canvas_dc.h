#pragma once
/// \file
/// Drawing surfaces over a device context and over a framework canvas.
#include "platform/ostrel/owned_handle.h"
#include "velkin/draw/gdi_canvas.h"

namespace Controls {
class TWinControl;
}
namespace Graphics {
class TCanvas;
}

// Canvases over a device context that belongs to something else: a window
// control, a framework TCanvas, or a context the caller hands in. Resize does
// nothing on them. Before the canvas goes it takes its pen, brush, font and
// clips out of the context again.

/// Over a windowed control: the window's context is fetched (GetDC) on first
/// use, kept, and released when the canvas is destroyed or the control got a
/// new window. Without a control: no context and size 0.
class VELKIN_API HControlCanvas : public HCustomCanvas {
  VCL_CLASS();

 public:
  explicit HControlCanvas(Controls::TWinControl* control);
  ~HControlCanvas() override;

  Controls::TWinControl* GetControl() const { return control_; }

 protected:
  void* DoGetHandle() override;
  void DoResize(int, int) override {}
  int DoGetWidth() override;
  int DoGetHeight() override;

 private:
  void ReleaseContext();

  Controls::TWinControl* control_;
  OwnedWindowDC dc_;  // with the window it came from
};

/// Over the context a framework TCanvas has when the canvas is made, with the
/// size given. While drawing it displaces the TCanvas's own pen, brush and font
/// from that context; they are back once this canvas is destroyed.
class VELKIN_API HCanvasCanvas : public HCustomCanvas {
  VCL_CLASS();

 public:
  HCanvasCanvas(Graphics::TCanvas* canvas, int width, int height);
  ~HCanvasCanvas() override;

 protected:
  void* DoGetHandle() override;
  void DoResize(int, int) override {}
  int DoGetWidth() override { return width_; }
  int DoGetHeight() override { return height_; }

 private:
  HDC dc_ = nullptr;
  int width_, height_;
};

/// Over a raw context set with SetHDC (none, size 0 until then).
class VELKIN_API HAPICanvas : public HCustomCanvas {
  VCL_CLASS();

 public:
  HAPICanvas() = default;
  ~HAPICanvas() override;

  /// Takes dc and its size and selects pen, brush and font into it at once;
  /// everything the canvas had put into the previous context is taken out.
  void SetHDC(void* dc, int width, int height);
  void* GetHDC() const { return dc_; }

 protected:
  void* DoGetHandle() override;
  void DoResize(int, int) override {}
  int DoGetWidth() override { return width_; }
  int DoGetHeight() override { return height_; }

 private:
  HDC dc_ = nullptr;
  int width_ = 0, height_ = 0;
};
