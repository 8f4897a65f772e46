// The application: its hidden window and title, one message at a time or all
// waiting, idle time, what happens to exceptions that handlers let out, the
// screen's forms, and a whole program's life from Initialize to the main
// form's close, driven from inside its loop.
#include "platform/vcl/forms/application.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>

#include "platform/vcl/stdctrls/std_buttons.h"
#include "platform/vcl/stdctrls/std_edits.h"
#include "platform/vcl/stdctrls/std_lists.h"
#include "tests/platform/vcl/test_helpers.h"

using namespace Forms;
using namespace vcl_test;

namespace {

// Counts the WM_APP messages its window gets.
struct TCounter : Controls::TWinControl {
  int seen = 0;
  TCounter() { SetVisible(false); }
  void WndProc(Controls::TMessage& m) override {
    seen += m.Msg == WM_APP;
    TWinControl::WndProc(m);
  }
};

void CALLBACK Nothing(HWND, UINT, UINT_PTR, DWORD) {}

TEST(TApplication, WindowTitleMessagesAndIdleTime) {
  Application->Initialize();
  const HWND handle = Application->GetHandle();
  ASSERT_TRUE(IsWindow(handle));
  EXPECT_FALSE(IsWindowVisible(handle));
  Application->SetTitle("Orders");
  EXPECT_EQ("Orders", WindowText(handle)) << "the title is the window's text";

  // One message a call; ProcessMessages handles all that wait.
  TCounter counter;
  PostMessageA(counter.GetHandle(), WM_APP, 0, 0);
  PostMessageA(counter.GetHandle(), WM_APP, 0, 0);
  for (int i = 0; i < 1000 && counter.seen == 0; ++i) Application->HandleMessage();
  EXPECT_EQ(1, counter.seen);
  Application->ProcessMessages();
  EXPECT_EQ(2, counter.seen);

  // With nothing to do, HandleMessage runs OnIdle; Done = false: no wait for
  // a message after it (the timer ends a wait that should not happen).
  int idle = 0;
  System::TEventHandlers on;
  Application->SetOnIdle(on.Add([&](System::TObject*, bool& done) { ++idle, done = false; }));
  const UINT_PTR bound = SetTimer(nullptr, 0, 2000, &Nothing);
  for (int i = 0; i < 1000 && idle == 0; ++i) Application->HandleMessage();
  KillTimer(nullptr, bound);
  Application->SetOnIdle({});
  EXPECT_EQ(1, idle);
}

TEST(TApplication, HandlersExceptionsGoToOnExceptionElseToAMessageBox) {
  Application->Initialize();
  Application->SetTitle("Orders");
  std::string seen;
  std::function<void()> fail;
  System::TEventHandlers on;
  Application->SetOnException(on.Add([&](System::TObject* sender, const Sysutils::Exception& e) {
    seen += std::string(sender == Application ? "" : "(another sender) ") + e.Message.c_str() + "|";
  }));
  TForm form(nullptr);
  auto* button = Make<Stdctrls::TButton>(&form, &form);
  button->SetOnClick(on.Add([&](System::TObject*) { fail(); }));
  const auto press = [&](std::function<void()> failure) {
    fail = std::move(failure);
    SendMessageA(button->GetHandle(), BM_CLICK, 0, 0);
  };
  press([] { throw Sysutils::EConvertError("not a number"); });
  press([] { throw std::runtime_error("out of range"); });
  Application->SetOnIdle(on.Add([](System::TObject*, bool& done) {
    done = false;
    throw Sysutils::Exception("idle failed");
  }));
  Application->ProcessMessages();
  for (int i = 0; i < 1000 && seen.find("idle") == std::string::npos; ++i) Application->HandleMessage();
  Application->SetOnIdle({});
  EXPECT_EQ("not a number|out of range|idle failed|", seen);

  // Without a handler the message is shown, titled with the title; a user
  // presses OK.
  Application->SetOnException({});
  std::string text, caption;
  loop_driver::Drive(
      {[&] {
        HWND box = loop_driver::MessageBoxWindow();
        if (!box) return false;
        char buffer[128] = {};
        GetDlgItemTextA(box, 0xFFFF, buffer, sizeof buffer);
        text = buffer;
        caption = WindowText(box);
        PostMessageA(box, WM_COMMAND, IDOK, 0);
        return true;
      }},
      [] {
        if (HWND box = loop_driver::MessageBoxWindow()) PostMessageA(box, WM_COMMAND, IDOK, 0);
      },
      [&] {
        press([] { throw Sysutils::Exception("Disk full"); });
        return 0;
      });
  EXPECT_TRUE(loop_driver::Finished()) << "no message box came";
  EXPECT_EQ("Disk full.", text);
  EXPECT_EQ("Orders", caption);
}

TEST(TScreen, FormsAndTheActiveForm) {
  const int before = Screen->GetFormCount();
  auto first = std::make_unique<TForm>(nullptr);
  auto second = std::make_unique<TForm>(nullptr);
  ASSERT_EQ(before + 2, Screen->GetFormCount());
  EXPECT_EQ(first.get(), Screen->GetForm(before));
  EXPECT_EQ(second.get(), Screen->GetForm(before + 1));
  for (int bad : {-1, before + 2})
    EXPECT_EQ("List index out of bounds (" + std::to_string(bad) + ")",
              ErrorOf<Classes::EListError>([&] { Screen->GetForm(bad); }));
  first->Show();
  second->Show();
  for (TForm* f : {first.get(), second.get()}) {
    SetActiveWindow(f->GetHandle());
    EXPECT_EQ(f, Screen->GetActiveForm()) << "form " << (f == first.get() ? 1 : 2);
  }
  first.reset();
  EXPECT_EQ(before + 1, Screen->GetFormCount());
  EXPECT_EQ(second.get(), Screen->GetForm(before));
}

// A program's main window: a list, a memo and a button that adds the memo's
// text to the list.
class TMainWindow : public TForm {
 public:
  explicit TMainWindow(Classes::TComponent* owner) : TForm(owner) { add->SetOnClick({this, &TMainWindow::AddClick}); }
  Stdctrls::TListBox* list = Make<Stdctrls::TListBox>(this, this, 0, 0, 120, 200);
  Stdctrls::TMemo* memo = Make<Stdctrls::TMemo>(this, this, 120, 0, 200, 200);
  Stdctrls::TButton* add = Make<Stdctrls::TButton>(this, this, 120, 210, 75, 24);

