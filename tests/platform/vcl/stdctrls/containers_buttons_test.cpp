// Speed buttons in groups, the picture button, bevels, group boxes and
// scroll boxes, driven through their windows' messages and read back
// through Win32.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "platform/vcl/stdctrls/buttons.h"
#include "platform/vcl/stdctrls/ext_bevel.h"
#include "platform/vcl/stdctrls/scroll_box.h"
#include "platform/vcl/stdctrls/std_group_box.h"
#include "platform/vcl/stdctrls/std_label.h"
#include "tests/platform/vcl/test_helpers.h"
#include "tests/script_samples.h"

using namespace Controls;
using namespace vcl_test;

namespace {

TEST(TSpeedButton, GroupsKeepOneDownAndAllowAllUpLetsItGo) {
  Forms::TForm form(nullptr);
  form.SetBorderStyle(Forms::bsNone);
  form.SetBounds(0, 0, 200, 50);
  Buttons::TSpeedButton* b[3];
  Counter clicks;
  for (int i = 0; i < 3; ++i) {
    b[i] = Make<Buttons::TSpeedButton>(&form, &form, i * 30, 0, 25, 25);
    b[i]->SetOnClick(clicks.Event());
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
  EXPECT_EQ(4, clicks.n) << "each click ran OnClick";
  b[1]->SetAllowAllUp(true);
  ClickAt(wnd, 40, 10);
  EXPECT_EQ("uuu", state()) << "AllowAllUp: the one down comes up";
  b[2]->SetDown(true);
  EXPECT_EQ("uuu", state()) << "without a group, Down stays false";
  Mouse(wnd, WM_LBUTTONDOWN, 10, 10, MK_LBUTTON);
  Mouse(wnd, WM_LBUTTONUP, 150, 10);
  EXPECT_EQ("uuu", state()) << "released elsewhere: no click";

  // A flat button shows its edge only while down: sunken then.
  PaintTarget target(25, 25);
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
    target.Fill(mark, 25, 25);
    b[0]->Paint(target.dc());
    EXPECT_EQ(l.topLeft, target.At(0, 0)) << l.what;
    EXPECT_EQ(l.bottomRight, target.At(24, 24)) << l.what;
  }
}

TEST(TBitBtn, DrawsItsGlyphAndCaptionAndClicksAsAButton) {
  Forms::TForm form(nullptr);
  auto* button = Make<Buttons::TBitBtn>(&form, &form, 0, 0, 80, 26);
  button->SetText("Go");
  // A 4x4 green glyph whose corner colour, white, is transparent.
  Graphics::TBitmap glyph;
  glyph.SetSize(4, 4);
  for (int y = 0; y < 4; ++y)
    for (int x = 0; x < 4; ++x)
      glyph.GetCanvas()->SetPixels(x, y, x == 0 || y == 3 ? Graphics::clWhite : Graphics::clLime);
  button->SetGlyph(&glyph);
  Counter clicks;
  button->SetOnClick(clicks.Event());
  const HWND wnd = button->GetHandle();
  button->SetDefault(true);
  EXPECT_EQ(BS_OWNERDRAW, GetWindowLongA(wnd, GWL_STYLE) & BS_TYPEMASK) << "drawn by the control, default or not";

  PaintTarget target(80, 26);
  SendMessageA(wnd, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(target.dc()), PRF_CLIENT);
  int green = 0, left = 80, top = 26;  // where the green begins
  for (int y = 0; y < 26; ++y)
    for (int x = 0; x < 80; ++x)
      if (target.At(x, y) == RGB(0, 255, 0)) {
        ++green;
        left = std::min(left, x);
        top = std::min(top, y);
      }
  EXPECT_EQ(9, green) << "the glyph's 3x3 opaque part";
  EXPECT_EQ(GetSysColor(COLOR_BTNFACE), target.At(left - 1, top)) << "its white column is transparent: the face shows";
  EXPECT_EQ(GetSysColor(COLOR_BTNFACE), target.At(left, top + 3)) << "and its white row";
  EXPECT_LT(left + 3, 40) << "the glyph left of the caption's centre";
  SendMessageA(wnd, BM_CLICK, 0, 0);
  EXPECT_EQ(1, clicks.n);
}

// A caption in the process's code page shows the letters it stands for: ink
// as wide and as much of it as the wide functions draw.
TEST(TBitBtn, CaptionAsItsLetters) {
  const HFONT font = static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT));
  const auto ink = [](PaintTarget& target) {
    int left = 200, right = -1, count = 0;
    for (int y = 0; y < 30; ++y)
      for (int x = 0; x < 200; ++x)
        if (target.At(x, y) != target.At(0, 0)) left = std::min(left, x), right = std::max(right, x), ++count;
    return std::to_string(right - left + 1) + " wide, " + std::to_string(count) + " pixels";
  };
  for (const auto& sample : script_samples::samples) {
    std::string text;
    if (!script_samples::InAnsi(sample.utf8, text)) continue;
    const std::wstring letters = script_samples::Wide(sample.utf8);
    PaintTarget drawn(200, 30), expected(200, 30);
    drawn.Fill(RGB(255, 255, 255), 200, 30);
    expected.Fill(RGB(255, 255, 255), 200, 30);
    Buttons::DrawButtonFace(drawn.dc(), RECT{0, 0, 200, 30}, nullptr, text.c_str(), font, true);
    SelectObject(expected.dc(), font);
    SetBkMode(expected.dc(), TRANSPARENT);
    SetTextColor(expected.dc(), GetSysColor(COLOR_BTNTEXT));
    RECT r{0, 0, 200, 30};
    DrawTextW(expected.dc(), letters.c_str(), -1, &r, DT_SINGLELINE | DT_VCENTER | DT_CENTER);
    EXPECT_EQ(ink(expected), ink(drawn)) << sample.what;
  }
}

