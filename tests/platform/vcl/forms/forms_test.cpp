// Forms with real controls, driven with real key messages through their
// window procedures: default and cancel buttons end ShowModal, a swallowed
// key never reaches its edit, Tab follows the tab order, radio buttons
// exclude each other, and the task windows come back exactly as they were.
#include "platform/vcl/forms/forms.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "platform/vcl/forms/application.h"
#include "platform/vcl/stdctrls/std_buttons.h"
#include "platform/vcl/stdctrls/std_edits.h"
#include "platform/vcl/stdctrls/std_label.h"
#include "tests/platform/vcl/test_helpers.h"

using namespace Forms;
using namespace Stdctrls;
using namespace vcl_test;
using Controls::TWinControl;

namespace {

// A dialog: an edit and OK / Cancel buttons.
struct Dialog {
  TForm* form = new TForm(nullptr);
  TEdit* edit = Make<TEdit>(form, form, 12, 12, 236, 23);
  TButton* ok = Make<TButton>(form, form, 92, 52, 75, 25);
  TButton* cancel = Make<TButton>(form, form, 173, 52, 75, 25);
  Dialog() {
    form->SetBorderStyle(bsDialog);
    ok->SetText("OK");
    ok->SetDefault(true);
    ok->SetModalResult(Controls::mrOk);
    cancel->SetText("Cancel");
    cancel->SetCancel(true);
    cancel->SetModalResult(Controls::mrCancel);
  }
  ~Dialog() { delete form; }
  TModalResult Modal(std::vector<loop_driver::Step> steps = {}) {
    return loop_driver::Drive(
        std::move(steps), [this] { form->SetModalResult(Controls::mrAbort); }, [this] { return form->ShowModal(); });
  }
};

// The key events run before the window sees the key, the form's preview
// before the control's, until one zeroes the key: a key zeroed on its way
// down does nothing (Delete deletes nothing, a letter's character is not
// typed), a character zeroed never reaches the edit, one changed is typed
// changed.
TEST(TWinControl, KeyEventsSeeKeysFirstAndCanSwallowThem) {
  System::TEventHandlers on;
  Dialog d;
  std::string log;
  int zero[2];  // the key or character the edit, the form zeroes
  for (const bool isForm : {false, true}) {
    const auto note = [&, isForm](const char* what, WORD& key) {
      log += (isForm ? "form" : "edit") + std::string(what) + std::to_string(key) + " ";
      if (key == zero[isForm]) key = 0;
    };
    TWinControl* c = isForm ? static_cast<TWinControl*>(d.form) : d.edit;
    c->SetOnKeyDown(on.Add([=](System::TObject*, WORD& key, Controls::TShiftState) { note(".down", key); }));
    c->SetOnKeyUp(on.Add([=](System::TObject*, WORD& key, Controls::TShiftState) { note(".up", key); }));
    c->SetOnKeyPress(on.Add([=](System::TObject*, char& key) {
      WORD k = static_cast<unsigned char>(key);
      note(".press", k);
      key = k == 'a' && !isForm ? 'A' : static_cast<char>(k);
    }));
  }
  d.form->SetKeyPreview(true);
  const HWND w = d.edit->GetHandle();
  const struct {
    const char* what;
    int formZero, editZero;
    UINT msg;
    WORD key;
    char ch;  // the character TranslateMessage makes of a key down, or 0
    const char *text, *log;
  } rows[] = {
      {"Delete reaches the edit", -1, -1, WM_KEYDOWN, VK_DELETE, 0, "bc", "form.down46 edit.down46 "},
      {"Delete zeroed deletes nothing", -1, VK_DELETE, WM_KEYDOWN, VK_DELETE, 0, "abc", "form.down46 edit.down46 "},
      {"Delete zeroed by the preview", VK_DELETE, -1, WM_KEYDOWN, VK_DELETE, 0, "abc", "form.down46 "},
      {"A typed, its character changed on its way", -1, -1, WM_KEYDOWN, 'A', 'a', "Aabc",
       "form.down65 edit.down65 form.press97 edit.press97 "},
      {"A zeroed: its character is swallowed too", -1, 'A', WM_KEYDOWN, 'A', 'a', "abc", "form.down65 edit.down65 "},
      {"x zeroed in OnKeyPress", -1, 'x', WM_CHAR, 'x', 0, "abc", "form.press120 edit.press120 "},
      {"b zeroed by the preview: the edit never sees it", 'b', -1, WM_CHAR, 'b', 0, "abc", "form.press98 "},
      {"F5 released", -1, -1, WM_KEYUP, VK_F5, 0, "abc", "form.up116 edit.up116 "},
      {"F5's release zeroed by the preview", VK_F5, -1, WM_KEYUP, VK_F5, 0, "abc", "form.up116 "},
  };
  for (const auto& r : rows) {
    d.edit->SetText("abc");
    SendMessageA(w, EM_SETSEL, 0, 0);
    zero[0] = r.editZero;
    zero[1] = r.formZero;
    log.clear();
    SendMessageA(w, r.msg, r.key, r.msg == WM_KEYUP ? 0xC0000001 : 1);
    if (r.ch) SendMessageA(w, WM_CHAR, static_cast<unsigned char>(r.ch), 1);
    EXPECT_EQ(r.text, Str(d.edit->GetText())) << r.what;
    EXPECT_EQ(r.log, log) << r.what;
  }
}

// Tab follows the tab order, which can be changed; Alt and a letter focuses
// the label's control or clicks the button whose mnemonic it is. Focus moving
// on runs the one control's OnExit, then the other's OnEnter.
TEST(TCustomForm, TabAndMnemonicsMoveTheFocus) {
  Dialog d;
  auto* label = Make<TLabel>(d.form, d.form);
  label->SetText("&Name:");
  label->SetFocusControl(d.edit);
  auto* box = Make<TCheckBox>(d.form, d.form, 0, 60, 80, 17);
  box->SetText("&Keep");
  Counter clicks;
  d.cancel->SetText("&Cancel");
  d.cancel->SetModalResult(Controls::mrNone);
  d.cancel->SetOnClick(clicks.Event());
  EventLog log;
  d.edit->SetOnEnter(log.On("edit.enter "));
  d.edit->SetOnExit(log.On("edit.exit "));
  d.ok->SetOnEnter(log.On("ok.enter "));
  d.ok->SetOnExit(log.On("ok.exit "));
  d.form->Show();
  ASSERT_TRUE(d.edit->Focused()) << "the first tab stop has the focus";
  const auto tabs = [&](std::vector<TWinControl*> from) {
    std::string path;
    for (TWinControl* c : from) {
      SendMessageA(c->GetHandle(), WM_KEYDOWN, VK_TAB, 1);
      path += d.edit->Focused() ? "edit " : d.ok->Focused() ? "ok " : d.cancel->Focused() ? "cancel " : "box ";
    }
    return path;
  };
  log.text.clear();
  EXPECT_EQ("ok cancel box edit ", tabs({d.edit, d.ok, d.cancel, box})) << "round to the first";
  EXPECT_EQ("edit.exit ok.enter ok.exit edit.enter ", log.text);
  d.cancel->SetTabOrder(0);
  EXPECT_EQ(1, d.edit->GetTabOrder()) << "the others move on";
  EXPECT_EQ("ok box cancel ", tabs({d.edit, d.ok, box})) << "the first stop, after reordering";

  d.ok->SetFocus();
  const auto alt = [&](char c) { return SendMessageA(GetFocus(), WM_SYSCHAR, static_cast<unsigned char>(c), 1 << 29); };
  alt('n');
  EXPECT_TRUE(d.edit->Focused()) << "the label's letter focuses its control";
  alt('K');
  EXPECT_TRUE(box->GetChecked() && box->Focused()) << "a check box's letter ticks and focuses it";
  alt('c');
  EXPECT_EQ(1, clicks.n) << "a button's letter clicks it";
  alt('z');
  EXPECT_EQ(1, clicks.n);
  EXPECT_TRUE(box->GetChecked()) << "nobody's letter changes nothing";
  EXPECT_FALSE(Controls::IsAccel('s', "&&Save"));

  // Enter and Escape click the default and the cancel button only when it
  // could take the focus.
  d.ok->SetModalResult(Controls::mrNone);
  const struct {
    const char* what;
    TButton* button;
    WORD key;
    bool enabled, visible;
    int clicks;
  } keys[] = {
      {"Enter, the default button disabled", d.ok, VK_RETURN, false, true, 0},
      {"Enter, the default button hidden", d.ok, VK_RETURN, true, false, 0},
      {"Enter, the default button usable", d.ok, VK_RETURN, true, true, 1},
      {"Escape, the cancel button disabled", d.cancel, VK_ESCAPE, false, true, 0},
      {"Escape, the cancel button hidden", d.cancel, VK_ESCAPE, true, false, 0},
      {"Escape, the cancel button usable", d.cancel, VK_ESCAPE, true, true, 1},
  };
  for (const auto& k : keys) {
    Counter pressed;
    k.button->SetOnClick(pressed.Event());
    k.button->SetEnabled(k.enabled);
    k.button->SetVisible(k.visible);
    SendMessageA(d.edit->GetHandle(), WM_KEYDOWN, k.key, 1);
    EXPECT_EQ(k.clicks, pressed.n) << k.what;
    k.button->SetEnabled(true);
    k.button->SetVisible(true);
  }
}

TEST(TRadioButton, CheckingOneUnchecksItsSiblingsAndCheckBoxesCycle) {
  TForm form(nullptr);
  TRadioButton* radios[3];
  for (int i = 0; i < 3; ++i) radios[i] = Make<TRadioButton>(&form, &form, 0, i * 20, 100, 17);
  radios[0]->SetChecked(true);
  SendMessageA(radios[2]->GetHandle(), BM_CLICK, 0, 0);  // as the mouse would
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(i == 2, radios[i]->GetChecked()) << "radio " << i;
    EXPECT_EQ(i == 2 ? BST_CHECKED : BST_UNCHECKED, SendMessageA(radios[i]->GetHandle(), BM_GETCHECK, 0, 0))
        << "radio " << i << " as the window shows it";
  }
  auto* box = Make<TCheckBox>(&form, &form);
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
  EventLog log;
  auto* a = new TForm(nullptr);
  auto* b = new TForm(nullptr);
  for (TForm* f : {a, b}) {
    const std::string n = f == a ? "A." : "B.";
    f->SetOnShow(log.On(n + "show "));
    f->SetOnHide(log.On(n + "hide "));
    f->SetOnResize(log.On(n + "resize "));
    f->SetOnDestroy(log.On(n + "destroy "));
  }
  const auto after = [&](auto act) {
    log.text.clear();
    act();
    Application->ProcessMessages();
    return log.text;
  };
  EXPECT_EQ("A.show ", after([&] { a->Show(); }));
  EXPECT_EQ("A.resize ", after([&] { a->SetBounds(10, 10, 333, 222); }));
  EXPECT_EQ("B.show ", after([&] { b->Show(); })) << "another form shown";
  EXPECT_EQ("B.hide ", after([&] { b->SetVisible(false); })) << "hidden through Visible";
  EXPECT_EQ("A.hide ", after([&] { a->Hide(); }));
  EXPECT_EQ("", after([&] { a->Hide(); })) << "hidden again: nothing";
  EXPECT_EQ("A.destroy ", after([&] { delete a; }));
  // Which form is active depends on the desktop, which other test processes
  // share: activation is driven by its message.
  b->SetOnActivate(log.On("B.activate "));
  b->SetOnDeactivate(log.On("B.deactivate "));
  const std::string activated = after([&] { SendMessageA(b->GetHandle(), WM_ACTIVATE, WA_CLICKACTIVE, 0); });
  EXPECT_EQ(0u, activated.find("B.activate ")) << activated;  // the system may activate it again
  EXPECT_EQ("B.deactivate ", after([&] { SendMessageA(b->GetHandle(), WM_ACTIVATE, WA_INACTIVE, 0); }));
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

// A form freed from its own button's OnClick: Release frees it once its
// messages are done; delete waits until the procedures of its windows have
// returned (another window's procedure inside included), without a loop.
TEST(TCustomForm, AFormFreedFromItsOwnHandlerGoesWhenTheHandlerReturns) {
  enum How { kRelease, kDelete, kNested };
  const struct {
    const char* what;
    How how;
    const char* log;  // once the click is handled
  } rows[] = {{"Release", kRelease, "TButton shown"},
              {"delete", kDelete, "TButton hidden destroyed"},
              {"delete, another window's procedure inside", kNested, "TButton hidden destroyed"}};
  for (const auto& r : rows) {
    auto* form = new TForm(nullptr);
    auto* button = Make<TButton>(form, form);
    TForm other(nullptr);
    auto* nested = Make<TButton>(&other, &other);
    std::string log;
    System::TEventHandlers on;
    form->SetOnDestroy(on.Add([&](System::TObject*) { log += " destroyed"; }));
    button->SetOnClick(on.Add([&](System::TObject* sender) {
      if (r.how == kRelease) {
        form->Release();
      } else {
        delete form;
        delete form;  // a second delete while it waits changes nothing
      }
      // The sender and the form are still whole until the handler returns.
      log += Str(sender->ClassName()) + (IsWindowVisible(form->GetHandle()) ? " shown" : " hidden");
      if (r.how == kNested) SendMessageA(nested->GetHandle(), BM_CLICK, 0, 0);
    }));
    form->Show();
    const HWND window = form->GetHandle();
    const int before = Screen->GetFormCount();
    SendMessageA(button->GetHandle(), BM_CLICK, 0, 0);
    EXPECT_EQ(r.log, log) << r.what;
    EXPECT_EQ(r.how == kRelease ? before : before - 1, Screen->GetFormCount()) << r.what;
    Application->ProcessMessages();
    EXPECT_EQ(before - 1, Screen->GetFormCount()) << r.what;
    EXPECT_FALSE(IsWindow(window)) << r.what;
  }

  // A panel deleted in its own handler waits; its form, freed meanwhile,
  // takes it along and the wait ends.
  auto* form = new TForm(nullptr);
  auto* panel = Make<TWinControl>(form, form);
  auto* button = Make<TButton>(form, panel);
  System::TEventHandlers on;
  button->SetOnClick(on.Add([&](System::TObject*) {
    delete panel;
    EXPECT_FALSE(panel->GetVisible()) << "waiting, hidden";
    delete form;
  }));
  const int before = Screen->GetFormCount();
  SendMessageA(button->GetHandle(), BM_CLICK, 0, 0);
  EXPECT_EQ(before - 1, Screen->GetFormCount());
}

// Closing asks OnCloseQuery, then OnClose's action decides: hide (the
// default), free (once the form's messages are done), minimise, or nothing.
TEST(TCustomForm, CloseAsksOnCloseQueryThenDoesWhatOnCloseSays) {
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
    std::string log;
    System::TEventHandlers on;
    form->SetOnCloseQuery(on.Add([&](System::TObject*, bool& can) { log += "query ", can = r.canClose; }));
    form->SetOnClose(on.Add([&](System::TObject*, TCloseAction& a) {
      log += a == caHide ? "close(hide) " : "close(?) ";
      a = r.action;
    }));
    form->SetOnDestroy(on.Add([&](System::TObject*) { log += "destroyed"; }));
    form->Show();
    const HWND window = form->GetHandle();
    SendMessageA(window, WM_CLOSE, 0, 0);  // the close box
    Application->ProcessMessages();
    EXPECT_EQ(r.log, log) << r.what;
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
    EXPECT_EQ((MyRect{0, 0, 240, 120}), (MyRect{client.left, client.top, client.right, client.bottom})) << r.what;
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
    EXPECT_EQ(r.expected, (MyPoint{placed.left, placed.top})) << r.what;
    form->Hide();
    form->SetBounds(1, 2, 200, 100);
    form->Show();
    GetWindowRect(form->GetHandle(), &placed);
    EXPECT_EQ(1, placed.left) << r.what << ": placed only the first time";
    delete form;
  }
}