 private:
  void AddClick(System::TObject*) { list->GetItems()->Add(memo->GetText()); }
};

// Run shows the main form and handles messages until the main form is
// closed; an exception out of the loop goes to OnException and the loop goes
// on.
TEST(TApplication, RunShowsTheMainFormUntilItIsClosed) {
  Application->Initialize();
  TMainWindow* main = nullptr;
  TForm* second = nullptr;
  Application->CreateForm(main);
  Application->CreateForm(second);
  const std::unique_ptr<TForm> mainGoes(main), secondGoes(second);
  EXPECT_EQ(main, Application->GetMainForm()) << "the first form made is the main form";

  std::string seen;
  System::TEventHandlers on;
  Application->SetOnException(
      on.Add([&](System::TObject*, const Sysutils::Exception& e) { seen += e.Message.c_str(); }));
  TQueuer queuer(on.Add([] { throw Sysutils::Exception("queued call failed"); }));
  ASSERT_EQ(WAIT_OBJECT_0, WaitForSingleObject(queuer.GetHandle(), 10000));

  bool shown = false;
  std::string failure;
  loop_driver::Drive(
      {[&] {
         if (!IsWindowVisible(main->GetHandle()) || seen.empty()) return false;
         shown = !IsWindowVisible(second->GetHandle());
         // A user types a line and presses Add.
         main->memo->SetFocus();
         for (char c : std::string("bolts")) PostMessageA(main->memo->GetHandle(), WM_CHAR, c, 1);
         PostMessageA(main->add->GetHandle(), BM_CLICK, 0, 0);
         return true;
       },
       [&] {
         if (main->list->GetItems()->GetCount() == 0) return false;
         PostMessageA(main->GetHandle(), WM_CLOSE, 0, 0);
         return true;
       }},
      [] { Application->Terminate(); },
      [&] {
        failure = ErrorOf<Sysutils::Exception>([] { Application->Run(); });
        return 0;
      });
  EXPECT_EQ("", failure) << "Run let an exception out";
  EXPECT_TRUE(loop_driver::Finished());
  EXPECT_EQ("queued call failed", seen);
  EXPECT_TRUE(shown) << "the main form shown, the other not";
  ASSERT_EQ(1, main->list->GetItems()->GetCount());
  EXPECT_EQ("bolts", Str(main->list->GetItems()->Get(0)));
  EXPECT_FALSE(IsWindowVisible(main->GetHandle())) << "closed: hidden";
  Application->SetOnException({});
}

// Each end of Run is used up by it: the next Run works, and so does a modal
// form after it. Terminate during a modal form ends the form, then Run; a
// Terminate before Run ends it at once.
TEST(TApplication, RunEndsAndRunsAgain) {
  Application->Initialize();
  TForm* main = nullptr;
  Application->CreateForm(main);
  const std::unique_ptr<TForm> mainGoes(main);
  TForm dialog(nullptr);
  Controls::TModalResult shown = Controls::mrNone;
  System::TEventHandlers on;
  auto* open = Make<Stdctrls::TButton>(main, main);
  open->SetOnClick(on.Add([&](System::TObject*) { shown = dialog.ShowModal(); }));
  const auto giveUp = [&] {
    dialog.SetModalResult(Controls::mrAbort);
    Application->Terminate();
  };
  const auto when = [](bool ready, const std::function<void()>& act) {
    if (ready) act();
    return ready;
  };

  struct Ending {
    const char* name;
    std::vector<loop_driver::Step> steps;
  };
  const Ending endings[] = {
      {"main form closed", {[&] {
         return when(IsWindowVisible(main->GetHandle()), [&] { PostMessageA(main->GetHandle(), WM_CLOSE, 0, 0); });
       }}},
      {"terminated in a modal form",
       {[&] {
          return when(IsWindowVisible(main->GetHandle()), [&] { PostMessageA(open->GetHandle(), BM_CLICK, 0, 0); });
        },
        [&] { return when(IsWindowVisible(dialog.GetHandle()), [] { Application->Terminate(); }); }}},
  };
  for (const Ending& e : endings) {
    SCOPED_TRACE(e.name);
    loop_driver::Drive(e.steps, giveUp, [] {
      Application->Run();
      return 0;
    });
    EXPECT_TRUE(loop_driver::Finished()) << "Run ended before its steps ran";
    EXPECT_FALSE(Application->GetTerminated()) << "used up by the Run it ended";
  }
  EXPECT_EQ(Controls::mrCancel, shown) << "Terminate ends the modal form";
  EXPECT_FALSE(IsWindowVisible(dialog.GetHandle()));

  const Controls::TModalResult after = loop_driver::Drive(
      {[&] { return when(IsWindowVisible(dialog.GetHandle()), [&] { dialog.SetModalResult(Controls::mrOk); }); }},
      giveUp, [&] { return dialog.ShowModal(); });
  EXPECT_EQ(Controls::mrOk, after) << "a modal form after Run ran until its own end";

  main->Hide();
  Application->Terminate();
  loop_driver::Drive({}, giveUp, [] {
    Application->Run();
    return 0;
  });
  EXPECT_TRUE(loop_driver::Finished()) << "a Terminate before Run ends it at once";
  EXPECT_FALSE(IsWindowVisible(main->GetHandle()));
}

}  // namespace
