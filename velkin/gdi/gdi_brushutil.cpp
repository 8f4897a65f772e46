#include "velkin/gdi/gdi_brushutil.h"

#include <algorithm>
#include <cstdint>
#include <vector>

#include "platform/ostrel/dc_changer.h"

HBRUSH GDICreateBrush(const Graphics::TColor* colors, int width, int height) {
  if (!colors || width <= 0 || height <= 0) return nullptr;
  // A packed bottom-up 32-bit DIB: header, then the rows from the last up.
  const size_t pixels = static_cast<size_t>(width) * static_cast<size_t>(height);
  std::vector<uint32_t> packed(sizeof(BITMAPINFOHEADER) / sizeof(uint32_t) + pixels);
  auto* header = reinterpret_cast<BITMAPINFOHEADER*>(packed.data());
  header->biSize = sizeof(BITMAPINFOHEADER);
  header->biWidth = width;
  header->biHeight = height;
  header->biPlanes = 1;
  header->biBitCount = 32;
  header->biCompression = BI_RGB;
  uint32_t* bits = packed.data() + sizeof(BITMAPINFOHEADER) / sizeof(uint32_t);
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) {
      const uint32_t c = static_cast<uint32_t>(Graphics::ColorToRGB(colors[y * width + x]));
      // 0x00BBGGRR becomes the pixel bytes blue, green, red.
      bits[static_cast<size_t>(height - 1 - y) * width + x] = ((c & 0xFF) << 16) | (c & 0xFF00) | ((c >> 16) & 0xFF);
    }
  // The brush keeps its own copy of the pattern.
  return CreateDIBPatternBrushPt(packed.data(), DIB_RGB_COLORS);
}

namespace {

void Invert(HDC dc, HBRUSH brush, int x, int y, int w, int h) {
  if (!brush || w <= 0 || h <= 0) return;
  DCChanger use(dc);
  use.Select(brush);
  PatBlt(dc, x, y, w, h, PATINVERT);
}

}  // namespace

void GDIDrawBrushRect(HDC dc, const MyRect& r, int width, HBRUSH brush1, HBRUSH brush2) {
  if (!dc || width == 0) return;
  const int t = width < 0 ? -width : width;
  MyRect f = r;
  if (width > 0) f = {r.left - t, r.top - t, r.right + t, r.bottom + t};
  const int w = f.Width(), h = f.Height();
  if (w <= 0 || h <= 0) return;
  // Bands are cut so that none overlaps another: an inverted pixel inverted
  // again would vanish from the frame.
  const int top = std::min(t, h);
  const int bottom = std::min(t, h - top);
  const int sides = h - top - bottom;
  const int left = std::min(t, w);
  const int right = std::min(t, w - left);
  Invert(dc, brush1, f.left, f.top, w, top);
  Invert(dc, brush1, f.left, f.bottom - bottom, w, bottom);
  Invert(dc, brush2, f.left, f.top + top, left, sides);
  Invert(dc, brush2, f.right - right, f.top + top, right, sides);
}
