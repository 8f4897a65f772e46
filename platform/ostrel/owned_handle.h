#pragma once
#include <windows.h>

#include <utility>

#include "platform/ostrel/ostrel_api.h"

/// \file
/// Owners of operating-system handles. Each kind of handle is closed by its own
/// function; an owner closes the handle it holds exactly once, with the right
/// one, when it is reset or goes. Move-only; no implicit conversion to the raw
/// handle: get() to use it, release() to hand it on, reset() to close it now or
/// take another, as the standard library's owners spell them.
///
/// Every owner also keeps a per-kind count of the handles alive in the process,
/// so leak tests can ask the bookkeeping rather than the system (whose GDI and
/// USER object counts are not available everywhere).

/// The kinds of handle the live counts are kept by.
enum OwnedKind_Types : int {
  OK_GdiObject,  // pens, brushes, fonts, bitmaps, regions
  OK_MemoryDC,   // CreateCompatibleDC/CreateDC
  OK_WindowDC,   // GetDC/GetWindowDC
  OK_Window,
  OK_Menu,
  OK_Icon,
  OK_Kernel,  // events, semaphores, mappings, threads, processes
  OK_File,    // files, and FindFirstFile searches
  OK_View,    // mapped views of files
  OK_Module,
  OK_Memory,  // LocalAlloc blocks
  OK_Count
};

/// Adds delta to the live count of a kind; the owners call it.
OSTREL_API void OwnedHandleTally(OwnedKind_Types kind, int delta);
/// Handles of the kind that owners hold now, in the whole process.
OSTREL_API long OwnedHandleCount(OwnedKind_Types kind);

/// Kind: a class with `using Type`, `static constexpr OwnedKind_Types Id`,
/// `static Type Null()` and `static void Close(Type)`.
template <class Kind>
class OwnedHandle {
 public:
  using Type = typename Kind::Type;

  OwnedHandle() = default;
  /// Takes ownership of handle (the null value of the kind is fine).
  explicit OwnedHandle(Type handle) { reset(handle); }
  OwnedHandle(OwnedHandle&& other) noexcept : handle_(other.handle_) { other.handle_ = Kind::Null(); }
  OwnedHandle& operator=(OwnedHandle&& other) noexcept {
    if (this != &other) {
      reset();
      handle_ = std::exchange(other.handle_, Kind::Null());
    }
    return *this;
  }
  OwnedHandle(const OwnedHandle&) = delete;
  OwnedHandle& operator=(const OwnedHandle&) = delete;
  ~OwnedHandle() { reset(); }

  Type get() const { return handle_; }
  explicit operator bool() const { return handle_ != Kind::Null(); }

  /// Gives the handle up without closing it.
  Type release() {
    if (handle_ != Kind::Null()) OwnedHandleTally(Kind::Id, -1);
    return std::exchange(handle_, Kind::Null());
  }
  /// Closes the held handle (if any) and holds handle instead.
  void reset(Type handle = Kind::Null()) {
    if (handle == handle_) return;
    Close(release());
    if (handle != Kind::Null()) OwnedHandleTally(Kind::Id, +1);
    handle_ = handle;
  }

  /// The kind's one release function, for code that must close a handle it was
  /// handed raw (the wrappers' destroy slots). Ignores the null value.
  static void Close(Type handle) {
    if (handle != Kind::Null()) Kind::Close(handle);
  }

 private:
  Type handle_ = Kind::Null();
};

namespace owned_kinds {

/// A kind whose handles are null when empty and closed by one function.
template <class T, OwnedKind_Types KindId, auto CloseFunction>
struct ClosedBy {
  using Type = T;
  static constexpr OwnedKind_Types Id = KindId;
  static Type Null() { return nullptr; }
  static void Close(Type h) { CloseFunction(h); }
};

template <class T>
struct GdiObject : ClosedBy<T, OK_GdiObject, &DeleteObject> {};
struct MemoryDC : ClosedBy<HDC, OK_MemoryDC, &DeleteDC> {};
struct Window : ClosedBy<HWND, OK_Window, &DestroyWindow> {};
struct Menu : ClosedBy<HMENU, OK_Menu, &DestroyMenu> {};
struct Icon : ClosedBy<HICON, OK_Icon, &DestroyIcon> {};
struct Kernel : ClosedBy<HANDLE, OK_Kernel, &CloseHandle> {};
/// CreateFile's failure value is INVALID_HANDLE_VALUE, not null.
struct File : ClosedBy<HANDLE, OK_File, &CloseHandle> {
  static Type Null() { return INVALID_HANDLE_VALUE; }
};
/// A FindFirstFile search, ended by FindClose.
struct Find : ClosedBy<HANDLE, OK_File, &FindClose> {
  static Type Null() { return INVALID_HANDLE_VALUE; }
};
struct View : ClosedBy<void*, OK_View, &UnmapViewOfFile> {};
struct Module : ClosedBy<HMODULE, OK_Module, &FreeLibrary> {};
struct Local : ClosedBy<HLOCAL, OK_Memory, &LocalFree> {};

}  // namespace owned_kinds

