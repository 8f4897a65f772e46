#include "platform/pellum/filectrl.h"

#include <windows.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "platform/ostrel/oslib.h"
#include "platform/ostrel/owned_handle.h"
#include "platform/vcl/core/sysutils.h"
#include "platform/vcl/forms/forms.h"
#include "platform/vcl/graphics/measuring_dc.h"
#include "platform/vcl/stdctrls/std_buttons.h"
#include "platform/vcl/stdctrls/std_edits.h"
#include "platform/vcl/stdctrls/std_label.h"
#include "platform/vcl/stdctrls/std_lists.h"

namespace Filectrl {

using System::AnsiString;

namespace {

// Entries of this package's string tables (strings.rc).
enum Text {
  sCaption = 2001,
  sName = 2002,
  sFolders = 2003,
  sDrives = 2004,
  sOk = 2005,
  sCancel = 2006,
  sAskCreate = 2007,
  sConfirm = 2008,
  sCannotCreate = 2009,
  sError = 2010
};

// Entry id of this package's own string tables in the user's language.
std::string PackageText(Text id) {
  return Sysutils::LoadStr(ModuleOf(reinterpret_cast<const void*>(&PackageText)), id).c_str();
}

// Entry id with its "%s" replaced by path: a path with a percent sign in it,
// or a translation with more than one "%s", is never read as a format.
std::string PackageText(Text id, const std::string& path) {
  std::string text = PackageText(id);
  const std::size_t at = text.find("%s");
  if (at != std::string::npos) text.replace(at, 2, path);
  return text;
}

// Paths and names through the wide calls: the 8-bit ones hold at most
// MAX_PATH bytes, fewer letters than a path may have in UTF-8.
std::string Ansi(const std::wstring& wide) { return Graphics::AnsiText(wide.data(), static_cast<int>(wide.size())); }
std::wstring Wide(const std::string& text) { return Graphics::WideText(text.data(), static_cast<int>(text.size())); }

std::string CurrentDirectory() {
  std::wstring dir(GetCurrentDirectoryW(0, nullptr), L'\0');
  dir.resize(GetCurrentDirectoryW(static_cast<DWORD>(dir.size()), dir.data()));
  return Ansi(dir);
}

bool IsDirectory(const std::string& path) {
  const DWORD attributes = GetFileAttributesA(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
}

// The full form of path, read from base when it is relative, without a
// trailing backslash except at a drive's root.
std::string Absolute(const std::string& base, std::string path) {
  const bool relative =
      !(path.size() >= 2 && path[1] == ':') && !(!path.empty() && (path[0] == '\\' || path[0] == '/'));
  if (relative) path = base + (base.empty() || base.back() == '\\' ? "" : "\\") + path;
  const std::wstring wide = Wide(path);
  std::wstring full(GetFullPathNameW(wide.c_str(), 0, nullptr, nullptr), L'\0');
  const DWORD n =
      full.empty() ? 0 : GetFullPathNameW(wide.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
  std::string result = n && n < full.size() ? Ansi(full.substr(0, n)) : path;
  while (result.size() > 3 && result.back() == '\\') result.pop_back();
  return result;
}

// Makes every missing level of path.
bool CreateAll(const std::string& path) {
  for (size_t at = path.find('\\', 3); at != std::string::npos; at = path.find('\\', at + 1))
    CreateDirectoryA(path.substr(0, at).c_str(), nullptr);
  CreateDirectoryA(path.c_str(), nullptr);
  return IsDirectory(path);
}

}  // namespace

// The dialog. Its layout is the designed form compiled into this package.
class TSelectDirForm : public Forms::TForm {
  VCL_CLASS();

 public:
  explicit TSelectDirForm(Classes::TComponent* owner) : TForm(owner) {
    ReadDesign();
    SetCaption(PackageText(sCaption).c_str());
    NameLabel->SetText(PackageText(sName).c_str());
    FoldersLabel->SetText(PackageText(sFolders).c_str());
    DrivesLabel->SetText(PackageText(sDrives).c_str());
    OkButton->SetText(PackageText(sOk).c_str());
    CancelButton->SetText(PackageText(sCancel).c_str());
  }

  Stdctrls::TLabel* NameLabel = nullptr;
  Stdctrls::TEdit* DirEdit = nullptr;
  Stdctrls::TLabel* FoldersLabel = nullptr;
  Stdctrls::TListBox* DirList = nullptr;
  Stdctrls::TLabel* DrivesLabel = nullptr;
  Stdctrls::TComboBox* DriveCombo = nullptr;
  Stdctrls::TButton* OkButton = nullptr;
  Stdctrls::TButton* CancelButton = nullptr;

  TSelectDirOpts options;
  int helpContext = 0;
  std::string chosen;

  // Shows dir: its path in the edit, its folders in the list, its drive.
  void Open(const std::string& dir) {
    current_ = dir;
    DirEdit->SetText(dir.c_str());
    Classes::TStrings* items = DirList->GetItems();
    items->BeginUpdate();
    items->Clear();
    if (dir.size() > 3) items->Add("..");
    std::vector<std::string> folders;
    WIN32_FIND_DATAW found;
    const OwnedFind search(FindFirstFileW(Wide(dir + (dir.back() == '\\' ? "*" : "\\*")).c_str(), &found));
    if (search) {
      do {
        const std::string name = Ansi(found.cFileName);
        if ((found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) && name != "." && name != "..") folders.push_back(name);
      } while (FindNextFileW(search.get(), &found));
    }
    // Compared as letters: the 8-bit comparison reads the user's code page, not the program's.
    std::sort(folders.begin(), folders.end(), [](const std::string& a, const std::string& b) {
      return lstrcmpiW(Wide(a).c_str(), Wide(b).c_str()) < 0;
    });
    for (const auto& f : folders) items->Add(f.c_str());
    items->EndUpdate();
    const std::string drive = dir.substr(0, 2);
    for (int i = 0; i < DriveCombo->GetItems()->GetCount(); ++i)
      if (lstrcmpiA(DriveCombo->GetItems()->Get(i).c_str(), drive.c_str()) == 0) DriveCombo->SetItemIndex(i);
  }

  void FillDrives() {
    char drives[512] = {};
    const DWORD n = GetLogicalDriveStringsA(sizeof drives, drives);
    for (const char* d = drives; n && n < sizeof drives && *d; d += std::strlen(d) + 1)
      DriveCombo->GetItems()->Add(std::string(d, 2).c_str());
  }

  void DirListDblClick(System::TObject*) {
    const int index = DirList->GetItemIndex();
    if (index < 0) return;
    const std::string entry = DirList->GetItems()->Get(index).c_str();
    Open(Absolute(current_, entry));
  }

  void DriveComboChange(System::TObject*) {
    const int index = DriveCombo->GetItemIndex();
    if (index < 0) return;
    const std::string root = std::string(DriveCombo->GetItems()->Get(index).c_str()) + "\\";
    if (IsDirectory(root)) Open(root);
  }

  void OkButtonClick(System::TObject*) {
    const std::string typed = DirEdit->GetText().c_str();
    if (typed.empty()) return;
    const std::string path = Absolute(current_, typed);
    if (!IsDirectory(path)) {
      if (!options.Contains(sdAllowCreate)) {
        MessageBeep(MB_ICONWARNING);
        DirEdit->SetFocus();
        return;
      }
      if (options.Contains(sdPrompt) && MessageBoxA(GetHandle(), PackageText(sAskCreate, path).c_str(),
                                                    PackageText(sConfirm).c_str(), MB_YESNO | MB_ICONQUESTION) != IDYES)
        return;
      if (options.Contains(sdPerformCreate) && !CreateAll(path)) {
        MessageBoxA(GetHandle(), PackageText(sCannotCreate, path).c_str(), PackageText(sError).c_str(),
                    MB_OK | MB_ICONERROR);
        return;
      }
    }
    chosen = path;
    SetModalResult(Controls::mrOk);
  }

 private:
  std::string current_;
};

VCL_COMPONENT_IMPL(TSelectDirForm, Forms::TForm, VCL_FIELD(NameLabel), VCL_FIELD(DirEdit), VCL_FIELD(FoldersLabel),
                   VCL_FIELD(DirList), VCL_FIELD(DrivesLabel), VCL_FIELD(DriveCombo), VCL_FIELD(OkButton),
                   VCL_FIELD(CancelButton), VCL_METHOD(DirListDblClick, System::TNotifyEvent),
                   VCL_METHOD(DriveComboChange, System::TNotifyEvent), VCL_METHOD(OkButtonClick, System::TNotifyEvent))

bool SelectDirectory(AnsiString& directory, TSelectDirOpts options, int helpContext) {
  TSelectDirForm form(nullptr);
  form.options = options;
  form.helpContext = helpContext;
  form.FillDrives();
  std::string start = directory.c_str();
  const std::string current = CurrentDirectory();
  start = start.empty() ? current : Absolute(current, start);
  form.Open(IsDirectory(start) ? start : Absolute(current, "."));
  form.SetActiveControl(form.DirEdit);
  if (form.ShowModal() != Controls::mrOk) return false;
  directory = form.chosen.c_str();
  return true;
}

}  // namespace Filectrl
