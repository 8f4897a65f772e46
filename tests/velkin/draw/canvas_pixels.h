#pragma once
// Reading pictures back from the surfaces the drawing tests draw on, as rows
// of one letter per pixel, so a failure prints both pictures.
#include <windows.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "platform/vcl/graphics_bitmap.h"
#include "velkin/draw/gdi_canvas_bitmap.h"
#include "velkin/draw/tc_draw.h"
#include "velkin/gdi/gdi_dib.h"

namespace canvas_pixels {

// 0xRRGGBB as the pixel bytes say.
inline uint32_t Rgb(const void* pixel) {
  const auto* b = static_cast<const uint8_t*>(pixel);
  return (uint32_t{b[2]} << 16) | (uint32_t{b[1]} << 8) | b[0];
}

// Pixel (x, y), y from the top, of a bottom-up DIB.
inline uint32_t At(HGDIDib32* dib, int x, int y) {
  GdiFlush();
  const auto* bits = static_cast<const uint8_t*>(dib->GetData());
  const int line = dib->GetHeight() - 1 - y;
  return Rgb(bits + static_cast<size_t>(line) * dib->GetLineSize() + 4 * x);
}

inline uint32_t At(Graphics::TBitmap* bmp, int x, int y) {
  GdiFlush();
  return Rgb(static_cast<const uint8_t*>(bmp->GetScanLine(y)) + 4 * x);
}

// A top-down DIB section of the test's own, selected into a memory context.
class Surface {
 public:
  Surface(int w, int h) : w_(w), h_(h), dc_(CreateCompatibleDC(nullptr)) {
    BITMAPINFO bi{};
    bi.bmiHeader.biSize = sizeof bi.bmiHeader;
    bi.bmiHeader.biWidth = w;
    bi.bmiHeader.biHeight = -h;
    bi.bmiHeader.biPlanes = 1;
    bi.bmiHeader.biBitCount = 32;
    bmp_ = CreateDIBSection(dc_, &bi, DIB_RGB_COLORS, &bits_, nullptr, 0);
    old_ = SelectObject(dc_, bmp_);
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
    return Rgb(static_cast<const uint8_t*>(bits_) + 4 * (static_cast<size_t>(y) * w_ + x));
  }

 private:
  int w_, h_;
  HDC dc_;
  HBITMAP bmp_;
  HGDIOBJ old_;
  void* bits_ = nullptr;
};

using Reader = std::function<uint32_t(int x, int y)>;

// Letters for the colours the tests use; '?' for any other.
inline char Letter(uint32_t rgb) {
  switch (rgb) {
    case 0xC0C0C0:
      return '.';
    case 0xFFFFFF:
      return 'W';
    case 0x808080:
      return 'G';
    case 0x000000:
      return 'K';
    case 0xFF0000:
      return 'R';
    case 0x0000FF:
      return 'B';
    case 0x00FF00:
      return 'L';
    default:
      return '?';
  }
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

// Every pixel of both, and where the first difference is.
inline std::string Diff(const Reader& a, const Reader& b, int w, int h) {
  int count = 0;
  std::string first;
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x)
      if (a(x, y) != b(x, y)) {
        if (!count++) {
          char buf[96];
          snprintf(buf, sizeof buf, "first at (%d,%d): %06X vs %06X", x, y, static_cast<unsigned>(a(x, y)),
                   static_cast<unsigned>(b(x, y)));
          first = buf;
        }
      }
  return count ? std::to_string(count) + " pixels differ, " + first : std::string();
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
  Reader Framework() {
    return [this](int x, int y) { return At(&bmp, x, y); };
  }
  Reader Own() {
    return [this](int x, int y) { return At(hc.GetDib(), x, y); };
  }
  std::string FrameworkPicture() { return Picture(Framework(), w, h); }
  std::string OwnPicture() { return Picture(Own(), w, h); }

  int w, h;
  Graphics::TBitmap bmp;
  HBitmapCanvas hc;
};

// Both families draw `expected`.
#define EXPECT_BOTH_PICTURE(surfaces, expected, what)                            \
  do {                                                                           \
    EXPECT_EQ((surfaces).FrameworkPicture(), (expected)) << what << ", TCanvas"; \
    EXPECT_EQ((surfaces).OwnPicture(), (expected)) << what << ", HCustomCanvas"; \
  } while (0)

}  // namespace canvas_pixels
