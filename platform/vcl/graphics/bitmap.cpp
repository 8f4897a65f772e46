#include "platform/vcl/graphics/bitmap.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <utility>

#include "platform/ostrel/dc_changer.h"

namespace Graphics {

VCL_CLASS_IMPL(TBitmap, Classes::TPersistent)

// The bitmap's canvas: a memory context, made on demand, with the bitmap
// selected into it. Dropped (and made again later) when the bitmap changes size.
class TBitmapCanvas : public TCanvas {
 public:
  explicit TBitmapCanvas(TBitmap* bitmap) : bitmap_(bitmap) {}
  ~TBitmapCanvas() override { FreeContext(); }

  void FreeContext() {
    if (!dc_) return;
    SetHandle(nullptr);  // pen, brush and font go back first
    bitmapIn_.reset();   // then the context's own bitmap
    dc_.reset();
  }

 protected:
  void CreateHandle() override {
    OwnedMemoryDC dc(CreateCompatibleDC(nullptr));
    if (!dc) return;
    bitmapIn_.emplace(dc.get());
    bitmapIn_->Select(bitmap_->GetHandle());
    dc_ = std::move(dc);
    SetHandle(dc_.get());
  }

 private:
  TBitmap* bitmap_;
  OwnedMemoryDC dc_;
  std::optional<DCChanger> bitmapIn_;
};

TBitmap::TBitmap() = default;

TBitmap::~TBitmap() { delete canvas_; }

OwnedBitmap TBitmap::MakeSection(int width, int height, void** bits) const {
  BITMAPINFO info{};
  info.bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
  info.bmiHeader.biWidth = width;
  info.bmiHeader.biHeight = -height;  // top-down: row 0 first in memory
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  info.bmiHeader.biCompression = BI_RGB;
  *bits = nullptr;
  OwnedBitmap h(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, bits, nullptr, 0));
  if (!h) *bits = nullptr;
  if (h && *bits) std::memset(*bits, 0, static_cast<size_t>(width) * static_cast<size_t>(height) * 4);
  return h;
}

void TBitmap::SetSize(int width, int height) {
  width = std::max(width, 0);
  height = std::max(height, 0);
  if (width == width_ && height == height_) return;
  OwnedBitmap fresh;
  void* freshBits = nullptr;
  if (handle_ && width > 0 && height > 0) {
    fresh = MakeSection(width, height, &freshBits);
    if (fresh && bits_) {
      GdiFlush();
      const int rows = std::min(height, height_);
      const size_t bytes = static_cast<size_t>(std::min(width, width_)) * 4;
      for (int y = 0; y < rows; ++y)
        std::memcpy(static_cast<char*>(freshBits) + static_cast<size_t>(y) * width * 4,
                    static_cast<const char*>(bits_) + static_cast<size_t>(y) * width_ * 4, bytes);
    }
  }
  if (canvas_) static_cast<TBitmapCanvas*>(canvas_)->FreeContext();
  handle_ = std::move(fresh);
  bits_ = freshBits;
  width_ = width;
  height_ = height;
  Changed();
}

TCanvas* TBitmap::GetCanvas() {
  if (!canvas_) canvas_ = new TBitmapCanvas(this);
  return canvas_;
}

HBITMAP TBitmap::GetHandle() {
  if (!handle_ && !GetEmpty()) handle_ = MakeSection(width_, height_, &bits_);
  return handle_.get();
}

void* TBitmap::GetScanLine(int y) {
  if (y < 0 || y >= height_ || !GetHandle() || !bits_) return nullptr;
  GdiFlush();
  return static_cast<char*>(bits_) + static_cast<size_t>(y) * width_ * 4;
}

void TBitmap::Assign(Classes::TPersistent* source) {
  if (!source) {
    SetSize(0, 0);
    return;
  }
  auto* other = dynamic_cast<TBitmap*>(source);
  if (!other) {
    Classes::TPersistent::Assign(source);
    return;
  }
  if (other == this) return;
  SetSize(other->width_, other->height_);
  if (other->handle_ && other->bits_ && GetHandle() && bits_) {
    GdiFlush();
    std::memcpy(bits_, other->bits_, static_cast<size_t>(width_) * height_ * 4);
  }
  Changed();
}

void TBitmap::Changed() {
  if (onChange_) onChange_(this);
}

}  // namespace Graphics
