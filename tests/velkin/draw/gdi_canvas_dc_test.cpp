// The control canvas: the window context it takes once and gives back.
#include "velkin/draw/gdi_canvas_dc.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <memory>
#include <vector>

#include "platform/vcl/controls/controls.h"

using namespace Graphics;

namespace {

TEST(HControlCanvas, ReleasesItsContext) {
  auto w = std::make_unique<Controls::TWinControl>();
  w->SetBounds(0, 0, 48, 26);
  HWND window = w->GetHandle();
  ASSERT_NE(window, nullptr);
  auto* c = new HControlCanvas(w.get());
  HDC dc = static_cast<HDC>(c->GetHandle());
  ASSERT_NE(dc, nullptr);
  c->LineTo(5, 5, clRed);
  EXPECT_EQ(c->GetHandle(), dc) << "the context is fetched once and kept";
  HGDIOBJ ourPen = GetCurrentObject(dc, OBJ_PEN);
  EXPECT_NE(GetObjectType(ourPen), 0u);
  // Whether the window's cache hands dc out again within `tries` requests.
  auto handedOut = [&](int tries) {
    std::vector<HDC> taken;
    for (int i = 0; i < tries && (taken.empty() || taken.back() != dc); ++i) taken.push_back(GetDC(window));
    const bool found = taken.back() == dc;
    for (HDC d : taken) ReleaseDC(window, d);
    return found;
  };
  EXPECT_FALSE(handedOut(4)) << "the canvas still holds its context";
  delete c;
  EXPECT_EQ(GetObjectType(ourPen), 0u) << "the canvas's pen is gone";
  EXPECT_TRUE(GetObjectType(dc) == 0 || handedOut(8)) << "the context went back to the window";
}

}  // namespace
