#include <gtest/gtest.h>

#include <windows.h>

#include <vector>

#include "platform/vcl/controls.h"

static std::ostream& operator<<(std::ostream& os, const MyRect& r) {
  return os << "(" << r.left << "," << r.top << ")-(" << r.right << "," << r.bottom << ")";
}

using Controls::TControl;
using Controls::TMessage;
using Controls::TWinControl;

namespace {

// Records its destruction and the messages its window procedure sees.
class TProbe : public TWinControl {
  VCL_CLASS();

 public:
  explicit TProbe(bool* destroyed = nullptr) : destroyed_(destroyed) {}
  ~TProbe() override {
    if (destroyed_) *destroyed_ = true;
  }
  void WndProc(TMessage& m) override {
    messages.push_back(m.Msg);
    if (m.Msg == WM_USER + 7) {
      m.Result = 42;
      return;
    }
    TWinControl::WndProc(m);
  }
  bool Saw(UINT msg) const {
    for (UINT m : messages)
      if (m == msg) return true;
    return false;
  }
  std::vector<UINT> messages;

 private:
  bool* destroyed_;
};
VCL_CLASS_IMPL(TProbe, TWinControl)

class TPlain : public TControl {
  VCL_CLASS();

 public:
  explicit TPlain(bool* destroyed) : destroyed_(destroyed) {}
  ~TPlain() override { *destroyed_ = true; }

