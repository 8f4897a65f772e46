#pragma once
/// \file
/// TControl: the base of every visual control, with or without a window.
#include <windows.h>

#include <exception>
#include <memory>
#include <string>

#include "platform/ostrel/mygeom.h"
#include "platform/vcl/controls/messages.h"
#include "platform/vcl/controls/size_constraints.h"
#include "platform/vcl/core/component.h"
#include "platform/vcl/core/set.h"
#include "platform/vcl/core/typinfo.h"
#include "platform/vcl/core/vcl_api.h"
#include "platform/vcl/graphics/brush.h"
#include "platform/vcl/graphics/canvas.h"
#include "platform/vcl/graphics/font.h"

namespace Controls {

using System::AnsiString;

/// Where a control keeps itself in its parent: at an edge, filling it, or free.
enum TAlign : unsigned char { alNone, alTop, alBottom, alLeft, alRight, alClient, alCustom };
VCL_ENUM_INFO(TAlign, alNone, alTop, alBottom, alLeft, alRight, alClient, alCustom)
using TAlignSet = System::Set<TAlign, alNone, alCustom>;

/// The edges of its parent's client area a control keeps its distance to
/// while the parent changes size.
enum TAnchorKind : unsigned char { akLeft, akTop, akRight, akBottom };
VCL_ENUM_INFO(TAnchorKind, akLeft, akTop, akRight, akBottom)
using TAnchors = System::Set<TAnchorKind, akLeft, akBottom>;

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

/// Whether caption marks key, a character as its code point (CM_DIALOGCHAR's
/// WParam), as its mnemonic: '&' before that letter (in either case; "&&" is
/// a plain '&'). The letter is read whole, also where it takes several bytes.
VCL_API bool IsAccel(unsigned key, const AnsiString& caption);

/// A code point as UTF-16: one unit, or two beyond the basic plane; empty
/// beyond Unicode.
VCL_API std::wstring CodePointText(unsigned code);

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
  /// Moves and sizes in one step; a negative width or height counts as 0,
  /// and the size is kept inside Constraints.
  virtual void SetBounds(int left, int top, int width, int height);

  /// The parent's edges the control keeps its distance to as the parent
  /// changes size (an aligned control follows its Align instead): left and
  /// right anchors stretch it, right alone moves it, neither keeps its centre
  /// in proportion; the same for top and bottom. Left and top by default.
  TAnchors GetAnchors() const { return anchors_; }
  void SetAnchors(TAnchors value);
  /// The smallest and largest size the control takes.
  TSizeConstraints* GetConstraints() const { return const_cast<TSizeConstraints*>(&constraints_); }

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
  /// and alRight from the sides, each kind in the order the controls came in,
  /// and gives alClient the rest; it lays them out again when it is resized or
  /// one of them is shown, hidden, resized or re-aligned (see
  /// TWinControl::DisableAlign to do it once for many changes).
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
  /// This control as a windowed one, or null: asked on every move and
  /// insertion, where a dynamic_cast costs more than the work.
  virtual TWinControl* AsWinControl() { return nullptr; }
  /// Mouse hooks: they run the events.
  virtual void MouseDown(TMouseButton button, TShiftState shift, int x, int y);
  virtual void MouseUp(TMouseButton button, TShiftState shift, int x, int y);
  virtual void MouseMove(TShiftState shift, int x, int y);
  /// Keeps the mouse from a press to its release (see csCaptureMouse).
  virtual void SetMouseCapture(bool value);

 private:
  friend class TWinControl;
  friend class TChildLayout;
  void FontChanged(System::TObject* sender);
  void ConstraintsChanged(System::TObject* sender);
  void MouseMessage(TMessage& message);

  TWinControl* parent_ = nullptr;
  AnsiString text_;
  AnsiString hint_;
  TAlign align_ = alNone;
  int left_ = 0, top_ = 0, width_ = 0, height_ = 0;
  unsigned alignOrder_ = 0;  // when the control came into its parent
  TAnchors anchors_{akLeft, akTop};
  // Where the control was, and the size of its parent's client area, when
  // its anchors last took their measure: later sizes place it from there.
  MyRect anchorBounds_{};
  MyPoint anchorParentSize_{};
  bool anchorMeasured_ = false;
  TSizeConstraints constraints_;
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

}  // namespace Controls
