// Pumping messages from a busy loop: only one form's, up to a quit; asking
// whether the user wants to interrupt without taking anything; the pending
// I/O error number kept.
#include "velkin/controls/vcl_messages.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "platform/ostrel/ioerror.h"
#include "platform/vcl/forms/application.h"
#include "platform/vcl/stdctrls/std_buttons.h"
#include "platform/vcl/stdctrls/std_edits.h"

namespace {

struct Clicks {
  std::string log;
  void Click(System::TObject* sender) {
    log += static_cast<Stdctrls::TButton*>(sender)->GetName().c_str();
    SetErrorN(0);  // a handler that disturbs the error number
  }
};

struct TwoForms {
  Clicks clicks;
  Forms::TForm a{nullptr}, b{nullptr};
  Stdctrls::TButton* inA = Button(&a, "A");
  Stdctrls::TButton* inB = Button(&b, "B");
  Stdctrls::TButton* Button(Forms::TForm* form, const char* name) {
    auto* button = new Stdctrls::TButton(form);
    button->SetName(name);
    button->SetParent(form);
    button->SetOnClick({&clicks, &Clicks::Click});
    return button;
  }
};

bool Waiting(UINT message) {
  MSG m;
  return PeekMessageA(&m, nullptr, message, message, PM_NOREMOVE);
}

TEST(ProcessMessages, OnlyTheFormsMessagesUpToAQuit) {
  Forms::Application->Initialize();
  TwoForms f;
  f.a.Show();
  f.b.Show();
  Forms::Application->ProcessMessages();

  const struct {
    const char* what;
    Forms::TForm* form;
    bool quit;
    const char* clicks;
    bool clickLeft;  // a click is still waiting afterwards
  } rows[] = {
      {"a form's own click runs, the other's (and its paint) is thrown away", &f.a, false, "A", false},
      {"without a form, every click runs", nullptr, false, "AB", false},
      {"a quit ends the pump and is gone; what follows waits", nullptr, true, "", true},
  };
  for (const auto& r : rows) {
    f.clicks.log.clear();
    if (r.quit) PostMessageA(nullptr, WM_QUIT, 0, 0);
    PostMessageA(f.inA->GetHandle(), BM_CLICK, 0, 0);
    PostMessageA(f.inB->GetHandle(), BM_CLICK, 0, 0);
    InvalidateRect(f.b.GetHandle(), nullptr, TRUE);
    SetErrorN(42);
    ProcessMessages(r.form);
    EXPECT_EQ(42, GetIOErrorN()) << r.what;
    EXPECT_EQ(r.clicks, f.clicks.log) << r.what;
    EXPECT_EQ(r.clickLeft, Waiting(BM_CLICK)) << r.what;
    EXPECT_FALSE(Waiting(WM_QUIT)) << r.what;
    ProcessMessages(r.form);  // what was thrown away does not come back
    EXPECT_EQ(r.quit ? "AB" : r.clicks, f.clicks.log) << r.what;
  }
  PostMessageA(f.inB->GetHandle(), BM_CLICK, 0, 0);
  SetErrorN(43);
  HProcessMessages();
  EXPECT_EQ(43, GetIOErrorN());
  EXPECT_EQ("B", f.clicks.log.substr(f.clicks.log.size() - 1));
  f.a.Hide();
  f.b.Hide();
}

// Real input: keys go to the focused edit, a click to the form under the mouse.
TEST(CheckTerminationMessages, InputWaitingIsSeenAndLeftInTheQueue) {
  Forms::Application->Initialize();
  Forms::TForm form(nullptr);
  auto* edit = new Stdctrls::TEdit(&form);
  edit->SetParent(&form);
  form.SetBounds(100, 100, 300, 200);
  form.Show();
  SetForegroundWindow(form.GetHandle());
  edit->SetFocus();
  Forms::Application->ProcessMessages();
  EXPECT_FALSE(CheckTerminationMessages(nullptr)) << "nothing waiting";

  const auto send = [](INPUT input) {
    SendInput(1, &input, sizeof input);
    // The input reaches the queue through the window system: wait (bounded).
    for (int i = 0; i < 200 && !GetQueueStatus(QS_INPUT); ++i) Sleep(5);
  };
  INPUT key{};
  key.type = INPUT_KEYBOARD;
  key.ki.wVk = 'Q';
  send(key);
  EXPECT_TRUE(CheckTerminationMessages(edit->GetHandle())) << "a key for the edit";
  EXPECT_TRUE(CheckTerminationMessages(nullptr)) << "a key for any window";
  EXPECT_TRUE(CheckTerminationMessages(form.GetHandle())) << "a key for a control inside the window";
  Forms::TForm other(nullptr);
  EXPECT_FALSE(CheckTerminationMessages(other.GetHandle())) << "no key for another window";
  EXPECT_TRUE(CheckTerminationMessages(nullptr)) << "left in the queue";
  key.ki.dwFlags = KEYEVENTF_KEYUP;
  send(key);
  Forms::Application->ProcessMessages();
  EXPECT_EQ("q", std::string(edit->GetText().c_str())) << "the key arrived afterwards";

  SetCursorPos(150, 150);
  INPUT click{};
  click.type = INPUT_MOUSE;
  click.mi.dwFlags = MOUSEEVENTF_LEFTDOWN;
  send(click);
  EXPECT_TRUE(CheckTerminationMessages(nullptr)) << "a mouse button, no key";
  click.mi.dwFlags = MOUSEEVENTF_LEFTUP;
  send(click);
  Forms::Application->ProcessMessages();
  form.Hide();
}

}  // namespace
