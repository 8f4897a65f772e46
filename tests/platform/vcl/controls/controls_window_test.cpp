// Windowed controls: the window made on demand and made again with the
// control's state, parents hosting their children's windows, focusability,
// painting on request and the order of siblings.
#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "platform/vcl/controls/controls.h"
#include "platform/vcl/forms/application.h"
#include "platform/vcl/stdctrls/ext_panels.h"
#include "platform/vcl/stdctrls/std_buttons.h"
#include "platform/vcl/stdctrls/std_edits.h"
#include "tests/platform/vcl/test_helpers.h"

using Controls::TControl;
using Controls::TWinControl;

namespace {

// Records its destruction; answers a private message.
struct TProbe : TWinControl {
  explicit TProbe(TWinControl* parent = nullptr, bool* g = nullptr) : gone(g ? g : &spare) { SetParent(parent); }
  ~TProbe() override { *gone = true; }
  void WndProc(Controls::TMessage& m) override {
    paints += m.Msg == WM_PAINT;
    if (m.Msg == WM_USER + 7)
      m.Result = 42;
    else
      TWinControl::WndProc(m);
  }
  bool spare = false, *gone;
  int paints = 0;
};

struct TPlain : TControl {
  TPlain(TWinControl* parent, bool* gone) : gone(gone) { SetParent(parent); }
  ~TPlain() override { *gone = true; }
  bool* gone;
};

// A window as its parent sees it: "child 10,20 130x80 visible disabled".
std::string Window(HWND w) {
  if (!IsWindow(w)) return "none";
  RECT r;
  GetWindowRect(w, &r);
  MapWindowPoints(HWND_DESKTOP, GetAncestor(w, GA_PARENT), reinterpret_cast<POINT*>(&r), 2);
  const LONG style = GetWindowLongA(w, GWL_STYLE);
  return std::string(style & WS_CHILD   ? "child "
                     : style & WS_POPUP ? "popup "
                                        : "? ") +
         std::to_string(r.left) + "," + std::to_string(r.top) + " " + std::to_string(r.right - r.left) + "x" +
         std::to_string(r.bottom - r.top) + (IsWindowVisible(w) ? " visible" : "") +
         (IsWindowEnabled(w) ? "" : " disabled");
}

TEST(ControlsWindow, HandleOnDemandWithBoundsAndState) {
  TProbe c;
  c.SetBounds(10, 20, 130, 80);
  c.SetVisible(false);
  EXPECT_EQ(42, c.Perform(WM_USER + 7, 0, 0)) << "Perform goes straight to WndProc";
  EXPECT_FALSE(c.HandleAllocated()) << "window made before it was asked for";
  HWND h = c.GetHandle();
  EXPECT_EQ("popup 10,20 130x80", Window(h)) << "parentless control";

  // Changes after creation go to the window, and the window's to the control.
  c.SetBounds(5, 6, 50, 40);
  c.Show();
  EXPECT_EQ("popup 5,6 50x40 visible", Window(h));
  MoveWindow(h, 30, 31, 70, 60, FALSE);
  EXPECT_EQ(c.GetBoundsRect(), (MyRect{30, 31, 100, 91}));
  EXPECT_EQ(SendMessageA(h, WM_USER + 7, 0, 0), 42);

  // A recreated window takes the current bounds and state.
  c.SetEnabled(false);
  EXPECT_EQ("popup 30,31 70x60 visible disabled", Window(h));
  c.DestroyHandle();
  EXPECT_EQ("none", Window(h));
  HWND h2 = c.GetHandle();
  EXPECT_EQ("popup 30,31 70x60 visible disabled", Window(h2));
  DestroyWindow(h2);
  EXPECT_FALSE(c.HandleAllocated()) << "a window destroyed by someone else";

  // A foreign parent window replaces the pop-up window.
  TProbe host;
  h = c.GetHandle();
  c.SetParentWindow(host.GetHandle());
  EXPECT_EQ("none", Window(h));
  EXPECT_EQ(GetParent(c.GetHandle()), host.GetHandle());
  EXPECT_EQ("child 30,31 70x60 visible disabled", Window(c.GetHandle()));
  c.DestroyHandle();
}

TEST(ControlsWindow, ParentOwnsAndHostsChildren) {
  bool childGone = false, plainGone = false, grandGone = false, tempGone = false;
  TProbe other;
  auto* parent = new TProbe;
  parent->SetBounds(0, 0, 200, 150);
  auto* child = new TProbe(parent, &childGone);
  new TPlain(parent, &plainGone);
  auto* grand = new TProbe(child, &grandGone);
  child->SetBounds(10, 10, 100, 80);

  // Asking the grandchild for its window makes the whole chain.
  HWND grandWnd = grand->GetHandle();
  ASSERT_TRUE(parent->HandleAllocated());
  HWND childWnd = child->GetHandle();
  EXPECT_EQ(GetParent(grandWnd), childWnd);
  EXPECT_EQ(GetParent(childWnd), parent->GetHandle());
  EXPECT_EQ("child 10,10 100x80 visible", Window(childWnd));

  // No control lives inside itself or its descendants.
  parent->SetParent(grand);
  EXPECT_EQ(parent->GetParent(), nullptr);
  child->SetParent(child);
  EXPECT_EQ(child->GetParent(), parent);

  // The parent's window goes with the children's; they come back on demand.
  parent->DestroyHandle();
  EXPECT_FALSE(grand->HandleAllocated());
  EXPECT_EQ("none", Window(childWnd));
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
  EXPECT_EQ("none", Window(grandWnd));
  EXPECT_EQ(0u, Window(grand->GetHandle()).find("popup "));
  grand->SetParent(child);
  grandWnd = grand->GetHandle();

  // A window's control: only windows this framework made have one.
  const OwnedWindow foreign(CreateWindowExA(0, "STATIC", "", WS_POPUP, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr));
  EXPECT_EQ(TWinControl::FindControl(childWnd), child);
  EXPECT_EQ(TWinControl::FindControl(grandWnd), grand);
  for (HWND none : {foreign.get(), GetDesktopWindow(), HWND{}}) EXPECT_EQ(TWinControl::FindControl(none), nullptr);

  // Focusable only while the control and every parent are visible and enabled.
  EXPECT_TRUE(grand->CanFocus());
  TControl* const levels[] = {grand, child, parent};
  for (int level = 0; level < 3; ++level)
    for (void (TControl::*set)(bool) : {&TControl::SetVisible, &TControl::SetEnabled}) {
      TControl* c = levels[level];
      (c->*set)(false);
      EXPECT_FALSE(grand->CanFocus()) << (set == &TControl::SetVisible ? "hidden" : "disabled") << ", level " << level;
      (c->*set)(true);
      EXPECT_TRUE(grand->CanFocus()) << "back, level " << level;
    }

  // A child deleted on its own leaves its parent's list.
  auto* temp = new TPlain(parent, &tempGone);
  delete temp;
  EXPECT_FALSE(parent->ContainsControl(temp));
  HWND parentWnd = parent->GetHandle();
  delete parent;
  EXPECT_TRUE(childGone && plainGone && grandGone) << childGone << plainGone << grandGone;
  for (HWND w : {parentWnd, childWnd, grandWnd}) EXPECT_FALSE(IsWindow(w)) << w;
  EXPECT_EQ(TWinControl::FindControl(childWnd), nullptr) << "a destroyed window";
}

// Invalidate marks the control's area, Update paints what is marked now,
// Repaint does both; a windowless control's area is in its parent's window.
// SendToBack puts a control first among its siblings and its window last.
TEST(ControlsWindow, PaintOnRequestAndSendToBack) {
  TProbe parent;
  parent.SetBounds(0, 0, 200, 150);
  auto* windowed = new TProbe(&parent);
  windowed->SetBounds(10, 10, 50, 40);
  bool plainGone = false;
  auto* plain = new TPlain(&parent, &plainGone);
  plain->SetBounds(100, 20, 30, 25);
  auto* last = new TProbe(&parent);
  RedrawWindow(parent.GetHandle(), nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
  RECT r;
  ASSERT_TRUE(IsWindowVisible(windowed->GetHandle()));
  ASSERT_FALSE(GetUpdateRect(parent.GetHandle(), &r, FALSE) || GetUpdateRect(windowed->GetHandle(), &r, FALSE))
      << "painted before the steps";

  for (TControl* c : std::initializer_list<TControl*>{windowed, plain}) {
    TProbe* painted = c == plain ? &parent : windowed;  // the window that paints the control
    const struct {
      const char* what;
      void (TControl::*act)();
      bool invalidAfter;
      int paints;
    } rows[] = {{"Invalidate", &TControl::Invalidate, true, 0},
                {"Update", &TControl::Update, false, 1},
                {"Repaint", &TControl::Repaint, false, 1}};
    for (const auto& row : rows) {
      const std::string what = (c == plain ? "windowless, " : "windowed, ") + std::string(row.what);
      const int before = painted->paints;
      (c->*row.act)();
      EXPECT_EQ(row.invalidAfter, GetUpdateRect(painted->GetHandle(), &r, FALSE) != 0) << what;
      EXPECT_EQ(row.paints, painted->paints - before) << what;
      if (row.invalidAfter && c == plain) {
        EXPECT_EQ((MyRect{r.left, r.top, r.right, r.bottom}), plain->GetBoundsRect()) << what << ": only its area";
      }
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

// A user interface that changes on the screen: what comes into a shown form,
// or is moved to another place in it, is there at once, as a user sees it.
TEST(ControlsWindow, ControlsAddedToAShownFormAppearAndMovesKeepThemShown) {
  System::TEventHandlers on;
  Forms::TForm form(nullptr);
  form.SetBorderStyle(Forms::bsNone);
  form.SetBounds(0, 0, 300, 200);
  form.Show();
  Forms::Application->ProcessMessages();
  auto* button = vcl_test::Make<Stdctrls::TButton>(&form, &form, 10, 150, 80, 25);
  auto* panel = new Extctrls::TPanel(&form);
  panel->SetHeight(40);
  panel->SetAlign(Controls::alTop);
  panel->SetParent(&form);
  auto* edit = vcl_test::Make<Stdctrls::TEdit>(&form, panel, 5, 5, 100, 21);
  Stdctrls::TButton* made = nullptr;  // by a click, as a handler would
  button->SetOnClick(
      on.Add([&](System::TObject*) { made = vcl_test::Make<Stdctrls::TButton>(&form, &form, 200, 150, 60, 25); }));
  SendMessageA(button->GetHandle(), BM_CLICK, 0, 0);
  Forms::Application->ProcessMessages();
  ASSERT_NE(nullptr, made);

  const struct {
    const char* what;
    TWinControl* control;
    TWinControl* parent;
    const char* window;
  } rows[] = {{"button", button, &form, "child 10,150 80x25 visible"},
              {"aligned panel", panel, &form, "child 0,0 300x40 visible"},
              {"edit on the new panel", edit, panel, "child 5,5 100x21 visible"},
              {"made by a click", made, &form, "child 200,150 60x25 visible"}};
  for (const auto& row : rows) {
    ASSERT_TRUE(row.control->HandleAllocated()) << row.what;
    EXPECT_EQ(GetParent(row.control->GetHandle()), row.parent->GetHandle()) << row.what;
    EXPECT_EQ(row.window, Window(row.control->GetHandle())) << row.what;
  }

  // Moved while shown: the same window, shown in its new parent at the
  // control's place; then into a parent without a window yet.
  HWND buttonWnd = button->GetHandle();
  button->SetParent(panel);
  EXPECT_EQ(buttonWnd, button->GetHandle());
  EXPECT_EQ(GetParent(buttonWnd), panel->GetHandle());
  EXPECT_EQ("child 10,150 80x25 visible", Window(buttonWnd));
  auto* away = new Extctrls::TPanel(&form);
  edit->SetParent(away);
  EXPECT_FALSE(edit->HandleAllocated()) << "no window to live in";
  away->SetParent(&form);
  EXPECT_EQ(GetParent(edit->GetHandle()), away->GetHandle()) << "comes with its new parent's window";
  EXPECT_TRUE(IsWindowVisible(edit->GetHandle()));
}

}  // namespace
