// The directory dialog driven as a user would: folders opened from the list,
// paths typed, OK and Cancel pressed, the question about a missing directory
// answered. Each case is a script run by a thread timer inside the dialog's
// modal loop, with a bound: a case that goes wrong closes the dialog.
#include "platform/pellum/filectrl.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "platform/vcl/application.h"
#include "platform/vcl/forms.h"
#include "platform/vcl/std_edits.h"
#include "platform/vcl/std_lists.h"

namespace {

using System::AnsiString;

using Step = std::function<bool()>;  // true when done, false to wait a tick

std::vector<Step> script;
size_t next = 0;
int ticks = 0;
bool timedOut = false;

Forms::TCustomForm* Dialog() {
  for (int i = 0; i < Forms::Screen->GetFormCount(); ++i) {
    Forms::TCustomForm* f = Forms::Screen->GetForm(i);
    if (f->ClassName() == AnsiString("TSelectDirForm") && f->HandleAllocated() && IsWindowVisible(f->GetHandle()))
      return f;
  }
  return nullptr;
}

HWND MessageBoxWindow() {
  HWND found = nullptr;
  EnumThreadWindows(
      GetCurrentThreadId(),
      [](HWND w, LPARAM out) {
        char cls[16] = {};
        GetClassNameA(w, cls, sizeof cls);
        if (std::string(cls) != "#32770" || !IsWindowVisible(w)) return TRUE;
        *reinterpret_cast<HWND*>(out) = w;
        return FALSE;
      },
      reinterpret_cast<LPARAM>(&found));
  return found;
}

template <class C>
C* Part(const char* name) {
  Forms::TCustomForm* d = Dialog();
  return d ? dynamic_cast<C*>(d->FindComponent(name)) : nullptr;
}

std::string EditText() {
  auto* edit = Part<Stdctrls::TEdit>("DirEdit");
  return edit ? edit->GetText().c_str() : "";
}

void CALLBACK Tick(HWND, UINT, UINT_PTR, DWORD) {
  if (++ticks > 300) {  // about ten seconds: give up and close whatever is open
    timedOut = true;
    if (HWND box = MessageBoxWindow()) PostMessageA(box, WM_COMMAND, IDCANCEL, 0);
    if (auto* cancel = Part<Controls::TWinControl>("CancelButton")) PostMessageA(cancel->GetHandle(), BM_CLICK, 0, 0);
    return;
  }
  if (next < script.size() && script[next]()) ++next;
}

// Steps.
Step Opened() {
  return [] { return Dialog() != nullptr && !MessageBoxWindow(); };
}
Step Type(std::string text) {
  return [text] {
    auto* edit = Part<Stdctrls::TEdit>("DirEdit");
    if (!edit) return false;
    SetWindowTextA(edit->GetHandle(), text.c_str());
    return true;
  };
}
Step Press(const char* button) {
  return [button] {
    auto* b = Part<Controls::TWinControl>(button);
    if (!b || MessageBoxWindow()) return false;
    PostMessageA(b->GetHandle(), BM_CLICK, 0, 0);
    return true;
  };
}
Step OpenFolder(std::string name) {
  return [name] {
    auto* list = Part<Stdctrls::TListBox>("DirList");
    if (!list) return false;
    const int index = list->GetItems()->IndexOf(name.c_str());
    if (index < 0) return false;
    list->SetItemIndex(index);
    RECT r;
    SendMessageA(list->GetHandle(), LB_GETITEMRECT, index, reinterpret_cast<LPARAM>(&r));
    SendMessageA(list->GetHandle(), WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(r.left + 2, r.top + 2));
    return true;
  };
}
Step Answer(int button) {
  return [button] {
    HWND box = MessageBoxWindow();
    if (!box) return false;
    PostMessageA(box, WM_COMMAND, button, 0);
    return true;
  };
}

// Runs the dialog with a script; the steps' log of what the edit showed.
bool RunDialog(AnsiString& dir, Filectrl::TSelectDirOpts options, std::vector<Step> steps) {
  script = std::move(steps);
  next = 0;
  ticks = 0;
  timedOut = false;
  const UINT_PTR timer = SetTimer(nullptr, 0, 30, &Tick);
  const bool result = Filectrl::SelectDirectory(dir, options, 17);
  KillTimer(nullptr, timer);
  return result;
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
  const Step remember = [&] {
    shown = EditText();
    return true;
  };

  struct Case {
    const char* what;
    TSelectDirOpts options;
    std::vector<Step> steps;
    bool result;
    std::string dir;   // afterwards
    std::string made;  // a directory that must exist afterwards (or "")
  };
  const std::string missing = base + "\\made\\deeper";
  std::vector<Case> cases;
  cases.push_back({"a folder opened from the list, then OK",
                   {},
                   {Opened(), OpenFolder("alpha"), remember, Press("OkButton")},
                   true,
                   alpha,
                   ""});
  cases.push_back({"up to the parent with .., then OK",
                   {},
                   {Opened(), OpenFolder(".."), Press("OkButton")},
                   true,
                   base.substr(0, base.rfind('\\')),
                   ""});
  cases.push_back(
      {"Cancel leaves the directory as it was", {}, {Opened(), Type(alpha), Press("CancelButton")}, false, base, ""});
  cases.push_back({"a missing path is refused without the options",
                   {},
                   {Opened(), Type("nowhere"), Press("OkButton"), Opened(), Press("CancelButton")},
                   false,
                   base,
                   ""});
  cases.push_back({"allowed: a missing path is taken, not made",
                   TSelectDirOpts{Filectrl::sdAllowCreate},
                   {Opened(), Type("elsewhere"), Press("OkButton")},
                   true,
                   base + "\\elsewhere",
                   ""});
  cases.push_back(
      {"asked: No keeps the dialog, Yes makes every level",
       create,
       {Opened(), Type("made\\deeper"), Press("OkButton"), Answer(IDNO), Opened(), Press("OkButton"), Answer(IDYES)},
       true,
       missing,
       missing});

  for (Case& c : cases) {
    AnsiString dir = base.c_str();
    shown.clear();
    const bool result = RunDialog(dir, c.options, std::move(c.steps));
    EXPECT_FALSE(timedOut) << c.what << ": the script stopped at step " << next;
    EXPECT_EQ(c.result, result) << c.what;
    EXPECT_EQ(c.dir, std::string(dir.c_str())) << c.what;
    if (!c.made.empty()) EXPECT_TRUE(Exists(c.made)) << c.what;
    if (&c == &cases.front()) EXPECT_EQ(alpha, shown) << "opening a folder shows its path";
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
