// Forms with real controls, driven with real key messages through their
// window procedures: default and cancel buttons end ShowModal, a swallowed
// key never reaches its edit, Tab follows the tab order, radio buttons
// exclude each other, and the task windows come back exactly as they were.
#include "platform/vcl/forms.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "platform/vcl/application.h"
#include "platform/vcl/std_buttons.h"
#include "platform/vcl/std_edits.h"
#include "platform/vcl/std_label.h"
#include "platform/vcl/thread.h"
#include "tests/platform/vcl/loop_driver.h"

using namespace Forms;
using namespace Stdctrls;

namespace {

// A dialog: an edit and OK / Cancel buttons, laid out as a small form.
struct Dialog {
  TForm* form = new TForm(nullptr);
  TEdit* edit = new TEdit(form);
  TButton* ok = new TButton(form);
  TButton* cancel = new TButton(form);
  Dialog() {
    form->SetCaption("Dialog");
    form->SetBorderStyle(bsDialog);
    form->SetPosition(poScreenCenter);
    form->SetClientWidth(260);
    form->SetClientHeight(90);
    for (Controls::TWinControl* c : std::vector<Controls::TWinControl*>{edit, ok, cancel}) c->SetParent(form);
    edit->SetBounds(12, 12, 236, 23);
    ok->SetBounds(92, 52, 75, 25);
    ok->SetText("OK");
    ok->SetDefault(true);
    ok->SetModalResult(Controls::mrOk);
    cancel->SetBounds(173, 52, 75, 25);
    cancel->SetText("Cancel");
    cancel->SetCancel(true);
    cancel->SetModalResult(Controls::mrCancel);
  }
  ~Dialog() { delete form; }
};

// Ends a modal loop that nothing else ended, so a failing case cannot hang.
TForm* watched = nullptr;
void CALLBACK Watchdog(HWND, UINT, UINT_PTR, DWORD) {
  if (watched) watched->SetModalResult(Controls::mrAbort);
}

// Posts key to the window, then runs the form modal; returns its result.
TModalResult ModalAfterKey(Dialog& d, HWND target, WORD key) {
  d.form->GetHandle();
  PostMessageA(target, WM_KEYDOWN, key, 1);
  PostMessageA(target, WM_KEYUP, key, 0xC0000001);
  watched = d.form;
  const UINT_PTR timer = SetTimer(nullptr, 0, 5000, &Watchdog);
  const TModalResult result = d.form->ShowModal();
  KillTimer(nullptr, timer);
  watched = nullptr;
  return result;
}

TEST(TCustomForm, EnterAndEscapeEndShowModalThroughDefaultAndCancelButtons) {
  struct Row {
    const char* what;
    WORD key;
    bool toButton;  // the key goes to the OK button's window, else to the edit's
    TModalResult expected;
  };
  const Row rows[] = {
      {"Enter in the edit", VK_RETURN, false, Controls::mrOk},
      {"Escape in the edit", VK_ESCAPE, false, Controls::mrCancel},
      {"Escape on the OK button", VK_ESCAPE, true, Controls::mrCancel},
  };
  for (const Row& r : rows) {
    Dialog d;
    int clicks = 0;
    struct Counter {
      int* n;
      void Clicked(System::TObject*) { ++*n; }
    } counter{&clicks};
    d.ok->SetOnClick(System::TNotifyEvent(&counter, &Counter::Clicked));
    const TModalResult result = ModalAfterKey(d, r.toButton ? d.ok->GetHandle() : d.edit->GetHandle(), r.key);
    EXPECT_EQ(r.expected, result) << r.what << " (3: the watchdog ended it)";
    EXPECT_FALSE(IsWindowVisible(d.form->GetHandle())) << r.what;
    EXPECT_EQ(r.expected == Controls::mrOk ? 1 : 0, clicks) << r.what;
    EXPECT_EQ("", std::string(d.edit->GetText().c_str())) << r.what << ": no character reached the edit";
    char caption[16] = {};
    GetWindowTextA(d.ok->GetHandle(), caption, sizeof caption);
    EXPECT_EQ("OK", std::string(caption)) << "the text set before the window was made is its caption";
  }
  // A visible form cannot be made modal.
  Dialog d;
  d.form->Show();
  EXPECT_THROW(d.form->ShowModal(), EInvalidOperation);
}

TEST(TCustomForm, KeyEventsCanSwallowKeysAndTabFollowsTheTabOrder) {
  Dialog d;
  struct Filter {
    std::string seen;
    void Press(System::TObject*, char& key) {
      seen += key;
      if (key == 'x') key = 0;
      if (key == 'a') key = 'A';
    }
  } filter;
  d.edit->SetOnKeyPress(Controls::TKeyPressEvent(&filter, &Filter::Press));
  HWND edit = d.edit->GetHandle();
  for (char c : std::string("xaxb")) SendMessageA(edit, WM_CHAR, static_cast<unsigned char>(c), 1);
  EXPECT_EQ("xaxb", filter.seen);
  EXPECT_EQ("Ab", std::string(d.edit->GetText().c_str())) << "x swallowed, a changed on its way";

  // The form's preview sees the key before the control and can swallow it.
  struct Preview {
    void Press(System::TObject*, char& key) {
      if (key == 'b') key = 0;
    }
  } preview;
  d.form->SetKeyPreview(true);
  d.form->SetOnKeyPress(Controls::TKeyPressEvent(&preview, &Preview::Press));
  filter.seen.clear();
  SendMessageA(edit, WM_CHAR, 'b', 1);
  EXPECT_EQ("", filter.seen) << "the edit's handler never saw it";
  EXPECT_EQ("Ab", std::string(d.edit->GetText().c_str()));

  // Tab and Shift+Tab in tab order; the order can be changed.
  d.form->Show();
  ASSERT_TRUE(d.edit->Focused()) << "the first tab stop has the focus";
  const auto tab = [](Controls::TWinControl* from) { SendMessageA(from->GetHandle(), WM_KEYDOWN, VK_TAB, 1); };
  tab(d.edit);
  EXPECT_TRUE(d.ok->Focused());
  tab(d.ok);
  EXPECT_TRUE(d.cancel->Focused());
  tab(d.cancel);
  EXPECT_TRUE(d.edit->Focused()) << "round to the first";
  d.cancel->SetTabOrder(0);
  EXPECT_EQ(0, d.cancel->GetTabOrder());
  EXPECT_EQ(1, d.edit->GetTabOrder());
  tab(d.edit);
  EXPECT_TRUE(d.ok->Focused());
  tab(d.ok);
  EXPECT_TRUE(d.cancel->Focused()) << "the last stop, after reordering";
}

TEST(TCustomForm, AltAndAMnemonicFocusesOrClicksItsControl) {
  Dialog d;
  auto* label = new TLabel(d.form);
  label->SetParent(d.form);
  label->SetText("&Name:");
  label->SetFocusControl(d.edit);
  auto* box = new TCheckBox(d.form);
  box->SetParent(d.form);
  box->SetTop(60);
  box->SetText("&Keep");
  int clicks = 0;
  struct Counter {
    int* n;
    void Clicked(System::TObject*) { ++*n; }
  } counter{&clicks};
  d.cancel->SetText("&Cancel");
  d.cancel->SetModalResult(Controls::mrNone);
  d.cancel->SetOnClick(System::TNotifyEvent(&counter, &Counter::Clicked));
  d.form->Show();
  d.ok->SetFocus();
  const auto alt = [&](char c) { return SendMessageA(GetFocus(), WM_SYSCHAR, static_cast<unsigned char>(c), 1 << 29); };
  alt('n');
  EXPECT_TRUE(d.edit->Focused()) << "the label's letter focuses its control";
  alt('K');
  EXPECT_TRUE(box->GetChecked()) << "a check box's letter ticks it";
  EXPECT_TRUE(box->Focused());
  alt('c');
  EXPECT_EQ(1, clicks) << "a button's letter clicks it";
  alt('z');
  EXPECT_EQ(1, clicks);
  EXPECT_TRUE(box->GetChecked()) << "nobody's letter changes nothing";
  EXPECT_TRUE(Controls::IsAccel('a', "S&ave")) << "either case";
  EXPECT_FALSE(Controls::IsAccel('s', "&&Save"));
}

TEST(TRadioButton, CheckingOneUnchecksItsSiblingsAndCheckBoxesCycle) {
  TForm form(nullptr);
  std::vector<TRadioButton*> radios;
  for (int i = 0; i < 3; ++i) {
    radios.push_back(new TRadioButton(&form));
    radios.back()->SetParent(&form);
    radios.back()->SetTop(i * 20);
  }
  radios[0]->SetChecked(true);
  // A click on the window of the third, as the mouse would.
  SendMessageA(radios[2]->GetHandle(), BM_CLICK, 0, 0);
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(i == 2, radios[i]->GetChecked()) << "radio " << i;
    EXPECT_EQ(i == 2 ? BST_CHECKED : BST_UNCHECKED, SendMessageA(radios[i]->GetHandle(), BM_GETCHECK, 0, 0))
        << "radio " << i << " as the window shows it";
  }

