#pragma once
/// \file
/// Unit Controls: the base of every visual control.
#include <windows.h>

#include <exception>
#include <memory>
#include <vector>

#include "platform/ostrel/mygeom.h"
#include "platform/vcl/component.h"
#include "platform/vcl/graphics_brush.h"
#include "platform/vcl/graphics_canvas.h"
#include "platform/vcl/graphics_font.h"
#include "platform/vcl/messages.h"
#include "platform/vcl/set.h"
#include "platform/vcl/typinfo.h"
#include "platform/vcl/vcl_api.h"

/// Unit Controls: the base of every visual control. A TControl has a place
/// (Left, Top, Width, Height relative to its parent's client area), a parent and
/// a visible flag; a TWinControl adds a real window of the framework's own
/// window class, made on demand and destroyed with the control.
namespace Controls {

using System::AnsiString;

/// Where a control keeps itself in its parent: at an edge, filling it, or free.
enum TAlign : unsigned char { alNone, alTop, alBottom, alLeft, alRight, alClient, alCustom };
VCL_ENUM_INFO(TAlign, alNone, alTop, alBottom, alLeft, alRight, alClient, alCustom)
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
  /// A system window class (BUTTON, EDIT, ...) the control's class is built
  /// on: its window keeps the system's behaviour, its messages still reach
  /// the control first.
  const char* SystemClass = nullptr;
};

/// Shift, Alt and Ctrl keys and mouse buttons held during an input event.
enum TShiftStateItem { ssShift, ssAlt, ssCtrl, ssLeft, ssRight, ssMiddle, ssDouble };
using TShiftState = System::Set<TShiftStateItem, ssShift, ssDouble>;
/// Key events: a handler that sets Key to 0 swallows the key.
using TKeyEvent = System::TClosure<void(System::TObject* Sender, WORD& Key, TShiftState Shift)>;
using TKeyPressEvent = System::TClosure<void(System::TObject* Sender, char& Key)>;
/// The mouse button of a mouse event.
enum TMouseButton { mbLeft, mbRight, mbMiddle };
/// Mouse events: X and Y in the control's client coordinates.
using TMouseEvent =
    System::TClosure<void(System::TObject* Sender, TMouseButton Button, TShiftState Shift, int X, int Y)>;
using TMouseMoveEvent = System::TClosure<void(System::TObject* Sender, TShiftState Shift, int X, int Y)>;

/// How a control takes the mouse: csCaptureMouse keeps the mouse from a press
/// to its release, csClickEvents makes a press and release inside a click
/// (and a double press a double click). Controls whose window reports clicks
/// itself (buttons, lists) leave csClickEvents out.
enum TControlStyleItem { csCaptureMouse, csClickEvents };
using TControlStyle = System::Set<TControlStyleItem, csCaptureMouse, csClickEvents>;

/// The system's message font, which the system's own dialogs use: every
/// control's window gets it.
VCL_API HFONT MessageFont();

/// Whether caption marks key as its mnemonic: '&' before that letter (in
/// either case; "&&" is a plain '&').
VCL_API bool IsAccel(unsigned key, const AnsiString& caption);

/// The keys held down now.
VCL_API TShiftState KeyboardShiftState();

