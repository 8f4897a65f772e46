// Edit boxes and memos over the real EDIT windows: limits, selection, what
// Enter does in a memo that wants returns or not; memo lines as a string list
// over the window's text.
#include "platform/vcl/std_edits.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/vcl/forms.h"
#include "platform/vcl/std_buttons.h"

using namespace Stdctrls;

namespace {

std::string WindowText(HWND w) {
  char text[256] = {};
  GetWindowTextA(w, text, sizeof text);
  return text;
}

TEST(TCustomEdit, LimitsAndSelectionAreTheWindows) {
  Forms::TForm form(nullptr);
  auto* edit = new TEdit(&form);
  edit->SetParent(&form);
  edit->SetMaxLength(5);
  edit->SetText("abc");
  HWND w = edit->GetHandle();
  EXPECT_EQ(5, SendMessageA(w, EM_GETLIMITTEXT, 0, 0));
  for (char c : std::string("defg")) SendMessageA(w, WM_CHAR, static_cast<unsigned char>(c), 1);
  EXPECT_EQ("deabc", WindowText(w)) << "typed at the caret, cut at the limit";
  EXPECT_TRUE(edit->GetModified());
  edit->SetSelStart(1);
  edit->SetSelLength(3);
  EXPECT_EQ("eab", std::string(edit->GetSelText().c_str()));
  edit->SetSelText("X");
  EXPECT_EQ("dXc", WindowText(w));
  edit->SetReadOnly(true);
  EXPECT_TRUE(GetWindowLongA(w, GWL_STYLE) & ES_READONLY);
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
    auto* memo = new TMemo(&form);
    memo->SetParent(&form);
    memo->SetWantReturns(r.wantReturns);
    memo->SetWantTabs(r.wantTabs);
    auto* ok = new TButton(&form);
    ok->SetParent(&form);
    ok->SetTop(100);
    ok->SetDefault(true);
    int clicks = 0;
    struct Counter {
      int* n;
      void Clicked(System::TObject*) { ++*n; }
    } counter{&clicks};
    ok->SetOnClick(System::TNotifyEvent(&counter, &Counter::Clicked));
    form.Show();
    memo->SetFocus();
    memo->SetText("ab");
    HWND w = memo->GetHandle();
    SendMessageA(w, EM_SETSEL, 2, 2);
    SendMessageA(w, WM_KEYDOWN, r.key, 1);
    SendMessageA(w, WM_CHAR, static_cast<unsigned char>(r.ch), 1);  // as TranslateMessage would follow it
    EXPECT_EQ(r.text, WindowText(w)) << r.what;
    EXPECT_EQ(r.clicks, clicks) << r.what;
    EXPECT_EQ(r.memoFocused, memo->Focused()) << r.what;
  }
}

TEST(TCustomMemo, LinesAreTheWindowsText) {
  Forms::TForm form(nullptr);
  auto* memo = new TMemo(&form);
  memo->SetParent(&form);
  memo->GetLines()->SetText("one\ntwo\rthree");
  HWND w = memo->GetHandle();
  EXPECT_EQ("one\r\ntwo\r\nthree", WindowText(w)) << "line breaks made even, none added";
  SetWindowTextA(w, "x\r\ny");
  EXPECT_EQ(2, memo->GetLines()->GetCount());
  EXPECT_EQ("y", std::string(memo->GetLines()->Get(1).c_str()));
  memo->GetLines()->Insert(1, "mid");
  memo->GetLines()->Delete(0);
  memo->GetLines()->Add("end");
  EXPECT_EQ("mid\r\ny\r\nend", WindowText(w));
  EXPECT_THROW(memo->GetLines()->Get(3), Classes::EStringListError);
}

}  // namespace
