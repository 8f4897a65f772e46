#pragma once
/// \file
/// A bitmap with a canvas of its own.
#include <windows.h>

#include "platform/ostrel/owned_handle.h"
#include "platform/vcl/core/classes.h"
#include "platform/vcl/graphics/canvas.h"

namespace Graphics {

/// An off-screen 32-bit picture (a top-down DIB section) with its own canvas.
/// Resizing keeps the overlapping top-left part of the picture; new parts are
/// black. A bitmap of width or height 0 is empty and has no handle.
class VCL_API TBitmap : public Classes::TPersistent {
  VCL_CLASS();

 public:
  TBitmap();
  ~TBitmap() override;
  TBitmap(const TBitmap&) = delete;
  TBitmap& operator=(const TBitmap&) = delete;

  int GetWidth() const { return width_; }
  void SetWidth(int value) { SetSize(value, height_); }
  int GetHeight() const { return height_; }
  void SetHeight(int value) { SetSize(width_, value); }
  /// Negative values are stored as 0.
  void SetSize(int width, int height);
  bool GetEmpty() const { return width_ == 0 || height_ == 0; }

  /// A canvas drawing on the bitmap through its own memory context.
  TCanvas* GetCanvas();
  /// The DIB section, created on demand; null while empty. Owned by the bitmap.
  HBITMAP GetHandle();
  bool HandleAllocated() const { return static_cast<bool>(handle_); }
  /// Row y (0 = top) of 32-bit pixels, blue-green-red-unused; null out of range.
  void* GetScanLine(int y);

  /// From another TBitmap: size and pixels.
  void Assign(Classes::TPersistent* source) override;

  System::TNotifyEvent GetOnChange() const { return onChange_; }
  void SetOnChange(System::TNotifyEvent value) { onChange_ = value; }

 private:
  friend class TBitmapCanvas;
  OwnedBitmap MakeSection(int width, int height, void** bits) const;
  void Changed();

  int width_ = 0;
  int height_ = 0;
  OwnedBitmap handle_;
  void* bits_ = nullptr;
  TCanvas* canvas_ = nullptr;
  System::TNotifyEvent onChange_;
};

}  // namespace Graphics
