#pragma once
// Drives whatever message loop the test's thread is in (a modal form, Run, a
// message box) from a thread timer: one step a tick until each says it is
// done. After about ten seconds it gives up and, every tick from then on,
// calls the bail-out, which closes what is open: no case can hang.
#include <windows.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace loop_driver {

using Step = std::function<bool()>;  // true when done, false to wait a tick

inline std::vector<Step> steps;
inline size_t next = 0;
inline int ticks = 0;
inline bool timedOut = false;
inline std::function<void()> bailOut;

inline void CALLBACK Tick(HWND, UINT, UINT_PTR, DWORD) {
  if (++ticks > 300) {
    timedOut = true;
    if (bailOut) bailOut();
    return;
  }
  if (next < steps.size() && steps[next]()) ++next;
}

// Runs call (which enters the loop) while the steps drive it; call's result.
template <class Call>
auto Drive(std::vector<Step> script, std::function<void()> giveUp, Call&& call) {
  steps = std::move(script);
  next = 0;
  ticks = 0;
  timedOut = false;
  bailOut = std::move(giveUp);
  struct Timer {
    UINT_PTR id = SetTimer(nullptr, 0, 30, &Tick);
    ~Timer() { KillTimer(nullptr, id); }
  } timer;
  return call();
}

// Every step ran, in time.
inline bool Finished() { return !timedOut && next == steps.size(); }

// The visible message box of this thread, or null.
inline HWND MessageBoxWindow() {
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

}  // namespace loop_driver
