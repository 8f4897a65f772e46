// Range controls: values as the native windows keep them, moved by the
// windows' own keyboard and mouse handling.
#include "platform/vcl/stdctrls/com_ranges.h"

#include <commctrl.h>
#include <gtest/gtest.h>

#include <string>

#include "platform/vcl/forms/forms.h"
#include "platform/vcl/stdctrls/std_edits.h"
#include "tests/platform/vcl/test_helpers.h"

using namespace Comctrls;
using namespace vcl_test;

namespace {

// Minimum, maximum and position as text.
std::string Limits(int min, int max, int position) {
  return std::to_string(min) + ".." + std::to_string(max) + " at " + std::to_string(position);
}

TEST(TProgressBar, AndUpDownKeepTheNative16BitValues) {
  Forms::TForm form(nullptr);
  auto* bar = Make<TProgressBar>(&form, &form);
  auto* updown = Make<TUpDown>(&form, &form);
  const HWND barWnd = bar->GetHandle(), udWnd = updown->GetHandle();
  // Each row sets one value; the control and the window then hold the row's.
  const struct {
    const char* what;
    void (TProgressBar::*set)(int);
    int value, min, max, position;
  } progress[] = {
      {"max 70000", &TProgressBar::SetMax, 70000, 0, 4464, 0},
      {"position over max", &TProgressBar::SetPosition, 5000, 0, 4464, 4464},
      {"min -70000", &TProgressBar::SetMin, -70000, -4464, 4464, 4464},
      {"position -3000", &TProgressBar::SetPosition, -3000, -4464, 4464, -3000},
      {"max 32768", &TProgressBar::SetMax, 32768, -4464, -32768, -4464},
  };
  for (const auto& r : progress) {
    (bar->*r.set)(r.value);
    PBRANGE range{};
    SendMessageA(barWnd, PBM_GETRANGE, TRUE, reinterpret_cast<LPARAM>(&range));
    const std::string expected = Limits(r.min, r.max, r.position);
    EXPECT_EQ(expected, Limits(bar->GetMin(), bar->GetMax(), bar->GetPosition())) << r.what;
    EXPECT_EQ(Limits(r.min, r.max, 0), Limits(range.iLow, range.iHigh, 0)) << r.what << ": the window's range";
  }

  const struct {
    const char* what;
    void (TCustomUpDown::*set)(short);
    int value, min, max, position;
  } upDown[] = {
      {"max 32767", &TCustomUpDown::SetMax, 32767, 0, 32767, 0},
      {"min 70000 (4464)", &TCustomUpDown::SetMin, 70000, 4464, 32767, 4464},
      {"min -32768", &TCustomUpDown::SetMin, -32768, -32768, 32767, 4464},
      {"position 40000 (-25536)", &TCustomUpDown::SetPosition, 40000, -32768, 32767, -25536},
      {"max -65536 (0)", &TCustomUpDown::SetMax, -65536, -32768, 0, -25536},
  };
  for (const auto& r : upDown) {
    (updown->*r.set)(static_cast<short>(r.value));
    const auto range = static_cast<DWORD>(SendMessageA(udWnd, UDM_GETRANGE, 0, 0));
    const auto pos = static_cast<DWORD>(SendMessageA(udWnd, UDM_GETPOS, 0, 0));
    const std::string expected = Limits(r.min, r.max, r.position);
    EXPECT_EQ(expected, Limits(updown->GetMin(), updown->GetMax(), updown->GetPosition())) << r.what;
    EXPECT_EQ(expected, Limits(short(HIWORD(range)), short(LOWORD(range)), short(LOWORD(pos)))) << r.what << ": window";
  }
}

TEST(TCustomUpDown, ArrowsAskOnChangingThenMoveTheBuddyAndClick) {
  System::TEventHandlers on;
  Forms::TForm form(nullptr);
  form.SetBounds(0, 0, 300, 200);
  auto* edit = Make<Stdctrls::TEdit>(&form, &form);
  auto* updown = Make<TUpDown>(&form, &form);
  updown->SetMax(10);
  updown->SetIncrement(3);
  updown->SetAssociate(edit);
  int clicks = 0, asked = 0;
  TUDBtnType last = btPrev;
  bool allow = true;
  updown->SetOnClick(on.Add([&](System::TObject*, TUDBtnType button) { ++clicks, last = button; }));
  updown->SetOnChanging(on.Add([&](System::TObject*, bool& allowChange) { ++asked, allowChange = allow; }));
  HWND w = updown->GetHandle();
  EXPECT_EQ("0", Str(edit->GetText())) << "the buddy shows the position";

  // A press on the upper arrow, then on the lower one, as the mouse makes them.
  auto press = [w](bool upper) {
    RECT r;
    GetClientRect(w, &r);
    const LPARAM at = MAKELPARAM(r.right / 2, upper ? 2 : r.bottom - 3);
    SendMessageA(w, WM_LBUTTONDOWN, MK_LBUTTON, at);
    SendMessageA(w, WM_LBUTTONUP, 0, at);
  };
  struct Step {
    const char* what;
    bool upper, allow;
    int position, clicks;
    TUDBtnType button;
  };
  const Step steps[] = {
      {"up", true, true, 3, 1, btNext},           {"up again", true, true, 6, 2, btNext},
      {"refused", true, false, 6, 2, btNext},     {"down", false, true, 3, 3, btPrev},
      {"up once more", true, true, 6, 4, btNext},
  };
  int asks = 0;
  for (const Step& s : steps) {
    allow = s.allow;
    press(s.upper);
    EXPECT_EQ(++asks, asked) << s.what << ": OnChanging asked once";
    EXPECT_EQ(s.position, updown->GetPosition()) << s.what;
    EXPECT_EQ(std::to_string(s.position), Str(edit->GetText())) << s.what << ": buddy";
    EXPECT_EQ(s.clicks, clicks) << s.what;
    EXPECT_EQ(s.button, last) << s.what;
  }
  delete edit;  // the up-down forgets its buddy
  EXPECT_EQ(nullptr, updown->GetAssociate());
  EXPECT_EQ(nullptr, reinterpret_cast<HWND>(SendMessageA(w, UDM_GETBUDDY, 0, 0)));

  // The position wins over a buddy's own text, whether the buddy comes
  // before the windows are made or after.
  for (bool windowFirst : {false, true}) {
    Forms::TForm other(nullptr);
    auto* buddy = Make<Stdctrls::TEdit>(&other, &other);
    buddy->SetText("1");
    auto* arrows = Make<TUpDown>(&other, &other);
    arrows->SetPosition(12);
    if (windowFirst) {
      arrows->GetHandle();
      buddy->GetHandle();
    }
    arrows->SetAssociate(buddy);
    other.Show();
    EXPECT_EQ(12, arrows->GetPosition()) << (windowFirst ? "windows first" : "buddy first");
    EXPECT_EQ("12", Str(buddy->GetText())) << (windowFirst ? "windows first" : "buddy first");
  }
}

TEST(TScrollBar, AndTrackBarFollowTheirWindowsKeys) {
  Forms::TForm form(nullptr);
  auto* scroll = Make<Stdctrls::TScrollBar>(&form, &form);
  auto* track = Make<TTrackBar>(&form, &form);
  Counter scrolled, tracked;
  scroll->SetOnChange(scrolled.Event());
  track->SetOnChange(tracked.Event());
  scroll->SetParams(5, 0, 50);
  scroll->SetSmallChange(2);
  scroll->SetLargeChange(10);
  track->SetMax(20);
  track->SetPosition(4);
  EXPECT_EQ(1, scrolled.n);
  EXPECT_EQ(1, tracked.n);
  HWND sw = scroll->GetHandle(), tw = track->GetHandle();
  EXPECT_EQ(5, GetScrollPos(sw, SB_CTL)) << "set before the window was made";
  EXPECT_EQ(4, SendMessageA(tw, TBM_GETPOS, 0, 0)) << "set before the window was made";

  struct Key {
    WORD key;
    int scrollPos, trackPos;
  };
  const Key keys[] = {{VK_RIGHT, 7, 5}, {VK_NEXT, 17, 9}, {VK_LEFT, 15, 8}, {VK_END, 50, 20}, {VK_HOME, 0, 0}};
  int n = 1;
  for (const Key& k : keys) {
    ++n;
    SendMessageA(sw, WM_KEYDOWN, k.key, 1);
    SendMessageA(tw, WM_KEYDOWN, k.key, 1);
    EXPECT_EQ(k.scrollPos, scroll->GetPosition()) << "key " << k.key;
    EXPECT_EQ(k.scrollPos, GetScrollPos(sw, SB_CTL)) << "key " << k.key << ": window";
    EXPECT_EQ(k.trackPos, track->GetPosition()) << "key " << k.key;
    EXPECT_EQ(n, scrolled.n) << "key " << k.key;
    EXPECT_LE(n, tracked.n) << "key " << k.key;
  }
  // The range holds the position; a reversed range collapses.
  scroll->SetMax(-3);
  EXPECT_EQ(0, scroll->GetMax());
  track->SetPosition(15);
  track->SetMax(12);
  EXPECT_EQ(12, track->GetPosition());
  EXPECT_EQ(12, SendMessageA(tw, TBM_GETPOS, 0, 0));
}

}  // namespace
