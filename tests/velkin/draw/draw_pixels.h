#pragma once
// Pixels read back from what the drawing tests draw on, as 0xRRGGBB, and
// pictures of one letter per pixel so that a failure prints both pictures.
#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <string>

#include "platform/ostrel/dc_changer.h"
#include "platform/ostrel/owned_handle.h"
#include "platform/vcl/graphics/bitmap.h"
#include "tests/velkin/gdi/gdi_fixtures.h"
#include "velkin/draw/gdi_canvas_bitmap.h"
#include "velkin/draw/tc_draw.h"
#include "velkin/gdi/gdi_dib.h"

namespace draw_pixels {

using Reader = std::function<uint32_t(int x, int y)>;

// A colour as 0x00BBGGRR (TColor, COLORREF) read back as a pixel.
inline uint32_t Px(unsigned long c) { return ((c & 0xFF) << 16) | (c & 0xFF00) | ((c >> 16) & 0xFF); }

inline Reader Of(HBitmapCanvas& c) {
  return [&c](int x, int y) {  // a bottom-up DIB
    const HGDIDib32* d = c.GetDib();
    return GdiFlush(),
           static_cast<const uint32_t*>(d->GetData())[(d->GetHeight() - 1 - y) * d->GetLineSize() / 4 + x] & 0xFFFFFF;
  };
}

inline Reader Of(Graphics::TBitmap& bmp) {
  return [&bmp](int x, int y) { return GdiFlush(), static_cast<const uint32_t*>(bmp.GetScanLine(y))[x] & 0xFFFFFF; };
}

// A top-down 32-bit DIB section of the test's own, selected into a memory DC.
class Surface {
 public:
  Surface(int w, int h, uint32_t fill = 0) : w_(w), h_(h) {
    BITMAPINFO bi{{sizeof(BITMAPINFOHEADER), w, -h, 1, 32, BI_RGB, 0, 0, 0, 0, 0}, {}};
    bmp_.reset(CreateDIBSection(dc_.get(), &bi, DIB_RGB_COLORS, reinterpret_cast<void**>(&bits_), nullptr, 0));
    select_.Select(bmp_.get());
    std::fill(bits_, bits_ + w * h, fill);
  }
  HDC Dc() const { return dc_.get(); }
  uint32_t At(int x, int y) const { return GdiFlush(), bits_[y * w_ + x] & 0xFFFFFF; }
  void FillNoise() {
    for (int i = 0; i < w_ * h_; ++i) bits_[i] = (static_cast<uint32_t>(i) * 2654435761u) & 0xFFFFFF;
  }
  Reader Read() const {
    return [this](int x, int y) { return At(x, y); };
  }

 private:
  int w_, h_;
  uint32_t* bits_ = nullptr;
  OwnedMemoryDC dc_{CreateCompatibleDC(nullptr)};
  OwnedBitmap bmp_;
  DCChanger select_{dc_.get()};
};

// Letters for the colours the tests use; '?' for any other.
inline std::string Picture(const Reader& read, int w, int h) {
  const uint32_t colours[] = {0xC0C0C0, 0xFFFFFF, 0x808080, 0x000000, 0xFF0000, 0x0000FF, 0x00FF00};
  std::string s;
  for (int y = 0; y < h; ++y) {
    s += '\n';
    for (int x = 0; x < w; ++x) s += ".WGKRBL?"[std::find(colours, colours + 7, read(x, y)) - colours];
  }
  return s;
}

// Rows written apart by spaces, as Picture prints them.
inline std::string Rows(std::string rows) {
  std::replace(rows.begin(), rows.end(), ' ', '\n');
  return '\n' + rows;
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
  void Run(Draw draw) {
    draw(bmp.GetCanvas());
    draw(static_cast<HCustomCanvas*>(&hc));
  }
  Reader Framework() { return Of(bmp); }
  Reader Own() { return Of(hc); }

  int w, h;
  Graphics::TBitmap bmp;
  HBitmapCanvas hc;
};

// On both families, w x h, draw draws `rows`.
template <class Draw>
void ExpectPicture(int w, int h, const char* rows, const std::string& what, Draw draw) {
  BothSurfaces s(w, h);
  s.Run(draw);
  EXPECT_EQ(Picture(s.Framework(), w, h), Rows(rows)) << what << ", TCanvas";
  EXPECT_EQ(Picture(s.Own(), w, h), Rows(rows)) << what << ", HCustomCanvas";
}

}  // namespace draw_pixels