  auto* box = new TCheckBox(&form);
  box->SetParent(&form);
  box->SetAllowGrayed(true);
  std::vector<int> states;
  for (int i = 0; i < 3; ++i) {
    SendMessageA(box->GetHandle(), BM_CLICK, 0, 0);
    states.push_back(static_cast<int>(SendMessageA(box->GetHandle(), BM_GETCHECK, 0, 0)));
  }
  EXPECT_EQ((std::vector<int>{BST_INDETERMINATE, BST_CHECKED, BST_UNCHECKED}), states);
  box->SetAllowGrayed(false);
  box->SetState(cbGrayed);
  EXPECT_EQ(cbUnchecked, box->GetState()) << "grayed only when allowed";
}

// The events of a form's life, in the order a user of the framework expects.
TEST(TCustomForm, LifeEventsComeInOrder) {
  struct Log {
    std::string text;
    void Note(System::TObject* sender, const char* what) {
      text += std::string(static_cast<Classes::TComponent*>(sender)->GetName().c_str()) + "." + what + " ";
    }
    void Create(System::TObject* s) { Note(s, "create"); }
    void Show(System::TObject* s) { Note(s, "show"); }
    void Hide(System::TObject* s) { Note(s, "hide"); }
    // Which form is active depends on the desktop, which other test
    // processes share: activation is driven by its message below.
    void Activate(System::TObject* s) { Note(s, "activate"); }
    void Deactivate(System::TObject* s) { Note(s, "deactivate"); }
    void Resize(System::TObject* s) { Note(s, "resize"); }
    void Destroy(System::TObject* s) { Note(s, "destroy"); }
  } log;
  const auto watch = [&](TForm* f, const char* name) {
    f->SetName(name);
    f->SetOnCreate({&log, &Log::Create});
    f->SetOnShow({&log, &Log::Show});
    f->SetOnHide({&log, &Log::Hide});
    f->SetOnResize({&log, &Log::Resize});
    f->SetOnDestroy({&log, &Log::Destroy});
  };
  auto* a = new TForm(nullptr);
  auto* b = new TForm(nullptr);
  watch(a, "A");
  watch(b, "B");
  const struct {
    const char* what;
    void (*act)(TForm*, TForm*);
    const char* events;
  } steps[] = {
      {"create", [](TForm* f, TForm*) { f->DoCreate(); }, "A.create "},
      {"show", [](TForm* f, TForm*) { f->Show(); }, "A.show "},
      {"resize", [](TForm* f, TForm*) { f->SetBounds(10, 10, 333, 222); }, "A.resize "},
      {"another form shown", [](TForm*, TForm* g) { g->Show(); }, "B.show "},
      {"hidden through Visible", [](TForm*, TForm* g) { g->SetVisible(false); }, "B.hide "},
      {"hide", [](TForm* f, TForm*) { f->Hide(); }, "A.hide "},
      {"hidden again: nothing", [](TForm* f, TForm*) { f->Hide(); }, ""},
      {"freed", [](TForm* f, TForm*) { delete f; }, "A.destroy "},
  };
  for (const auto& s : steps) {
    log.text.clear();
    s.act(a, b);
    Application->ProcessMessages();
    EXPECT_EQ(s.events, log.text) << s.what;
  }
  b->SetOnActivate({&log, &Log::Activate});
  b->SetOnDeactivate({&log, &Log::Deactivate});
  log.text.clear();
  SendMessageA(b->GetHandle(), WM_ACTIVATE, WA_CLICKACTIVE, 0);
  EXPECT_EQ(0u, log.text.find("B.activate ")) << log.text;  // the system may activate it again
  log.text.clear();
  SendMessageA(b->GetHandle(), WM_ACTIVATE, WA_INACTIVE, 0);
  EXPECT_EQ("B.deactivate ", log.text);
  delete b;
}

