#pragma once
// An example program run as a user runs it: started, its windows found with
// bounded waits, read, typed into and clicked through posted messages, and
// ended. Whatever a failing case leaves running is ended by the destructor.
#include <windows.h>

#include <functional>
#include <string>
#include <vector>

#include "platform/ostrel/owned_handle.h"

namespace example_driver {

// Generous: a cold prefix on a busy machine is slow; a passing run never waits this long.
constexpr DWORD kWaitMs = 30000;

// The path of the example program, from the environment variable name
// (set by CTest); a Unix path is taken as it is on drive Z:.
std::string ExamplePath(const char* variable);

class ExampleProcess {
 public:
  // Starts exe with args in exe's own folder, where its DLLs are.
  explicit ExampleProcess(const std::string& exe, const std::string& args = "");
  ~ExampleProcess();
  ExampleProcess(const ExampleProcess&) = delete;
  ExampleProcess& operator=(const ExampleProcess&) = delete;

  bool Started() const { return static_cast<bool>(process_); }
  // The newest visible top-level window of the process with that window
  // class, waited for; null when none came in time.
  HWND WaitForWindow(const char* windowClass, DWORD timeoutMs = kWaitMs) const;
  // The visible top-level windows of the process now.
  std::vector<HWND> Windows() const;
  // Waits for the process to end; its exit code, or -1 when it did not end in time.
  long WaitForExit(DWORD timeoutMs = kWaitMs);

 private:
  OwnedKernelHandle process_;
  DWORD id_ = 0;
};

// A message sent and its answer, waiting at most five seconds (-1 then).
LRESULT Ask(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0);
// The child window of that class and text ('&' included), or null.
HWND Child(HWND parent, const char* windowClass, const char* text);
// Texts in UTF-8, whatever the example's code page.
std::string TextOf(HWND window);
// The lines of a list box.
std::vector<std::string> ListItems(HWND list);

// A button pressed: posted, so that a modal dialog its handler opens does
// not hold the caller.
void Click(HWND button);
// Text (UTF-8) typed into an edit box, a character at a time.
void Type(HWND edit, const std::string& text);
// A key pressed and released in the window.
void Key(HWND window, WORD key);

// Waits, polling, until done() is true; false when it was not in time.
bool WaitUntil(const std::function<bool()>& done, DWORD timeoutMs = kWaitMs);

// When VELKIN_EXAMPLE_PICTURES names a folder, writes the screen round the
// windows, frames included, to name.png there (for the README and for
// looking at the windows); otherwise does nothing.
void Picture(const std::vector<HWND>& windows, const char* name);

}  // namespace example_driver
