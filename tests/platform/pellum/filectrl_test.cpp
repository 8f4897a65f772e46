// The directory dialog driven as a user would: folders opened from the list,
// paths typed, OK and Cancel pressed, the question about a missing directory
// answered.
#include "platform/pellum/filectrl.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/vcl/graphics/measuring_dc.h"
#include "tests/platform/pellum/select_dir_driver.h"
#include "tests/script_samples.h"
#include "tests/velkin/dialogs/text_fit.h"
#include "tests/velkin/resources/string_texts.h"

namespace {

using System::AnsiString;
using namespace select_dir_driver;

bool RunDialog(AnsiString& dir, Filectrl::TSelectDirOpts options, std::vector<Step> steps) {
  return RunScript(std::move(steps), [&] { return Filectrl::SelectDirectory(dir, options, 17); });
}

std::string Temp(const std::string& name) {
  char path[MAX_PATH];
  GetTempPathA(sizeof path, path);
  std::string full = std::string(path) + "velkin_seldir_" + std::to_string(GetCurrentProcessId());
  CreateDirectoryA(full.c_str(), nullptr);
  if (!name.empty()) {
    full += "\\" + name;
    CreateDirectoryA(full.c_str(), nullptr);
  }
  char canonical[MAX_PATH];
  GetFullPathNameA(full.c_str(), sizeof canonical, canonical, nullptr);
  return canonical;
}

bool Exists(const std::string& path) {
  const DWORD a = GetFileAttributesA(path.c_str());
  return a != INVALID_FILE_ATTRIBUTES && (a & FILE_ATTRIBUTE_DIRECTORY);
}

TEST(Filectrl, SelectDirectoryAsAUserDrivesIt) {
  using Filectrl::TSelectDirOpts;
  const std::string base = Temp(""), alpha = Temp("alpha");
  Temp("beta");
  const TSelectDirOpts create{Filectrl::sdAllowCreate, Filectrl::sdPerformCreate, Filectrl::sdPrompt};
  std::string shown;
  const Step remember = [&] { return shown = EditText(), true; };

  struct Case {
    const char* what;
    TSelectDirOpts options;
    std::vector<Step> steps;
    bool result;
    std::string dir;   // afterwards
    std::string made;  // a directory that must exist afterwards (or "")
  };
  const std::string missing = base + "\\made\\deeper";
  // clang-format off
  Case cases[] = {
      {"a folder opened from the list, then OK", {}, {Opened(), OpenFolder("alpha"), remember, Press("OkButton")}, true, alpha, ""},
      {"up to the parent with .., then OK", {}, {Opened(), OpenFolder(".."), Press("OkButton")}, true, base.substr(0, base.rfind('\\')), ""},
      {"Cancel leaves the directory as it was", {}, {Opened(), Type(alpha), Press("CancelButton")}, false, base, ""},
      {"a missing path is refused without the options", {}, {Opened(), Type("nowhere"), Press("OkButton"), Opened(), Press("CancelButton")}, false, base, ""},
      {"allowed: a missing path is taken, not made", TSelectDirOpts{Filectrl::sdAllowCreate}, {Opened(), Type("elsewhere"), Press("OkButton")}, true, base + "\\elsewhere", ""},
      {"asked: No keeps the dialog, Yes makes every level", create,
       {Opened(), Type("made\\deeper"), Press("OkButton"), Answer(IDNO), Opened(), Press("OkButton"), Answer(IDYES)}, true, missing, missing},
  };
  // clang-format on

  for (Case& c : cases) {
    AnsiString dir = base.c_str();
    shown.clear();
    const bool result = RunDialog(dir, c.options, std::move(c.steps));
    EXPECT_FALSE(timedOut) << c.what << ": the script stopped at step " << next;
    EXPECT_EQ(c.result, result) << c.what;
    EXPECT_EQ(c.dir, std::string(dir.c_str())) << c.what;
    EXPECT_TRUE(c.made.empty() || Exists(c.made)) << c.what << ": " << c.made << " was not made";
    EXPECT_TRUE(&c != cases || shown == alpha) << "opening a folder shows " << shown << ", not " << alpha;
    EXPECT_EQ(nullptr, Dialog()) << c.what << ": the dialog is gone";
  }
  EXPECT_FALSE(Exists(base + "\\elsewhere")) << "allowed but not asked to make it";

  // A start that does not exist opens the current directory.
  char current[MAX_PATH];
  GetCurrentDirectoryA(sizeof current, current);
  SetCurrentDirectoryA(alpha.c_str());
  AnsiString dir = (base + "\\no such").c_str();
  EXPECT_TRUE(RunDialog(dir, {}, {Opened(), remember, Press("OkButton")}));
  SetCurrentDirectoryA(current);
  EXPECT_EQ(alpha, shown);
  EXPECT_EQ(alpha, std::string(dir.c_str()));

  for (const char* d : {"\\made\\deeper", "\\made", "\\alpha", "\\beta", ""}) RemoveDirectoryA((base + d).c_str());
}

// Folders named in any script the code page can write, listed, opened and
// chosen whole, one of them a path that takes more than twice MAX_PATH in
// bytes, fewer in letters (each name within the 255 bytes a Unix file system
// allows).
TEST(Filectrl, FoldersOfAnyScript) {
  const std::string base = Temp("");
  std::wstring longName;
  for (int i = 0; i < 85; ++i) longName += L'\u4e2d';
  std::vector<std::wstring> made;
  std::vector<std::string> names;  // in the code page
  for (const std::wstring& wide : {script_samples::Wide("Crème brûlée"), script_samples::Wide("Щука и ёж"),
                                   script_samples::Wide("Ωμέγα λόγος"), script_samples::Wide("a😀b"), longName}) {
    std::string name;
    if (!script_samples::InAnsi(script_samples::Utf8(wide).c_str(), name)) continue;
    made.push_back(Graphics::WideText(base.c_str(), -1) + L"\\" + wide);
    CreateDirectoryW(made.back().c_str(), nullptr);
    names.push_back(name);
  }
  for (const std::string& name : names) {
    AnsiString dir = base.c_str();
    std::string shown;
    const Step remember = [&] { return shown = EditText(), true; };
    const bool result = RunDialog(
        dir, {}, {Opened(), OpenFolder(name), remember, OpenFolder(".."), OpenFolder(name), Press("OkButton")});
    EXPECT_FALSE(timedOut) << name << ": the script stopped at step " << next;
    EXPECT_TRUE(result) << name;
    EXPECT_EQ(base + "\\" + name, shown) << "opened";
    EXPECT_EQ(base + "\\" + name, std::string(dir.c_str())) << "chosen";
  }
  // A start that does not exist opens the current directory: the long one
  // in itself.
  if (!made.empty() && made.back().ends_with(longName)) {
    made.push_back(made.back() + L"\\" + longName);
    CreateDirectoryW(made.back().c_str(), nullptr);
    wchar_t current[MAX_PATH];
    GetCurrentDirectoryW(MAX_PATH, current);
    SetCurrentDirectoryW(made.back().c_str());
    AnsiString dir = (base + "\\no such").c_str();
    EXPECT_TRUE(RunDialog(dir, {}, {Opened(), Press("OkButton")}));
    SetCurrentDirectoryW(current);
    EXPECT_EQ(base + "\\" + names.back() + "\\" + names.back(), std::string(dir.c_str())) << "the current directory";
  }
  std::reverse(made.begin(), made.end());
  for (const std::wstring& path : made) RemoveDirectoryW(path.c_str());
  RemoveDirectoryA(base.c_str());
}

// The dialog's texts from the package's string tables in the screen's
// language, whole at its density; the question about a missing directory too.
TEST(Filectrl, TextsInTheScreensLanguage) {
  using string_texts::Shown;
  const auto text = [](HWND w) {
    wchar_t t[512] = {};
    GetWindowTextW(w, t, 512);
    return std::wstring(t);
  };
  struct Seen {
    const char* what;
    int id;
    std::wstring text;
  };
  std::vector<Seen> seen;
  std::vector<std::string> clipped;
  const auto read = [&] {
    Forms::TCustomForm* d = Dialog();
    if (!d) return false;
    seen.push_back({"caption", 2001, text(d->GetHandle())});
    const std::pair<const char*, int> parts[] = {
        {"NameLabel", 2002}, {"FoldersLabel", 2003}, {"DrivesLabel", 2004}, {"OkButton", 2005}, {"CancelButton", 2006}};
    for (const auto& [name, id] : parts) {
      auto* c = Part<Controls::TControl>(name);
      const std::string bytes = c ? c->GetText().c_str() : "(none)";
      wchar_t wide[256];
      const int n = MultiByteToWideChar(CP_ACP, 0, bytes.data(), static_cast<int>(bytes.size()), wide, 256);
      seen.push_back({name, id, std::wstring(wide, n)});
    }
    clipped = text_fit::Clipped(d);
    if (auto* ok = Part<Controls::TWinControl>("OkButton");
        !ok || !(GetWindowLongA(ok->GetHandle(), GWL_STYLE) & BS_DEFPUSHBUTTON))
      clipped.push_back("OkButton: not the default button");
    return true;
  };
  const auto question = [&] {
    HWND box = MessageBoxWindow();
    if (!box) return false;
    seen.push_back({"question's caption", 2008, text(box)});
    std::wstring message;
    for (HWND c = GetWindow(box, GW_CHILD); c; c = GetWindow(c, GW_HWNDNEXT))
      if (text(c).find(L"velkin_missing") != std::wstring::npos) message = text(c);
    seen.push_back({"question", 2007, message});
    PostMessageA(box, WM_COMMAND, IDNO, 0);
    return true;
  };
  AnsiString dir = Temp("").c_str();
  const std::string missing = dir.c_str() + std::string("\\velkin_missing");
  EXPECT_FALSE(
      RunDialog(dir, {Filectrl::sdAllowCreate, Filectrl::sdPrompt},
                {Opened(), read, Type(missing), Press("OkButton"), question, Opened(), Press("CancelButton")}));
  EXPECT_FALSE(timedOut) << "the script stopped at step " << next;
  ASSERT_EQ(8u, seen.size());
  for (const Seen& s : seen) {
    std::wstring expected = Shown(s.id);
    if (const size_t at = expected.find(L"%s"); at != std::wstring::npos)
      expected.replace(at, 2, std::wstring(missing.begin(), missing.end()));
    EXPECT_EQ(expected, s.text) << s.what;
    EXPECT_EQ("", string_texts::Misread(s.text, string_texts::Column())) << s.what;
  }
  for (const std::string& c : clipped) ADD_FAILURE() << c;
  RemoveDirectoryA(Temp("").c_str());
}

}  // namespace
