#pragma once
/// \file
/// Unit StdCtrls, buttons: push buttons, check boxes and radio buttons over
/// the system's BUTTON windows.
#include "platform/vcl/controls/controls.h"
#include "platform/vcl/controls/modal_result.h"
#include "platform/vcl/core/typinfo.h"

namespace Stdctrls {

using Controls::TModalResult;

/// A control that can be checked; the library tests such controls through
/// this class.
class VCL_API TButtonControl : public Controls::TWinControl {
  VCL_CLASS();

 public:
  explicit TButtonControl(Classes::TComponent* owner);
  virtual bool GetChecked();
  virtual void SetChecked(bool value);
  /// Alt and the caption's '&' letter: focus and click, as a mouse click would.
  void WndProc(Controls::TMessage& message) override;

 protected:
  void Notified(Controls::TMessage& message) override;
};

/// A push button. A Default button is pressed by Enter and a Cancel button by
/// Escape anywhere in its form (unless the focused control wants the key); a
/// click with a ModalResult ends its modal form with it.
class VCL_API TButton : public TButtonControl {
  VCL_CLASS();

 public:
  explicit TButton(Classes::TComponent* owner);
  bool GetDefault() const { return default_; }
  void SetDefault(bool value);
  bool GetCancel() const { return cancel_; }
  void SetCancel(bool value) { cancel_ = value; }
  TModalResult GetModalResult() const { return modalResult_; }
  void SetModalResult(TModalResult value) { modalResult_ = value; }
  void Click() override;

  void WndProc(Controls::TMessage& message) override;

 protected:
  void CreateParams(Controls::TCreateParams& params) override;
  /// The window's button style: a default or a plain push button.
  virtual UINT PushStyle() const;

 private:
  bool default_ = false;
  bool cancel_ = false;
  TModalResult modalResult_ = Controls::mrNone;
};

/// A check box: checked, unchecked, or (with AllowGrayed) grayed.
enum TCheckBoxState { cbUnchecked, cbChecked, cbGrayed };
VCL_ENUM_INFO(TCheckBoxState, cbUnchecked, cbChecked, cbGrayed)

/// A check box.
class VCL_API TCustomCheckBox : public TButtonControl {
  VCL_CLASS();

 public:
  explicit TCustomCheckBox(Classes::TComponent* owner);
  bool GetChecked() override { return GetState() == cbChecked; }
  void SetChecked(bool value) override { SetState(value ? cbChecked : cbUnchecked); }
  TCheckBoxState GetState();
  /// cbGrayed is taken only with AllowGrayed.
  void SetState(TCheckBoxState value);
  bool GetAllowGrayed() const { return allowGrayed_; }
  void SetAllowGrayed(bool value) { allowGrayed_ = value; }

 protected:
  void CreateParams(Controls::TCreateParams& params) override;
  void CreateWnd() override;
  void Notified(Controls::TMessage& message) override;

 private:
  TCheckBoxState state_ = cbUnchecked;
  bool allowGrayed_ = false;
};

/// The check box to make instances of.
class VCL_API TCheckBox : public TCustomCheckBox {
  VCL_CLASS();

 public:
  using TCustomCheckBox::TCustomCheckBox;
};

/// A radio button: checking it un-checks the radio buttons beside it (same
/// parent).
class VCL_API TRadioButton : public TButtonControl {
  VCL_CLASS();

 public:
  explicit TRadioButton(Classes::TComponent* owner);
  bool GetChecked() override { return checked_; }
  void SetChecked(bool value) override;

 protected:
  void CreateParams(Controls::TCreateParams& params) override;
  void CreateWnd() override;
  void Notified(Controls::TMessage& message) override;

 private:
  bool checked_ = false;
};

}  // namespace Stdctrls
