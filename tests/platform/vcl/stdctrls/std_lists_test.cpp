// List and combo boxes: items and the selected index read and written
// through the real windows, kept across the window's making and remaking.
#include "platform/vcl/stdctrls/std_lists.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>

#include "platform/vcl/forms/application.h"
#include "platform/vcl/forms/forms.h"
#include "platform/vcl/stdctrls/std_buttons.h"
#include "tests/platform/vcl/test_helpers.h"

using namespace Stdctrls;
using namespace vcl_test;
using Classes::EStringListError;

namespace {

std::string WindowItems(HWND w, UINT count, UINT getText) {
  std::string out;
  for (int i = 0, n = static_cast<int>(SendMessageA(w, count, 0, 0)); i < n; ++i) {
    char text[64] = {};
    SendMessageA(w, getText, i, reinterpret_cast<LPARAM>(text));
    out += (i ? "|" : "") + std::string(text);
  }
  return out;
}

TEST(TCustomListBox, ItemsAndItemIndexAreTheWindows) {
  Forms::TForm form(nullptr);
  auto* list = Make<TListBox>(&form, &form);
  list->GetItems()->SetText("pear\napple\nfig");  // before the window exists
  list->SetItemIndex(1);
  HWND w = list->GetHandle();
  EXPECT_EQ("pear|apple|fig", WindowItems(w, LB_GETCOUNT, LB_GETTEXT)) << "kept items went into the window";
  EXPECT_EQ(1, SendMessageA(w, LB_GETCURSEL, 0, 0));

  SendMessageA(w, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>("plum"));
  SendMessageA(w, LB_SETCURSEL, 3, 0);
  EXPECT_EQ(4, list->GetItems()->GetCount()) << "what the window holds";
  EXPECT_EQ("plum", Str(list->GetItems()->Get(3)));
  EXPECT_EQ(3, list->GetItemIndex());
  list->GetItems()->Delete(0);
  list->GetItems()->Insert(0, "kiwi");
  EXPECT_EQ("kiwi|apple|fig|plum", WindowItems(w, LB_GETCOUNT, LB_GETTEXT));
  EXPECT_EQ("List index out of bounds (4)", ErrorOf<EStringListError>([&] { list->GetItems()->Get(4); }));
  EXPECT_EQ("List index out of bounds (-1)", ErrorOf<EStringListError>([&] { list->GetItems()->Insert(-1, "x"); }));

  list->SetSorted(true);  // the window is made again, sorted, with the same items
  EXPECT_EQ("apple|fig|kiwi|plum", WindowItems(list->GetHandle(), LB_GETCOUNT, LB_GETTEXT));
  EXPECT_EQ(1, list->GetItems()->Add("banana")) << "in its place";

  list->SetMultiSelect(true);
  list->SetSelected(0, true);
  list->SetSelected(3, true);
  EXPECT_EQ(2, SendMessageA(list->GetHandle(), LB_GETSELCOUNT, 0, 0));
  EXPECT_TRUE(list->GetSelected(3));
  EXPECT_FALSE(list->GetSelected(1));
  EXPECT_EQ("List index out of bounds (9)", ErrorOf<Classes::EListError>([&] { list->GetSelected(9); }));
}

// With HorzScroll the window scrolls sideways just past its widest item as
// its font draws it, and shows the bar only while that is wider than the box:
// as items come and go, when the font changes, in a window made again.
TEST(TCustomListBox, HorzScrollReachesTheWidestItem) {
  Forms::TForm form(nullptr);
  auto* list = Make<TListBox>(&form, &form, 0, 0, 120, 100);
  list->GetItems()->SetText("pear\napple");
  list->SetHorzScroll(true);
  const std::string wide(40, 'W');
  struct Act {
    const char* name;
    std::function<void()> act;
    bool barShown;
  };
  const Act acts[] = {
      {"short items", [] {}, false},
      {"a wide item added", [&] { list->GetItems()->Add(wide.c_str()); }, true},
      {"the window made again", [&] { list->SetSorted(true); }, true},
      {"a larger font", [&] { list->GetFont()->SetSize(list->GetFont()->GetSize() * 2); }, true},
      {"the wide item deleted", [&] { list->GetItems()->Delete(list->GetItems()->IndexOf(wide.c_str())); }, false},
      {"switched off, with a wide item",
       [&] {
         list->SetHorzScroll(false);
         list->GetItems()->Add(wide.c_str());
       },
       false},
  };
  for (const Act& a : acts) {
    a.act();
    const HWND w = list->GetHandle();
    const OwnedWindowDC dc(w);
    DCChanger use(dc.get());
    use.Select(reinterpret_cast<HFONT>(SendMessageA(w, WM_GETFONT, 0, 0)));
    int widest = 0;
    for (int i = 0; i < list->GetItems()->GetCount(); ++i) {
      const std::string text = Str(list->GetItems()->Get(i));
      SIZE size{};
      GetTextExtentPoint32A(dc.get(), text.c_str(), static_cast<int>(text.size()), &size);
      widest = std::max(widest, static_cast<int>(size.cx));
    }
    const int extent = static_cast<int>(SendMessageA(w, LB_GETHORIZONTALEXTENT, 0, 0));
    if (list->GetHorzScroll()) {
      EXPECT_LE(widest, extent) << a.name << ": the widest item can be scrolled to";
      EXPECT_GT(widest + 8, extent) << a.name << ": and no further";
    } else {
      EXPECT_EQ(0, extent) << a.name;
    }
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = SIF_RANGE;
    const bool shown = (GetWindowLongA(w, GWL_STYLE) & WS_HSCROLL) && GetScrollInfo(w, SB_HORZ, &info);
    EXPECT_EQ(a.barShown, shown) << a.name;
    if (shown) {
      EXPECT_EQ(extent - 1, info.nMax) << a.name << ": the bar's range";
    }
  }
}

TEST(TCustomComboBox, ItemsItemIndexAndStyleAreTheWindows) {
  Forms::TForm form(nullptr);
  auto* combo = Make<TComboBox>(&form, &form);
  Counter changes;
  combo->SetOnChange(changes.Event());
  combo->GetItems()->SetText("red\ngreen\nblue");
  combo->SetItemIndex(2);
  HWND w = combo->GetHandle();
  EXPECT_EQ("red|green|blue", WindowItems(w, CB_GETCOUNT, CB_GETLBTEXT));
  EXPECT_EQ(2, SendMessageA(w, CB_GETCURSEL, 0, 0));
  EXPECT_EQ("blue", Str(combo->GetText()));
  EXPECT_EQ(DWORD(CBS_DROPDOWN), GetWindowLongA(w, GWL_STYLE) & 3u);

  combo->SetStyle(csDropDownList);
  w = combo->GetHandle();
  EXPECT_EQ(DWORD(CBS_DROPDOWNLIST), GetWindowLongA(w, GWL_STYLE) & 3u);
  EXPECT_EQ("red|green|blue", WindowItems(w, CB_GETCOUNT, CB_GETLBTEXT)) << "kept through the new window";
  EXPECT_EQ(2, combo->GetItemIndex());
  // The user picks the first item: the window tells the control.
  SendMessageA(w, CB_SETCURSEL, 0, 0);
  SendMessageA(form.GetHandle(), WM_COMMAND, MAKEWPARAM(0, CBN_SELCHANGE), reinterpret_cast<LPARAM>(w));
  EXPECT_EQ(0, combo->GetItemIndex());
  EXPECT_EQ(1, changes.n);
  EXPECT_EQ("List index out of bounds (3)", ErrorOf<EStringListError>([&] { combo->GetItems()->Get(3); }));
  EXPECT_EQ("List index out of bounds (5)", ErrorOf<EStringListError>([&] { combo->GetItems()->Delete(5); }));
  EXPECT_EQ(3, combo->GetItems()->GetCount()) << "nothing changed";
}

// An editable box's edit is the box's own: its keys run the box's key events
// and focus moving between the box and its edit is no enter or exit.
TEST(TCustomComboBox, ItsEditsKeysAndFocusAreTheBoxs) {
  System::TEventHandlers on;
  Forms::TForm form(nullptr);
  auto* combo = Make<TComboBox>(&form, &form);
  auto* list = Make<TComboBox>(&form, &form, 0, 40, 120, 21);
  list->SetStyle(csDropDownList);
  auto* other = Make<TButton>(&form, &form, 0, 80, 75, 25);
  form.Show();

  std::string keys;
  EventLog focus;
  other->SetFocus();
  combo->SetOnEnter(focus.On("enter "));
  combo->SetOnExit(focus.On("exit "));
  combo->SetOnKeyPress(on.Add([&](System::TObject*, char& key) {
    keys += std::string(1, key) + " ";
    if (key == 'x') key = 0;
  }));
  combo->SetFocus();
  HWND edit = GetFocus();
  ASSERT_NE(combo->GetHandle(), edit) << "the focus went on to the edit";
  ASSERT_TRUE(IsChild(combo->GetHandle(), edit));
  other->SetFocus();
  EXPECT_EQ("enter exit ", focus.text) << "one enter and one exit, none between the box and its edit";

  // Keys posted to the edit (wherever the focus is meanwhile) and made into
  // characters by the message loop.
  for (char c : std::string("axb")) {
    PostMessageA(edit, WM_KEYDOWN, VkKeyScanA(c) & 0xFF, 1);
    PostMessageA(edit, WM_KEYUP, VkKeyScanA(c) & 0xFF, 0xC0000001);
  }
  Forms::Application->ProcessMessages();
  EXPECT_EQ("a x b ", keys);
  EXPECT_EQ("ab", Str(combo->GetText())) << "x swallowed before the edit saw it";
  list->SetFocus();
  EXPECT_EQ(list->GetHandle(), GetFocus()) << "a drop-down list has no edit";
}

}  // namespace