/// What happens to an exception that a control's message handler lets out:
/// it must not unwind through the window system. The default shows its
/// message in a message box; the application puts its own in place.
using TWindowExceptionHandler = void (*)(std::exception_ptr error);
///@{
/// The handler in force (null: the message box), and its replacement.
VCL_API TWindowExceptionHandler GetWindowExceptionHandler();
VCL_API void SetWindowExceptionHandler(TWindowExceptionHandler handler);
///@}

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
  /// Scales position, size and an own font's height by m/d (a form designed
  /// at one screen density shown at another), and the child controls with it.
  void ScaleBy(int m, int d);
  /// Streaming's view of the parent.
  Classes::TComponent* GetParentComponent() const override;
  bool HasParent() const override { return true; }
  /// Sets the parent when value is a windowed control.
  void SetParentComponent(Classes::TComponent* value) override;

  bool GetVisible() const { return visible_; }
  void SetVisible(bool value);
  /// The control's text: a caption, or an edit's contents.
  virtual AnsiString GetText() const { return text_; }
  virtual void SetText(const AnsiString& value);
  /// Where the control keeps itself in its parent's client area: the parent
  /// stacks alTop controls from the top, then alBottom from the bottom, alLeft
  /// and alRight from the sides, each kind in creation order, and gives alClient
  /// the rest; it lays them out again when it is resized or one of them is
  /// shown, hidden, resized or re-aligned.
  TAlign GetAlign() const { return align_; }
  void SetAlign(TAlign value);
  void Show() { SetVisible(true); }
  void Hide() { SetVisible(false); }
  virtual bool GetEnabled() const { return enabled_; }
  virtual void SetEnabled(bool value);

  /// The background colour; setting it clears ParentColor. With ParentColor
  /// the control takes its parent's colour, now and whenever it changes.
  Graphics::TColor GetColor() const { return color_; }
  void SetColor(Graphics::TColor value);
  bool GetParentColor() const { return parentColor_; }
  void SetParentColor(bool value);
  /// The text font (a system control's window gets its handle); changing it
  /// clears ParentFont. With ParentFont the control follows its parent's.
  Graphics::TFont* GetFont() const { return font_.get(); }
  void SetFont(Graphics::TFont* value) { font_->Assign(value); }
  bool GetParentFont() const { return parentFont_; }
  void SetParentFont(bool value);
  ///@{
  /// Whether streaming writes the value: not while it is the parent's.
  /// Does the work of ScaleBy.
  virtual void ChangeScale(int m, int d);
  bool IsColorStored() const { return !parentColor_; }
  bool IsFontStored() const { return !parentFont_; }
  bool IsShowHintStored() const { return !parentShowHint_; }
  ///@}
  /// The font's handle; the framework's shared message font while the font
  /// is the default one.
  HFONT FontHandle() const;

  /// The help text shown for the control; ShowHint (or, with ParentShowHint,
  /// the parent's) says whether it is shown.
  AnsiString GetHint() const { return hint_; }
  void SetHint(const AnsiString& value) { hint_ = value; }
  bool GetShowHint() const;
  void SetShowHint(bool value);
  bool GetParentShowHint() const { return parentShowHint_; }
  void SetParentShowHint(bool value) { parentShowHint_ = value; }

  TControlStyle GetControlStyle() const { return controlStyle_; }
  void SetControlStyle(TControlStyle value) { controlStyle_ = value; }

  /// Mouse events. OnClick runs for a press and release inside the control
  /// (with csClickEvents), or when its window reports a click.
  System::TNotifyEvent GetOnClick() const { return onClick_; }
  void SetOnClick(System::TNotifyEvent value) { onClick_ = value; }
  System::TNotifyEvent GetOnDblClick() const { return onDblClick_; }
  void SetOnDblClick(System::TNotifyEvent value) { onDblClick_ = value; }
  TMouseEvent GetOnMouseDown() const { return onMouseDown_; }
  void SetOnMouseDown(TMouseEvent value) { onMouseDown_ = value; }
  TMouseEvent GetOnMouseUp() const { return onMouseUp_; }
  void SetOnMouseUp(TMouseEvent value) { onMouseUp_ = value; }
  TMouseMoveEvent GetOnMouseMove() const { return onMouseMove_; }
  void SetOnMouseMove(TMouseMoveEvent value) { onMouseMove_ = value; }
  virtual void Click() { onClick_(this); }
  virtual void DblClick() { onDblClick_(this); }

  /// Puts the control above (in front of) or below its siblings: their paint
  /// and window order and Controls[i]. Alignment keeps its own order.
  void BringToFront();
  void SendToBack();
  /// Converts between the control's client coordinates and the screen's.
  MyPoint ClientToScreen(const MyPoint& point) const;
  MyPoint ScreenToClient(const MyPoint& point) const;
  /// The screen position of the client area's top-left corner.
  virtual MyPoint GetClientOrigin() const;

  /// Asks for a repaint of the control's area.
  virtual void Invalidate();
  /// Paints what is invalid now.
  virtual void Update();
  /// Invalidate and Update.
  void Repaint() {
    Invalidate();
    Update();
  }
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
  /// Mouse hooks: they run the events.
  virtual void MouseDown(TMouseButton button, TShiftState shift, int x, int y);
  virtual void MouseUp(TMouseButton button, TShiftState shift, int x, int y);
  virtual void MouseMove(TShiftState shift, int x, int y);
  /// Keeps the mouse from a press to its release (see csCaptureMouse).
  virtual void SetMouseCapture(bool value);

 private:
  friend class TWinControl;
  void FontChanged(System::TObject* sender);
  void MouseMessage(TMessage& message);

  TWinControl* parent_ = nullptr;
  AnsiString text_;
  AnsiString hint_;
  TAlign align_ = alNone;
  int left_ = 0, top_ = 0, width_ = 0, height_ = 0;
  unsigned alignOrder_ = 0;  // when the control came into its parent
  bool visible_ = true;
  bool enabled_ = true;
  bool parentColor_ = true;
  bool parentFont_ = true;
  bool fontDefault_ = true;  // FontHandle may hand out the shared message font
  bool takingFont_ = false;  // the font changes on the control's behalf, not the user's
  bool showHint_ = false;
  bool parentShowHint_ = true;
  bool clicked_ = false;
  TControlStyle controlStyle_{csCaptureMouse, csClickEvents};
  Graphics::TColor color_ = Graphics::clBtnFace;
  std::unique_ptr<Graphics::TFont> font_;
  System::TNotifyEvent onClick_, onDblClick_;
  TMouseEvent onMouseDown_, onMouseUp_;
  TMouseMoveEvent onMouseMove_;
};

