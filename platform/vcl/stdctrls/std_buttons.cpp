#include "platform/vcl/stdctrls/std_buttons.h"

#include "platform/vcl/core/typinfo.h"
#include "platform/vcl/forms/forms.h"

namespace Stdctrls {

using Controls::TCreateParams;
using Controls::TMessage;

VCL_COMPONENT_IMPL(TButtonControl, Controls::TWinControl, VCL_PROPERTY(TabStop, true))
VCL_COMPONENT_IMPL(TButton, TButtonControl, VCL_PROPERTY_AS(Caption, Text), VCL_PROPERTY(Default, false),
                   VCL_PROPERTY(Cancel, false), VCL_PROPERTY(ModalResult, 0))
VCL_COMPONENT_IMPL(TCustomCheckBox, TButtonControl, VCL_PROPERTY_AS(Caption, Text), VCL_PROPERTY(AllowGrayed, false),
                   VCL_PROPERTY(State, cbUnchecked))
VCL_COMPONENT_IMPL(TCheckBox, TCustomCheckBox)
VCL_COMPONENT_IMPL(TRadioButton, TButtonControl, VCL_PROPERTY_AS(Caption, Text), VCL_PROPERTY(Checked, false))

// ---- TButtonControl ----

// The window reports its clicks (BN_CLICKED) and holds the mouse itself.
TButtonControl::TButtonControl(Classes::TComponent* owner) : TWinControl(owner) {
  SetTabStop(true);
  SetControlStyle({});
}

bool TButtonControl::GetChecked() { return false; }
void TButtonControl::SetChecked(bool) {}

void TButtonControl::WndProc(TMessage& message) {
  if (message.Msg == Controls::CM_DIALOGCHAR) {
    if (Controls::IsAccel(static_cast<unsigned>(message.WParam), GetText()) && CanFocus()) {
      SetFocus();
      SendMessageA(GetHandle(), BM_CLICK, 0, 0);
      message.Result = 1;
    }
    return;
  }
  TWinControl::WndProc(message);
}

void TButtonControl::Notified(TMessage& message) {
  if (message.Msg == Controls::CN_COMMAND && HIWORD(message.WParam) == BN_CLICKED) Click();
}

// ---- TButton ----

TButton::TButton(Classes::TComponent* owner) : TButtonControl(owner) { SetBounds(0, 0, 75, 25); }

void TButton::CreateParams(TCreateParams& params) {
  TButtonControl::CreateParams(params);
  params.SystemClass = "BUTTON";
  params.Style |= PushStyle();
}

UINT TButton::PushStyle() const { return default_ ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON; }

void TButton::SetDefault(bool value) {
  default_ = value;
  if (HandleAllocated()) SendMessageA(GetHandle(), BM_SETSTYLE, PushStyle(), TRUE);
}

void TButton::Click() {
  if (modalResult_ != Controls::mrNone)
    if (Forms::TCustomForm* form = Forms::GetParentForm(this)) form->SetModalResult(modalResult_);
  TButtonControl::Click();
}

void TButton::WndProc(TMessage& message) {
  if (message.Msg == Controls::CM_DIALOGKEY) {
    const auto key = static_cast<WORD>(message.WParam);
    if (((key == VK_RETURN && default_) || (key == VK_ESCAPE && cancel_)) && CanFocus()) {
      Click();
      message.Result = 1;
    }
    return;
  }
  TButtonControl::WndProc(message);  // mnemonics too
}

// ---- TCustomCheckBox ----

TCustomCheckBox::TCustomCheckBox(Classes::TComponent* owner) : TButtonControl(owner) { SetBounds(0, 0, 97, 17); }

void TCustomCheckBox::CreateParams(TCreateParams& params) {
  TButtonControl::CreateParams(params);
  params.SystemClass = "BUTTON";
  params.Style |= BS_3STATE;  // the control decides the next state, not the window
}

void TCustomCheckBox::CreateWnd() {
  TButtonControl::CreateWnd();
  if (HandleAllocated()) SendMessageA(GetHandle(), BM_SETCHECK, state_, 0);
}

TCheckBoxState TCustomCheckBox::GetState() {
  if (HandleAllocated()) state_ = static_cast<TCheckBoxState>(SendMessageA(GetHandle(), BM_GETCHECK, 0, 0));
  return state_;
}

void TCustomCheckBox::SetState(TCheckBoxState value) {
  if (value == cbGrayed && !allowGrayed_) value = cbUnchecked;
  if (value == GetState()) return;
  state_ = value;
  if (HandleAllocated()) SendMessageA(GetHandle(), BM_SETCHECK, state_, 0);
  Click();
}

void TCustomCheckBox::Notified(TMessage& message) {
  if (message.Msg == Controls::CN_COMMAND && HIWORD(message.WParam) == BN_CLICKED) {
    switch (GetState()) {
      case cbUnchecked:
        SetState(allowGrayed_ ? cbGrayed : cbChecked);
        break;
      case cbGrayed:
        SetState(cbChecked);
        break;
      case cbChecked:
        SetState(cbUnchecked);
        break;
    }
  }
}

// ---- TRadioButton ----

TRadioButton::TRadioButton(Classes::TComponent* owner) : TButtonControl(owner) { SetBounds(0, 0, 113, 17); }

void TRadioButton::CreateParams(TCreateParams& params) {
  TButtonControl::CreateParams(params);
  params.SystemClass = "BUTTON";
  params.Style |= BS_RADIOBUTTON;
}

void TRadioButton::CreateWnd() {
  TButtonControl::CreateWnd();
  if (HandleAllocated()) SendMessageA(GetHandle(), BM_SETCHECK, checked_ ? BST_CHECKED : BST_UNCHECKED, 0);
}

void TRadioButton::SetChecked(bool value) {
  if (value == checked_) return;
  checked_ = value;
  if (HandleAllocated()) SendMessageA(GetHandle(), BM_SETCHECK, value ? BST_CHECKED : BST_UNCHECKED, 0);
  if (!value) return;
  if (Controls::TWinControl* parent = GetParent())
    for (int i = 0; i < parent->GetControlCount(); ++i)
      if (auto* sibling = dynamic_cast<TRadioButton*>(parent->GetControl(i)); sibling && sibling != this)
        sibling->SetChecked(false);
  Click();
}

void TRadioButton::Notified(TMessage& message) {
  if (message.Msg == Controls::CN_COMMAND && HIWORD(message.WParam) == BN_CLICKED) SetChecked(true);
}

}  // namespace Stdctrls