 private:
  bool* destroyed_;
};
VCL_CLASS_IMPL(TPlain, TControl)

MyRect WindowRectInParent(HWND w) {
  RECT r;
  GetWindowRect(w, &r);
  if (GetWindowLongA(w, GWL_STYLE) & WS_CHILD)
    MapWindowPoints(HWND_DESKTOP, GetParent(w), reinterpret_cast<POINT*>(&r), 2);
  return {r.left, r.top, r.right, r.bottom};
}

TEST(ControlsWindow, HandleOnDemandWithBoundsAndState) {
  TProbe c;
  c.SetBounds(10, 20, 120, 80);
  c.SetWidth(-5);  // no negative sizes
  EXPECT_EQ(c.GetWidth(), 0);
  c.SetWidth(130);
  c.SetVisible(false);
  EXPECT_FALSE(c.HandleAllocated()) << "window made before it was asked for";

  HWND h = c.GetHandle();
  ASSERT_NE(h, nullptr);
  EXPECT_EQ(c.GetHandle(), h) << "second request made another window";
  char cls[64] = {};
  GetClassNameA(h, cls, sizeof cls);
  EXPECT_STREQ(cls, "TProbe");
  EXPECT_EQ(WindowRectInParent(h), (MyRect{10, 20, 140, 100})) << WindowRectInParent(h);
  EXPECT_FALSE(IsWindowVisible(h));
  EXPECT_EQ(GetWindowLongA(h, GWL_STYLE) & WS_POPUP, static_cast<LONG>(WS_POPUP)) << "parentless control";
  EXPECT_TRUE(c.Saw(WM_NCCREATE)) << "creation messages did not reach WndProc";

  // Changes after creation go to the window.
  c.SetBounds(5, 6, 50, 40);
  EXPECT_EQ(WindowRectInParent(h), (MyRect{5, 6, 55, 46})) << WindowRectInParent(h);
  EXPECT_EQ(c.GetClientRect(), (MyRect{0, 0, 50, 40})) << c.GetClientRect();
  c.Show();
  EXPECT_TRUE(IsWindowVisible(h));
  c.SetEnabled(false);
  EXPECT_FALSE(IsWindowEnabled(h));
  c.SetEnabled(true);
  EXPECT_TRUE(IsWindowEnabled(h));

  // Moving the window behind the control's back updates the control.
  MoveWindow(h, 30, 31, 70, 60, FALSE);
  EXPECT_EQ(c.GetBoundsRect(), (MyRect{30, 31, 100, 91})) << c.GetBoundsRect();

  EXPECT_EQ(c.Perform(WM_USER + 7, 0, 0), 42);
  EXPECT_TRUE(SendMessageA(h, WM_USER + 7, 0, 0) == 42);

  // A recreated window takes the current bounds and state.
  c.SetEnabled(false);
  c.DestroyHandle();
  EXPECT_FALSE(IsWindow(h));
  EXPECT_FALSE(c.HandleAllocated());
  HWND h2 = c.GetHandle();
  EXPECT_EQ(WindowRectInParent(h2), (MyRect{30, 31, 100, 91})) << WindowRectInParent(h2);
  EXPECT_FALSE(IsWindowEnabled(h2));

  // A window destroyed by someone else is noticed.
  DestroyWindow(h2);
  EXPECT_FALSE(c.HandleAllocated());
  EXPECT_NE(c.GetHandle(), nullptr);
}

TEST(ControlsWindow, ParentOwnsAndHostsChildren) {
  bool childGone = false, plainGone = false, grandGone = false;
  HWND parentWnd, childWnd, grandWnd;
  {
    TProbe parent;
    parent.SetBounds(0, 0, 200, 150);
    auto* child = new TProbe(&childGone);
    auto* plain = new TPlain(&plainGone);
    auto* grand = new TProbe(&grandGone);
    child->SetParent(&parent);
    plain->SetParent(&parent);
    grand->SetParent(child);
    child->SetBounds(10, 10, 100, 80);
    grand->SetBounds(5, 5, 20, 20);
    EXPECT_EQ(parent.GetControlCount(), 2);
    EXPECT_EQ(parent.GetControl(0), child);
    EXPECT_EQ(parent.GetControl(1), plain);
    EXPECT_EQ(parent.GetControl(2), nullptr);
    EXPECT_EQ(parent.GetControl(-1), nullptr);

    // Asking the grandchild for its window makes the whole chain.
    grandWnd = grand->GetHandle();
    ASSERT_TRUE(parent.HandleAllocated());
    parentWnd = parent.GetHandle();
    childWnd = child->GetHandle();
    EXPECT_EQ(GetParent(grandWnd), childWnd);
    EXPECT_EQ(GetParent(childWnd), parentWnd);
    EXPECT_EQ(GetWindowLongA(childWnd, GWL_STYLE) & WS_CHILD, static_cast<LONG>(WS_CHILD));
    EXPECT_EQ(WindowRectInParent(childWnd), (MyRect{10, 10, 110, 90})) << WindowRectInParent(childWnd);

    // No control lives inside itself or its descendants.
    parent.SetParent(grand);
    EXPECT_EQ(parent.GetParent(), nullptr);
    child->SetParent(child);
    EXPECT_EQ(child->GetParent(), &parent);

    // Destroying the parent's window takes the children's windows first; they
    // come back on demand.
    parent.DestroyHandle();
    EXPECT_FALSE(child->HandleAllocated());
    EXPECT_FALSE(grand->HandleAllocated());
    EXPECT_FALSE(IsWindow(childWnd));
    childWnd = child->GetHandle();
    parentWnd = parent.GetHandle();
    EXPECT_EQ(GetParent(childWnd), parentWnd);

    // Moving a control to another parent moves it between the lists and
    // gives it a window in the new parent.
    TProbe other;
    grand->SetParent(&other);
    EXPECT_EQ(child->GetControlCount(), 0);
    EXPECT_EQ(other.GetControl(0), grand);
    EXPECT_EQ(GetParent(grand->GetHandle()), other.GetHandle());
    grand->SetParent(child);
    EXPECT_EQ(other.GetControlCount(), 0);
    grandWnd = grand->GetHandle();
    EXPECT_EQ(GetParent(grandWnd), childWnd);

    // A child deleted on its own leaves its parent's list.
    bool tempGone = false;
    auto* temp = new TPlain(&tempGone);
    temp->SetParent(&parent);
    delete temp;
    EXPECT_EQ(parent.GetControlCount(), 2);
    EXPECT_FALSE(parent.ContainsControl(temp));
  }
  EXPECT_TRUE(childGone);
  EXPECT_TRUE(plainGone);
  EXPECT_TRUE(grandGone);
  EXPECT_FALSE(IsWindow(parentWnd));
  EXPECT_FALSE(IsWindow(childWnd));
  EXPECT_FALSE(IsWindow(grandWnd));

  // Deleted through the framework's delete, the same happens.
  childGone = false;
  auto* p = new TProbe();
  auto* c = new TProbe(&childGone);
  c->SetParent(p);
  HWND cw = c->GetHandle();
  delete p;
  EXPECT_TRUE(childGone);
  EXPECT_FALSE(IsWindow(cw));
}

TEST(ControlsWindow, ForeignParentWindow) {
  TProbe host;
  host.SetBounds(0, 0, 100, 100);
  TProbe c;
  c.SetBounds(1, 2, 10, 10);
  ASSERT_TRUE(IsWindowVisible(host.GetHandle()));
  EXPECT_NE(GetForegroundWindow(), host.GetHandle()) << "a shown control took the foreground";
  HWND first = c.GetHandle();
  c.SetParentWindow(host.GetHandle());
  EXPECT_FALSE(IsWindow(first)) << "pop-up window kept after the parent window was set";
  HWND w = c.GetHandle();
  EXPECT_EQ(GetParent(w), host.GetHandle());
  EXPECT_EQ(WindowRectInParent(w), (MyRect{1, 2, 11, 12})) << WindowRectInParent(w);
  c.DestroyHandle();
}

}  // namespace
