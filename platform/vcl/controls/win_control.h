#pragma once
/// \file
/// TWinControl: a control with a window of its own, which holds other controls.
#include <vector>

#include "platform/vcl/controls/child_layout.h"
#include "platform/vcl/controls/control.h"

namespace Controls {

/// A control with a window of its own, which can hold other controls.
class VCL_API TWinControl : public TControl {
  VCL_CLASS();

 public:
  explicit TWinControl(Classes::TComponent* owner = nullptr);
  /// Destroys the window (with its children's, in one go), then the child
  /// controls.
  ~TWinControl() override;
  void BeforeDestruction() override;
  /// A control deleted while its window procedure, or one of a control
  /// inside it, is running (a form freed from its button's OnClick) is
  /// hidden and destroyed once that procedure returns.
  bool DestroyLater() override;

  /// The window, created on first request (its parent's first), or as soon
  /// as the control comes into a parent that has a window. Null only when
  /// the window system refuses to create it.
  HWND GetHandle();
  bool HandleAllocated() const { return handle_ != nullptr; }
  /// Destroys the window and, in the same call, the child controls' (each
  /// child's DestroyWnd runs first); the next GetHandle makes a new one with
  /// the current bounds and state.
  void DestroyHandle();

  /// A foreign window to live in when the control has no parent control.
  /// Without either, the control gets a top-level pop-up window of its own.
  HWND GetParentWindow() const { return parentWindow_; }
  void SetParentWindow(HWND value);

  /// Scales the control, then its children; laid out once at the end.
  void ChangeScale(int m, int d) override;
  /// The child controls that root owns, in the order they came in.
  void GetChildren(Classes::TGetChildProc proc, Classes::TComponent* root) override;

  int GetControlCount() const { return static_cast<int>(controls_.size()); }
  /// Child control by index; outside 0..ControlCount-1 raises EListError
  /// "List index out of bounds (<index>)".
  TControl* GetControl(int index) const;
  /// Lays the aligned and anchored child controls out again (see
  /// TControl::SetAlign and SetAnchors).
  void Realign();
  /// Batch many changes to the children (many coming in, say): between
  /// DisableAlign and the matching EnableAlign nothing is laid out, and
  /// EnableAlign lays out once. Pairs nest. Reading a design does the same.
  void DisableAlign();
  void EnableAlign();
  /// A child came, went, moved, was resized, shown or hidden.
  virtual void ChildrenChanged() {}
  /// Paints the controls without a window (labels) that lie inside rect, on
  /// dc of this control's window.
  void PaintControls(HDC dc, const RECT& rect);
  /// Whether control is a direct child of this one.
  bool ContainsControl(const TControl* control) const;
  /// Whether any child is a control without a window.
  bool HasGraphicControls() const;
  /// The topmost visible, enabled child without a window at a point of the
  /// client area, or null.
  TControl* ControlAtPos(const MyPoint& point) const;

  void SetBounds(int left, int top, int width, int height) override;
  MyRect GetClientRect() const override;
  void Invalidate() override;
  void Update() override;
  MyPoint GetClientOrigin() const override;
  /// The brush of the control's Color: its background, and what a system
  /// control's window is given to paint with.
  Graphics::TBrush* GetBrush() const { return brush_.get(); }
  /// A handle of the background colour: the system's own brush for a system
  /// colour (nothing made per control), else Brush's.
  HBRUSH BackgroundBrush() const;

  /// The window's text (a form's caption, an edit's contents); kept by the
  /// control while it has no window.
  AnsiString GetText() const override;
  void SetText(const AnsiString& value) override;

  /// Keyboard focus: CanFocus when it and all its parents are visible and
  /// enabled; SetFocus makes the windows as needed.
  bool CanFocus() const;
  bool Focused() const;
  virtual void SetFocus();
  /// Whether Tab stops at the control, and its place among its siblings'
  /// tab stops (moving it moves the others).
  bool GetTabStop() const { return tabStop_; }
  void SetTabStop(bool value);
  int GetTabOrder() const;
  void SetTabOrder(int value);
  /// The next control in tab order after current (or the first), among the
  /// tab stops of this control's descendants; null when there is none.
  TWinControl* FindNextControl(TWinControl* current, bool forward) const;
  /// Moves the focus to the next tab stop inside this control.
  void SelectNext(TWinControl* current, bool forward);

  /// The key events: the form's preview (see WantsKeyPreview) goes first, then
  /// the control's own; a key set to 0 never reaches the window. The routing
  /// (events, dialog keys, mnemonics) happens in the focused control's window
  /// procedure, so any loop that dispatches the key messages to their window
  /// (after TranslateMessage, which makes the WM_CHAR) drives it: message
  /// loops need no call of their own.
  TKeyEvent GetOnKeyDown() const { return onKeyDown_; }
  void SetOnKeyDown(TKeyEvent value) { onKeyDown_ = value; }
  TKeyEvent GetOnKeyUp() const { return onKeyUp_; }
  void SetOnKeyUp(TKeyEvent value) { onKeyUp_ = value; }
  TKeyPressEvent GetOnKeyPress() const { return onKeyPress_; }
  void SetOnKeyPress(TKeyPressEvent value) { onKeyPress_ = value; }
  System::TNotifyEvent GetOnEnter() const { return onEnter_; }
  void SetOnEnter(System::TNotifyEvent value) { onEnter_ = value; }
  System::TNotifyEvent GetOnExit() const { return onExit_; }
  void SetOnExit(System::TNotifyEvent value) { onExit_ = value; }