TEST(TaskWindows, EnableGivesBackExactlyWhatDisableTook) {
  TForm visible(nullptr), alreadyDisabled(nullptr), hidden(nullptr), keep(nullptr);
  for (TForm* f : {&visible, &alreadyDisabled, &keep}) f->Show();
  hidden.GetHandle();
  EnableWindow(alreadyDisabled.GetHandle(), FALSE);
  TTaskWindowList* list = DisableTaskWindows(keep.GetHandle());
  EXPECT_FALSE(IsWindowEnabled(visible.GetHandle()));
  EXPECT_TRUE(IsWindowEnabled(keep.GetHandle()));
  EXPECT_TRUE(IsWindowEnabled(hidden.GetHandle())) << "hidden windows are left alone";
  EnableTaskWindows(list);
  EXPECT_TRUE(IsWindowEnabled(visible.GetHandle()));
  EXPECT_FALSE(IsWindowEnabled(alreadyDisabled.GetHandle())) << "it was disabled before";
  EXPECT_TRUE(IsWindowEnabled(hidden.GetHandle()));
}

TEST(TCustomForm, AFormCanReleaseItselfFromItsOwnHandler) {
  auto* form = new TForm(nullptr);
  auto* button = new TButton(form);
  button->SetParent(form);
  struct Closer {
    TForm* form;
    void Clicked(System::TObject*) { form->Release(); }
  } closer{form};
  button->SetOnClick(System::TNotifyEvent(&closer, &Closer::Clicked));
  const int before = Screen->GetFormCount();
  SendMessageA(button->GetHandle(), BM_CLICK, 0, 0);
  EXPECT_EQ(before, Screen->GetFormCount()) << "still there while its handler runs";
  Application->ProcessMessages();
  EXPECT_EQ(before - 1, Screen->GetFormCount()) << "freed once its messages were done";
}

