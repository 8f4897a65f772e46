#pragma once
/// \file
/// Unit Forms: top-level windows that hold controls, shown modeless or modal.
#include "platform/vcl/controls/controls.h"
#include "platform/vcl/controls/modal_result.h"
#include "platform/vcl/core/typinfo.h"
#include "platform/vcl/forms/menus.h"

namespace Forms {

using Controls::TModalResult;
using System::AnsiString;

/// The frame of a form.
enum TFormBorderStyle { bsNone, bsSingle, bsSizeable, bsDialog, bsToolWindow, bsSizeToolWin };
VCL_ENUM_INFO(TFormBorderStyle, bsNone, bsSingle, bsSizeable, bsDialog, bsToolWindow, bsSizeToolWin)
/// The buttons of a form's caption bar.
enum TBorderIcon { biSystemMenu, biMinimize, biMaximize, biHelp };
VCL_ENUM_INFO(TBorderIcon, biSystemMenu, biMinimize, biMaximize, biHelp)
using TBorderIcons = System::Set<TBorderIcon, biSystemMenu, biHelp>;
/// Where a form appears when first shown.
enum TPosition { poDesigned, poScreenCenter, poMainFormCenter, poOwnerFormCenter };
VCL_ENUM_INFO(TPosition, poDesigned, poScreenCenter, poMainFormCenter, poOwnerFormCenter)
/// What closing a form does: nothing, hide it, free it or minimise it.
enum TCloseAction { caNone, caHide, caFree, caMinimize };
/// OnClose: may change what closing does.
using TCloseEvent = System::TClosure<void(System::TObject* Sender, TCloseAction& Action)>;
/// OnCloseQuery: may refuse the close.
using TCloseQueryEvent = System::TClosure<void(System::TObject* Sender, bool& CanClose)>;

/// A form. Made hidden; Show shows it, ShowModal runs it modal until a
/// ModalResult is set (by a button, by closing, or by code). Closing it asks
/// OnCloseQuery, then OnClose decides between hiding (the default), freeing
/// (later, once its messages are done: see Release), minimising or nothing.
class VCL_API TCustomForm : public Controls::TWinControl {
  VCL_CLASS();

 public:
  explicit TCustomForm(Classes::TComponent* owner);
  ~TCustomForm() override;
  void BeforeDestruction() override;

  void Show();
  void Hide();
  void Close();
  /// Frees the form once the messages already queued for it are handled, so
  /// that a handler of the form can free it.
  void Release();
  /// Disables the application's other windows, shows the form and runs the
  /// message loop until ModalResult is set; then hides the form, enables the
  /// windows again, gives the focus back and returns the result. Raises
  /// EInvalidOperation for a form already visible.
  TModalResult ShowModal();
  TModalResult GetModalResult() const { return modalResult_; }
  void SetModalResult(TModalResult value) { modalResult_ = value; }
  bool IsModal() const { return modal_; }

  AnsiString GetCaption() const { return GetText(); }
  void SetCaption(const AnsiString& value) { SetText(value); }
  TFormBorderStyle GetBorderStyle() const { return borderStyle_; }
  void SetBorderStyle(TFormBorderStyle value);
  TBorderIcons GetBorderIcons() const { return borderIcons_; }
  void SetBorderIcons(TBorderIcons value);
  TPosition GetPosition() const { return position_; }
  void SetPosition(TPosition value) { position_ = value; }
  /// Without a window yet, the client area the window's frame will leave.
  MyRect GetClientRect() const override;
  void SetClientWidth(int value);
  void SetClientHeight(int value);
  /// The screen density the form's positions, sizes and fonts are meant for:
  /// the screen's, or what a design read from a stream says it was made at.
  int GetPixelsPerInch() const { return pixelsPerInch_; }
  void SetPixelsPerInch(int value) { pixelsPerInch_ = value > 0 ? value : pixelsPerInch_; }
  /// Whether a design made at another density is scaled to the screen's when
  /// it is read.
  bool GetScaled() const { return scaled_; }
  void SetScaled(bool value) { scaled_ = value; }
  /// Scales the client area, the font and the controls; the form keeps its place.
  void ChangeScale(int m, int d) override;
  /// The components the form owns that sit in nothing (menus), then its
  /// child controls.
  void GetChildren(Classes::TGetChildProc proc, Classes::TComponent* root) override;
  /// The form's key events run before its controls' own.
  bool GetKeyPreview() const { return keyPreview_; }
  void SetKeyPreview(bool value) { keyPreview_ = value; }
  /// The menu bar: the form's window shows it and runs its items' OnClick
  /// (WM_COMMAND, shortcuts). Null for none.
  Menus::TMainMenu* GetMenu() const { return menu_; }
  void SetMenu(Menus::TMainMenu* value);
  /// Runs the menu item whose shortcut the key is; the application's message
  /// loop asks before the focused control gets the key.
  virtual bool IsShortCut(WORD key, Controls::TShiftState shift);
  /// The control focused when the form is shown (else its first tab stop).
  Controls::TWinControl* GetActiveControl() const { return activeControl_; }
  void SetActiveControl(Controls::TWinControl* value);