  /// The control of a window made by this framework in this process, or null.
  static TWinControl* FindControl(HWND window);

  void WndProc(TMessage& message) override;
  void DefaultHandler(TMessage& message) override;

 protected:
  TWinControl* AsWinControl() override { return this; }
  /// Lays out what waited for the design to be read.
  void Loaded() override;
  /// The client area as it is now is the one anchored children keep their
  /// distances in (a design read for it, or scaled).
  void RemeasureAnchors();
  virtual void CreateParams(TCreateParams& params);
  virtual void CreateWnd();
  virtual void DestroyWnd();
  void VisibleChanged() override;
  void EnabledChanged() override;
  void SetMouseCapture(bool value) override;
  /// Key handlers; false when the key was swallowed.
  virtual bool DoKeyDown(WORD& key, TShiftState shift);
  virtual bool DoKeyUp(WORD& key, TShiftState shift);
  virtual bool DoKeyPress(char& key);
  /// True for a top-level control (a form) that sees its controls' keys first.
  virtual bool WantsKeyPreview() const { return false; }
  /// A dialog key (Tab, Enter, Escape, arrows) the focused control did not
  /// want, offered to its top-level control: Result 1 when it was used. The
  /// default moves the focus on Tab and offers Enter and Escape to every
  /// control inside (a default or cancel button takes it).
  virtual void DialogKey(TMessage& message);
  /// A notification (WM_COMMAND, WM_NOTIFY, WM_DRAWITEM, scrolling) the
  /// parent passed back to the control as CN_ plus the message. The colour
  /// requests (CN_CTLCOLOR...) are answered before this with the control's
  /// font colour, Color and brush.
  virtual void Notified(TMessage& message);
  /// Answers WM_PAINT: paint draws on canvas, which holds the paint context
  /// meanwhile with the control's font and colour; then the windowless
  /// children are painted over it.
  void PaintOnCanvas(TMessage& message, Graphics::TCanvas& canvas, System::TClosure<void()> paint);
  /// Makes a window the system created inside this control's window (a
  /// combo box's edit) part of the control: its keys run the control's key
  /// events and dialog keys, and focus arriving there from elsewhere is the
  /// control's OnEnter, leaving it for elsewhere its OnExit.
  void RouteInnerWindow(HWND inner);
  /// A window inside this control's window that no control owns.
  bool IsInnerWindow(HWND window) const;

 private:
  friend class TControl;
  friend class TChildLayout;
  friend struct WindowProcAccess;
  void InsertControl(TControl* control);
  /// keepWindow: the child's window moves with it into another parent's.
  void RemoveControl(TControl* control, bool keepWindow);
  void MoveWindowTo(TWinControl* parent);
  void ShowChildWindow(TControl* control);
  static bool IsLoading(const Classes::TComponent* component);
  bool AlignDeferred();
  /// A child came in aligned, or was shown: placed alone when it is the last
  /// of its kind, else everything is laid out.
  void AlignChild(TControl* child);
  /// ChildrenChanged, once a layout or a batch is over.
  void NotifyChildrenChanged();
  void FlushChildrenChanged();
  void DestroyChildren();
  void ReadBoundsFromWindow();
  TWinControl* TopLevel();
  bool HandleKey(TMessage& message);
  void TypedChar(TMessage& message, WNDPROC proc, HWND window);
  static LRESULT CALLBACK InnerWndProc(HWND window, UINT msg, WPARAM wParam, LPARAM lParam);
  template <class Event, class Key, class... Rest>
  bool RunKeyEvent(Event TWinControl::*event, Key& key, Rest... rest);
  bool Broadcast(TMessage& message);
  void CollectTabStops(std::vector<TWinControl*>& list) const;
  bool ControlMouseMessage(TMessage& message);
  void NotifyControls(UINT msg);

  HWND handle_ = nullptr;
  TWinControl* nextDeferred_ = nullptr;  // the list of controls whose delete waits
  bool deferred_ = false;
  TControl* captureControl_ = nullptr;  // a windowless child holding the mouse
  unsigned alignCounter_ = 0;
  std::unique_ptr<Graphics::TBrush> brush_;
  HWND parentWindow_ = nullptr;
  int aligning_ = 0;
  int alignLevel_ = 0;  // DisableAlign calls not yet ended
  bool alignPending_ = false;
  bool childrenChangedPending_ = false;
  bool parentDestroysWindow_ = false;  // the window goes with the parent's
  TChildLayout layout_{this};
  std::vector<TControl*> controls_;
  unsigned childrenVersion_ = 0;       // changes whenever controls_ does
  std::vector<TWinControl*> tabList_;  // windowed children in tab order
  int tabOrder_ = -1;                  // the place in the parent's tabList_
  WNDPROC defWndProc_ = nullptr;
  bool tabStop_ = false;
  bool swallowChar_ = false;
  TKeyEvent onKeyDown_;
  TKeyEvent onKeyUp_;
  TKeyPressEvent onKeyPress_;
  System::TNotifyEvent onEnter_;
  System::TNotifyEvent onExit_;
};

}  // namespace Controls