// Deleting instead of Release: the delete waits until the procedures of the
// form's windows have returned, then happens without a message loop.
TEST(TCustomForm, AFormDeletedFromItsOwnHandlerGoesWhenTheHandlerReturns) {
  struct Deleter {
    TForm* form;
    Classes::TComponent* nested = nullptr;
    std::string log;
    void Clicked(System::TObject* sender) {
      delete form;
      delete form;  // a second delete while it waits changes nothing
      // The sender and the form are still whole until the handler returns.
      log += std::string(sender->ClassName().c_str()) + " " + (IsWindowVisible(form->GetHandle()) ? "shown" : "hidden");
      if (nested) SendMessageA(static_cast<TButton*>(nested)->GetHandle(), BM_CLICK, 0, 0);
    }
    void Destroyed(System::TObject*) { log += " destroyed"; }
  };
  const struct {
    const char* what;
    bool nested;
  } cases[] = {{"from the button's click", false}, {"with another window's procedure inside", true}};
  for (const auto& c : cases) {
    auto* form = new TForm(nullptr);
    auto* button = new TButton(form);
    button->SetParent(form);
    Deleter deleter{form, nullptr, {}};
    form->SetOnDestroy({&deleter, &Deleter::Destroyed});
    TForm other(nullptr);
    auto* otherButton = new TButton(&other);
    otherButton->SetParent(&other);
    if (c.nested) deleter.nested = otherButton;
    button->SetOnClick({&deleter, &Deleter::Clicked});
    form->Show();
    const HWND window = form->GetHandle();
    const int before = Screen->GetFormCount();
    SendMessageA(button->GetHandle(), BM_CLICK, 0, 0);
    EXPECT_EQ("TButton hidden destroyed", deleter.log) << c.what;
    EXPECT_EQ(before - 1, Screen->GetFormCount()) << c.what;
    EXPECT_FALSE(IsWindow(window)) << c.what;
  }

  // A panel deleted in its own handler waits; its form, freed meanwhile,
  // takes it along and the wait ends.
  struct Owner {
    TForm* form;
    Controls::TWinControl* panel;
    void Clicked(System::TObject*) {
      delete panel;
      EXPECT_FALSE(panel->GetVisible()) << "waiting, hidden";
      delete form;
    }
  };
  auto* form = new TForm(nullptr);
  auto* panel = new Controls::TWinControl(form);
  panel->SetParent(form);
  auto* button = new TButton(form);
  button->SetParent(panel);
  Owner owner{form, panel};
  button->SetOnClick({&owner, &Owner::Clicked});
  const int before = Screen->GetFormCount();
  SendMessageA(button->GetHandle(), BM_CLICK, 0, 0);
  EXPECT_EQ(before - 1, Screen->GetFormCount());
}

}  // namespace

