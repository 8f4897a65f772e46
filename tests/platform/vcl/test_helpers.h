#pragma once
// What the framework's tests share: window texts, error messages, controls
// made on a parent, event logs, the thread's windows and a bitmap to paint on.
#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <deque>
#include <ostream>
#include <string>
#include <type_traits>
#include <vector>

#include "platform/ostrel/dc_changer.h"
#include "platform/ostrel/owned_handle.h"
#include "platform/vcl/controls/controls.h"
#include "platform/vcl/core/event_handlers.h"
#include "platform/vcl/core/streams.h"
#include "platform/vcl/core/thread.h"
#include "tests/platform/vcl/loop_driver.h"

inline std::ostream& operator<<(std::ostream& os, const MyRect& r) {
  return os << "(" << r.left << "," << r.top << ")-(" << r.right << "," << r.bottom << ")";
}

inline std::ostream& operator<<(std::ostream& os, const MyPoint& p) { return os << "(" << p.x << "," << p.y << ")"; }

namespace vcl_test {

// Every component class the framework registers for streams.
inline const char* const kStandardClasses[] = {
    "TForm",     "TScrollBox",   "TButton",   "TCheckBox",  "TRadioButton", "TEdit",    "TMemo",        "TLabel",
    "TListBox",  "TComboBox",    "TGroupBox", "TScrollBar", "TPanel",       "TBevel",   "TSpeedButton", "TBitBtn",
    "TTrackBar", "TProgressBar", "TUpDown",   "TMainMenu",  "TPopupMenu",   "TMenuItem"};

inline std::string Str(const System::AnsiString& s) { return s.c_str(); }

inline std::string WindowText(HWND w) {
  char text[256] = {};
  GetWindowTextA(w, text, sizeof text);
  return text;
}

// A text of the process's code page as UTF-16, to compare whatever the code page.
inline std::wstring Wide(const System::AnsiString& s) {
  std::wstring w(static_cast<size_t>(s.Length()) * 2 + 1, L'\0');
  w.resize(static_cast<size_t>(
      std::max(0, MultiByteToWideChar(CP_ACP, 0, s.c_str(), s.Length(), w.data(), static_cast<int>(w.size())))));
  return w;
}

// The column of the cases of texts for this process's code page: 0 for 1251
// (Cyrillic), 1 for 1252 (Western), 2 for UTF-8, -1 for another. A run meant
// for one names it in VELKIN_ANSI_CP, and fails when it got another.
inline int CodePageColumn() {
  const UINT codePage = GetACP();
  if (const char* want = std::getenv("VELKIN_ANSI_CP"); want && std::strtoul(want, nullptr, 10) != codePage) {
    ADD_FAILURE() << "the process's code page is " << codePage << ", the run is meant for " << want;
    return -1;
  }
  return codePage == 1251 ? 0 : codePage == 1252 ? 1 : codePage == CP_UTF8 ? 2 : -1;
}

// Everything a memory stream holds.
inline std::string Bytes(Classes::TMemoryStream& s) {
  return std::string(static_cast<char*>(s.GetMemory()), static_cast<size_t>(s.GetSize()));
}

// Puts bytes into an empty stream and goes back to their start.
inline void Load(Classes::TMemoryStream& s, const std::string& bytes) {
  s.WriteBuffer(bytes.data(), static_cast<long>(bytes.size()));
  s.SetPosition(0);
}

// What convert (text to binary or back) makes of input.
inline std::string Convert(void (*convert)(Classes::TStream*, Classes::TStream*), const std::string& input) {
  Classes::TMemoryStream in, out;
  Load(in, input);
  convert(&in, &out);
  return Bytes(out);
}

// Writes from to a stream and reads it back into into.
inline void ReadBack(Classes::TComponent* from, Classes::TComponent* into) {
  Classes::TMemoryStream s;
  s.WriteComponent(from);
  s.SetPosition(0);
  s.ReadComponent(into);
}

// The message of the E that call raises; "" when it raises none.
template <class E, class Call>
std::string ErrorOf(Call&& call) {
  try {
    call();
  } catch (const E& e) {
    return e.Message.c_str();
  }
  return "";
}

// A control owned by owner and placed on parent (none for a menu item).
template <class T>
T* Make(Classes::TComponent* owner, Controls::TWinControl* parent) {
  auto* c = new T(owner);
  if constexpr (std::is_base_of_v<Controls::TControl, T>) c->SetParent(parent);
  return c;
}
template <class T>
T* Make(Classes::TComponent* owner, Controls::TWinControl* parent, int left, int top, int width, int height) {
  T* c = Make<T>(owner, parent);
  c->SetBounds(left, top, width, height);
  return c;
}

// Each handler it gives appends its own text to one log: log.On("A.show ").
class EventLog {
 public:
  std::string text;
  System::TNotifyEvent On(std::string what) {
    entries_.push_back({this, std::move(what)});
    return {&entries_.back(), &Entry::Fire};
  }

 private:
  struct Entry {
    EventLog* log;
    std::string what;
    void Fire(System::TObject*) { log->text += what; }
  };
  std::deque<Entry> entries_;
};

// Counts how often its handler runs.
struct Counter {
  int n = 0;
  void Hit(System::TObject*) { ++n; }
  System::TNotifyEvent Event() { return {this, &Counter::Hit}; }
};

// A mouse message to wnd at (x, y) of its client area, and a click there.
inline void Mouse(HWND wnd, UINT msg, int x, int y, WPARAM keys = 0) { SendMessageA(wnd, msg, keys, MAKELPARAM(x, y)); }
inline void ClickAt(HWND wnd, int x, int y) {
  Mouse(wnd, WM_LBUTTONDOWN, x, y, MK_LBUTTON);
  Mouse(wnd, WM_LBUTTONUP, x, y);
}

// Every window of this thread, children included.
inline int ThreadWindows() {
  int count = 0;
  EnumThreadWindows(
      GetCurrentThreadId(),
      [](HWND w, LPARAM n) {
        ++*reinterpret_cast<int*>(n);
        EnumChildWindows(
            w, [](HWND, LPARAM m) { return ++*reinterpret_cast<int*>(m), TRUE; }, n);
        return TRUE;
      },
      reinterpret_cast<LPARAM>(&count));
  return count;
}

// A bitmap of the screen's format selected into a memory context.
class PaintTarget {
 public:
  PaintTarget(int width, int height)
      : dc_(CreateCompatibleDC(OwnedWindowDC(nullptr).get())),
        bitmap_(CreateCompatibleBitmap(OwnedWindowDC(nullptr).get(), width, height)),
        use_(dc_.get()) {
    use_.Select(bitmap_.get());
  }
  HDC dc() const { return dc_.get(); }
  COLORREF At(int x, int y) const { return GetPixel(dc_.get(), x, y); }
  void Fill(COLORREF color, int width, int height) {
    const OwnedBrush brush(CreateSolidBrush(color));
    const RECT all{0, 0, width, height};
    FillRect(dc_.get(), &all, brush.get());
  }

 private:
  OwnedMemoryDC dc_;
  OwnedBitmap bitmap_;
  DCChanger use_;
};

// A thread that queues a call to the main thread and ends.
struct TQueuer : Classes::TThread {
  explicit TQueuer(Classes::TThreadMethod m) : TThread(true), method(m) { Start(); }
  void Execute() override { Queue(method); }
  Classes::TThreadMethod method;
};

}  // namespace vcl_test
