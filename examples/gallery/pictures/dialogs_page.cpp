// The library's dialogs on the screen: each is opened as an application
// would open it, captured while it runs, and closed as a user would close it.
// A run writes its captures under a tag of its language and screen density
// (messagebox-ru-96.png); the sheet dialogs.png puts together what the runs
// in each language and density have written.
#include <objbase.h>
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "examples/gallery/pictures/picture_sheet.h"
#include "examples/gallery/pictures/pictures.h"
#include "examples/gallery/pictures/window_capture.h"
#include "platform/vcl/forms/application.h"
#include "velkin/dialogs/hinput.h"
#include "velkin/dialogs/hmleditor.h"
#include "velkin/dialogs/hoperation.h"
#include "velkin/dialogs/hoperation_form.h"
#include "velkin/dialogs/xmessagebox.h"

namespace {

// The first visible top-level window of thread that passes filter.
HWND FindShown(DWORD thread, const std::function<bool(HWND)>& filter) {
  struct Search {
    const std::function<bool(HWND)>* filter;
    HWND found;
  } search{&filter, nullptr};
  EnumThreadWindows(
      thread,
      [](HWND w, LPARAM p) {
        auto* s = reinterpret_cast<Search*>(p);
        if (!IsWindowVisible(w) || !(*s->filter)(w)) return TRUE;
        s->found = w;
        return FALSE;
      },
      reinterpret_cast<LPARAM>(&search));
  return search.found;
}

bool IsDialogBox(HWND w) {
  char name[16] = {};
  GetClassNameA(w, name, sizeof name);
  return std::string(name) == "#32770";
}

template <class Form>
bool IsForm(HWND w) {
  return dynamic_cast<Form*>(Controls::TWinControl::FindControl(w)) != nullptr;
}

// Runs show (which opens a modal dialog on this thread); meanwhile a thread
// of its own waits at most ten seconds for the dialog's window, writes it to
// path and closes it. Whether the picture was written.
bool CaptureModal(const std::function<void()>& show, const std::function<bool(HWND)>& filter, const std::string& path) {
  const DWORD thread = GetCurrentThreadId();
  bool written = false;
  std::thread watcher([&] {
    const bool com = SUCCEEDED(CoInitializeEx(nullptr, COINIT_MULTITHREADED));
    HWND window = nullptr;
    for (int waited = 0; !window && waited < 10000; waited += 20, Sleep(20)) window = FindShown(thread, filter);
    if (window) {
      RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_FRAME | RDW_ALLCHILDREN | RDW_UPDATENOW);
      Sleep(300);
      written = WriteWindow(window, path);
      // Escape for a form, the cancel command for a dialog box.
      PostMessageA(window, IsDialogBox(window) ? WM_COMMAND : WM_CLOSE, IDCANCEL, 0);
    } else {
      std::printf("   %s: the dialog did not appear\n", path.c_str());
    }
    if (com) CoUninitialize();
  });
  show();
  watcher.join();
  return written;
}

// The texts a caller gives the dialogs, in the run's language (code page 1251
// for Russian).
struct Texts {
  const char* tag;
  const char* question;
  const char* caption;
  const char* rename;
  const char* prompt;
  const char* progress;
};
const Texts kEnglish{"en",
                     "The file \"report.txt\" already exists.\nDo you want to replace it?",
                     "Copying files",
                     "Rename",
                     "New name of the file:",
                     "Copying report.txt"};
const Texts kRussian{
    "ru",
    "\xD4\xE0\xE9\xEB \"report.txt\" \xF3\xE6\xE5 \xE5\xF1\xF2\xFC.\n\xC7\xE0\xEC\xE5\xED\xE8\xF2\xFC \xE5\xE3\xEE?",
    "\xCA\xEE\xEF\xE8\xF0\xEE\xE2\xE0\xED\xE8\xE5",
    "\xCF\xE5\xF0\xE5\xE8\xEC\xE5\xED\xEE\xE2\xE0\xED\xE8\xE5",
    "\xCD\xEE\xE2\xEE\xE5 \xE8\xEC\xFF \xF4\xE0\xE9\xEB\xE0:",
    "\xCA\xEE\xEF\xE8\xF0\xF3\xE5\xF2\xF1\xFF report.txt"};
