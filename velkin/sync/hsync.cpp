#include "velkin/sync/hsync.h"

#include <windows.h>

#include <atomic>
#include <mutex>
#include <type_traits>

#include "platform/ostrel/oslib.h"
#include "platform/ostrel/owned_handle.h"

namespace {

constexpr char kClassName[] = "HSyncWindow";

// Guards the count and the window's making and unmaking. One lock for the
// process, never destroyed while it can be in use: a lock made by the first
// HSync_Add and deleted by the release, while held, could be entered by a
// second first HSync_Add half made, or left after it was gone.
std::mutex lock;
int users = 0;
std::atomic<HWND> window{nullptr};

// A record made by the unit itself for HSync_CallEvent / HSync_PostEvent.
class OwnRecord : public HSyncData {};

LRESULT CALLBACK SyncProc(HWND wnd, UINT msg, WPARAM wParam, LPARAM lParam);

HINSTANCE LibraryModule() { return static_cast<HINSTANCE>(ModuleOf(reinterpret_cast<const void*>(&SyncProc))); }

// A callback that throws must not unwind through the window system: the
// failure ends there, with result 0.
long Run(const HSyncData& data, void* argument) {
  try {
    return data.Invoke(argument);
  } catch (...) {
    return 0;
  }
}

LRESULT CALLBACK SyncProc(HWND wnd, UINT msg, WPARAM wParam, LPARAM lParam) {
  auto* data = reinterpret_cast<HSyncData*>(lParam);
  switch (msg) {
    case HSYNC_CALL:
      if (!data) break;
      return Run(*data, data->Param);
    case HSYNC_CALLDATA:
      if (!data) break;
      if (!data->HasCallback()) return 0;
      Run(*data, data);
      return Run(*data, data->Param);  // and on as a post: the second run is the defined result
    case HSYNC_POST: {
      if (!data) break;
      if (!data->HasCallback()) {
        delete data;
        return 0;
      }
      return Run(*data, data->Param);  // the record stays: see HSync_PostEvent
    }
    case HSYNC_POSTDATA:
      if (!data) break;
      Run(*data, data);
      delete data;
      return 0;
    case HSYNC_RELEASE: {
      std::lock_guard<std::mutex> guard(lock);
      if (users > 0 && --users == 0) {
        OwnedWindow::Close(window.exchange(nullptr));
      }
      return 0;
    }
    default:
      break;
  }
  return DefWindowProcA(wnd, msg, wParam, lParam);
}

// Registers the unit's class unless it is registered with this procedure; a
// class left by an earlier load of the library (another procedure) is replaced.
void RegisterSyncClass() {
  const HINSTANCE module = LibraryModule();
  WNDCLASSA existing{};
  if (GetClassInfoA(module, kClassName, &existing)) {
    if (existing.lpfnWndProc == &SyncProc) return;
    UnregisterClassA(kClassName, module);
  }
  WNDCLASSA wc{};
  wc.lpfnWndProc = &SyncProc;
  wc.hInstance = module;
  wc.lpszClassName = kClassName;
  RegisterClassA(&wc);
}

}  // namespace

HSyncData::~HSyncData() = default;

long HSyncData::Invoke(void* argument) const {
  if (Event.IsSet()) return Event(argument);
  if (Proc) return Proc(argument);
  return 0;
}

void HSync_Add() {
  std::lock_guard<std::mutex> guard(lock);
  if (users == 0) {
    RegisterSyncClass();
    window = CreateWindowExA(0, kClassName, "", 0, 0, 0, 0, 0, nullptr, nullptr, LibraryModule(), nullptr);
  }
  ++users;
}

void HSync_Delete() {
  std::lock_guard<std::mutex> guard(lock);
  if (users == 1) PostMessageA(window.load(), HSYNC_RELEASE, 0, 0);
}

void* HSync_Window() { return window.load(); }

namespace {
// A record of the unit's own on the caller's stack, sent as HSYNC_CALL.
template <class Callback>
long Call(Callback callback, void* argument) {
  HWND w = window.load();
  if (!w) return 0;
  OwnRecord data;
  if constexpr (std::is_same_v<Callback, HSyncProc>)
    data.Proc = callback;
  else
    data.Event = callback;
  data.Param = argument;
  return static_cast<long>(SendMessageA(w, HSYNC_CALL, 0, reinterpret_cast<LPARAM>(&data)));
}
}  // namespace

long HSync_CallEvent(HSyncProc proc, void* argument) { return Call(proc, argument); }
long HSync_CallEvent(HSyncEvent event, void* argument) { return Call(event, argument); }

long HSync_CallData(const HSyncData& data) {
  HWND w = window.load();
  if (!w) return 0;
  return static_cast<long>(SendMessageA(w, HSYNC_CALLDATA, 0, reinterpret_cast<LPARAM>(&data)));
}

namespace {
long Post(OwnRecord* data) {
  HWND w = window.load();
  if (!w) {
    delete data;
    return 0;
  }
  const BOOL posted = PostMessageA(w, HSYNC_POST, 0, reinterpret_cast<LPARAM>(data));
  if (!posted) delete data;  // never reached the window: nobody else will free it
  return posted;
}
}  // namespace

namespace {
template <class Callback>
long PostCall(Callback callback, void* argument) {
  if (!window.load()) return 0;
  auto* data = new OwnRecord;
  if constexpr (std::is_same_v<Callback, HSyncProc>)
    data->Proc = callback;
  else
    data->Event = callback;
  data->Param = argument;
  return Post(data);
}
}  // namespace

long HSync_PostEvent(HSyncProc proc, void* argument) { return PostCall(proc, argument); }
long HSync_PostEvent(HSyncEvent event, void* argument) { return PostCall(event, argument); }

void HSync_PostData(HSyncData* data) {
  if (!data) return;
  HWND w = window.load();
  if (!w || !PostMessageA(w, HSYNC_POSTDATA, 0, reinterpret_cast<LPARAM>(data))) delete data;
}
