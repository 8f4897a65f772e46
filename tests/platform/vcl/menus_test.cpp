// Menus read back through the native menu they build: the bar a form shows,
// its entries kept in step with the items, commands and shortcuts running
// OnClick, a pop-up chosen from with keys, and no menu handle left behind.
#include "platform/vcl/menus.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>

#include "platform/vcl/application.h"
#include "platform/vcl/ext_panels.h"
#include "platform/vcl/std_edits.h"
#include "tests/platform/vcl/test_helpers.h"

using namespace Menus;
using namespace vcl_test;

namespace {

// An item whose OnClick logs its name.
TMenuItem* MakeItem(Classes::TComponent* owner, const char* name, const char* caption, EventLog* clicks) {
  auto* item = new TMenuItem(owner);
  item->SetName(name);
  item->SetCaption(caption);
  item->SetOnClick(clicks->On(name + std::string(";")));
  return item;
}

std::string MenuText(HMENU menu, int position) {
  char text[64] = {};
  GetMenuStringA(menu, position, text, sizeof text, MF_BYPOSITION);
  return text;
}

TEST(TMainMenu, IsTheFormsMenuBarAndFollowsItsItems) {
  const long menusBefore = OwnedHandleCount(OK_Menu);
  {
    Forms::TForm form(nullptr);
    EventLog clicks;
    auto* menu = new TMainMenu(&form);
    TMenuItem* file = MakeItem(&form, "File", "&File", &clicks);
    TMenuItem* open = MakeItem(&form, "Open", "&Open", &clicks);
    TMenuItem* line = MakeItem(&form, "Line", "-", &clicks);
    TMenuItem* quit = MakeItem(&form, "Quit", "E&xit", &clicks);
    TMenuItem* wrap = MakeItem(&form, "Wrap", "&Wrap", &clicks);
    menu->GetItems()->Add(file);
    for (TMenuItem* i : {open, line, quit}) file->Add(i);
    menu->GetItems()->Add(wrap);
    quit->SetEnabled(false);
    wrap->SetChecked(true);
    open->SetShortCut(ShortCut(VK_F5, {}));
    form.SetMenu(menu);

    HWND window = form.GetHandle();
    HMENU bar = GetMenu(window);
    ASSERT_TRUE(bar != nullptr) << "a real menu bar";
    EXPECT_EQ(menu->GetHandle(), bar);
    ASSERT_EQ(2, GetMenuItemCount(bar));
    EXPECT_EQ("&File", MenuText(bar, 0));
    HMENU sub = GetSubMenu(bar, 0);
    ASSERT_EQ(file->GetHandle(), sub);
    ASSERT_EQ(3, GetMenuItemCount(sub));
    EXPECT_EQ("&Open\tF5", MenuText(sub, 0)) << "the shortcut beside the caption";
    EXPECT_TRUE(GetMenuState(sub, 1, MF_BYPOSITION) & MF_SEPARATOR);
    EXPECT_TRUE(GetMenuState(sub, 2, MF_BYPOSITION) & MF_GRAYED);
    EXPECT_TRUE(GetMenuState(bar, 1, MF_BYPOSITION) & MF_CHECKED);

    // WM_COMMAND as the window system sends it runs the item; a disabled
    // item and an unknown command run nothing.
    for (TMenuItem* i : {open, quit, wrap}) SendMessageA(window, WM_COMMAND, i->GetCommand(), 0);
    SendMessageA(window, WM_COMMAND, 0xFFF0, 0);
    EXPECT_EQ("Open;Wrap;", clicks.text);

    // The shortcut reaches the item, not the focused edit.
    auto* edit = Make<Stdctrls::TEdit>(&form, &form);
    struct Keys {
      int downs = 0;
      void Down(System::TObject*, WORD&, Controls::TShiftState) { ++downs; }
    } keys;
    edit->SetOnKeyDown(Controls::TKeyEvent(&keys, &Keys::Down));
    clicks.text.clear();
    PostMessageA(edit->GetHandle(), WM_KEYDOWN, VK_F5, 1);
    PostMessageA(edit->GetHandle(), WM_KEYDOWN, VK_F6, 1);
    Forms::Application->ProcessMessages();
    EXPECT_EQ("Open;", clicks.text);
    EXPECT_EQ(1, keys.downs) << "only F6 reached the edit";

    // Changes after the bar is shown reach it.
    wrap->SetCaption("&Word wrap");
    wrap->SetChecked(false);
    EXPECT_EQ("&Word wrap", MenuText(bar, 1));
    EXPECT_FALSE(GetMenuState(bar, 1, MF_BYPOSITION) & MF_CHECKED);
    line->SetVisible(false);
    EXPECT_EQ(2, GetMenuItemCount(sub)) << "a hidden item leaves the menu";
    delete open;  // freed by someone else: leaves its parent
    EXPECT_EQ(2, file->GetCount());
    EXPECT_EQ(1, GetMenuItemCount(sub));
    EXPECT_EQ("E&xit", MenuText(sub, 0));
    file->Insert(0, MakeItem(&form, "New", "&New", &clicks));
    EXPECT_EQ("&New", MenuText(sub, 0));
    wrap->Add(MakeItem(&form, "Soft", "&Soft", &clicks));
    EXPECT_TRUE(GetSubMenu(bar, 1) != nullptr) << "the first item makes a submenu";
    wrap->Delete(0);
    EXPECT_TRUE(GetSubMenu(bar, 1) == nullptr) << "and the last one takes it away";

    // The bar narrows the client area: what is aligned to the bottom stays
    // inside it when the bar comes and goes.
    auto* bottom = Make<Extctrls::TPanel>(&form, &form);
    bottom->SetAlign(Controls::alBottom);
    const auto bottomFits = [&] {
      RECT client, panel;
      GetClientRect(window, &client);
      GetWindowRect(bottom->GetHandle(), &panel);
      MapWindowPoints(HWND_DESKTOP, window, reinterpret_cast<POINT*>(&panel), 2);
      return panel.bottom == client.bottom;
    };
    EXPECT_TRUE(bottomFits());
    form.SetMenu(nullptr);
    EXPECT_TRUE(bottomFits()) << "without the bar";
    form.SetMenu(menu);
    EXPECT_TRUE(bottomFits()) << "with the bar again";

    // Bad input gets a defined result.
    EXPECT_THROW(file->GetItem(3), Classes::EListError);
    EXPECT_THROW(file->Insert(9, new TMenuItem(&form)), Classes::EListError);
    EXPECT_EQ("A menu item cannot be inserted into itself", ErrorOf<Classes::EListError>([&] { quit->Add(file); }));
    EXPECT_EQ("List index out of bounds (-1)", ErrorOf<Classes::EListError>([&] { file->Delete(-1); }));

    // A menu freed while the form shows it leaves the form without a bar.
    const UINT quitCommand = quit->GetCommand();
    delete menu;
    EXPECT_TRUE(GetMenu(window) == nullptr);
    EXPECT_EQ(nullptr, form.GetMenu());
    SendMessageA(window, WM_COMMAND, quitCommand, 0);
  }
  EXPECT_EQ(menusBefore, OwnedHandleCount(OK_Menu)) << "every native menu destroyed once";

  // The form and its bar go together, the form's window first.
  {
    Forms::TForm form(nullptr);
    auto* menu = new TMainMenu(&form);
    menu->GetItems()->Add(new TMenuItem(&form));
    form.SetMenu(menu);
    form.Show();
    EXPECT_TRUE(IsMenu(GetMenu(form.GetHandle())));
  }
  EXPECT_EQ(menusBefore, OwnedHandleCount(OK_Menu));
}

// The pop-up menu window this process shows: other test processes share
// the desktop and may show theirs.
HWND ShownMenuOfThisProcess() {
  HWND found = nullptr;
  EnumWindows(
      [](HWND wnd, LPARAM out) -> BOOL {
        char cls[16] = {};
        DWORD pid = 0;
        GetWindowThreadProcessId(wnd, &pid);
        if (pid != GetCurrentProcessId() || !IsWindowVisible(wnd) || !GetClassNameA(wnd, cls, sizeof cls) ||
            lstrcmpA(cls, "#32768") != 0)
          return TRUE;
        *reinterpret_cast<HWND*>(out) = wnd;
        return FALSE;
      },
      reinterpret_cast<LPARAM>(&found));
  return found;
}

TEST(TPopupMenu, PopupRunsTheItemChosenWithTheKeyboard) {
  Forms::TForm form(nullptr);
  EventLog clicks;
  auto* popup = new TPopupMenu(&form);
  for (const char* name : {"First", "Second", "Third"}) popup->GetItems()->Add(MakeItem(&form, name, name, &clicks));
  Counter shown;
  popup->SetOnPopup(shown.Event());
  form.Show();
  popup->SetWindowHandle(form.GetHandle());

  // A user at the keyboard: once the menu window is up, down twice and Enter;
  // Escape when that did not end it, so the test cannot hang. Another test
  // process taking the foreground closes the menu unchosen: then again, at
  // most three times.
  int tries = 0;
  for (; tries < 3 && clicks.text.empty(); ++tries) {
    std::atomic<bool> done{false};
    std::thread user([&] {
      HWND menu = nullptr;
      for (int i = 0; i < 500 && !done && !menu; ++i) {
        Sleep(10);
        menu = ShownMenuOfThisProcess();
      }
      if (!menu) return;
      for (WORD key : {VK_DOWN, VK_DOWN, VK_RETURN}) PostMessageA(menu, WM_KEYDOWN, key, 1);
      for (int i = 0; i < 300 && !done; ++i) Sleep(10);
      while (!done) {
        PostMessageA(menu, WM_KEYDOWN, VK_ESCAPE, 1);
        Sleep(50);
      }
    });
    popup->Popup(100, 100);
    done = true;
    user.join();
  }
  EXPECT_EQ(tries, shown.n) << "OnPopup before each showing";
  EXPECT_EQ("Second;", clicks.text);
}

TEST(ShortCut, TextNamesTheModifiersAndTheKey) {
  const struct {
    TShortCut shortCut;
    const char* text;
  } rows[] = {
      {ShortCut('S', {Controls::ssCtrl}), "Ctrl+S"},
      {ShortCut(VK_F5, {}), "F5"},
      {ShortCut('1', {Controls::ssShift, Controls::ssCtrl, Controls::ssAlt}), "Shift+Ctrl+Alt+1"},
      {scNone, ""},
  };
  for (const auto& r : rows) EXPECT_EQ(r.text, Str(ShortCutToText(r.shortCut))) << r.text;
  EXPECT_EQ(scCtrl | 'S', ShortCut('S', {Controls::ssCtrl}));
}

}  // namespace
