// Edit boxes and memos over the real EDIT windows: limits, selection, what
// Enter does in a memo that wants returns or not; memo lines as a string list
// over the window's text.
#include "platform/vcl/stdctrls/std_edits.h"

#include <commctrl.h>
#include <gtest/gtest.h>

#include <string>

#include "platform/vcl/core/event_handlers.h"
#include "platform/vcl/forms/application.h"
#include "platform/vcl/forms/forms.h"
#include "platform/vcl/stdctrls/com_ranges.h"
#include "platform/vcl/stdctrls/std_buttons.h"
#include "platform/vcl/stdctrls/std_label.h"
#include "platform/vcl/stdctrls/std_lists.h"
#include "tests/platform/vcl/test_helpers.h"
#include "tests/script_samples.h"

using namespace Stdctrls;
using namespace vcl_test;
using W = Controls::TWinControl;

namespace {

TEST(TCustomEdit, LimitsAndSelectionAreTheWindows) {
  Forms::TForm form(nullptr);
  auto* edit = Make<TEdit>(&form, &form);
  edit->SetMaxLength(5);
  edit->SetText("abc");
  HWND w = edit->GetHandle();
  EXPECT_EQ(5, SendMessageA(w, EM_GETLIMITTEXT, 0, 0));
  for (char c : std::string("defg")) SendMessageA(w, WM_CHAR, static_cast<unsigned char>(c), 1);
  EXPECT_EQ("deabc", WindowText(w)) << "typed at the caret, cut at the limit";
  EXPECT_TRUE(edit->GetModified());
  edit->SetSelStart(1);
  edit->SetSelLength(3);
  EXPECT_EQ("eab", Str(edit->GetSelText()));
  edit->SetSelText("X");
  EXPECT_EQ("dXc", WindowText(w));
  edit->SetReadOnly(true);
  EXPECT_TRUE(GetWindowLongA(w, GWL_STYLE) & ES_READONLY);
}

// Characters posted to an edit, a memo and a combo box as the keyboard posts them reach
// the program through the application's loop whole, in its code page; the
// key press event sees each byte and, zeroing one, drops the character; the
// selection counts what the window counts; Alt and a letter beyond ASCII
// finds its mnemonic.
TEST(TCustomEdit, TypedCharactersComeWhole) {
  Forms::Application->Initialize();
  Forms::TForm form(nullptr);
  auto* edit = Make<TEdit>(&form, &form, 0, 0, 200, 21);
  auto* memo = Make<TMemo>(&form, &form, 0, 30, 200, 60);
  auto* combo = Make<TComboBox>(&form, &form, 0, 100, 200, 21);
  std::string pressed;
  bool onlyAscii = false;
  System::TEventHandlers on;
  const auto press = on.Add([&](System::TObject*, char& key) {
    pressed += key;
    if (onlyAscii && static_cast<unsigned char>(key) >= 0x80) key = 0;
  });
  edit->SetOnKeyPress(press);
  memo->SetOnKeyPress(press);
  combo->SetOnKeyPress(press);
  form.Show();
  COMBOBOXINFO inside{};
  inside.cbSize = sizeof inside;
  GetComboBoxInfo(combo->GetHandle(), &inside);
  const auto type = [&](W* control, const std::wstring& letters) {
    // A combo box's edit is a window of the system's inside it.
    const HWND to = control == combo ? inside.hwndItem : control->GetHandle();
    for (const wchar_t unit : letters) PostMessageW(to, WM_CHAR, unit, 1);
    Forms::Application->ProcessMessages();
  };
  for (const auto& sample : script_samples::samples) {
    std::string text;
    if (!script_samples::InAnsi(sample.utf8, text)) continue;
    const std::wstring letters = script_samples::Wide(sample.utf8);
    for (W* control : {static_cast<W*>(edit), static_cast<W*>(memo), static_cast<W*>(combo)}) {
      const std::string where = std::string(sample.what) + ", " + Str(control->ClassName());
      control->SetText("");
      pressed.clear();
      onlyAscii = false;
      type(control, letters);
      EXPECT_EQ(text, Str(control->GetText())) << where;
      EXPECT_EQ(text, pressed) << where << ": the key press event's bytes";
      control->SetText("");
      onlyAscii = true;
      type(control, letters);
      std::string ascii;
      for (const char c : text)
        if (static_cast<unsigned char>(c) < 0x80) ascii += c;
      EXPECT_EQ(ascii, Str(control->GetText())) << where << ": the letters whose bytes were zeroed dropped";
    }
    edit->SetText(text.c_str());
    SendMessageW(edit->GetHandle(), EM_SETSEL, 1, letters.size() - 1);
    const std::wstring inner = letters.substr(1, letters.size() - 2);
    EXPECT_EQ(static_cast<int>(inner.size()), edit->GetSelLength()) << sample.what;
    EXPECT_EQ(script_samples::Ansi(inner), Str(edit->GetSelText())) << sample.what;
  }
  // A mnemonic of an accented letter, typed in the other case.
  std::string caption;
  if (script_samples::InAnsi("&Élan", caption)) {
    auto* label = Make<TLabel>(&form, &form, 0, 100, 100, 13);
    label->SetText(caption.c_str());
    label->SetFocusControl(memo);
    edit->SetFocus();
    PostMessageW(edit->GetHandle(), WM_SYSCHAR, L'\u00e9', 1 << 29);
    Forms::Application->ProcessMessages();
    EXPECT_TRUE(memo->Focused()) << "Alt+\u00e9 is the label's";
  }
}

TEST(TCustomMemo, EnterAndTabGoIntoAMemoThatWantsThem) {
  struct Row {
    const char* what;
    bool wantReturns, wantTabs;
    WORD key;
    char ch;
    const char* text;  // the memo's text afterwards
    int clicks;        // of the default button
    bool memoFocused;
  };
  const Row rows[] = {
      {"Enter, returns wanted", true, false, VK_RETURN, '\r', "ab\r\n", 0, true},
      {"Enter, returns not wanted", false, false, VK_RETURN, '\r', "ab", 1, true},
      {"Tab, tabs wanted", true, true, VK_TAB, '\t', "ab\t", 0, true},
      {"Tab, tabs not wanted: the focus moves on", true, false, VK_TAB, '\t', "ab", 0, false},
  };
  for (const Row& r : rows) {
    Forms::TForm form(nullptr);
    auto* memo = Make<TMemo>(&form, &form);
    memo->SetWantReturns(r.wantReturns);
    memo->SetWantTabs(r.wantTabs);
    auto* ok = Make<TButton>(&form, &form, 0, 100, 75, 25);
    ok->SetDefault(true);
    Counter clicks;
    ok->SetOnClick(clicks.Event());
    form.Show();
    memo->SetFocus();
    memo->SetText("ab");
    HWND w = memo->GetHandle();
    SendMessageA(w, EM_SETSEL, 2, 2);
    SendMessageA(w, WM_KEYDOWN, r.key, 1);
    SendMessageA(w, WM_CHAR, static_cast<unsigned char>(r.ch), 1);  // as TranslateMessage would follow it
    EXPECT_EQ(r.text, WindowText(w)) << r.what;
    EXPECT_EQ(r.clicks, clicks.n) << r.what;
    EXPECT_EQ(r.memoFocused, memo->Focused()) << r.what;
  }
}

TEST(TCustomMemo, LinesAreTheWindowsText) {
  Forms::TForm form(nullptr);
  auto* memo = Make<TMemo>(&form, &form);
  memo->GetLines()->SetText("one\ntwo\rthree");
  HWND w = memo->GetHandle();
  EXPECT_EQ("one\r\ntwo\r\nthree", WindowText(w)) << "line breaks made even, none added";
  SetWindowTextA(w, "x\r\ny");
  EXPECT_EQ(2, memo->GetLines()->GetCount());
  EXPECT_EQ("y", Str(memo->GetLines()->Get(1)));
  memo->GetLines()->Insert(1, "mid");
  memo->GetLines()->Delete(0);
  Counter changes;
  memo->SetOnChange(changes.Event());
  memo->GetLines()->Add("");  // an empty line, last for a while, is kept
  memo->GetLines()->Add("end");
  EXPECT_EQ("mid\r\ny\r\n\r\nend", WindowText(w));
  EXPECT_EQ(4, memo->GetLines()->GetCount());
  EXPECT_EQ(2, changes.n) << "each line added changes the text";
  EXPECT_EQ("List index out of bounds (4)", ErrorOf<Classes::EStringListError>([&] { memo->GetLines()->Get(4); }));
}

// What the properties make of the window, read back from its style, set
// before the window is made and after (the window is made again where the
// system reads the style only at creation).
TEST(TCustomEdit, PropertiesAreTheWindowsStyle) {
  enum Kind { kEdit, kMemo, kBar };
  const struct {
    const char* what;
    Kind kind;
    void (*set)(W*);
    DWORD mask, expected;
    int passwordChar;  // what EM_GETPASSWORDCHAR gives, or -1
  } rows[] = {
      {"password character", kEdit, [](W* c) { static_cast<TEdit*>(c)->SetPasswordChar('*'); }, ES_PASSWORD,
       ES_PASSWORD, '*'},
      {"password character taken away", kEdit,
       [](W* c) {
         static_cast<TEdit*>(c)->SetPasswordChar('*');
         static_cast<TEdit*>(c)->SetPasswordChar(0);
       },
       ES_PASSWORD, 0, 0},
      {"memo, both scroll bars", kMemo, [](W* c) { static_cast<TMemo*>(c)->SetScrollBars(ssBoth); },
       WS_HSCROLL | WS_VSCROLL, WS_HSCROLL | WS_VSCROLL, -1},
      {"memo, vertical scroll bar", kMemo, [](W* c) { static_cast<TMemo*>(c)->SetScrollBars(ssVertical); },
       WS_HSCROLL | WS_VSCROLL, WS_VSCROLL, -1},
      {"memo, no scroll bars, word wrap", kMemo, [](W*) {}, WS_HSCROLL | WS_VSCROLL | ES_AUTOHSCROLL, 0, -1},
      {"memo, no word wrap", kMemo, [](W* c) { static_cast<TMemo*>(c)->SetWordWrap(false); }, ES_AUTOHSCROLL,
       ES_AUTOHSCROLL, -1},
      {"progress bar, smooth", kBar, [](W* c) { static_cast<Comctrls::TProgressBar*>(c)->SetSmooth(true); }, PBS_SMOOTH,
       PBS_SMOOTH, -1},
      {"progress bar, in blocks", kBar, [](W*) {}, PBS_SMOOTH, 0, -1},
  };
  for (const auto& r : rows)
    for (bool windowFirst : {false, true}) {
      Forms::TForm form(nullptr);
      W* control = r.kind == kEdit   ? static_cast<W*>(Make<TEdit>(&form, &form))
                   : r.kind == kMemo ? static_cast<W*>(Make<TMemo>(&form, &form))
                                     : Make<Comctrls::TProgressBar>(&form, &form);
      if (windowFirst) control->GetHandle();
      r.set(control);
      const HWND w = control->GetHandle();
      const auto style = static_cast<DWORD>(GetWindowLongA(w, GWL_STYLE));
      const char* when = windowFirst ? ", set on the window" : "";
      EXPECT_EQ(r.expected, style & r.mask) << r.what << when << std::hex << ", style " << style;
      if (r.passwordChar >= 0) {
        EXPECT_EQ(r.passwordChar, SendMessageA(w, EM_GETPASSWORDCHAR, 0, 0)) << r.what << when;
      }
    }
}

}  // namespace
