// examples/contacts driven as a user works with it: names typed and added (one
// of accented letters, which the UTF-8 program exports in UTF-8), one
// deleted after its question with "Don't ask me again" ticked, the next one
// deleted without a question, the list exported while the progress window
// shows and the form's controls wait disabled, then the program closed.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <memory>

#include "tests/examples/example_process.h"

namespace {

using namespace example_driver;
using Names = std::vector<std::string>;

struct ContactsWindow {
  HWND form, edit, list, add, remove, exportButton, close;
  std::vector<HWND> Controls() const { return {edit, list, add, remove, exportButton, close}; }
  bool AllEnabled(bool enabled) const {
    for (HWND c : Controls())
      if ((IsWindowEnabled(c) != FALSE) != enabled) return false;
    return true;
  }
};

std::string ReadFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

TEST(ContactsExample, AddDeleteExportAndClose) {
  char temp[MAX_PATH];
  GetTempPathA(MAX_PATH, temp);
  const std::string exported = std::string(temp) + "velkin-contacts-" + std::to_string(GetCurrentProcessId()) + ".txt";
  DeleteFileA(exported.c_str());
  const std::unique_ptr<const char, void (*)(const char*)> removeExport(exported.c_str(),
                                                                        [](const char* path) { DeleteFileA(path); });
  ExampleProcess app(ExamplePath("VELKIN_EXAMPLE"), "\"" + exported + "\"");
  ASSERT_TRUE(app.Started()) << ExamplePath("VELKIN_EXAMPLE");
  HWND form = app.WaitForWindow("TContactsForm");
  ASSERT_NE(nullptr, form) << "no window";
  EXPECT_EQ("Contacts", TextOf(form));
  const ContactsWindow w{form,
                         Child(form, "TEdit", ""),
                         Child(form, "TListBox", ""),
                         Child(form, "TButton", "&Add"),
                         Child(form, "TButton", "&Delete"),
                         Child(form, "TButton", "E&xport"),
                         Child(form, "TButton", "Close")};
  for (HWND c : w.Controls()) ASSERT_NE(nullptr, c) << "a control of the design is missing";
  EXPECT_EQ(BS_DEFPUSHBUTTON, GetWindowLongA(w.add, GWL_STYLE) & BS_TYPEMASK) << "Add is the default button";

  // Typed and added, by the button and by Enter (the default button).
  for (const char* name : {"Ann", "Bob", "Cid", "Dörte", "Eve"}) {
    Type(w.edit, name);
    ASSERT_TRUE(WaitUntil([&] { return TextOf(w.edit) == name; })) << TextOf(w.edit);
    if (name[0] == 'E')
      Key(w.edit, VK_RETURN);
    else
      Click(w.add);
    ASSERT_TRUE(WaitUntil([&] { return !ListItems(w.list).empty() && ListItems(w.list).back() == name; })) << name;
    ASSERT_TRUE(WaitUntil([&] { return TextOf(w.edit).empty(); })) << "the edit box is emptied for the next name";
  }
  EXPECT_EQ((Names{"Ann", "Bob", "Cid", "Dörte", "Eve"}), ListItems(w.list));
  Ask(w.list, LB_SETCURSEL, 1);
  Picture({form}, "contacts");

  // Bob: asked, "Don't ask me again" ticked, Yes.
  Click(w.remove);
  HWND question = app.WaitForWindow("#32770");
  ASSERT_NE(nullptr, question) << "no question";
  EXPECT_EQ("Delete contact", TextOf(question));
  EXPECT_EQ("Delete Bob?", TextOf(GetDlgItem(question, 1001)));
  HWND again = GetDlgItem(question, 5555);
  ASSERT_NE(nullptr, again) << "no \"Don't ask me again\"";
  std::string label = TextOf(again);
  label.erase(std::remove(label.begin(), label.end(), '&'), label.end());
  EXPECT_EQ("Don't ask me again", label);
  Click(again);
  ASSERT_TRUE(WaitUntil([&] { return Ask(again, BM_GETCHECK) == BST_CHECKED; }));
  Picture({form, question}, "contacts-question");
  Click(GetDlgItem(question, IDYES));
  ASSERT_TRUE(WaitUntil([&] { return ListItems(w.list) == Names{"Ann", "Cid", "Dörte", "Eve"}; }));

  // Ann: not asked again (a question would hold the delete until answered).
  Ask(w.list, LB_SETCURSEL, 0);
  Click(w.remove);
  ASSERT_TRUE(WaitUntil([&] {
    return ListItems(w.list) == Names{"Cid", "Dörte", "Eve"};
  })) << "a question came back after \"Don't ask me again\"";

  // The export: the progress window, every control disabled meanwhile, and
  // closing refused until it is over.
  ASSERT_TRUE(w.AllEnabled(true));
  Click(w.exportButton);
  HWND progress = app.WaitForWindow("THLongOperationForm");
  ASSERT_NE(nullptr, progress) << "no progress window";
  EXPECT_TRUE(w.AllEnabled(false)) << "the controls are disabled while the export runs";
  PostMessageA(form, WM_CLOSE, 0, 0);
  Picture({form, progress}, "contacts-export");
  ASSERT_TRUE(WaitUntil([&] { return !IsWindowVisible(progress); })) << "the export did not end";
  ASSERT_TRUE(WaitUntil([&] { return w.AllEnabled(true); })) << "the controls were not put back";
  EXPECT_TRUE(IsWindowVisible(form)) << "closed during the export";
  EXPECT_EQ("Cid\r\nDörte\r\nEve\r\n", ReadFile(exported)) << "in UTF-8, the program's code page";

  Click(w.close);
  EXPECT_EQ(0, app.WaitForExit());
}

}  // namespace
