// The one-call questions driven as a user answers them: what is shown, what
// comes back, what is remembered, that a silenced question shows nothing, and
// whose window owns the box.
#include "velkin/dialogs/ask.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <cstdio>
#include <functional>
#include <string>

#include "platform/vcl/forms/application.h"
#include "platform/vcl/forms/forms.h"
#include "tests/velkin/dialogs/dialog_watcher.h"
#include "tests/velkin/resources/string_texts.h"
#include "velkin/dialogs/xmessagebox.h"
#include "velkin/dialogs/xmessagebox_seams.h"

namespace {

using namespace dialog_watcher;

struct Seen {
  bool shown = false, check = false;
  std::wstring caption, text;
  HWND owner = nullptr;
  int icon = 0;  // 0 none
};

// Runs ask while a watcher answers: ticks the box first when tick, then
// presses press (0: Escape, then the first button when the box stays).
Seen Answer(const std::function<void()>& ask, bool tick, int press) {
  Seen seen;
  Watcher watcher([&](HWND w) {
    seen.shown = true;
    seen.caption = Text(w);
    seen.text = Text(GetDlgItem(w, 1001));
    seen.check = GetDlgItem(w, 5555) != nullptr;
    seen.owner = GetWindow(w, GW_OWNER);
    if (tick) Click(w, 5555);
    if (press) {
      Click(w, press);
    } else {
      Key(GetWindowThreadProcessId(w, nullptr), VK_ESCAPE, w);
    }
    return true;
  });
  ask();
  watcher.Stop();
  watcher.Join();
  return seen;
}

TEST(Ask, AnswersAndWhatIsRemembered) {
  Forms::Application->Initialize();
  const std::wstring attention = string_texts::Shown(1030), question = string_texts::Shown(1031);
  struct Row {
    const char* what;
    std::function<int(bool*, int*)> ask;
    bool flag;   // the remembered flag before (AskMessage, AskYesNo)
    int answer;  // the remembered answer before (AskYesNoCancel)
    bool tick;
    int press;
    int result;
    bool flagAfter;
    int answerAfter;
    bool check;
    const std::wstring* caption;  // null: nothing shown
  };
  const auto notice = [](bool* f, int*) { return AskMessage(nullptr, "Saved.", f), 0; };
  const auto yesNo = [](bool* f, int*) { return int(AskYesNo(nullptr, "Go?", f)); };
  const auto yesNoCancel = [](bool*, int* a) { return AskYesNoCancel(nullptr, "Keep?", a); };
  const Row rows[] = {
      {"notice without a flag: no check box", [](bool*, int*) { return AskMessage(nullptr, "Saved."), 0; }, true, 0,
       false, IDOK, 0, true, 0, false, &attention},
      {"notice ticked: silenced", notice, true, 0, true, IDOK, 0, false, 0, true, &attention},
      {"silenced notice shows nothing", notice, false, 0, false, 0, 0, false, 0, false, nullptr},
      {"No, ticked: false, never remembered", yesNo, true, 0, true, IDNO, 0, true, 0, true, &question},
      {"Yes, ticked: true, remembered", yesNo, true, 0, true, IDYES, 1, false, 0, true, &question},
      {"silenced question answers Yes", yesNo, false, 0, false, 0, 1, false, 0, false, nullptr},
      {"yes/no/cancel remembered No", yesNoCancel, true, IDNO, false, 0, IDNO, true, IDNO, false, nullptr},
      {"yes/no/cancel at 0 asks; No ticked is stored",
       [](bool*, int* a) { return AskYesNoCancel(nullptr, a, "Keep %d files?", 3); }, true, 0, true, IDNO, IDNO, true,
       IDNO, true, &question},
      {"Escape cancels and stores nothing", yesNoCancel, true, 0, true, 0, IDCANCEL, true, 0, true, &question},
      {"Yes unticked is not stored", yesNoCancel, true, 5, false, IDYES, IDYES, true, 5, true, &question},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(r.what);
    bool flag = r.flag;
    int answer = r.answer, result = -99;
    const Seen seen = Answer([&] { result = r.ask(&flag, &answer); }, r.tick, r.press);
    EXPECT_EQ(r.result, result);
    EXPECT_EQ(r.flagAfter, flag);
    EXPECT_EQ(r.answerAfter, answer);
    EXPECT_EQ(r.caption != nullptr, seen.shown);
    EXPECT_EQ(r.check, seen.check);
    if (r.caption) {
      EXPECT_EQ(*r.caption, seen.caption);
    }
  }
  const Seen formatted = Answer([] { AskYesNo(nullptr, nullptr, "Delete %d of %s?", 3, "7"); }, false, IDNO);
  EXPECT_EQ(L"Delete 3 of 7?", formatted.text);
}

TEST(Ask, ANullOwnerIsTheMainForm) {
  Forms::Application->Initialize();
  Forms::TForm* main = nullptr;
  Forms::Application->CreateForm(main);
  main->Show();
  const Seen seen = Answer([] { AskMessage(nullptr, "Hello"); }, false, IDOK);
  EXPECT_EQ(main->GetHandle(), seen.owner);
  main->Hide();
}

// The error a call raises; "" when it raises none.
std::string ErrorOf(const std::function<void()>& call) {
  try {
    call();
  } catch (const Sysutils::Exception& e) {
    return e.Message.c_str();
  }
  return "";
}

// A form, not a window handle, owns the box (the message box's own typed
// owner too); a handle that names no window is refused before anything is
// shown.
TEST(Ask, ATypedOwnerOwnsTheBoxAndAHandleThatIsNoWindowIsAnError) {
  Forms::Application->Initialize();
  Forms::TForm form(nullptr);
  form.Show();
  HWND gone = CreateWindowA("STATIC", "", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr);
  DestroyWindow(gone);
  char handle[32];
  std::snprintf(handle, sizeof handle, " [%p]", static_cast<void*>(gone));
  const std::string notWindow = string_texts::Loaded(1032) + handle;

  struct Row {
    const char* what;
    std::function<void(Forms::TForm*)> onForm;
    std::function<void(void*)> onHandle;
    int press;
  };
  const Row rows[] = {
      {"AskMessage", [](Forms::TForm* f) { AskMessage(f, "Saved."); }, [](void* h) { AskMessage(h, "Saved."); }, IDOK},
      {"AskYesNo", [](Forms::TForm* f) { AskYesNo(f, "Go?"); }, [](void* h) { AskYesNo(h, "Go?"); }, IDNO},
      {"AskYesNoCancel, formatted", [](Forms::TForm* f) { AskYesNoCancel(f, nullptr, "Keep %d?", 2); },
       [](void* h) { AskYesNoCancel(h, nullptr, "Keep %d?", 2); }, IDCANCEL},
      {"XMessageBox beneath them", [](Forms::TForm* f) { XMessageBox(f, "Saved.", "Note", MB_OK, 0); },
       [](void* h) { XMessageBox(h, "Saved.", "Note", MB_OK, 0); }, IDOK},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(r.what);
    std::string error;
    Seen seen = Answer([&] { error = ErrorOf([&] { r.onForm(&form); }); }, false, r.press);
    EXPECT_EQ("", error);
    EXPECT_TRUE(seen.shown);
    EXPECT_EQ(form.GetHandle(), seen.owner) << "owned by the form's window";
    seen = Answer([&] { error = ErrorOf([&] { r.onHandle(gone); }); }, false, r.press);
    EXPECT_EQ(notWindow, error);
    EXPECT_FALSE(seen.shown);
  }
  form.Hide();
}

HLOCAL WINAPI NoMemory(UINT, SIZE_T) { return nullptr; }

// Without memory for its template the question cannot be shown (only the
// allocation failure is): that is never a Yes.
TEST(Ask, NoBoxShownAnswersNoOrCancel) {
  Forms::Application->Initialize();
  XMessageBoxSeams seams;
  seams.Alloc = &NoMemory;
  XMessageBoxSetSeams(seams);
  bool yes = true;
  int answer = 0;
  const Seen first = Answer([&] { yes = AskYesNo(nullptr, "Delete?"); }, false, IDOK);
  const Seen second = Answer([&] { answer = AskYesNoCancel(nullptr, "Delete?"); }, false, IDOK);
  XMessageBoxSetSeams({});
  EXPECT_EQ(string_texts::Shown(1049), first.caption);
  EXPECT_EQ(string_texts::Shown(1049), second.caption);
  EXPECT_FALSE(yes);
  EXPECT_EQ(IDCANCEL, answer);
}

TEST(HMessage, ANameHasOneNumber) {
  const HMessage a("VelkinTestMessage"), b("VelkinTestMessage"), c("VelkinOtherMessage");
  EXPECT_EQ(a.GetNumber(), b.GetNumber());
  EXPECT_NE(a.GetNumber(), c.GetNumber());
  EXPECT_GE(a.GetNumber(), 0xC000u);
}

}  // namespace
