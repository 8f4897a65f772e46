#pragma once
// Drives a modal dialog as a user would: a watcher thread waits, with a bound,
// for a visible dialog window of the test's thread, reads it and acts on it
// while the test's thread is inside the modal call. When the script gives up
// or the time is over, whatever is open is closed so that the call returns.
#include <windows.h>

#include <atomic>
#include <functional>
#include <initializer_list>
#include <string>
#include <thread>
#include <vector>

namespace dialog_watcher {

// Visible top-level windows of thread that pass the filter, newest first.
inline std::vector<HWND> Windows(DWORD thread, const std::function<bool(HWND)>& filter) {
  struct Search {
    const std::function<bool(HWND)>* filter;
    std::vector<HWND> found;
  } search{&filter, {}};
  EnumThreadWindows(
      thread,
      [](HWND w, LPARAM p) {
        auto* s = reinterpret_cast<Search*>(p);
        if (IsWindowVisible(w) && (*s->filter)(w)) s->found.push_back(w);
        return TRUE;
      },
      reinterpret_cast<LPARAM>(&search));
  return search.found;
}

inline std::string ClassOf(HWND w) {
  char name[64] = {};
  GetClassNameA(w, name, sizeof name);
  return name;
}

inline bool IsDialogBox(HWND w) { return ClassOf(w) == "#32770"; }

inline std::wstring Text(HWND w) {
  wchar_t text[1024] = {};
  GetWindowTextW(w, text, 1024);
  return text;
}

// A control's rectangle in its parent's client coordinates.
inline RECT RectIn(HWND control) {
  RECT r;
  GetWindowRect(control, &r);
  MapWindowPoints(nullptr, GetParent(control), reinterpret_cast<POINT*>(&r), 2);
  return r;
}

// The focus and active window of a thread.
inline GUITHREADINFO FocusOf(DWORD thread) {
  GUITHREADINFO info{};
  info.cbSize = sizeof info;
  GetGUIThreadInfo(thread, &info);
  return info;
}

// Sends a key press to the window focused in thread, as the keyboard would
// (to fallback when the thread has lost the focus to another program).
inline void Key(DWORD thread, WORD key, HWND fallback = nullptr) {
  const GUITHREADINFO info = FocusOf(thread);
  HWND target = info.hwndFocus ? info.hwndFocus : info.hwndActive ? info.hwndActive : fallback;
  PostMessageA(target, WM_KEYDOWN, key, 1);
  PostMessageA(target, WM_KEYUP, key, 0xC0000001);
}

// Posts a click to a button, or to a button of a dialog (by control id).
inline void Click(HWND button) { PostMessageA(button, BM_CLICK, 0, 0); }
inline void Click(HWND dialog, int id) { Click(GetDlgItem(dialog, id)); }

// Runs act(window) on a thread of its own once a window that passes filter is
// shown by the constructing thread; act returns whether it closed what it
// opened (true) or gave up (false). Waits at most timeoutMs in all. The
// destructor waits for the thread; whatever is still open then is closed. The
// bound is generous: a prefix started cold on a busy machine is slow.
class Watcher {
 public:
  Watcher(std::function<bool(HWND)> filter, std::function<bool(HWND)> act, DWORD timeoutMs = 30000)
      : thread_(GetCurrentThreadId()), filter_(std::move(filter)), act_(std::move(act)), timeoutMs_(timeoutMs) {
    worker_ = std::thread([this] { Run(); });
  }
  explicit Watcher(std::function<bool(HWND)> act, DWORD timeoutMs = 30000)
      : Watcher(IsDialogBox, std::move(act), timeoutMs) {}
  ~Watcher() { Join(); }

  // Ends the wait for a window that is not coming (the call returned
  // without showing one); Join then says false.
  void Stop() { stop_ = true; }

  // Waits for the watcher; true when it found the window and its act succeeded.
  bool Join() {
    if (worker_.joinable()) worker_.join();
    return done_;
  }

  // Waits (bounded) for the window matching filter in the constructing thread.
  HWND WaitFor(const std::function<bool(HWND)>& filter) const {
    for (DWORD waited = 0; waited < timeoutMs_ && !stop_; waited += 10) {
      std::vector<HWND> found = Windows(thread_, filter);
      if (!found.empty()) return found.front();
      Sleep(10);
    }
    return nullptr;
  }

 private:
  void Run() {
    HWND window = WaitFor(filter_);
    done_ = window && act_(window);
    // What the act meant to close must go; if it stays, the act failed.
    for (DWORD waited = 0; done_ && IsWindow(window) && IsWindowVisible(window); waited += 10, Sleep(10))
      if (waited > timeoutMs_) done_ = false;
    if (!done_ && !stop_) CloseAll();
  }

  // Ends every dialog still shown by the thread: Escape for forms and boxes
  // that take it, and a command for those that do not.
  void CloseAll() const {
    for (int round = 0; round < 50; ++round) {
      std::vector<HWND> open = Windows(thread_, [this](HWND w) { return filter_(w) || IsDialogBox(w); });
      if (open.empty()) return;
      for (HWND w : open) {
        PostMessageA(w, WM_CLOSE, 0, 0);
        if (IsDialogBox(w)) PostMessageA(w, WM_COMMAND, IDOK, 0);
      }
      Sleep(100);
    }
  }

  DWORD thread_;
  std::function<bool(HWND)> filter_;
  std::function<bool(HWND)> act_;
  DWORD timeoutMs_;
  bool done_ = false;
  std::atomic<bool> stop_ = false;
  std::thread worker_;
};

// Real keyboard input: keys down in order, then up in reverse (a chord such
// as Ctrl+Enter), to whichever window has the focus.
inline void Keys(std::initializer_list<WORD> keys) {
  std::vector<INPUT> input;
  const auto add = [&input](WORD key, DWORD flags) {
    INPUT i{};
    i.type = INPUT_KEYBOARD;
    i.ki.wVk = key;
    i.ki.dwFlags = flags;
    input.push_back(i);
  };
  for (WORD k : keys) add(k, 0);
  for (auto k = keys.end(); k != keys.begin();) add(*--k, KEYEVENTF_KEYUP);
  SendInput(static_cast<UINT>(input.size()), input.data(), sizeof(INPUT));
}

// Types text (UTF-8) as keystrokes to the focused window: ASCII letters,
// digits and spaces by their keys ("\n" as Enter), any other letter as the
// keyboard sends what it has no key for (VK_PACKET).
inline void Type(const std::string& text) {
  std::wstring wide(text.size(), L'\0');
  wide.resize(MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), wide.data(),
                                  static_cast<int>(wide.size())));
  for (const wchar_t c : wide) {
    if (c >= 0x80) {
      INPUT press[2] = {};
      for (INPUT& i : press) i.type = INPUT_KEYBOARD, i.ki.wScan = c, i.ki.dwFlags = KEYEVENTF_UNICODE;
      press[1].ki.dwFlags |= KEYEVENTF_KEYUP;
      SendInput(2, press, sizeof(INPUT));
      continue;
    }
    const SHORT key = c == '\n' ? VK_RETURN : VkKeyScanA(static_cast<char>(c));
    if (HIBYTE(key) & 1)
      Keys({VK_SHIFT, static_cast<WORD>(LOBYTE(key))});
    else
      Keys({static_cast<WORD>(LOBYTE(key))});
  }
}

// Waits (bounded) until done() holds; whether it did.
inline bool Until(const std::function<bool()>& done, DWORD ms = 5000) {
  for (DWORD waited = 0; waited < ms; waited += 10, Sleep(10))
    if (done()) return true;
  return false;
}

}  // namespace dialog_watcher
