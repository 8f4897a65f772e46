// The text editor driven as a user would: lines shown and counted, typed,
// confirmed with Ctrl+Enter or OK, dismissed with Escape; what comes back.
#include "velkin/dialogs/hmleditor.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <string>

#include "platform/vcl/core/string_list.h"
#include "platform/vcl/forms/application.h"
#include "tests/script_samples.h"
#include "tests/velkin/dialogs/dialog_watcher.h"
#include "tests/velkin/dialogs/text_fit.h"
#include "tests/velkin/resources/string_texts.h"

namespace {

using namespace dialog_watcher;

THMultilineEditorForm* Open(HWND w) {
  return dynamic_cast<THMultilineEditorForm*>(Controls::TWinControl::FindControl(w));
}
bool IsEditor(HWND w) { return Open(w) != nullptr; }

std::wstring Wide(const std::string& bytes) {
  wchar_t wide[256];
  return std::wstring(wide, MultiByteToWideChar(CP_ACP, 0, bytes.data(), static_cast<int>(bytes.size()), wide, 256));
}

// The counter as the form shows it: the tables' words in the screen's language.
std::string Counter(int characters, int lines) {
  char numbers[2][16];
  snprintf(numbers[0], sizeof numbers[0], " %4d ", characters);
  snprintf(numbers[1], sizeof numbers[1], " %3d", lines);
  return string_texts::Loaded(1046) + numbers[0] + string_texts::Loaded(1047) + numbers[1];
}

struct Seen {
  std::wstring caption, okText, closeText;
  int lines = -1;
  LRESULT limit = 0;
  std::string counter, counterAfter;
  std::vector<std::string> clipped;
  RECT ok{}, close{};
};

// Opens the editor through open while a watcher reads it, types typed at the
// start of the memo (Enter as "\n"), and finishes with finish.
enum Finish { CtrlEnter, OkButton, Escape };
Seen Drive(const std::function<bool()>& open, const std::string& typed, Finish finish, bool& result) {
  Seen seen;
  Watcher watcher(IsEditor, [&](HWND w) {
    THMultilineEditorForm* form = Open(w);
    HWND memo = form->Memo->GetHandle();
    seen.caption = Text(w);
    seen.okText = Text(form->NvOS8PushButton1->GetHandle());
    seen.closeText = Text(form->NvOS8PushButton2->GetHandle());
    seen.lines = static_cast<int>(SendMessageA(memo, EM_GETLINECOUNT, 0, 0));
    seen.limit = SendMessageA(memo, EM_GETLIMITTEXT, 0, 0);
    seen.counter = form->txtLines->GetText().c_str();
    seen.clipped = text_fit::Clipped(form);
    seen.ok = RectIn(form->NvOS8PushButton1->GetHandle());
    seen.close = RectIn(form->NvOS8PushButton2->GetHandle());
    const int length = GetWindowTextLengthA(memo);
    Type(typed);
    if (!Until([&] {
          return GetWindowTextLengthA(memo) == length + static_cast<int>(typed.size()) +
                                                   static_cast<int>(std::count(typed.begin(), typed.end(), '\n'));
        }))
      return false;
    seen.counterAfter = form->txtLines->GetText().c_str();
    if (finish == OkButton)
      Click(form->NvOS8PushButton1->GetHandle());
    else if (finish == Escape)
      Keys({VK_ESCAPE});
    else
      Keys({VK_CONTROL, VK_RETURN});
    return true;
  });
  result = open();
  EXPECT_TRUE(watcher.Join());
  return seen;
}

TEST(HTextEditor, TextInAndOut) {
  Forms::Application->Initialize();
  const std::wstring designed = string_texts::Shown(1044);
  const struct {
    const char* what;
    const char* text;
    const char* caption;
    int maxLength;
    const char* typed;
    Finish finish;
    bool result;
    const char* after;
    int lines;
    int characters;  // what the counter shows at first
  } rows[] = {
      {"lines back as they came, an empty one too", "first\n\nthird", "Notes", -1, "", CtrlEnter, true,
       "first\n\nthird", 3, 14},
      {"CR LF comes back as LF", "a\r\nb\r\nc", nullptr, 100, "", OkButton, true, "a\nb\nc", 3, 7},
      {"Enter is a line break in the memo", "end", "", -1, "x\n", CtrlEnter, true, "x\nend", 1, 3},
      {"Escape leaves the text alone", "keep", "Notes", 10, "zz", Escape, false, "keep", 1, 4},
      {"letters counted, not bytes", "«a»", "Notes", -1, "", OkButton, true, "«a»", 1, 3},
      {"letters of several scripts typed", "x", "Notes", -1, "Été Щука Ωμέγα 😀\n", CtrlEnter, true,
       "Été Щука Ωμέγα 😀\nx", 1, 1},
  };
  for (const auto& r : rows) {
    SCOPED_TRACE(r.what);
    std::string writable;
    if (!script_samples::InAnsi(r.after, writable)) continue;  // not in this code page
    // UTF-8 here, in the program's code page there.
    System::AnsiString text = string_texts::InCodePage(r.text, GetACP()).c_str();
    bool result = false;
    const Seen seen = Drive([&] { return HTextEditor(text, r.caption, r.maxLength); }, r.typed, r.finish, result);
    EXPECT_EQ(r.result, result);
    EXPECT_EQ(string_texts::InCodePage(r.after, GetACP()), text.c_str());
    EXPECT_EQ(r.lines, seen.lines);
    EXPECT_EQ(Counter(r.characters, r.lines), seen.counter);
    if (*r.typed) {
      EXPECT_NE(seen.counter, seen.counterAfter) << "the counter follows typing";
    }
    EXPECT_EQ(r.caption && *r.caption ? std::wstring(r.caption, r.caption + strlen(r.caption)) : designed,
              seen.caption);
    EXPECT_EQ(string_texts::Shown(1045), seen.okText);
    EXPECT_EQ(string_texts::Shown(1043), seen.closeText);
    for (const std::wstring& text : {seen.caption, seen.okText, seen.closeText, Wide(seen.counter)})
      EXPECT_EQ("", string_texts::Misread(text, string_texts::Column())) << "in the language's own letters";
    if (r.maxLength >= 0) {
      EXPECT_EQ(r.maxLength, seen.limit);
    } else {
      EXPECT_GT(seen.limit, 60000) << "no limit";
    }
    for (const std::string& c : seen.clipped) ADD_FAILURE() << c;
    // Close left of OK, in proportion to the design (94 wide, 8 apart).
    EXPECT_LT(seen.close.right, seen.ok.left);
    EXPECT_NEAR(8.0 * (seen.ok.right - seen.ok.left) / 94, seen.ok.left - seen.close.right, 2);
  }
}

TEST(HTextEditor, ListInAndOut) {
  Forms::Application->Initialize();
  Classes::TStringList list;
  list.Add("one");
  list.Add("two");
  bool result = false;
  const Seen seen = Drive([&] { return HTextEditor(&list, "List", -1); }, "zero\n", OkButton, result);
  EXPECT_TRUE(result);
  EXPECT_EQ(2, seen.lines);
  ASSERT_EQ(3, list.GetCount());
  EXPECT_EQ("zero", std::string(list.Get(0).c_str()));
  EXPECT_EQ("two", std::string(list.Get(2).c_str()));
  EXPECT_FALSE(HTextEditor(static_cast<Classes::TStrings*>(nullptr), "List", -1));
}

}  // namespace