namespace {

std::string NameOf(System::TObject* sender) { return static_cast<Classes::TComponent*>(sender)->GetName().c_str(); }

// OnKeyDown runs before the window sees the key: zeroed, the key does nothing
// (Delete deletes nothing) and its character is not typed. OnKeyUp sees the
// release after the form's preview. Focus moving on runs the one control's
// OnExit, then the other's OnEnter.
TEST(TWinControl, KeyDownKeyUpEnterAndExit) {
  Dialog d;
  d.form->SetName("form");
  d.edit->SetName("edit");
  d.ok->SetName("ok");
  struct Log {
    std::string text;
    bool zero = false;
    void Key(System::TObject* s, const char* what, WORD& key) {
      text += NameOf(s) + what + std::to_string(key) + " ";
      if (zero) key = 0;
    }
    void Down(System::TObject* s, WORD& key, Controls::TShiftState) { Key(s, ".down", key); }
    void Up(System::TObject* s, WORD& key, Controls::TShiftState) { Key(s, ".up", key); }
    void Enter(System::TObject* s) { text += NameOf(s) + ".enter "; }
    void Exit(System::TObject* s) { text += NameOf(s) + ".exit "; }
  } log;
  d.edit->SetOnKeyDown({&log, &Log::Down});
  d.edit->SetOnKeyUp({&log, &Log::Up});
  HWND edit = d.edit->GetHandle();
  const struct {
    const char* what;
    bool zero;
    WORD key;
    char ch;  // the character TranslateMessage makes of it, or 0
    const char* text;
  } rows[] = {
      {"Delete reaches the edit", false, VK_DELETE, 0, "bc"},
      {"Delete zeroed deletes nothing", true, VK_DELETE, 0, "abc"},
      {"A is typed", false, 'A', 'a', "aabc"},
      {"A zeroed: its character is swallowed too", true, 'A', 'a', "abc"},
  };
  for (const auto& r : rows) {
    d.edit->SetText("abc");
    SendMessageA(edit, EM_SETSEL, 0, 0);
    log.zero = r.zero;
    log.text.clear();
    SendMessageA(edit, WM_KEYDOWN, r.key, 1);
    if (r.ch) SendMessageA(edit, WM_CHAR, static_cast<unsigned char>(r.ch), 1);
    EXPECT_EQ(r.text, std::string(d.edit->GetText().c_str())) << r.what;
    EXPECT_EQ("edit.down" + std::to_string(r.key) + " ", log.text) << r.what;
  }
  d.form->SetKeyPreview(true);
  d.form->SetOnKeyUp({&log, &Log::Up});
  for (bool zero : {false, true}) {
    log.zero = zero;
    log.text.clear();
    SendMessageA(edit, WM_KEYUP, VK_F5, 0xC0000001);
    EXPECT_EQ(zero ? "form.up116 " : "form.up116 edit.up116 ", log.text) << "preview zeroing: " << zero;
  }

  log.zero = false;
  d.edit->SetOnEnter({&log, &Log::Enter});
  d.edit->SetOnExit({&log, &Log::Exit});
  d.ok->SetOnEnter({&log, &Log::Enter});
  d.ok->SetOnExit({&log, &Log::Exit});
  d.form->Show();
  ASSERT_TRUE(d.edit->Focused());
  log.text.clear();
  d.ok->SetFocus();
  SendMessageA(d.ok->GetHandle(), WM_KEYDOWN, VK_TAB, 1);
  d.edit->SetFocus();
  EXPECT_EQ("edit.exit ok.enter ok.exit edit.enter ", log.text);
  EXPECT_TRUE(d.edit->Focused());
}

// Closing asks OnCloseQuery, then OnClose's action decides: hide (the
// default), free (once the form's messages are done), minimise, or nothing.
TEST(TCustomForm, CloseAsksOnCloseQueryThenDoesWhatOnCloseSays) {
  struct Handlers {
    bool canClose;
    TCloseAction action;
    std::string log;
    void Query(System::TObject*, bool& can) {
      log += "query ";
      can = canClose;
    }
    void Close(System::TObject*, TCloseAction& a) {
      log += a == caHide ? "close(hide) " : "close(?) ";
      a = action;
    }
    void Destroyed(System::TObject*) { log += "destroyed"; }
  };
  const struct {
    const char* what;
    bool canClose;
    TCloseAction action;
    bool visible, iconic;
    const char* log;
  } rows[] = {
      {"hidden by default", true, caHide, false, false, "query close(hide) "},
      {"refused by OnCloseQuery", false, caHide, true, false, "query "},
      {"caNone keeps it", true, caNone, true, false, "query close(hide) "},
      {"caMinimize", true, caMinimize, true, true, "query close(hide) "},
      {"caFree frees it", true, caFree, false, false, "query close(hide) destroyed"},
  };
  for (const auto& r : rows) {
    auto* form = new TForm(nullptr);
    Handlers h{r.canClose, r.action, {}};
    form->SetOnCloseQuery({&h, &Handlers::Query});
    form->SetOnClose({&h, &Handlers::Close});
    form->SetOnDestroy({&h, &Handlers::Destroyed});
    form->Show();
    const HWND window = form->GetHandle();
    SendMessageA(window, WM_CLOSE, 0, 0);  // the close box
    Application->ProcessMessages();
    EXPECT_EQ(r.log, h.log) << r.what;
    EXPECT_EQ(r.visible, IsWindowVisible(window) != 0) << r.what;
    EXPECT_EQ(r.iconic, IsIconic(window) != 0) << r.what;
    if (r.action == caFree) {
      EXPECT_FALSE(IsWindow(window)) << r.what;
      continue;
    }
    EXPECT_EQ(r.visible, form->GetVisible()) << r.what;
    delete form;
  }
}

// Every border style and set of caption buttons as the window has it, with
// the client area asked for.
TEST(TCustomForm, BorderStyleAndIconsMakeTheFrame) {
  using Icons = TBorderIcons;
  const Icons all{biSystemMenu, biMinimize, biMaximize};
  const DWORD buttons = WS_SYSMENU | WS_MINIMIZEBOX | WS_MAXIMIZEBOX;
  const struct {
    const char* what;
    TFormBorderStyle style;
    Icons icons;
    DWORD has, hasNot, exHas;
  } rows[] = {
      {"none", bsNone, all, WS_POPUP, WS_CAPTION | WS_THICKFRAME | buttons, 0},
      {"single", bsSingle, all, WS_CAPTION | buttons, WS_THICKFRAME, 0},
      {"sizeable", bsSizeable, all, WS_CAPTION | WS_THICKFRAME | buttons, 0, 0},
      {"dialog", bsDialog, all, WS_CAPTION | WS_SYSMENU, WS_THICKFRAME | WS_MINIMIZEBOX | WS_MAXIMIZEBOX,
       WS_EX_DLGMODALFRAME},
      {"tool window", bsToolWindow, all, WS_CAPTION | WS_SYSMENU, WS_THICKFRAME, WS_EX_TOOLWINDOW},
      {"sizeable tool window", bsSizeToolWin, all, WS_CAPTION | WS_THICKFRAME, 0, WS_EX_TOOLWINDOW},
      {"no icons", bsSizeable, Icons{}, WS_CAPTION, buttons, 0},
      {"minimise only", bsSingle, Icons{biSystemMenu, biMinimize}, WS_SYSMENU | WS_MINIMIZEBOX, WS_MAXIMIZEBOX, 0},
      {"boxes need the system menu", bsSizeable, Icons{biMinimize, biMaximize}, WS_CAPTION, buttons, 0},
      {"help on a dialog", bsDialog, Icons{biSystemMenu, biHelp}, WS_SYSMENU, 0,
       WS_EX_DLGMODALFRAME | WS_EX_CONTEXTHELP},
  };
  for (const auto& r : rows) {
    TForm form(nullptr);
    form.GetHandle();  // made again with the new frame
    form.SetBorderStyle(r.style);
    form.SetBorderIcons(r.icons);
    form.SetClientWidth(240);
    form.SetClientHeight(120);
    const HWND h = form.GetHandle();
    const auto style = static_cast<DWORD>(GetWindowLongA(h, GWL_STYLE));
    const auto exStyle = static_cast<DWORD>(GetWindowLongA(h, GWL_EXSTYLE));
    EXPECT_EQ(r.has, style & r.has) << r.what << std::hex << ", style " << style;
    EXPECT_EQ(0u, style & r.hasNot) << r.what << std::hex << ", style " << style;
    EXPECT_EQ(r.exHas, exStyle & r.exHas) << r.what << std::hex << ", extended style " << exStyle;
    RECT client;
    GetClientRect(h, &client);
    EXPECT_EQ(240, client.right) << r.what;
    EXPECT_EQ(120, client.bottom) << r.what;
  }
}

// Where a form appears the first time it is shown.
TEST(TCustomForm, PositionPlacesTheFormWhenFirstShown) {
  RECT area;
  SystemParametersInfoA(SPI_GETWORKAREA, 0, &area, 0);
  TForm* main = nullptr;
  Application->CreateForm(main);
  const std::unique_ptr<TForm> mainGoes(main);
  main->SetBounds(40, 30, 500, 400);
  main->Show();
  TForm owner(nullptr);
  owner.SetBounds(300, 200, 400, 300);
  owner.Show();
  const auto centred = [](MyRect around) {
    return MyPoint{around.left + (around.Width() - 200) / 2, around.top + (around.Height() - 100) / 2};
  };
  const MyPoint screen = centred({area.left, area.top, area.right, area.bottom});
  const struct {
    const char* what;
    TPosition position;
    bool mainShown;
    MyPoint expected;
  } rows[] = {
      {"designed", poDesigned, true, {7, 9}},
      {"screen centre", poScreenCenter, true, screen},
      {"main form's centre", poMainFormCenter, true, centred({40, 30, 540, 430})},
      {"owner form's centre", poOwnerFormCenter, true, centred({300, 200, 700, 500})},
      {"main form hidden: the screen's centre", poMainFormCenter, false, screen},
  };
  for (const auto& r : rows) {
    main->SetVisible(r.mainShown);
    auto* form = new TForm(&owner);
    form->SetBounds(7, 9, 200, 100);
    form->SetPosition(r.position);
    form->Show();
    RECT placed;
    GetWindowRect(form->GetHandle(), &placed);
    EXPECT_EQ(r.expected.x, placed.left) << r.what;
    EXPECT_EQ(r.expected.y, placed.top) << r.what;
    form->Hide();
    form->SetBounds(1, 2, 200, 100);
    form->Show();
    GetWindowRect(form->GetHandle(), &placed);
    EXPECT_EQ(1, placed.left) << r.what << ": placed only the first time";
    delete form;
  }
}

// A call queued by a worker that fails: the modal loop lets the failure out.
struct TQueuer : Classes::TThread {
  explicit TQueuer(Classes::TThreadMethod m) : TThread(true), method(m) { Start(); }
  void Execute() override { Queue(method); }
  Classes::TThreadMethod method;
};
struct Failing {
  void Run() { throw Sysutils::Exception("queued call failed"); }
};

// However ShowModal ends, by a result or by an exception out of its loop, the
// windows it disabled come back, the form goes and the focus returns to where
// it was. While it runs, a close that OnCloseQuery refuses keeps it open.
TEST(TCustomForm, ShowModalGivesBackTheWindowsAndTheFocusHoweverItEnds) {
  TForm main(nullptr);
  auto* mainEdit = new TEdit(&main);
  mainEdit->SetParent(&main);
  main.Show();
  mainEdit->SetFocus();
  ASSERT_TRUE(mainEdit->Focused());
  struct Query {
    bool allow = false;
    void Ask(System::TObject*, bool& can) { can = allow; }
  };
  for (bool failing : {false, true}) {
    SCOPED_TRACE(failing ? "an exception out of the loop" : "a button's result");
    Dialog d;
    Query query;
    d.form->SetOnCloseQuery({&query, &Query::Ask});
    bool mainDisabled = false, stayedOpen = false;
    Failing fail;
    std::unique_ptr<TQueuer> queuer;
    if (failing) {
      queuer = std::make_unique<TQueuer>(Classes::TThreadMethod(&fail, &Failing::Run));
      ASSERT_EQ(WAIT_OBJECT_0, WaitForSingleObject(queuer->GetHandle(), 10000));
    }
    std::string error;
    TModalResult result = Controls::mrNone;
    loop_driver::Drive(
        {[&] {
           if (!IsWindowVisible(d.form->GetHandle())) return false;
           mainDisabled = !IsWindowEnabled(main.GetHandle()) && IsWindowEnabled(d.form->GetHandle());
           PostMessageA(d.form->GetHandle(), WM_CLOSE, 0, 0);
           return true;
         },
         [&] {
           stayedOpen = d.form->IsModal() && IsWindowVisible(d.form->GetHandle());
           query.allow = true;
           PostMessageA(d.ok->GetHandle(), BM_CLICK, 0, 0);
           return true;
         }},
        [&] { d.form->SetModalResult(Controls::mrAbort); },
        [&] {
          try {
            result = d.form->ShowModal();
          } catch (const Sysutils::Exception& e) {
            error = e.Message.c_str();
          }
          return 0;
        });
    if (failing) {
      EXPECT_EQ("queued call failed", error);
    } else {
      EXPECT_TRUE(loop_driver::Finished());
      EXPECT_EQ(Controls::mrOk, result);
      EXPECT_TRUE(mainDisabled) << "the other window was disabled while the form was modal";
      EXPECT_TRUE(stayedOpen) << "the close OnCloseQuery refused";
    }
    EXPECT_FALSE(d.form->IsModal());
    EXPECT_FALSE(IsWindowVisible(d.form->GetHandle()));
    EXPECT_TRUE(IsWindowEnabled(main.GetHandle()));
    EXPECT_TRUE(mainEdit->Focused()) << "the focus came back";
  }
}

}  // namespace
