// Hints: the mouse resting on a control shows the short part of its Hint in
// the system's tooltip window, found through windowless controls and
// parents; pauses, presses and ShowHint put it away or keep it from showing.
#include <gtest/gtest.h>

#include <string>

#include "platform/vcl/forms/application.h"
#include "platform/vcl/stdctrls/std_buttons.h"
#include "platform/vcl/stdctrls/std_label.h"
#include "tests/platform/vcl/test_helpers.h"

using namespace Forms;
using vcl_test::Make;

namespace {

// Puts the mouse on a point of control and tells the window under it, as
// the system would.
void MoveMouseTo(Controls::TControl* control, int x, int y) {
  const MyPoint screen = control->ClientToScreen({x, y});
  SetCursorPos(screen.x, screen.y);
  auto* w = dynamic_cast<Controls::TWinControl*>(control);
  if (!w) w = control->GetParent();
  const MyPoint local = w->ScreenToClient(screen);
  PostMessageA(w->GetHandle(), WM_MOUSEMOVE, 0, MAKELPARAM(local.x, local.y));
}

// Runs the message loop until the shown hint is `expected` (at most ms).
std::string WaitForHint(const char* expected, int ms = 3000) {
  for (int i = 0; i < ms / 10 && std::string(Application->GetShownHint().c_str()) != expected; ++i) {
    Application->ProcessMessages();
    Sleep(10);
  }
  return Application->GetShownHint().c_str();
}

TEST(TApplicationHint, TheMouseRestingOnAControlShowsItsHint) {
  Application->Initialize();
  Application->SetHintPause(50);
  Application->SetHintHidePause(400);
  TForm form(nullptr);
  form.SetBounds(100, 100, 300, 200);
  form.SetHint("The form");
  form.SetShowHint(true);
  auto* button = Make<Stdctrls::TButton>(&form, &form, 10, 10, 100, 30);
  button->SetHint("Save|Saves the file under its name");
  auto* label = Make<Stdctrls::TLabel>(&form, &form);
  label->SetAutoSize(false);
  label->SetBounds(10, 100, 100, 20);
  label->SetHint("A label");
  auto* plain = Make<Stdctrls::TButton>(&form, &form, 150, 10, 100, 30);
  form.Show();
  Application->ProcessMessages();

  MoveMouseTo(button, 50, 15);
  EXPECT_EQ("Save", WaitForHint("Save")) << "the part before '|'";
  ASSERT_TRUE(Application->GetHintWindow() != nullptr);
  EXPECT_TRUE(IsWindowVisible(Application->GetHintWindow()));
  EXPECT_EQ("", WaitForHint("")) << "gone after the hide pause";
  EXPECT_FALSE(IsWindowVisible(Application->GetHintWindow()));

  MoveMouseTo(label, 5, 5);
  EXPECT_EQ("A label", WaitForHint("A label")) << "a label, through its parent's window";
  MoveMouseTo(plain, 5, 5);
  EXPECT_EQ("The form", WaitForHint("The form")) << "a control without a hint: its parent's";

  MoveMouseTo(button, 50, 15);
  EXPECT_EQ("Save", WaitForHint("Save"));
  PostMessageA(button->GetHandle(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(50, 15));
  PostMessageA(button->GetHandle(), WM_LBUTTONUP, 0, MAKELPARAM(50, 15));
  EXPECT_EQ("", WaitForHint("")) << "a press puts it away";

  form.SetShowHint(false);
  button->SetShowHint(false);
  MoveMouseTo(label, 5, 5);
  EXPECT_EQ("", WaitForHint("A label", 300)) << "ShowHint off, here and through the parent";
  Application->SetHintPause(500);
  Application->SetHintHidePause(2500);
}

}  // namespace