  System::TNotifyEvent GetOnCreate() const { return onCreate_; }
  void SetOnCreate(System::TNotifyEvent value) { onCreate_ = value; }
  System::TNotifyEvent GetOnDestroy() const { return onDestroy_; }
  void SetOnDestroy(System::TNotifyEvent value) { onDestroy_ = value; }
  System::TNotifyEvent GetOnShow() const { return onShow_; }
  void SetOnShow(System::TNotifyEvent value) { onShow_ = value; }
  System::TNotifyEvent GetOnHide() const { return onHide_; }
  void SetOnHide(System::TNotifyEvent value) { onHide_ = value; }
  System::TNotifyEvent GetOnActivate() const { return onActivate_; }
  void SetOnActivate(System::TNotifyEvent value) { onActivate_ = value; }
  System::TNotifyEvent GetOnDeactivate() const { return onDeactivate_; }
  void SetOnDeactivate(System::TNotifyEvent value) { onDeactivate_ = value; }
  /// Draws on the form's client area (on Canvas) before its windowless
  /// controls are painted.
  System::TNotifyEvent GetOnPaint() const { return onPaint_; }
  void SetOnPaint(System::TNotifyEvent value) { onPaint_ = value; }
  /// The form's canvas: it holds the paint context while OnPaint runs.
  Graphics::TCanvas* GetCanvas() const { return canvas_.get(); }
  System::TNotifyEvent GetOnResize() const { return onResize_; }
  void SetOnResize(System::TNotifyEvent value) { onResize_ = value; }
  TCloseEvent GetOnClose() const { return onClose_; }
  void SetOnClose(TCloseEvent value) { onClose_ = value; }
  TCloseQueryEvent GetOnCloseQuery() const { return onCloseQuery_; }
  void SetOnCloseQuery(TCloseQueryEvent value) { onCloseQuery_ = value; }

  /// Runs OnCreate, once in a form's life: a form with a design when its
  /// design is read, the application's CreateForm once it made the form.
  void DoCreate();
  /// Asks OnCloseQuery whether the form may close.
  virtual bool CloseQuery();

  void WndProc(Controls::TMessage& message) override;

 protected:
  void CreateParams(Controls::TCreateParams& params) override;
  void CreateWnd() override;
  void DestroyWnd() override;
  void Notification(Classes::TComponent* component, Classes::TOperation operation) override;
  /// Scales a design made at another density (see Scaled).
  void Loaded() override;
  /// For the constructor of a form class with a design: reads the design
  /// from the resource named after the class, in the module that holds the
  /// class, making the controls and binding fields and events, then runs
  /// OnCreate. Raises
  /// EResNotFound "Resource <class> not found" when there is none.
  void ReadDesign();
  bool WantsKeyPreview() const override { return keyPreview_; }
  void Resize() override { onResize_(this); }
  void VisibleChanged() override;

 private:
  /// The window's frame (caption, borders, menu bar) around the client area.
  MyPoint FrameSize() const;
  void PlaceOnScreen();
  void CloseModal();
  void FocusFirst();
  void DetachMenu();
  void Paint() { onPaint_(this); }

  TModalResult modalResult_ = Controls::mrNone;
  bool modal_ = false;
  bool created_ = false;
  bool placed_ = false;
  bool keyPreview_ = false;
  bool scaled_ = true;
  int loadedClientWidth_ = -1, loadedClientHeight_ = -1;
  int pixelsPerInch_;
  TFormBorderStyle borderStyle_ = bsSizeable;
  TBorderIcons borderIcons_{biSystemMenu, biMinimize, biMaximize};
  TPosition position_ = poDesigned;
  Controls::TWinControl* activeControl_ = nullptr;
  Menus::TMainMenu* menu_ = nullptr;
  System::TNotifyEvent onCreate_, onDestroy_, onShow_, onHide_, onActivate_, onDeactivate_, onResize_, onPaint_;
  std::unique_ptr<Graphics::TCanvas> canvas_;
  TCloseEvent onClose_;
  TCloseQueryEvent onCloseQuery_;
};

/// The form class to derive from.
class VCL_API TForm : public TCustomForm {
  VCL_CLASS();

 public:
  using TCustomForm::TCustomForm;
};

/// The form a control lives in, or null.
VCL_API TCustomForm* GetParentForm(Controls::TControl* control);

/// An operation that is not allowed in the object's state.
class VCL_API EInvalidOperation : public Sysutils::Exception {
  VCL_CLASS();

 public:
  using Exception::Exception;
};

}  // namespace Forms