using OwnedGdiObject = OwnedHandle<owned_kinds::GdiObject<HGDIOBJ>>;
using OwnedPen = OwnedHandle<owned_kinds::GdiObject<HPEN>>;
using OwnedBrush = OwnedHandle<owned_kinds::GdiObject<HBRUSH>>;
using OwnedFont = OwnedHandle<owned_kinds::GdiObject<HFONT>>;
using OwnedBitmap = OwnedHandle<owned_kinds::GdiObject<HBITMAP>>;
using OwnedRegion = OwnedHandle<owned_kinds::GdiObject<HRGN>>;
using OwnedMemoryDC = OwnedHandle<owned_kinds::MemoryDC>;
using OwnedWindow = OwnedHandle<owned_kinds::Window>;
using OwnedMenu = OwnedHandle<owned_kinds::Menu>;
using OwnedIcon = OwnedHandle<owned_kinds::Icon>;
using OwnedKernelHandle = OwnedHandle<owned_kinds::Kernel>;
using OwnedFile = OwnedHandle<owned_kinds::File>;
using OwnedFind = OwnedHandle<owned_kinds::Find>;
using OwnedView = OwnedHandle<owned_kinds::View>;
using OwnedModule = OwnedHandle<owned_kinds::Module>;
using OwnedLocal = OwnedHandle<owned_kinds::Local>;

/// A device context borrowed from a window (or from the screen, window null)
/// with GetDC, given back to that same window with ReleaseDC.
class OwnedWindowDC {
 public:
  OwnedWindowDC() = default;
  /// GetDC(window).
  explicit OwnedWindowDC(HWND window) { reset(window, GetDC(window)); }
  /// Takes a context that GetDC or GetWindowDC gave for window.
  OwnedWindowDC(HWND window, HDC dc) { reset(window, dc); }
  OwnedWindowDC(OwnedWindowDC&& other) noexcept : window_(other.window_), dc_(std::exchange(other.dc_, nullptr)) {}
  OwnedWindowDC& operator=(OwnedWindowDC&& other) noexcept {
    if (this != &other) {
      reset();
      window_ = other.window_;
      dc_ = std::exchange(other.dc_, nullptr);
    }
    return *this;
  }
  OwnedWindowDC(const OwnedWindowDC&) = delete;
  OwnedWindowDC& operator=(const OwnedWindowDC&) = delete;
  ~OwnedWindowDC() { reset(); }

  HDC get() const { return dc_; }
  HWND window() const { return window_; }
  explicit operator bool() const { return dc_ != nullptr; }

  HDC release() {
    if (dc_) OwnedHandleTally(OK_WindowDC, -1);
    return std::exchange(dc_, nullptr);
  }
  void reset(HWND window = nullptr, HDC dc = nullptr) {
    if (dc && dc == dc_) return;
    const HWND oldWindow = window_;
    if (HDC old = release()) ReleaseDC(oldWindow, old);
    if (dc) OwnedHandleTally(OK_WindowDC, +1);
    window_ = window;
    dc_ = dc;
  }

 private:
  HWND window_ = nullptr;
  HDC dc_ = nullptr;
};

/// The paint context of a window's WM_PAINT: BeginPaint when made, EndPaint
/// when it goes, so the window is validated and the context given back however
/// the painting ends. Counted with the window contexts.
class OwnedPaintDC {
 public:
  explicit OwnedPaintDC(HWND window) : window_(window), dc_(BeginPaint(window, &paint_)) {
    if (dc_) OwnedHandleTally(OK_WindowDC, +1);
  }
  OwnedPaintDC(const OwnedPaintDC&) = delete;
  OwnedPaintDC& operator=(const OwnedPaintDC&) = delete;
  ~OwnedPaintDC() {
    if (!dc_) return;
    OwnedHandleTally(OK_WindowDC, -1);
    EndPaint(window_, &paint_);
  }

  HDC get() const { return dc_; }
  /// The part of the window to paint.
  const RECT& area() const { return paint_.rcPaint; }
  explicit operator bool() const { return dc_ != nullptr; }

 private:
  HWND window_;
  PAINTSTRUCT paint_{};
  HDC dc_;
};