const Texts kFrench{"fr",
                    "Le fichier \"report.txt\" existe d\xE9j\xE0.\nVoulez-vous le remplacer ?",
                    "Copie de fichiers",
                    "Renommer",
                    "Nouveau nom du fichier :",
                    "Copie de report.txt"};

const Texts& RunTexts() {
  const LANGID language = PRIMARYLANGID(GetUserDefaultUILanguage());
  return language == LANG_RUSSIAN ? kRussian : language == LANG_FRENCH ? kFrench : kEnglish;
}

int ScreenDpi() {
  const OwnedWindowDC screen(nullptr);
  return GetDeviceCaps(screen.get(), LOGPIXELSY);
}

// Puts the captures of every run that exist into one sheet, a row each.
bool ComposeSheet(const std::string& folder) {
  struct Cell {
    const char* file;
    const char* label;
  };
  const std::vector<std::vector<Cell>> rows = {
      {{"messagebox-en-96", "Message box, English"}, {"messagebox-ru-96", "Russian"}, {"messagebox-fr-96", "French"}},
      {{"messagebox-en-144", "English at 144 DPI, beside 96 above"}},
      {{"progress-ru-96", "Progress at 50 %"}, {"input-ru-96", "Input dialog"}},
      {{"editor-ru-96", "Text editor with its counter"}},
  };
  std::vector<std::vector<Shot>> lines;
  for (const auto& row : rows) {
    std::vector<Shot> line;
    for (const Cell& cell : row) {
      Shot shot{cell.label, {}, 0, 0};
      if (ReadPng(folder + "\\" + cell.file + ".png", shot.bits, shot.width, shot.height))
        line.push_back(std::move(shot));
    }
    lines.push_back(std::move(line));
  }
  return SaveShotSheet(lines, "Velkin dialogs", folder + "\\dialogs.png");
}

}  // namespace

int RenderDialogsPage(const char* folderName) {
  const std::string folder = folderName ? folderName : "pictures";
  CreateDirectoryA(folder.c_str(), nullptr);
  Forms::Application->Initialize();
  const Texts& texts = RunTexts();
  const std::string tag = std::string("-") + texts.tag + "-" + std::to_string(ScreenDpi()) + ".png";

  bool ok = CaptureModal(
      [&] {
        XMessageBox(
            nullptr, texts.question, texts.caption,
            MB_YESNOCANCEL | MB_ICONQUESTION | MB_HELP | XMB_YESTOALL | XMB_NOTOALL | XMB_DONOTASKAGAIN | XMB_NOSOUND,
            0);
      },
      IsDialogBox, folder + "\\messagebox" + tag);

  {
    HOperation operation(nullptr, texts.progress);
    operation.SetProgress(50);
    operation.SetAbort(true);
    HWND window = HOperation::SharedForm()->GetHandle();
    LetPaint(window);
    ok = WriteWindow(window, folder + "\\progress" + tag) && ok;
    operation.SetText(nullptr);
  }

  ok = CaptureModal(
           [&] {
             System::AnsiString name = "report.txt";
             HIputDialog(nullptr, texts.rename, texts.prompt, name);
           },
           IsForm<THInputForm>, folder + "\\input" + tag) &&
       ok;

  ok = CaptureModal(
           [] {
             System::AnsiString text = "Velkin 1.0\n\n- message box\n- progress window\n- input dialog\n- text editor";
             HTextEditor(text, nullptr, -1);
           },
           IsForm<THMultilineEditorForm>, folder + "\\editor" + tag) &&
       ok;

  const bool com = SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
  ok = ComposeSheet(folder) && ok;
  if (com) CoUninitialize();
  return ok ? 1 : 0;
}
