#include "tests/examples/example_process.h"

#include <cstdlib>

#include "tests/script_samples.h"

namespace example_driver {

namespace {

std::string ClassOf(HWND window) {
  char name[64] = {};
  GetClassNameA(window, name, sizeof name);
  return name;
}

}  // namespace

std::string ExamplePath(const char* variable) {
  const char* value = std::getenv(variable);
  if (!value) return "";
  return value[0] == '/' ? std::string("Z:") + value : value;
}

ExampleProcess::ExampleProcess(const std::string& exe, const std::string& args) {
  std::string command = "\"" + exe + "\"" + (args.empty() ? "" : " " + args);
  const std::string folder = exe.substr(0, exe.find_last_of("/\\"));
  STARTUPINFOA startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION info{};
  if (!CreateProcessA(exe.c_str(), command.data(), nullptr, nullptr, FALSE, 0, nullptr, folder.c_str(), &startup,
                      &info))
    return;
  const OwnedKernelHandle thread(info.hThread);
  process_.reset(info.hProcess);
  id_ = info.dwProcessId;
}

ExampleProcess::~ExampleProcess() {
  if (process_ && WaitForSingleObject(process_.get(), 0) == WAIT_TIMEOUT) {
    TerminateProcess(process_.get(), 99);
    WaitForSingleObject(process_.get(), kWaitMs);
  }
}

std::vector<HWND> ExampleProcess::Windows() const {
  struct Search {
    DWORD id;
    std::vector<HWND> found;
  } search{id_, {}};
  EnumWindows(
      [](HWND w, LPARAM p) {
        auto* s = reinterpret_cast<Search*>(p);
        DWORD owner = 0;
        GetWindowThreadProcessId(w, &owner);
        if (owner == s->id && IsWindowVisible(w)) s->found.push_back(w);
        return TRUE;
      },
      reinterpret_cast<LPARAM>(&search));
  return search.found;
}

HWND ExampleProcess::WaitForWindow(const char* windowClass, DWORD timeoutMs) const {
  HWND found = nullptr;
  WaitUntil(
      [&] {
        for (HWND w : Windows())
          if (ClassOf(w) == windowClass) return (found = w) != nullptr;
        return false;
      },
      timeoutMs);
  return found;
}

long ExampleProcess::WaitForExit(DWORD timeoutMs) {
  if (!process_ || WaitForSingleObject(process_.get(), timeoutMs) != WAIT_OBJECT_0) return -1;
  DWORD code = 0;
  GetExitCodeProcess(process_.get(), &code);
  return static_cast<long>(code);
}

HWND Child(HWND parent, const char* windowClass, const char* text) {
  for (HWND w = GetWindow(parent, GW_CHILD); w; w = GetWindow(w, GW_HWNDNEXT))
    if (ClassOf(w) == windowClass && TextOf(w) == text) return w;
  return nullptr;
}

LRESULT Ask(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  DWORD_PTR result = 0;
  if (!SendMessageTimeoutA(window, message, wParam, lParam, SMTO_ABORTIFHUNG, 5000, &result)) return -1;
  return static_cast<LRESULT>(result);
}

// WM_GETTEXT, not GetWindowText: for another process's window that gives
// only the text the window was made with. Wide: the example's texts are
// UTF-8, this program's code page another.
std::string TextOf(HWND window) {
  wchar_t text[512] = {};
  DWORD_PTR ignored = 0;
  SendMessageTimeoutW(window, WM_GETTEXT, 512, reinterpret_cast<LPARAM>(text), SMTO_ABORTIFHUNG, 5000, &ignored);
  return script_samples::Utf8(text);
}

// Wide (Wine hands a list box of a class of its own name the wide text even
// when asked for the 8-bit one from another process), then UTF-8.
std::vector<std::string> ListItems(HWND list) {
  std::vector<std::string> items;
  const LRESULT count = Ask(list, LB_GETCOUNT, 0, 0);
  for (LRESULT i = 0; i < count; ++i) {
    wchar_t wide[256] = {};
    DWORD_PTR ignored = 0;
    if (Ask(list, LB_GETTEXTLEN, i, 0) < 256)
      SendMessageTimeoutW(list, LB_GETTEXT, i, reinterpret_cast<LPARAM>(wide), SMTO_ABORTIFHUNG, 5000, &ignored);
    items.push_back(script_samples::Utf8(wide));
  }
  return items;
}

void Click(HWND button) { PostMessageA(button, BM_CLICK, 0, 0); }

void Type(HWND edit, const std::string& text) {
  wchar_t wide[256] = {};
  MultiByteToWideChar(CP_UTF8, 0, text.c_str(), -1, wide, 256);
  for (const wchar_t* c = wide; *c; ++c) PostMessageW(edit, WM_CHAR, *c, 1);
}

void Key(HWND window, WORD key) {
  PostMessageA(window, WM_KEYDOWN, key, 1);
  PostMessageA(window, WM_KEYUP, key, 0xC0000001);
}

bool WaitUntil(const std::function<bool()>& done, DWORD timeoutMs) {
  for (DWORD start = GetTickCount(); !done(); Sleep(10))
    if (GetTickCount() - start > timeoutMs) return false;
  return true;
}

}  // namespace example_driver
