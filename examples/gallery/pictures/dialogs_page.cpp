// The library's dialogs on the screen: each is opened as an application
// would open it, captured while it runs, and closed as a user would close it.
// A run writes its captures under a tag of its language and screen density
// (messagebox-ru-96.png); the sheet dialogs.png puts together what the runs
// in each language and density have written: each window in English, Russian
// and French, and two of them on a 144-DPI screen.
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
#include "platform/pellum/filectrl.h"
#include "platform/vcl/forms/application.h"
#include "velkin/dialogs/hinput.h"
#include "velkin/dialogs/hmleditor.h"
#include "velkin/dialogs/hoperation.h"
#include "velkin/dialogs/hoperation_form.h"
#include "velkin/dialogs/xmessagebox.h"

namespace {

template <class Form>
bool IsForm(HWND w) {
  return dynamic_cast<Form*>(Controls::TWinControl::FindControl(w)) != nullptr;
}

// Runs show (which opens a modal dialog on this thread) and writes the
// dialog to path once it is shown, then closes it. Whether it was written.
bool CaptureModal(const std::function<void()>& show, const std::function<bool(HWND)>& filter, const std::string& path) {
  bool written = false;
  const bool shown = WhileModal(show, filter, [&](HWND window) {
    RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_FRAME | RDW_ALLCHILDREN | RDW_UPDATENOW);
    Sleep(300);
    written = WriteWindow(window, path);
  });
  if (!shown) std::printf("   %s: the dialog did not appear\n", path.c_str());
  return written;
}

// The texts a caller gives the dialogs in the run's language (UTF-8 here,
// handed over in the run's code page).
struct Texts {
  const char* tag;
  const char* question;
  const char* caption;
  const char* rename;
  const char* prompt;
  const char* progress;
  const char* notes;
};
const Texts kEnglish{"en",
                     "The file \"report.txt\" already exists.\nDo you want to replace it?",
                     "Copying files",
                     "Rename",
                     "New name of the file:",
                     "Copying report.txt",
                     "Velkin 1.0\n\n- message box\n- progress window\n- input dialog\n- text editor"};
const Texts kRussian{"ru",
                     "Файл \"report.txt\" уже есть.\nЗаменить его?",
                     "Копирование",
                     "Переименование",
                     "Новое имя файла:",
                     "Копируется report.txt",
                     "Velkin 1.0\n\n- окно сообщения\n- окно хода работы\n- окно ввода\n- редактор текста"};
const Texts kFrench{"fr",
                    "Le fichier \"report.txt\" existe déjà.\nVoulez-vous le remplacer ?",
                    "Copie de fichiers",
                    "Renommer",
                    "Nouveau nom du fichier :",
                    "Copie de report.txt",
                    "Velkin 1.0\n\n- boîte de message\n- fenêtre de progression\n- saisie\n- éditeur de texte"};

const Texts& RunTexts() {
  const LANGID language = PRIMARYLANGID(GetUserDefaultUILanguage());
  return language == LANG_RUSSIAN ? kRussian : language == LANG_FRENCH ? kFrench : kEnglish;
}

// A UTF-8 text in the process's ANSI code page.
std::string Ansi(const char* utf8) {
  const int n = MultiByteToWideChar(CP_UTF8, 0, utf8, -1, nullptr, 0);
  std::wstring wide(n > 0 ? n : 1, L'\0');
  MultiByteToWideChar(CP_UTF8, 0, utf8, -1, wide.data(), n);
  const int size = WideCharToMultiByte(CP_ACP, 0, wide.c_str(), -1, nullptr, 0, nullptr, nullptr);
  std::string bytes(size > 0 ? size : 1, '\0');
  WideCharToMultiByte(CP_ACP, 0, wide.c_str(), -1, bytes.data(), size, nullptr, nullptr);
  return bytes.c_str();
}

int ScreenDpi() {
  const OwnedWindowDC screen(nullptr);
  return GetDeviceCaps(screen.get(), LOGPIXELSY);
}

bool IsDirectoryDialog(HWND w) {
  const Controls::TWinControl* control = Controls::TWinControl::FindControl(w);
  return control && control->ClassName() == System::AnsiString("TSelectDirForm");
}

// Puts the captures of every run that exist into one sheet: a row for each
// window, its three languages side by side, and the denser screen's row.
bool ComposeSheet(const std::string& folder) {
  struct Window {
    const char* file;
    const char* name;
  };
  const Window windows[] = {{"messagebox", "Message box"},
                            {"progress", "Progress window at 50 %"},
                            {"input", "Input dialog"},
                            {"editor", "Text editor with its counter"},
                            {"selectdir", "Directory dialog"}};
  const struct {
    const char* tag;
    const char* name;
  } languages[] = {{"en", "English"}, {"ru", "Russian"}, {"fr", "French"}};
  std::vector<std::vector<Shot>> lines;
  const auto add = [&folder](std::vector<Shot>& line, const std::string& file, const std::string& label) {
    Shot shot{label, {}, 0, 0};
    if (ReadPng(folder + "\\" + file + ".png", shot.bits, shot.width, shot.height)) line.push_back(std::move(shot));
  };
  for (const Window& w : windows) {
    std::vector<Shot> line;
    for (const auto& l : languages)
      add(line, std::string(w.file) + "-" + l.tag + "-96",
          &l == languages ? std::string(w.name) + ", English" : l.name);
    lines.push_back(std::move(line));
  }
  std::vector<Shot> dense;
  add(dense, "messagebox-en-144", "Message box at 144 DPI");
  add(dense, "selectdir-en-144", "Directory dialog at 144 DPI");
  lines.push_back(std::move(dense));
  return SaveShotSheet(lines, "Velkin dialogs", folder + "\\dialogs.png");
}

}  // namespace

int RenderDialogsPage(const char* folderName) {
  const std::string folder = folderName ? folderName : "pictures";
  CreateDirectoryA(folder.c_str(), nullptr);
  Forms::Application->Initialize();
  const Texts& texts = RunTexts();
  const std::string tag = std::string("-") + texts.tag + "-" + std::to_string(ScreenDpi()) + ".png";
  const std::string question = Ansi(texts.question), caption = Ansi(texts.caption), rename = Ansi(texts.rename),
                    prompt = Ansi(texts.prompt), progress = Ansi(texts.progress), notes = Ansi(texts.notes);

  bool ok = true;
  ok = CaptureModal(
           [&] {
             XMessageBox(nullptr, question.c_str(), caption.c_str(),
                         MB_YESNOCANCEL | MB_ICONQUESTION | MB_HELP | XMB_YESTOALL | XMB_NOTOALL | XMB_DONOTASKAGAIN |
                             XMB_NOSOUND,
                         0);
           },
           IsDialogBox, folder + "\\messagebox" + tag) &&
       ok;

  {
    HOperation operation(nullptr, progress.c_str());
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
             HInputDialog(nullptr, rename.c_str(), prompt.c_str(), name);
           },
           IsForm<THInputForm>, folder + "\\input" + tag) &&
       ok;

  ok = CaptureModal(
           [&] {
             System::AnsiString text = notes.c_str();
             HTextEditor(text, nullptr, -1);
           },
           IsForm<THMultilineEditorForm>, folder + "\\editor" + tag) &&
       ok;

  ok = CaptureModal(
           [] {
             System::AnsiString dir = "C:\\windows";
             Filectrl::SelectDirectory(dir, {}, 0);
           },
           IsDirectoryDialog, folder + "\\selectdir" + tag) &&
       ok;

  const bool com = SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
  ok = ComposeSheet(folder) && ok;
  if (com) CoUninitialize();
  return ok ? 1 : 0;
}
