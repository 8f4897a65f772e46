#pragma once
/// \file
/// Unit Controls: the base of every visual control.
#include <windows.h>

#include <vector>

#include "platform/ostrel/mygeom.h"
#include "platform/vcl/component.h"
#include "platform/vcl/set.h"
#include "platform/vcl/vcl_api.h"

/// Unit Controls: the base of every visual control. A TControl has a place
/// (Left, Top, Width, Height relative to its parent's client area), a parent and
/// a visible flag; a TWinControl adds a real window of the framework's own
/// window class, made on demand and destroyed with the control.
namespace Controls {

/// Where a control keeps itself in its parent: at an edge, filling it, or free.
enum TAlign : unsigned char { alNone, alTop, alBottom, alLeft, alRight, alClient, alCustom };
using TAlignSet = System::Set<TAlign, alNone, alCustom>;

/// A window message as the control sees it; Result is what the window
/// procedure returns.
struct TMessage {
  UINT Msg = 0;
  WPARAM WParam = 0;
  LPARAM LParam = 0;
  LRESULT Result = 0;
};

/// What CreateWnd hands to CreateWindowEx; controls adjust it in CreateParams.
struct TCreateParams {
  const char* Caption = "";
  DWORD Style = 0;
  DWORD ExStyle = 0;
  int X = 0, Y = 0, Width = 0, Height = 0;
  HWND WndParent = nullptr;
  UINT ClassStyle = 0;
  HBRUSH Background = nullptr;
  char WinClassName[64] = {};
};

class TWinControl;

/// A control is a component: its owner frees it. Its parent, a different
/// relation, is the windowed control it lives in (see TWinControl).
class VCL_API TControl : public Classes::TComponent {
  VCL_CLASS();

 public:
  explicit TControl(Classes::TComponent* owner = nullptr);
  ~TControl() override;

  int GetLeft() const { return left_; }
  void SetLeft(int value) { SetBounds(value, top_, width_, height_); }
  int GetTop() const { return top_; }
  void SetTop(int value) { SetBounds(left_, value, width_, height_); }
  int GetWidth() const { return width_; }
  void SetWidth(int value) { SetBounds(left_, top_, value, height_); }
  int GetHeight() const { return height_; }
  void SetHeight(int value) { SetBounds(left_, top_, width_, value); }
  MyRect GetBoundsRect() const { return {left_, top_, left_ + width_, top_ + height_}; }
  void SetBoundsRect(const MyRect& r) { SetBounds(r.left, r.top, r.right - r.left, r.bottom - r.top); }
  /// Moves and sizes in one step; a negative width or height counts as 0.
  virtual void SetBounds(int left, int top, int width, int height);

  /// (0, 0, client width, client height).
  virtual MyRect GetClientRect() const;
  int GetClientWidth() const { return GetClientRect().right; }
  int GetClientHeight() const { return GetClientRect().bottom; }

  TWinControl* GetParent() const { return parent_; }
  /// Moves the control into parent's child list (null: out of any). From then
  /// on the parent destroys the control when it is destroyed itself, so a
  /// control given a parent must be made with new or destroyed first.
  virtual void SetParent(TWinControl* parent);

  bool GetVisible() const { return visible_; }
  void SetVisible(bool value);
  void Show() { SetVisible(true); }
  void Hide() { SetVisible(false); }
  bool GetEnabled() const { return enabled_; }
  void SetEnabled(bool value);

  /// Asks for a repaint of the control's area.
  virtual void Invalidate();
  /// Sends the message straight to the control's WndProc.
  LRESULT Perform(UINT msg, WPARAM wParam, LPARAM lParam);

  virtual void WndProc(TMessage& message);
  virtual void DefaultHandler(TMessage& message);

 protected:
  /// Hooks run after the stored value changed.
  virtual void VisibleChanged() {}
  virtual void EnabledChanged() {}
  /// The stored bounds changed (by SetBounds or by the window system).
  virtual void Resize() {}

  /// Changes the stored bounds without touching any window.
  void UpdateBoundsFields(int left, int top, int width, int height);

 private:
  friend class TWinControl;
  TWinControl* parent_ = nullptr;
  int left_ = 0, top_ = 0, width_ = 0, height_ = 0;
  bool visible_ = true;
  bool enabled_ = true;
};

/// A control with a window of its own, which can hold other controls.
class VCL_API TWinControl : public TControl {
  VCL_CLASS();

 public:
  explicit TWinControl(Classes::TComponent* owner = nullptr);
  /// Destroys the child controls, then the window.
  ~TWinControl() override;
  void BeforeDestruction() override;

  /// The window, created on first request (its parent's first). Null only when
  /// the window system refuses to create it.
  HWND GetHandle();
  bool HandleAllocated() const { return handle_ != nullptr; }
  /// Destroys the window (the child controls' windows first); the next
  /// GetHandle makes a new one with the current bounds and state.
  void DestroyHandle();

  /// A foreign window to live in when the control has no parent control.
  /// Without either, the control gets a top-level pop-up window of its own.
  HWND GetParentWindow() const { return parentWindow_; }
  void SetParentWindow(HWND value);

  int GetControlCount() const { return static_cast<int>(controls_.size()); }
  /// Child control by index, null outside 0..ControlCount-1.
  TControl* GetControl(int index) const;
  /// Whether control is a direct child of this one.
  bool ContainsControl(const TControl* control) const;

  void SetBounds(int left, int top, int width, int height) override;
  MyRect GetClientRect() const override;
  void Invalidate() override;
  /// Paints what is invalid now.
  void Update();

  void WndProc(TMessage& message) override;
  void DefaultHandler(TMessage& message) override;

 protected:
  virtual void CreateParams(TCreateParams& params);
  virtual void CreateWnd();
  virtual void DestroyWnd();
  void VisibleChanged() override;
  void EnabledChanged() override;

 private:
  friend class TControl;
  friend struct WindowProcAccess;
  void InsertControl(TControl* control);
  void RemoveControl(TControl* control);
  void DestroyChildren();
  void ReadBoundsFromWindow();

  HWND handle_ = nullptr;
  HWND parentWindow_ = nullptr;
  std::vector<TControl*> controls_;
};

}  // namespace Controls
