// The input dialog driven as a user would: the prompt and value shown, text
// typed, confirmed with Enter or OK, dismissed with Escape or Close.
#include "velkin/dialogs/hinput.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "platform/vcl/forms/application.h"
#include "tests/script_samples.h"
#include "tests/velkin/dialogs/dialog_watcher.h"
#include "tests/velkin/dialogs/text_fit.h"
#include "tests/velkin/resources/string_texts.h"

namespace {

using namespace dialog_watcher;

THInputForm* Open(HWND w) { return dynamic_cast<THInputForm*>(Controls::TWinControl::FindControl(w)); }
bool IsInputForm(HWND w) { return Open(w) != nullptr; }

TEST(HInputDialog, AsAUserAnswersIt) {
  Forms::Application->Initialize();
  const struct {
    const char* what;
    const char* typed;  // null: typing nothing
    std::function<void(THInputForm*)> finish;
    bool result;
    const char* value;
    decltype(&HInputDialog) dialog = &HInputDialog;
  } rows[] = {
      {"typed and Enter", "report 2", [](THInputForm*) { Keys({VK_RETURN}); }, true, "report 2"},
      {"kept and OK", nullptr, [](THInputForm* f) { Click(f->Button2->GetHandle()); }, true, "draft"},
      {"typed and Escape", "lost", [](THInputForm*) { Keys({VK_ESCAPE}); }, false, "draft"},
      {"typed and Close", "lost", [](THInputForm* f) { Click(f->Button1->GetHandle()); }, false, "draft"},
      {"the old name, typed and Enter", "old", [](THInputForm*) { Keys({VK_RETURN}); }, true, "old", &HIputDialog},
      {"letters of several scripts typed", "Éte Отчёт Ωμέγα 😀", [](THInputForm*) { Keys({VK_RETURN}); }, true,
       "Éte Отчёт Ωμέγα 😀"},
  };
  for (const auto& r : rows) {
    SCOPED_TRACE(r.what);
    std::string expected;  // UTF-8 here, in the program's code page there
    if (!script_samples::InAnsi(r.value, expected)) continue;
    std::wstring caption, edit;
    std::string prompt;
    bool focused = false;
    std::vector<std::string> clipped;
    Watcher watcher(IsInputForm, [&](HWND w) {
      THInputForm* form = Open(w);
      caption = Text(w);
      prompt = form->txtName->GetText().c_str();
      edit = Text(form->txtText->GetHandle());
      focused = FocusOf(GetWindowThreadProcessId(w, nullptr)).hwndFocus == form->txtText->GetHandle();
      clipped = text_fit::Clipped(form);
      if (r.typed) {
        PostMessageA(form->txtText->GetHandle(), EM_SETSEL, 0, -1);
        Type(r.typed);
        if (!Until([&] { return Text(form->txtText->GetHandle()) == script_samples::Wide(r.typed); })) {
          ADD_FAILURE() << "typed " << r.typed << ", the edit shows "
                        << script_samples::Utf8(Text(form->txtText->GetHandle()));
          return false;
        }
      }
      r.finish(form);
      return true;
    });
    System::AnsiString value = "draft";
    const bool result = r.dialog(nullptr, "Rename", "New name:", value);
    EXPECT_TRUE(watcher.Join());
    EXPECT_EQ(r.result, result);
    EXPECT_EQ(expected, value.c_str());
    EXPECT_EQ(L"Rename", caption);
    EXPECT_EQ("New name:", prompt);
    EXPECT_EQ(L"draft", edit);
    EXPECT_TRUE(focused) << "the edit has the focus";
    for (const std::string& c : clipped) ADD_FAILURE() << c;
  }
}

// The designed dialog: its texts from the string tables in the language of
// the screen, fitting at its density.
TEST(HInputDialog, TheDesignedDialog) {
  Forms::Application->Initialize();
  THInputForm form(nullptr);
  form.Show();
  EXPECT_EQ(Forms::bsDialog, form.GetBorderStyle());
  EXPECT_FALSE(GetWindowLongA(form.GetHandle(), GWL_STYLE) & WS_SYSMENU) << "no border icons";
  const struct {
    const char* what;
    Controls::TWinControl* control;
    int id;
  } texts[] = {{"OK", form.Button2, 1042}, {"Close", form.Button1, 1043}};
  for (const auto& t : texts) {
    const std::wstring shown = Text(t.control->GetHandle());
    EXPECT_EQ(string_texts::Shown(t.id), shown) << t.what;
    EXPECT_EQ("", string_texts::Misread(shown, string_texts::Column())) << t.what;
  }
  EXPECT_TRUE(GetWindowLongA(form.Button2->GetHandle(), GWL_STYLE) & BS_DEFPUSHBUTTON);
  // OK left of Close, in proportion to the design (85 wide, 5 apart).
  RECT ok = RectIn(form.Button2->GetHandle()), cancel = RectIn(form.Button1->GetHandle());
  const double scale = (ok.right - ok.left) / 85.0;
  EXPECT_LT(ok.right, cancel.left);
  EXPECT_NEAR(5 * scale, cancel.left - ok.right, 2);
  for (const std::string& c : text_fit::Clipped(&form)) ADD_FAILURE() << c;
  form.Hide();
}

}  // namespace
