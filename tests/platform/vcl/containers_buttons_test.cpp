// Speed buttons in groups, the picture button, bevels, group boxes and
// scroll boxes, driven through their windows' messages and read back
// through Win32.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "platform/ostrel/owned_handle.h"
#include "platform/vcl/buttons.h"
#include "platform/vcl/ext_bevel.h"
#include "platform/vcl/scroll_box.h"
#include "platform/vcl/std_group_box.h"
#include "platform/vcl/std_label.h"

using namespace Controls;

namespace {

void ClickAt(HWND wnd, int x, int y) {
  SendMessageA(wnd, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
  SendMessageA(wnd, WM_LBUTTONUP, 0, MAKELPARAM(x, y));
}

TEST(TSpeedButton, GroupsKeepOneDownAndAllowAllUpLetsItGo) {
  Forms::TForm form(nullptr);
  form.SetBorderStyle(Forms::bsNone);
  form.SetBounds(0, 0, 200, 50);
  Buttons::TSpeedButton* b[3];
  int clicks = 0;
  struct Counter {
    int* n;
    void Clicked(System::TObject*) { ++*n; }
  } counter{&clicks};
  for (int i = 0; i < 3; ++i) {
    b[i] = new Buttons::TSpeedButton(&form);
    b[i]->SetParent(&form);
    b[i]->SetBounds(i * 30, 0, 25, 25);
    b[i]->SetOnClick({&counter, &Counter::Clicked});
  }
  b[0]->SetGroupIndex(1);
  b[1]->SetGroupIndex(1);  // b[2] is a plain button
  const HWND wnd = form.GetHandle();
  const auto state = [&] {
    std::string s;
    for (auto* x : b) s += x->GetDown() ? 'D' : 'u';
    return s;
  };

  const struct {
    const char* what;
    int x;
    const char* expected;
  } steps[] = {
      {"the first of the group goes down", 10, "Duu"},
      {"the second takes over", 40, "uDu"},
      {"clicking the one down: it stays down", 40, "uDu"},
      {"a plain button never stays down", 70, "uDu"},
  };
  for (const auto& s : steps) {
    ClickAt(wnd, s.x, 10);
    EXPECT_EQ(s.expected, state()) << s.what;
  }
  EXPECT_EQ(4, clicks) << "each click ran OnClick";
  b[1]->SetAllowAllUp(true);
  ClickAt(wnd, 40, 10);
  EXPECT_EQ("uuu", state()) << "AllowAllUp: the one down comes up";
  b[2]->SetDown(true);
  EXPECT_EQ("uuu", state()) << "without a group, Down stays false";
  SendMessageA(wnd, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(10, 10));
  SendMessageA(wnd, WM_LBUTTONUP, 0, MAKELPARAM(150, 10));
  EXPECT_EQ("uuu", state()) << "released elsewhere: no click";

  // A flat button shows its edge only while down: sunken then.
  const OwnedWindowDC screen(nullptr);
  const OwnedMemoryDC dc(CreateCompatibleDC(screen.get()));
  const OwnedBitmap bitmap(CreateCompatibleBitmap(screen.get(), 25, 25));
  const HGDIOBJ old = SelectObject(dc.get(), bitmap.get());
  const COLORREF mark = RGB(1, 2, 3);
  const struct {
    const char* what;
    bool flat, down;
    COLORREF topLeft, bottomRight;  // mark: nothing drawn there
  } looks[] = {
      {"flat, up", true, false, mark, mark},
      {"flat, down", true, true, GetSysColor(COLOR_BTNSHADOW), GetSysColor(COLOR_BTNHIGHLIGHT)},
      {"raised, up", false, false, GetSysColor(COLOR_BTNHIGHLIGHT), GetSysColor(COLOR_3DDKSHADOW)},
  };
  b[0]->SetAllowAllUp(true);
  for (const auto& l : looks) {
    b[0]->SetFlat(l.flat);
    b[0]->SetDown(l.down);
    ASSERT_EQ(l.down, b[0]->GetDown()) << l.what;
    const OwnedBrush fill(CreateSolidBrush(mark));
    const RECT all{0, 0, 25, 25};
    FillRect(dc.get(), &all, fill.get());
    b[0]->Paint(dc.get());
    EXPECT_EQ(l.topLeft, GetPixel(dc.get(), 0, 0)) << l.what;
    EXPECT_EQ(l.bottomRight, GetPixel(dc.get(), 24, 24)) << l.what;
  }
  SelectObject(dc.get(), old);
}

// A 4x4 green glyph whose corner colour, white, is transparent.
void MakeGlyph(Graphics::TBitmap& glyph) {
  glyph.SetSize(4, 4);
  for (int y = 0; y < 4; ++y)
    for (int x = 0; x < 4; ++x)
      glyph.GetCanvas()->SetPixels(x, y, x == 0 || y == 3 ? Graphics::clWhite : Graphics::clLime);
}

int CountColor(HDC dc, int w, int h, COLORREF color) {
  int n = 0;
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) n += GetPixel(dc, x, y) == color;
  return n;
}

TEST(TBitBtn, DrawsItsGlyphAndCaptionAndClicksAsAButton) {
  Forms::TForm form(nullptr);
  auto* button = new Buttons::TBitBtn(&form);
  button->SetParent(&form);
  button->SetBounds(0, 0, 80, 26);
  button->SetText("Go");
  Graphics::TBitmap glyph;
  MakeGlyph(glyph);
  button->SetGlyph(&glyph);
  int clicks = 0;
  struct Counter {
    int* n;
    void Clicked(System::TObject*) { ++*n; }
  } counter{&clicks};
  button->SetOnClick({&counter, &Counter::Clicked});
  const HWND wnd = button->GetHandle();
  EXPECT_EQ(BS_OWNERDRAW, GetWindowLongA(wnd, GWL_STYLE) & BS_TYPEMASK);
  button->SetDefault(true);
  EXPECT_EQ(BS_OWNERDRAW, GetWindowLongA(wnd, GWL_STYLE) & BS_TYPEMASK) << "still drawn by the control";

  const OwnedWindowDC screen(nullptr);
  const OwnedMemoryDC dc(CreateCompatibleDC(screen.get()));
  const OwnedBitmap bitmap(CreateCompatibleBitmap(screen.get(), 80, 26));
  const HGDIOBJ old = SelectObject(dc.get(), bitmap.get());
  SendMessageA(wnd, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(dc.get()), PRF_CLIENT);
  const int green = CountColor(dc.get(), 80, 26, RGB(0, 255, 0));
  int left = 80, top = 26;  // where the green begins
  for (int y = 0; y < 26; ++y)
    for (int x = 0; x < 80; ++x)
      if (GetPixel(dc.get(), x, y) == RGB(0, 255, 0)) {
        left = std::min(left, x);
        top = std::min(top, y);
      }
  EXPECT_EQ(9, green) << "the glyph's 3x3 opaque part";
  EXPECT_EQ(GetSysColor(COLOR_BTNFACE), GetPixel(dc.get(), left - 1, top))
      << "its white column is transparent: the face shows";
  EXPECT_EQ(GetSysColor(COLOR_BTNFACE), GetPixel(dc.get(), left, top + 3)) << "and its white row";
  EXPECT_LT(left + 3, 40) << "the glyph left of the caption's centre";
  SelectObject(dc.get(), old);

  SendMessageA(wnd, BM_CLICK, 0, 0);
  EXPECT_EQ(1, clicks);
}

TEST(TGroupBoxAndBevel, FramesHoldAndSeparateControls) {
  Forms::TForm form(nullptr);
  auto* box = new Stdctrls::TGroupBox(&form);
  box->SetParent(&form);
  box->SetText("Options");
  box->SetBounds(10, 10, 150, 100);
  auto* inside = new Extctrls::TBevel(&form);
  inside->SetParent(box);
  inside->SetAlign(alClient);
  const HWND wnd = box->GetHandle();
  EXPECT_EQ(BS_GROUPBOX, GetWindowLongA(wnd, GWL_STYLE) & BS_TYPEMASK);
  EXPECT_GT(inside->GetTop(), 8) << "aligned below the caption";
  EXPECT_EQ(2, inside->GetLeft());
  EXPECT_EQ(150 - 4, inside->GetWidth());
  EXPECT_EQ(100 - 2 - inside->GetTop(), inside->GetHeight());
  RECT r;
  GetWindowRect(wnd, &r);
  EXPECT_EQ(HTCLIENT, SendMessageA(wnd, WM_NCHITTEST, 0, MAKELPARAM(r.left + 50, r.top + 50)))
      << "the box takes the mouse for what it holds";

  // A lowered box: shadow on the top and left, highlight on the bottom and
  // right; a spacer draws nothing.
  const OwnedWindowDC screen(nullptr);
  const OwnedMemoryDC dc(CreateCompatibleDC(screen.get()));
  const OwnedBitmap bitmap(CreateCompatibleBitmap(screen.get(), 10, 10));
  const HGDIOBJ old = SelectObject(dc.get(), bitmap.get());
  Extctrls::TBevel bevel(nullptr);
  bevel.SetBounds(0, 0, 10, 10);
  const RECT all{0, 0, 10, 10};
  FillRect(dc.get(), &all, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
  bevel.Paint(dc.get());
  EXPECT_EQ(GetSysColor(COLOR_BTNSHADOW), GetPixel(dc.get(), 5, 0));
  EXPECT_EQ(GetSysColor(COLOR_BTNSHADOW), GetPixel(dc.get(), 0, 5));
  EXPECT_EQ(GetSysColor(COLOR_BTNHIGHLIGHT), GetPixel(dc.get(), 5, 9));
  EXPECT_EQ(GetSysColor(COLOR_BTNHIGHLIGHT), GetPixel(dc.get(), 9, 5));
  EXPECT_EQ(RGB(0, 0, 0), GetPixel(dc.get(), 5, 5));
  FillRect(dc.get(), &all, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
  bevel.SetShape(Extctrls::bsSpacer);
  bevel.Paint(dc.get());
  EXPECT_EQ(RGB(0, 0, 0), GetPixel(dc.get(), 0, 0));
  SelectObject(dc.get(), old);
}

TEST(TScrollBox, ContentsBeyondTheClientAreaScroll) {
  Forms::TForm form(nullptr);
  auto* box = new Forms::TScrollBox(&form);
  box->SetParent(&form);
  box->SetBounds(0, 0, 200, 100);
  const HWND wnd = box->GetHandle();
  EXPECT_TRUE(GetWindowLongA(wnd, GWL_EXSTYLE) & WS_EX_CLIENTEDGE);
  Forms::TControlScrollBar* vert = box->GetVertScrollBar();
  EXPECT_FALSE(vert->IsScrollBarVisible());

  Stdctrls::TLabel* rows[6];
  for (int i = 0; i < 6; ++i) {
    rows[i] = new Stdctrls::TLabel(&form);
    rows[i]->SetParent(box);
    rows[i]->SetAutoSize(false);
    rows[i]->SetBounds(5, i * 40, 50, 30);
  }
  EXPECT_EQ(5 * 40 + 30, vert->GetRange());
  EXPECT_TRUE(vert->IsScrollBarVisible());
  EXPECT_TRUE(GetWindowLongA(wnd, GWL_STYLE) & WS_VSCROLL) << "the window shows the bar";
  EXPECT_FALSE(box->GetHorzScrollBar()->IsScrollBarVisible());

  const int client = box->GetClientRect().Height();
  const struct {
    const char* what;
    void (*act)(Forms::TScrollBox*, HWND);
    int position;
  } steps[] = {
      {"an arrow click moves by the increment",
       [](Forms::TScrollBox*, HWND w) { SendMessageA(w, WM_VSCROLL, SB_LINEDOWN, 0); }, 8},
      {"the end is the range less the client area",
       [](Forms::TScrollBox*, HWND w) { SendMessageA(w, WM_VSCROLL, SB_BOTTOM, 0); }, 230 - client},
      {"beyond the start stops at 0", [](Forms::TScrollBox* b, HWND) { b->GetVertScrollBar()->SetPosition(-50); }, 0},
      {"a wheel notch down moves three increments",
       [](Forms::TScrollBox*, HWND w) { SendMessageA(w, WM_MOUSEWHEEL, MAKEWPARAM(0, -WHEEL_DELTA), 0); }, 24},
  };
  for (const auto& s : steps) {
    s.act(box, wnd);
    EXPECT_EQ(s.position, vert->GetPosition()) << s.what;
    EXPECT_EQ(-s.position, rows[0]->GetTop()) << s.what << ": the controls moved";
    EXPECT_EQ(5 * 40 - s.position, rows[5]->GetTop()) << s.what;
    EXPECT_EQ(230, vert->GetRange()) << s.what << ": the range does not move with them";
  }

  vert->SetPosition(0);
  box->ScrollInView(rows[4]);
  EXPECT_EQ(160 + 30 - client, vert->GetPosition()) << "scrolled just enough to show it";
  EXPECT_EQ(client - 30, rows[4]->GetTop());

  // Contents that fit again scroll back and the bar goes.
  for (int i = 2; i < 6; ++i) delete rows[i];
  EXPECT_FALSE(vert->IsScrollBarVisible());
  EXPECT_EQ(0, vert->GetPosition());
  EXPECT_EQ(0, rows[0]->GetTop());
  box->SetBorderStyle(Forms::bsNone);
  EXPECT_FALSE(GetWindowLongA(wnd, GWL_EXSTYLE) & WS_EX_CLIENTEDGE);
}

}  // namespace