TEST(TGroupBoxAndBevel, FramesHoldAndSeparateControls) {
  Forms::TForm form(nullptr);
  auto* box = Make<Stdctrls::TGroupBox>(&form, &form, 10, 10, 150, 100);
  box->SetText("Options");
  auto* inside = Make<Extctrls::TBevel>(&form, box);
  inside->SetAlign(alClient);
  const HWND wnd = box->GetHandle();
  EXPECT_EQ(BS_GROUPBOX, GetWindowLongA(wnd, GWL_STYLE) & BS_TYPEMASK);
  EXPECT_GT(inside->GetTop(), 8) << "aligned below the caption";
  EXPECT_EQ((MyRect{2, inside->GetTop(), 148, 98}), inside->GetBoundsRect());
  RECT r;
  GetWindowRect(wnd, &r);
  EXPECT_EQ(HTCLIENT, SendMessageA(wnd, WM_NCHITTEST, 0, MAKELPARAM(r.left + 50, r.top + 50)))
      << "the box takes the mouse for what it holds";

  // A lowered box: shadow on the top and left, highlight on the bottom and
  // right; a spacer draws nothing.
  PaintTarget target(10, 10);
  Extctrls::TBevel bevel(nullptr);
  bevel.SetBounds(0, 0, 10, 10);
  target.Fill(RGB(0, 0, 0), 10, 10);
  bevel.Paint(target.dc());
  const COLORREF shadow = GetSysColor(COLOR_BTNSHADOW), light = GetSysColor(COLOR_BTNHIGHLIGHT);
  const COLORREF expected[] = {shadow, shadow, light, light, RGB(0, 0, 0)};
  const COLORREF got[] = {target.At(5, 0), target.At(0, 5), target.At(5, 9), target.At(9, 5), target.At(5, 5)};
  for (int i = 0; i < 5; ++i) EXPECT_EQ(expected[i], got[i]) << "top, left, bottom, right, inside: " << i;
  target.Fill(RGB(0, 0, 0), 10, 10);
  bevel.SetShape(Extctrls::bsSpacer);
  bevel.Paint(target.dc());
  EXPECT_EQ(RGB(0, 0, 0), target.At(0, 0));
}

TEST(TScrollBox, ContentsBeyondTheClientAreaScroll) {
  Forms::TForm form(nullptr);
  auto* box = Make<Forms::TScrollBox>(&form, &form, 0, 0, 200, 100);
  const HWND wnd = box->GetHandle();
  EXPECT_TRUE(GetWindowLongA(wnd, GWL_EXSTYLE) & WS_EX_CLIENTEDGE);
  Forms::TControlScrollBar* vert = box->GetVertScrollBar();
  EXPECT_FALSE(vert->IsScrollBarVisible());

  Stdctrls::TLabel* rows[6];
  for (int i = 0; i < 6; ++i) {
    rows[i] = Make<Stdctrls::TLabel>(&form, box);
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
    UINT msg;  // 0: the position set to -50
    WPARAM wParam;
    int position;
  } steps[] = {
      {"an arrow click moves by the increment", WM_VSCROLL, SB_LINEDOWN, 8},
      {"the end is the range less the client area", WM_VSCROLL, SB_BOTTOM, 230 - client},
      {"beyond the start stops at 0", 0, 0, 0},
      {"a wheel notch down moves three increments", WM_MOUSEWHEEL, MAKEWPARAM(0, -WHEEL_DELTA), 24},
  };
  for (const auto& s : steps) {
    s.msg ? void(SendMessageA(wnd, s.msg, s.wParam, 0)) : vert->SetPosition(-50);
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
