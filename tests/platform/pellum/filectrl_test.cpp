// The directory dialog driven as a user would: folders opened from the list,
// paths typed, OK and Cancel pressed, the question about a missing directory
// answered.
#include "platform/pellum/filectrl.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "tests/platform/pellum/select_dir_driver.h"

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

}  // namespace
