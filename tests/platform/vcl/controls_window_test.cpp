#include <gtest/gtest.h>
#include <windows.h>

#include "platform/ostrel/owned_handle.h"
#include "platform/vcl/controls.h"

static std::ostream& operator<<(std::ostream& os, const MyRect& r) {
  return os << "(" << r.left << "," << r.top << ")-(" << r.right << "," << r.bottom << ")";
}

using Controls::TControl;
using Controls::TMessage;
using Controls::TWinControl;

namespace {

// Records its destruction; answers a private message.
struct TProbe : TWinControl {
  explicit TProbe(bool* g = nullptr) : gone(g ? g : &spare) {}
  ~TProbe() override { *gone = true; }
  void WndProc(TMessage& m) override {
    if (m.Msg == WM_PAINT) ++paints;
    if (m.Msg == WM_USER + 7)
      m.Result = 42;
    else
      TWinControl::WndProc(m);
  }
  bool spare = false, *gone;
  int paints = 0;
};

struct TPlain : TControl {
  explicit TPlain(bool* gone) : gone(gone) {}
  ~TPlain() override { *gone = true; }
  bool* gone;
};

MyRect WindowRectInParent(HWND w) {
  RECT r;
  GetWindowRect(w, &r);
  MapWindowPoints(HWND_DESKTOP, GetAncestor(w, GA_PARENT), reinterpret_cast<POINT*>(&r), 2);
  return {r.left, r.top, r.right, r.bottom};
}

TEST(ControlsWindow, HandleOnDemandWithBoundsAndState) {
  TProbe c;
  c.SetBounds(10, 20, 130, 80);
  c.SetVisible(false);
  EXPECT_EQ(42, c.Perform(WM_USER + 7, 0, 0)) << "Perform goes straight to WndProc";
  EXPECT_FALSE(c.HandleAllocated()) << "window made before it was asked for";
  HWND h = c.GetHandle();
  ASSERT_NE(h, nullptr);
  EXPECT_EQ(c.GetHandle(), h) << "second request made another window";
  EXPECT_EQ(WindowRectInParent(h), (MyRect{10, 20, 140, 100}));
  EXPECT_FALSE(IsWindowVisible(h));
  EXPECT_EQ(GetWindowLongA(h, GWL_STYLE) & WS_POPUP, static_cast<LONG>(WS_POPUP)) << "parentless control";

  // Changes after creation go to the window, and the window's to the control.
  c.SetBounds(5, 6, 50, 40);
  EXPECT_EQ(WindowRectInParent(h), (MyRect{5, 6, 55, 46}));
  c.Show();
  EXPECT_TRUE(IsWindowVisible(h));
  MoveWindow(h, 30, 31, 70, 60, FALSE);
  EXPECT_EQ(c.GetBoundsRect(), (MyRect{30, 31, 100, 91}));
  EXPECT_EQ(SendMessageA(h, WM_USER + 7, 0, 0), 42);

  // A recreated window takes the current bounds and state.
  c.SetEnabled(false);
  EXPECT_FALSE(IsWindowEnabled(h));
  c.DestroyHandle();
  EXPECT_FALSE(IsWindow(h));
  HWND h2 = c.GetHandle();
  EXPECT_EQ(WindowRectInParent(h2), (MyRect{30, 31, 100, 91}));
  EXPECT_FALSE(IsWindowEnabled(h2));
  DestroyWindow(h2);
  EXPECT_FALSE(c.HandleAllocated()) << "a window destroyed by someone else";

  // A foreign parent window replaces the pop-up window.
  TProbe host;
  h = c.GetHandle();
  c.SetParentWindow(host.GetHandle());
  EXPECT_FALSE(IsWindow(h));
  EXPECT_EQ(GetParent(c.GetHandle()), host.GetHandle());
  EXPECT_EQ(WindowRectInParent(c.GetHandle()), (MyRect{30, 31, 100, 91}));
  c.DestroyHandle();
}

TEST(ControlsWindow, ParentOwnsAndHostsChildren) {
  bool childGone = false, plainGone = false, grandGone = false, tempGone = false;
  TProbe other;
  auto* parent = new TProbe;
  parent->SetBounds(0, 0, 200, 150);
  auto* child = new TProbe(&childGone);
  auto* plain = new TPlain(&plainGone);
  auto* grand = new TProbe(&grandGone);
  child->SetParent(parent);
  plain->SetParent(parent);
  grand->SetParent(child);
  child->SetBounds(10, 10, 100, 80);
  EXPECT_EQ(parent->GetControlCount(), 2);
  EXPECT_EQ(parent->GetControl(1), plain);

  // Asking the grandchild for its window makes the whole chain.
  HWND grandWnd = grand->GetHandle();
  ASSERT_TRUE(parent->HandleAllocated());
  HWND childWnd = child->GetHandle();
  EXPECT_EQ(GetParent(grandWnd), childWnd);
  EXPECT_EQ(GetParent(childWnd), parent->GetHandle());
  EXPECT_EQ(GetWindowLongA(childWnd, GWL_STYLE) & WS_CHILD, static_cast<LONG>(WS_CHILD));
  EXPECT_EQ(WindowRectInParent(childWnd), (MyRect{10, 10, 110, 90}));

  // No control lives inside itself or its descendants.
  parent->SetParent(grand);
  EXPECT_EQ(parent->GetParent(), nullptr);
  child->SetParent(child);
  EXPECT_EQ(child->GetParent(), parent);

  // The parent's window goes with the children's; they come back on demand.
  parent->DestroyHandle();
  EXPECT_FALSE(grand->HandleAllocated());
  EXPECT_FALSE(IsWindow(childWnd));
  childWnd = child->GetHandle();
  EXPECT_EQ(GetParent(childWnd), parent->GetHandle());

  // Another parent takes the control out of the old list and hosts its window.
  grand->SetParent(&other);
  EXPECT_EQ(child->GetControlCount(), 0);
  EXPECT_EQ(GetParent(grand->GetHandle()), other.GetHandle());
  grand->SetParent(child);
  EXPECT_EQ(other.GetControlCount(), 0);
  grandWnd = grand->GetHandle();

  // Out of any parent: the window goes; a new one on demand is top-level.
  grand->SetParent(nullptr);
  EXPECT_EQ(child->GetControlCount(), 0);
  EXPECT_EQ(grand->GetParent(), nullptr);
  EXPECT_FALSE(grand->HandleAllocated());
  EXPECT_FALSE(IsWindow(grandWnd));
  EXPECT_EQ(GetWindowLongA(grand->GetHandle(), GWL_STYLE) & WS_POPUP, static_cast<LONG>(WS_POPUP));
  grand->SetParent(child);
  grandWnd = grand->GetHandle();

  // A window's control: only windows this framework made have one.
  const OwnedWindow foreign(CreateWindowExA(0, "STATIC", "", WS_POPUP, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr));
  EXPECT_EQ(TWinControl::FindControl(childWnd), child);
  EXPECT_EQ(TWinControl::FindControl(grandWnd), grand);
  EXPECT_EQ(TWinControl::FindControl(foreign.get()), nullptr);
  EXPECT_EQ(TWinControl::FindControl(GetDesktopWindow()), nullptr);
  EXPECT_EQ(TWinControl::FindControl(nullptr), nullptr);
  EXPECT_EQ(TWinControl::FindControl(grandWnd), grand);

  // A child deleted on its own leaves its parent's list.
  auto* temp = new TPlain(&tempGone);
  temp->SetParent(parent);
  delete temp;
  EXPECT_FALSE(parent->ContainsControl(temp));
  HWND parentWnd = parent->GetHandle();
  delete parent;
  EXPECT_TRUE(childGone && plainGone && grandGone) << childGone << plainGone << grandGone;
  for (HWND w : {parentWnd, childWnd, grandWnd}) EXPECT_FALSE(IsWindow(w)) << w;
  EXPECT_EQ(TWinControl::FindControl(childWnd), nullptr) << "a destroyed window";
}

// Focusable only while the control and every parent are visible and enabled.
TEST(ControlsWindow, CanFocusAsksEveryParent) {
  TProbe top;
  auto* middle = new TProbe;
  auto* leaf = new TProbe;
  middle->SetParent(&top);
  leaf->SetParent(middle);
  const struct {
    const char* what;
    TControl* control;
    void (TControl::*set)(bool);
  } rows[] = {
      {"hidden", leaf, &TControl::SetVisible},          {"disabled", leaf, &TControl::SetEnabled},
      {"parent hidden", middle, &TControl::SetVisible}, {"parent disabled", middle, &TControl::SetEnabled},
      {"top hidden", &top, &TControl::SetVisible},      {"top disabled", &top, &TControl::SetEnabled},
  };
  EXPECT_TRUE(leaf->CanFocus());
  for (const auto& r : rows) {
    (r.control->*r.set)(false);
    EXPECT_FALSE(leaf->CanFocus()) << r.what;
    (r.control->*r.set)(true);
    EXPECT_TRUE(leaf->CanFocus()) << r.what << ", then back";
  }
}

// Invalidate marks the control's area, Update paints what is marked now,
// Repaint does both; a windowless control's area is in its parent's window.
// SendToBack puts a control first among its siblings and its window last.
TEST(ControlsWindow, PaintOnRequestAndSendToBack) {
  TProbe parent;
  parent.SetBounds(0, 0, 200, 150);
  auto* windowed = new TProbe;
  windowed->SetParent(&parent);
  windowed->SetBounds(10, 10, 50, 40);
  bool plainGone = false;
  auto* plain = new TPlain(&plainGone);
  plain->SetParent(&parent);
  plain->SetBounds(100, 20, 30, 25);
  auto* last = new TProbe;
  last->SetParent(&parent);
  RedrawWindow(parent.GetHandle(), nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
  RECT r;
  ASSERT_TRUE(IsWindowVisible(windowed->GetHandle()));
  ASSERT_FALSE(GetUpdateRect(parent.GetHandle(), &r, FALSE) || GetUpdateRect(windowed->GetHandle(), &r, FALSE))
      << "painted before the steps";

  struct Row {
    const char* what;
    TControl* control;
    TProbe* painted;  // the window that paints the control
    void (TControl::*act)();
    bool invalidAfter;
    int paints;
  };
  const Row rows[] = {
      {"windowed, Invalidate", windowed, windowed, &TControl::Invalidate, true, 0},
      {"windowed, Update", windowed, windowed, &TControl::Update, false, 1},
      {"windowed, Repaint", windowed, windowed, &TControl::Repaint, false, 1},
      {"windowless, Invalidate", plain, &parent, &TControl::Invalidate, true, 0},
      {"windowless, Update", plain, &parent, &TControl::Update, false, 1},
      {"windowless, Repaint", plain, &parent, &TControl::Repaint, false, 1},
  };
  for (const Row& row : rows) {
    const int before = row.painted->paints;
    (row.control->*row.act)();
    EXPECT_EQ(row.invalidAfter, GetUpdateRect(row.painted->GetHandle(), &r, FALSE) != 0) << row.what;
    EXPECT_EQ(row.paints, row.painted->paints - before) << row.what;
    if (row.invalidAfter && row.control == plain) {
      EXPECT_EQ((MyRect{r.left, r.top, r.right, r.bottom}), plain->GetBoundsRect()) << row.what << ": only its area";
    }
  }

  last->SendToBack();
  EXPECT_EQ(parent.GetControl(0), last);
  EXPECT_EQ(parent.GetControl(1), windowed);
  EXPECT_EQ(GetWindow(parent.GetHandle(), GW_CHILD), windowed->GetHandle());
  EXPECT_EQ(GetWindow(windowed->GetHandle(), GW_HWNDLAST), last->GetHandle()) << "its window below the others";
  plain->SendToBack();
  EXPECT_EQ(parent.GetControl(0), plain);
  EXPECT_EQ(parent.GetControl(1), last);
}

}  // namespace