// ShowModal ends through the default button (Enter in the edit) or the
// cancel button (Escape, wherever the focus is), or by an exception out of
// its loop. However it ends, the windows it disabled come back, the form goes
// and the focus returns to where it was. While it runs, a close that
// OnCloseQuery refuses keeps it open.
TEST(TCustomForm, ShowModalEndsThroughItsButtonsAndGivesBackTheWindowsAndTheFocus) {
  TForm main(nullptr);
  auto* mainEdit = Make<TEdit>(&main, &main);
  main.Show();
  mainEdit->SetFocus();
  ASSERT_TRUE(mainEdit->Focused());
  const struct {
    const char* what;
    WORD key;
    bool toButton;          // the key goes to the OK button's window, else to the edit's
    TModalResult expected;  // mrNone: a queued call fails inside the loop
  } rows[] = {
      {"Enter in the edit", VK_RETURN, false, Controls::mrOk},
      {"Escape in the edit", VK_ESCAPE, false, Controls::mrCancel},
      {"Escape on the OK button", VK_ESCAPE, true, Controls::mrCancel},
      {"an exception out of the loop", 0, false, Controls::mrNone},
  };
  for (const auto& r : rows) {
    System::TEventHandlers on;
    Dialog d;
    bool allow = false;
    d.form->SetOnCloseQuery(on.Add([&](System::TObject*, bool& can) { can = allow; }));
    Counter clicks;
    d.ok->SetOnClick(clicks.Event());
    std::unique_ptr<TQueuer> queuer;
    if (r.expected == Controls::mrNone) {
      queuer = std::make_unique<TQueuer>(on.Add([] { throw Sysutils::Exception("queued call failed"); }));
      ASSERT_EQ(WAIT_OBJECT_0, WaitForSingleObject(queuer->GetHandle(), 10000));
    }
    const HWND target = r.toButton ? d.ok->GetHandle() : d.edit->GetHandle();
    bool mainDisabled = false, stayedOpen = false;
    TModalResult result = Controls::mrNone;
    const std::string error = ErrorOf<Sysutils::Exception>([&] {
      result = d.Modal({[&] {
                          if (!IsWindowVisible(d.form->GetHandle())) return false;
                          mainDisabled = !IsWindowEnabled(main.GetHandle()) && IsWindowEnabled(d.form->GetHandle());
                          PostMessageA(d.form->GetHandle(), WM_CLOSE, 0, 0);
                          return true;
                        },
                        [&] {
                          stayedOpen = d.form->IsModal() && IsWindowVisible(d.form->GetHandle());
                          allow = true;
                          PostMessageA(target, WM_KEYDOWN, r.key, 1);
                          PostMessageA(target, WM_KEYUP, r.key, 0xC0000001);
                          return true;
                        }});
    });
    if (r.expected == Controls::mrNone) {
      EXPECT_EQ("queued call failed", error);
    } else {
      EXPECT_TRUE(loop_driver::Finished()) << r.what;
      EXPECT_EQ(r.expected, result) << r.what << " (3: the watchdog ended it)";
      EXPECT_EQ(r.expected == Controls::mrOk ? 1 : 0, clicks.n) << r.what;
      EXPECT_EQ("", Str(d.edit->GetText())) << r.what << ": no character reached the edit";
      EXPECT_TRUE(mainDisabled) << r.what << ": the other window was disabled while the form was modal";
      EXPECT_TRUE(stayedOpen) << r.what << ": the close OnCloseQuery refused";
    }
    EXPECT_FALSE(d.form->IsModal()) << r.what;
    EXPECT_FALSE(IsWindowVisible(d.form->GetHandle())) << r.what;
    EXPECT_TRUE(IsWindowEnabled(main.GetHandle())) << r.what;
    EXPECT_TRUE(mainEdit->Focused()) << r.what << ": the focus came back";
  }
  Dialog d;
  d.form->Show();
  EXPECT_THROW(d.form->ShowModal(), EInvalidOperation) << "a visible form cannot be made modal";
}

}  // namespace