/// A control with a window of its own, which can hold other controls.
class VCL_API TWinControl : public TControl {
  VCL_CLASS();

 public:
  explicit TWinControl(Classes::TComponent* owner = nullptr);
  /// Destroys the child controls, then the window.
  ~TWinControl() override;
  void BeforeDestruction() override;
  /// A control deleted while its window procedure, or one of a control
  /// inside it, is running (a form freed from its button's OnClick) is
  /// hidden and destroyed once that procedure returns.
  bool DestroyLater() override;

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

  /// Scales the control, then its children.
  void ChangeScale(int m, int d) override;
  /// The child controls that root owns, in the order they came in.
  void GetChildren(Classes::TGetChildProc proc, Classes::TComponent* root) override;

  int GetControlCount() const { return static_cast<int>(controls_.size()); }
  /// Child control by index; outside 0..ControlCount-1 raises EListError
  /// "List index out of bounds (<index>)".
  TControl* GetControl(int index) const;
  /// Lays the aligned child controls out again (see TControl::SetAlign).
  void Realign();
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
  friend struct WindowProcAccess;
  void InsertControl(TControl* control);
  void RemoveControl(TControl* control);
  void DestroyChildren();
  void ReadBoundsFromWindow();
  TWinControl* TopLevel();
  bool HandleKey(TMessage& message);
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
  std::vector<TControl*> controls_;
  std::vector<TWinControl*> tabList_;  // windowed children in tab order
  WNDPROC defWndProc_ = nullptr;
  bool tabStop_ = false;
  bool swallowChar_ = false;
  TKeyEvent onKeyDown_;
  TKeyEvent onKeyUp_;
  TKeyPressEvent onKeyPress_;
  System::TNotifyEvent onEnter_;
  System::TNotifyEvent onExit_;
};

/// A control without a window of its own, painted by its parent on the
/// parent's window (see Paint).
class VCL_API TGraphicControl : public TControl {
  VCL_CLASS();

 public:
  explicit TGraphicControl(Classes::TComponent* owner);
  void SetText(const AnsiString& value) override;
  /// Paints the control on dc, whose origin is the control's top-left corner
  /// and whose clip is the control's area.
  virtual void Paint(HDC dc) = 0;
};

/// A windowed control that paints itself: Paint draws on Canvas, which holds
/// the window's paint context while Paint runs.
class VCL_API TCustomControl : public TWinControl {
  VCL_CLASS();

 public:
  explicit TCustomControl(Classes::TComponent* owner);
  ~TCustomControl() override;
  Graphics::TCanvas* GetCanvas() const { return canvas_.get(); }
  void WndProc(TMessage& message) override;

 protected:
  /// Draws the control; the default fills it with its Color.
  virtual void Paint();

 private:
  std::unique_ptr<Graphics::TCanvas> canvas_;
};

}  // namespace Controls
