// Menus read back through the native menu they build: the bar a form shows,
// its entries kept in step with the items, commands and shortcuts running
// OnClick, a pop-up chosen from with keys, and no menu handle left behind.
#include "platform/vcl/forms/menus.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>

#include "platform/vcl/forms/application.h"
#include "platform/vcl/stdctrls/ext_panels.h"
#include "platform/vcl/stdctrls/std_edits.h"
#include "tests/platform/vcl/test_helpers.h"

using namespace Menus;
using namespace vcl_test;

namespace {

// An item whose OnClick logs its name.
TMenuItem* MakeItem(Classes::TComponent* owner, const char* name, const char* caption, EventLog* clicks) {
  auto* item = Make<TMenuItem>(owner, nullptr);
  item->SetName(name);
  item->SetCaption(caption);
  item->SetOnClick(clicks->On(name + std::string(";")));
  return item;
}

// A native menu as text: "-" a separator, "(gray)" and "(checked)" the
// state, a submenu in brackets: "&File[&Open\tF5|-]|&Wrap(checked)".
std::string MenuText(HMENU menu) {
  std::string out;
  for (int i = 0, n = GetMenuItemCount(menu); i < n; ++i) {
    char text[64] = {};
    GetMenuStringA(menu, i, text, sizeof text, MF_BYPOSITION);
    HMENU sub = GetSubMenu(menu, i);
    const UINT state = GetMenuState(menu, i, MF_BYPOSITION) & (sub ? 0xFF : ~0u);  // a submenu's count above
    out += std::string(i ? "|" : "") + (state & MF_SEPARATOR ? "-" : text) + (state & MF_GRAYED ? "(gray)" : "") +
           (state & MF_CHECKED ? "(checked)" : "") + (sub ? "[" + MenuText(sub) + "]" : "");
  }
  return out;
}

TEST(TMainMenu, IsTheFormsMenuBarAndFollowsItsItems) {
  const long menusBefore = OwnedHandleCount(OK_Menu);
  {
    System::TEventHandlers on;
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
    EXPECT_EQ(file->GetHandle(), GetSubMenu(bar, 0));
    EXPECT_EQ("&File[&Open\tF5|-|E&xit(gray)]|&Wrap(checked)", MenuText(bar)) << "the shortcut beside the caption";

    // WM_COMMAND as the window system sends it runs the item; a disabled
    // item and an unknown command run nothing.
    for (TMenuItem* i : {open, quit, wrap}) SendMessageA(window, WM_COMMAND, i->GetCommand(), 0);
    SendMessageA(window, WM_COMMAND, 0xFFF0, 0);
    EXPECT_EQ("Open;Wrap;", clicks.text);

    // The shortcut reaches the item, not the focused edit.
    auto* edit = Make<Stdctrls::TEdit>(&form, &form);
    int downs = 0;
    edit->SetOnKeyDown(on.Add([&](System::TObject*, WORD&, Controls::TShiftState) { ++downs; }));
    clicks.text.clear();
    PostMessageA(edit->GetHandle(), WM_KEYDOWN, VK_F5, 1);
    PostMessageA(edit->GetHandle(), WM_KEYDOWN, VK_F6, 1);
    Forms::Application->ProcessMessages();
    EXPECT_EQ("Open;", clicks.text);
    EXPECT_EQ(1, downs) << "only F6 reached the edit";

    // Changes after the bar is shown reach it.
    wrap->SetCaption("&Word wrap");
    wrap->SetChecked(false);
    line->SetVisible(false);
    EXPECT_EQ("&File[&Open\tF5|E&xit(gray)]|&Word wrap", MenuText(bar)) << "a hidden item leaves the menu";
    delete open;  // freed by someone else: leaves its parent
    EXPECT_EQ(2, file->GetCount());
    file->Insert(0, MakeItem(&form, "New", "&New", &clicks));
    wrap->Add(MakeItem(&form, "Soft", "&Soft", &clicks));
    EXPECT_EQ("&File[&New|E&xit(gray)]|&Word wrap[&Soft]", MenuText(bar)) << "the first item makes a submenu";
    wrap->Delete(0);
    EXPECT_EQ("&File[&New|E&xit(gray)]|&Word wrap", MenuText(bar)) << "and the last one takes it away";

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
    EXPECT_EQ("List index out of bounds (3)", ErrorOf<Classes::EListError>([&] { file->GetItem(3); }));
    EXPECT_EQ("List index out of bounds (9)",
              ErrorOf<Classes::EListError>([&] { file->Insert(9, Make<TMenuItem>(&form, nullptr)); }));
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
}

}  // namespace
