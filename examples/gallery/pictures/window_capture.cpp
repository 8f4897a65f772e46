#include "examples/gallery/pictures/window_capture.h"

#include <objbase.h>

#include <cstdint>
#include <cstdio>
#include <thread>
#include <vector>

#include "examples/gallery/pictures/picture_sheet.h"
#include "platform/vcl/forms/application.h"

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

// The window, frame included, as it is on the screen.
bool Capture(HWND window, std::vector<uint32_t>& bits, int& width, int& height) {
  RECT r;
  GetWindowRect(window, &r);
  return CaptureScreen(r, bits, width, height);
}

}  // namespace

bool CaptureShot(HWND window, const char* label, Shot& shot) {
  shot.label = label;
  return Capture(window, shot.bits, shot.width, shot.height);
}

bool WriteWindow(HWND window, const std::string& path) {
  std::vector<uint32_t> bits;
  int width = 0, height = 0;
  const bool written = Capture(window, bits, width, height) && WritePng(path, bits.data(), width, height);
  if (!written) std::fprintf(stderr, "gallery: cannot write %s\n", path.c_str());
  std::printf("   %s %dx%d %s\n", path.substr(path.rfind('\\') + 1).c_str(), width, height,
              written ? "written" : "FAILED");
  return written;
}

bool IsDialogBox(HWND w) {
  char name[16] = {};
  GetClassNameA(w, name, sizeof name);
  return std::string(name) == "#32770";
}

bool WhileModal(const std::function<void()>& show, const std::function<bool(HWND)>& filter,
                const std::function<void(HWND)>& act) {
  const DWORD thread = GetCurrentThreadId();
  bool found = false;
  std::thread watcher([&] {
    const bool com = SUCCEEDED(CoInitializeEx(nullptr, COINIT_MULTITHREADED));
    HWND window = nullptr;
    for (int waited = 0; !window && waited < 10000; waited += 20, Sleep(20)) window = FindShown(thread, filter);
    if (window) {
      found = true;
      act(window);
      PostMessageA(window, IsDialogBox(window) ? WM_COMMAND : WM_CLOSE, IDCANCEL, 0);
    }
    if (com) CoUninitialize();
  });
  show();
  watcher.join();
  return found;
}

void LetPaint(HWND window) {
  RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_FRAME | RDW_ALLCHILDREN | RDW_UPDATENOW);
  for (int i = 0; i < 20; ++i) {
    Forms::Application->ProcessMessages();
    Sleep(10);
  }
}
