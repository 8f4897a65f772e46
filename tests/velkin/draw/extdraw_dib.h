#pragma once
// Test helper shared by the drawing tests of this folder.
#include <windows.h>

#include <cstdint>
#include <vector>

namespace testdib {

// A top-down 32-bit DIB selected into a memory DC, pixels readable directly.
class Dib {
 public:
  Dib(int w, int h) : w_(w), h_(h) {
    BITMAPINFO bi{};
    bi.bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
    bi.bmiHeader.biWidth = w;
    bi.bmiHeader.biHeight = -h;
    bi.bmiHeader.biPlanes = 1;
    bi.bmiHeader.biBitCount = 32;
    dc_ = CreateCompatibleDC(nullptr);
    void* bits = nullptr;
    bmp_ = CreateDIBSection(dc_, &bi, DIB_RGB_COLORS, &bits, nullptr, 0);
    bits_ = static_cast<uint32_t*>(bits);
    old_ = SelectObject(dc_, bmp_);
  }
  ~Dib() {
    SelectObject(dc_, old_);
    DeleteObject(bmp_);
    DeleteDC(dc_);
  }
  HDC dc() const { return dc_; }
  // 0x00RRGGBB as stored in the DIB.
  uint32_t At(int x, int y) const {
    GdiFlush();
    return bits_[y * w_ + x] & 0xFFFFFF;
  }
  void FillNoise() {
    for (int i = 0; i < w_ * h_; ++i) bits_[i] = (static_cast<uint32_t>(i) * 2654435761u) & 0xFFFFFF;
  }
  std::vector<uint32_t> Snapshot() const {
    GdiFlush();
    return std::vector<uint32_t>(bits_, bits_ + w_ * h_);
  }
  // Index of the first pixel that differs from s, -1 when none does.
  int FirstDifference(const std::vector<uint32_t>& s) const {
    GdiFlush();
    for (int i = 0; i < w_ * h_; ++i)
      if ((bits_[i] & 0xFFFFFF) != (s[i] & 0xFFFFFF)) return i;
    return -1;
  }
  int w() const { return w_; }
  int h() const { return h_; }
  void Fill(uint32_t rgb) {
    GdiFlush();
    for (int i = 0; i < w_ * h_; ++i) bits_[i] = rgb;
  }

 private:
  int w_, h_;
  HDC dc_;
  HBITMAP bmp_;
  HGDIOBJ old_;
  uint32_t* bits_;
};

// A colour 0x00BBGGRR as the DIB stores it (0x00RRGGBB).
inline uint32_t DibPixel(int colorRef) {
  const uint32_t c = static_cast<uint32_t>(colorRef);
  return ((c & 0xFF) << 16) | (c & 0xFF00) | ((c >> 16) & 0xFF);
}

}  // namespace testdib
