#pragma once
// Pixels read back from what the drawing tests draw on, as 0xRRGGBB, and
// pictures of one letter per pixel so that a failure prints both pictures.
#include <windows.h>

#include <cstdint>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "platform/vcl/graphics_bitmap.h"
#include "velkin/draw/gdi_canvas_bitmap.h"
#include "velkin/draw/tc_draw.h"
#include "velkin/gdi/gdi_dib.h"

namespace draw_pixels {

using Reader = std::function<uint32_t(int x, int y)>;

// A colour as 0x00BBGGRR (TColor, COLORREF) read back as a pixel.
inline uint32_t Px(unsigned long c) { return ((c & 0xFF) << 16) | (c & 0xFF00) | ((c >> 16) & 0xFF); }

// Pixel (x, y), y from the top, of a bottom-up DIB; 32-bit pixels read
// 0x00RRGGBB.
inline uint32_t At(HGDIDib32* dib, int x, int y) {
  GdiFlush();
  const auto* bits = static_cast<const uint8_t*>(dib->GetData()) + (dib->GetHeight() - 1 - y) * dib->GetLineSize();
  return reinterpret_cast<const uint32_t*>(bits)[x] & 0xFFFFFF;
}

inline Reader Of(HBitmapCanvas& c) {
  return [&c](int x, int y) { return At(c.GetDib(), x, y); };
}

inline Reader Of(Graphics::TBitmap& bmp) {
  return [&bmp](int x, int y) {
    GdiFlush();
    return static_cast<const uint32_t*>(bmp.GetScanLine(y))[x] & 0xFFFFFF;
  };
}

// A top-down 32-bit DIB section of the test's own, selected into a memory DC.
class Surface {
 public:
  Surface(int w, int h, uint32_t fill = 0) : w_(w), h_(h), dc_(CreateCompatibleDC(nullptr)) {
    BITMAPINFO bi{};
    bi.bmiHeader.biSize = sizeof bi.bmiHeader;
    bi.bmiHeader.biWidth = w;
    bi.bmiHeader.biHeight = -h;  // top-down
    bi.bmiHeader.biPlanes = 1;
    bi.bmiHeader.biBitCount = 32;
    void* bits = nullptr;
    bmp_ = CreateDIBSection(dc_, &bi, DIB_RGB_COLORS, &bits, nullptr, 0);
    bits_ = static_cast<uint32_t*>(bits);
    old_ = SelectObject(dc_, bmp_);
    for (int i = 0; i < w * h; ++i) bits_[i] = fill;
  }
  ~Surface() {
    SelectObject(dc_, old_);
    DeleteObject(bmp_);
    DeleteDC(dc_);
  }
  Surface(const Surface&) = delete;
  Surface& operator=(const Surface&) = delete;
  HDC Dc() const { return dc_; }
  uint32_t At(int x, int y) const {
    GdiFlush();
    return bits_[y * w_ + x] & 0xFFFFFF;
  }
  void FillNoise() {
    for (int i = 0; i < w_ * h_; ++i) bits_[i] = (static_cast<uint32_t>(i) * 2654435761u) & 0xFFFFFF;
  }
  Reader Read() const {
    return [this](int x, int y) { return At(x, y); };
  }
  // The pixels as they are now, kept.
  Reader Snapshot() const {
    GdiFlush();
    std::vector<uint32_t> copy(bits_, bits_ + w_ * h_);
    return [copy, w = w_](int x, int y) { return copy[y * w + x] & 0xFFFFFF; };
  }

 private:
  int w_, h_;
  HDC dc_;
  HBITMAP bmp_;
  HGDIOBJ old_;
  uint32_t* bits_;
};

// Letters for the colours the tests use; '?' for any other.
inline char Letter(uint32_t rgb) {
  const uint32_t colours[] = {0xC0C0C0, 0xFFFFFF, 0x808080, 0x000000, 0xFF0000, 0x0000FF, 0x00FF00};
  for (int i = 0; i < 7; ++i)
    if (colours[i] == rgb) return ".WGKRBL"[i];
  return '?';
}

inline std::string Picture(const Reader& read, int w, int h) {
  std::string s;
  for (int y = 0; y < h; ++y) {
    s += '\n';
    for (int x = 0; x < w; ++x) s += Letter(read(x, y));
  }
  return s;
}

inline std::string Picture(std::initializer_list<const char*> rows) {
  std::string s;
  for (const char* r : rows) (s += '\n') += r;
  return s;
}

// Empty when a and b agree on every pixel, else the count and the first one.
inline std::string Diff(const Reader& a, const Reader& b, int w, int h) {
  int count = 0;
  char first[96] = "";
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x)
      if (a(x, y) != b(x, y) && !count++)
        snprintf(first, sizeof first, "first at (%d,%d): %06X vs %06X", x, y, unsigned(a(x, y)), unsigned(b(x, y)));
  return count ? std::to_string(count) + " pixels differ, " + first : std::string();
}

inline Reader Plain(uint32_t rgb) {
  return [rgb](int, int) { return rgb; };
}

// The same drawing on a framework TCanvas (over a TBitmap) and on an
// HBitmapCanvas, each w x h on a silver ground; draw takes either canvas.
struct BothSurfaces {
  BothSurfaces(int w, int h) : w(w), h(h) {
    bmp.SetSize(w, h);
    hc.Resize(w, h);
    TC_Fill(bmp.GetCanvas(), MyRect{0, 0, w, h}, Graphics::clSilver);
    TC_Fill(&hc, MyRect{0, 0, w, h}, Graphics::clSilver);
  }
  template <class Draw>
  BothSurfaces& Run(Draw draw) {
    draw(bmp.GetCanvas());
    draw(static_cast<HCustomCanvas*>(&hc));
    return *this;
  }
  Reader Framework() { return Of(bmp); }
  Reader Own() { return Of(hc); }

  int w, h;
  Graphics::TBitmap bmp;
  HBitmapCanvas hc;
};

// Both families draw `expected`.
#define EXPECT_BOTH_PICTURE(s, expected, what)                                            \
  do {                                                                                    \
    EXPECT_EQ(Picture((s).Framework(), (s).w, (s).h), (expected)) << what << ", TCanvas"; \
    EXPECT_EQ(Picture((s).Own(), (s).w, (s).h), (expected)) << what << ", HCustomCanvas"; \
  } while (0)

}  // namespace draw_pixels
