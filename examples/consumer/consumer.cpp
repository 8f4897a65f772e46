// Uses the library the plain way: linked through its import library, no
// package loading and no start-up call. Draws a box, measures text and takes a
// lock, prints what it saw and exits 0 when everything came out as expected.
#include <windows.h>

#include <cstdio>

#include "velkin/draw/gdi_canvas_bitmap.h"
#include "velkin/draw/tc_draw.h"
#include "velkin/gdi/gdi_font.h"
#include "velkin/sync/brannock.h"

namespace {

int failures = 0;

void Check(bool ok, const char* what) {
  std::printf("%-44s %s\n", what, ok ? "ok" : "WRONG");
  if (!ok) ++failures;
}

// The colour at (x, y) of the canvas, read back through GDI.
bool IsColor(HBitmapCanvas& canvas, int x, int y, COLORREF expected) {
  return GetPixel(static_cast<HDC>(canvas.GetHandle()), x, y) == expected;
}

}  // namespace

int main() {
  HBitmapCanvas canvas;
  canvas.Resize(40, 30);
  TC_Box(&canvas, MyRect{0, 0, 40, 30}, Graphics::clWhite, HBOX_Fill);
  TC_Box(&canvas, MyRect{5, 5, 35, 25}, Graphics::clBlue, HBOX_Black);
  const COLORREF black = RGB(0, 0, 0), blue = RGB(0, 0, 255), white = RGB(255, 255, 255);
  Check(IsColor(canvas, 5, 5, black) && IsColor(canvas, 34, 24, black), "box outline black at (5,5) and (34,24)");
  Check(IsColor(canvas, 20, 15, blue), "box filled blue at (20,15)");
  Check(IsColor(canvas, 4, 4, white) && IsColor(canvas, 35, 25, white), "white just outside the box");

  HGDIFont font;
  font.SetSize(12);
  const MyPoint size = font.TextSize("Velkin");
  std::printf("text \"Velkin\" measures %d x %d\n", size.x, size.y);
  Check(size.x > 20 && size.y > 10, "font measures text without start-up");

  // The manifest (velkin_utf8_manifest) makes the texts UTF-8: an accented
  // capital is as wide as its letter, not as two characters of another code page.
  Check(GetACP() == CP_UTF8, "ANSI code page UTF-8");
  Check(font.TextSize("\u00C0\u00C0\u00C0\u00C0").x == font.TextSize("AAAA").x, "UTF-8 text measured by its letters");

  COptex lock;
  lock.Enter();
  lock.Leave();
  Check(true, "lock entered and left");

  std::printf("%s\n", failures ? "consumer: FAILED" : "consumer: all checks passed");
  return failures ? 1 : 0;
}
