// Transparent transfers: pixels of the key colour leave the target as it was,
// at the source's size and stretched, through the system's routine and
// through the mask. Pictures: '.' white, '#' black, 'r' red, 'k' the key.
#include "platform/pellum/gdi_ext.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/ostrel/dc_changer.h"
#include "platform/ostrel/owned_handle.h"

namespace {

constexpr COLORREF kKey = RGB(255, 0, 255);

char Letter(COLORREF c) {
  switch (c & 0xFFFFFF) {
    case RGB(255, 255, 255):
      return '.';
    case RGB(0, 0, 0):
      return '#';
    case RGB(255, 0, 0):
      return 'r';
    case kKey:
      return 'k';
    default:
      return '?';
  }
}

COLORREF Colour(char letter) {
  return letter == '#' ? RGB(0, 0, 0) : letter == 'r' ? RGB(255, 0, 0) : letter == 'k' ? kKey : RGB(255, 255, 255);
}

// A 24-bit bitmap drawn from rows of letters.
OwnedBitmap Bitmap(HDC screen, const std::vector<std::string>& rows) {
  OwnedBitmap bitmap(CreateCompatibleBitmap(screen, static_cast<int>(rows[0].size()), static_cast<int>(rows.size())));
  const OwnedMemoryDC dc(CreateCompatibleDC(screen));
  DCChanger use(dc.get());
  use.Select(bitmap.get());
  for (size_t y = 0; y < rows.size(); ++y)
    for (size_t x = 0; x < rows[y].size(); ++x)
      SetPixel(dc.get(), static_cast<int>(x), static_cast<int>(y), Colour(rows[y][x]));
  return bitmap;
}

std::string Picture(HDC dc, int w, int h) {
  std::string out;
  for (int y = 0; y < h; ++y) {
    for (int x = 0; x < w; ++x) out += Letter(GetPixel(dc, x, y));
    out += '\n';
  }
  return out;
}

TEST(Gdi_ext, TheKeyColourLeavesTheTargetAsItWas) {
  const OwnedWindowDC screen(nullptr);
  const OwnedBitmap source = Bitmap(screen.get(), {"#kr", "kk#"});
  const OwnedBitmap unselected = Bitmap(screen.get(), {"#kr", "kk#"});  // a bitmap lives in one DC at a time
  const OwnedMemoryDC src(CreateCompatibleDC(screen.get()));
  DCChanger srcUse(src.get());
  srcUse.Select(source.get());

  const struct {
    const char* what;
    bool system;
    bool stretch;
    const char* picture;
  } cases[] = {
      {"own size, system routine", true, false, "rrrrrr\nr#rrrr\nrrr#rr\nrrrrrr\n"},
      {"own size, mask", false, false, "rrrrrr\nr#rrrr\nrrr#rr\nrrrrrr\n"},
      {"stretched twice, system routine", true, true, "##rrrr\n##rrrr\nrrrr##\nrrrr##\n"},
      {"stretched twice, mask", false, true, "##rrrr\n##rrrr\nrrrr##\nrrrr##\n"},
  };
  for (const auto& c : cases) {
    if (c.system && !Gdi_ext::HasTransparentBlt()) continue;
    Gdi_ext::SetUseTransparentBlt(c.system);
    OwnedBitmap target = Bitmap(screen.get(), {"rrrrrr", "rrrrrr", "rrrrrr", "rrrrrr"});
    const OwnedMemoryDC dc(CreateCompatibleDC(screen.get()));
    DCChanger use(dc.get());
    use.Select(target.get());
    if (c.stretch)
      Gdi_ext::StretchBltTransparent(dc.get(), 0, 0, 6, 4, src.get(), 0, 0, 3, 2, kKey);
    else
      Gdi_ext::DrawTransparentBitmap(dc.get(), unselected.get(), 1, 1, kKey);
    EXPECT_EQ(c.picture, Picture(dc.get(), 6, 4)) << c.what;
  }
  Gdi_ext::SetUseTransparentBlt(true);
}

}  // namespace
