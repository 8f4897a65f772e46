// Pattern-brush frames: every pixel of the frame inverted exactly once, also
// when the frame is thicker than half the rectangle, so painting it again
// restores the picture.
#include "velkin/gdi/gdi_brushutil.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

namespace {

// A white top-down 32-bit surface of w x h, pictured as '#' for the inverted
// (black) pixels and '.' for the white ones.
class Surface {
 public:
  Surface(int w, int h) : w_(w), h_(h), dc_(CreateCompatibleDC(nullptr)) {
    BITMAPINFO bi{{sizeof(BITMAPINFOHEADER), w, -h, 1, 32, BI_RGB, 0, 0, 0, 0, 0}, {}};
    void* bits = nullptr;
    bmp_ = CreateDIBSection(dc_, &bi, DIB_RGB_COLORS, &bits, nullptr, 0);
    bits_ = static_cast<uint32_t*>(bits);
    old_ = SelectObject(dc_, bmp_);
    for (int i = 0; i < w * h; ++i) bits_[i] = 0xFFFFFF;
  }
  ~Surface() {
    SelectObject(dc_, old_);
    DeleteObject(bmp_);
    DeleteDC(dc_);
  }
  HDC Dc() const { return dc_; }
  std::string Picture() const {
    GdiFlush();
    std::string s;
    for (int y = 0; y < h_; ++y) {
      s += ' ';
      for (int x = 0; x < w_; ++x) s += (bits_[y * w_ + x] & 0xFFFFFF) == 0xFFFFFF ? '.' : '#';
    }
    return s.substr(1);
  }

 private:
  int w_, h_;
  HDC dc_;
  HBITMAP bmp_;
  HGDIOBJ old_;
  uint32_t* bits_;
};

TEST(GDIDrawBrushRect, EachFramePixelInvertedOnce) {
  const struct {
    const char* what;
    MyRect r;
    int width;
    const char* picture;  // rows apart by spaces
  } rows[] = {
      {"inside, one pixel", {1, 1, 7, 5}, -1, "........ .######. .#....#. .#....#. .######. ........"},
      {"inside, thicker than half the rectangle",
       {1, 1, 7, 5},
       -3,
       "........ .######. .######. .######. .######. ........"},
      {"outside, two pixels", {3, 2, 5, 4}, 2, ".######. .######. .##..##. .##..##. .######. .######."},
      {"zero width", {1, 1, 7, 5}, 0, "........ ........ ........ ........ ........ ........"},
  };
  HBRUSH white = CreateSolidBrush(RGB(255, 255, 255));  // inverts white to black
  for (const auto& r : rows) {
    Surface s(8, 6);
    GDIDrawBrushRect(s.Dc(), r.r, r.width, white, white);
    EXPECT_EQ(r.picture, s.Picture()) << r.what;
    GDIDrawBrushRect(s.Dc(), r.r, r.width, white, white);
    EXPECT_EQ("........ ........ ........ ........ ........ ........", s.Picture()) << r.what << ", painted twice";
  }
  Surface s(8, 6);
  GDIDrawBrushRect(s.Dc(), MyRect{1, 1, 7, 5}, -1, white, nullptr);
  EXPECT_EQ("........ .######. ........ ........ .######. ........", s.Picture()) << "no brush for the sides";
  DeleteObject(white);
}

}  // namespace
