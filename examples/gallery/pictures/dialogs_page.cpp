// The library's dialogs on the screen: each is opened as an application
// would open it, captured from a thread of its own while the dialog runs
// modal, and closed again as a user would close it.
#include <objbase.h>
#include <windows.h>

#include <functional>
#include <string>
#include <thread>

#include "examples/gallery/pictures/pictures.h"
#include "examples/gallery/pictures/window_capture.h"
#include "platform/vcl/application.h"
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

// Runs show (which opens a modal dialog on this thread); meanwhile a thread
// of its own waits at most ten seconds for the dialog's window, writes it to
// path and closes it with close. Whether the picture was written.
bool CaptureModal(const std::function<void()>& show, const std::function<bool(HWND)>& filter, const std::string& path,
                  const std::function<void(HWND)>& close) {
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
      close(window);
    } else {
      std::printf("   %s: the dialog did not appear\n", path.c_str());
    }
    if (com) CoUninitialize();
  });
  show();
  watcher.join();
  return written;
}

}  // namespace

int RenderDialogsPage(const char* folderName) {
  const std::string folder = folderName ? folderName : "pictures";
  Forms::Application->Initialize();
  bool ok = CaptureModal(
      [] {
        XMessageBox(nullptr, "The file \"report.txt\" already exists.\nDo you want to replace it?", "Copying files",
                    MB_YESNOCANCEL | MB_ICONQUESTION | MB_HELP | XMB_YESTOALL | XMB_NOTOALL | XMB_DONOTASKAGAIN |
                        XMB_NOSOUND,
                    0);
      },
      IsDialogBox, folder + "\\messagebox.png", [](HWND box) { PostMessageA(box, WM_COMMAND, IDCANCEL, 0); });
  return ok ? 1 : 0;
}
