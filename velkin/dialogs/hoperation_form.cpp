#include "velkin/dialogs/hoperation_form.h"

#include <windows.h>

#include "platform/vcl/forms/application.h"
#include "velkin/dialogs/dialog_texts.h"

VCL_COMPONENT_IMPL(THLongOperationForm, Forms::TForm, VCL_FIELD(txtText), VCL_FIELD(pbProgress), VCL_FIELD(btnAbort),
                   VCL_METHOD(FormCreate, System::TNotifyEvent), VCL_METHOD(FormHide, System::TNotifyEvent),
                   VCL_METHOD(btnAbortClick, System::TNotifyEvent))

THLongOperationForm::THLongOperationForm(Classes::TComponent* owner) : TForm(owner) {
  if (Forms::TCustomForm* form = OwnerForm()) ownerEnabled_ = form->GetEnabled();
  ReadDesign();
  SetCaption(LibraryText(dtOperation));
  btnAbort->SetText(LibraryText(dtAbort));
  txtText->SetText("");
}

Forms::TCustomForm* THLongOperationForm::OwnerForm() const { return dynamic_cast<Forms::TCustomForm*>(GetOwner()); }

void THLongOperationForm::FormCreate(System::TObject*) {
  // A window of its own, not kept above (or hidden with) any other.
  SetWindowLongPtrA(GetHandle(), GWLP_HWNDPARENT, 0);
}

void THLongOperationForm::FormHide(System::TObject*) {
  if (GetCapture() == GetHandle()) ReleaseCapture();
  if (Forms::TCustomForm* form = OwnerForm()) form->SetEnabled(ownerEnabled_);
}

void THLongOperationForm::btnAbortClick(System::TObject*) { aborted_ = true; }

void THLongOperationForm::SetAborted(bool value) {
  if (aborted_ == value) return;
  aborted_ = value;
  UpdateForm();
}

void THLongOperationForm::SetModal(bool value) {
  if (modal_ == value) return;
  modal_ = value;
  UpdateForm();
}

void THLongOperationForm::SetProgress(int value) {
  if (progress_ == value) return;
  progress_ = value;
  UpdateForm();
}

void THLongOperationForm::SetAbortVisible(bool value) {
  abortVisible_ = value;
  aborted_ = false;
  UpdateForm();
}

bool THLongOperationForm::HoldsMouse(HWND window) const {
  const Controls::TControl* control = Controls::TWinControl::FindControl(window);
  while (control && control != this) control = control->GetParent();
  return control != nullptr;
}

void THLongOperationForm::UpdateForm() {
  const bool empty = txtText->GetText().IsEmpty();
  Forms::TCustomForm* owner = OwnerForm();
  if (owner && modal_) owner->SetEnabled(false);
  if (empty) {
    SetProgress(0);
    if (!GetVisible()) return;
  }

  int y = 2;
  const auto stack = [&y](Controls::TControl* control, bool shown) {
    if (shown) {
      control->SetTop(y);
      y += control->GetHeight() + 2;
    }
    control->SetVisible(shown);
  };
  stack(txtText, !empty);
  if (progress_ != 0) pbProgress->SetPosition(progress_);
  stack(pbProgress, progress_ != 0);
  stack(btnAbort, abortVisible_);
  SetClientHeight(y + 2);

  if (!GetVisible() && !empty) Show();
  if (GetVisible() && empty) {
    Hide();
    if (GetCapture() == GetHandle()) ReleaseCapture();
  }
  if (GetVisible()) {
    BringToFront();
    const HWND capture = GetCapture();
    if (capture != GetHandle() && !HoldsMouse(capture)) SetCapture(GetHandle());
  }
  Forms::Application->ProcessMessages();
}

void THLongOperationForm::WndProc(Controls::TMessage& message) {
  // While the window holds the mouse, a press on the abort button is handed
  // to the button, which then holds the mouse until it is released.
  if (message.Msg == WM_LBUTTONDOWN && GetCapture() == GetHandle() && btnAbort && btnAbort->GetVisible() &&
      btnAbort->GetEnabled()) {
    POINT at{static_cast<short>(LOWORD(message.LParam)), static_cast<short>(HIWORD(message.LParam))};
    if (ChildWindowFromPoint(GetHandle(), at) == btnAbort->GetHandle()) {
      MapWindowPoints(GetHandle(), btnAbort->GetHandle(), &at, 1);
      ReleaseCapture();
      SendMessageA(btnAbort->GetHandle(), WM_LBUTTONDOWN, message.WParam, MAKELPARAM(at.x, at.y));
      return;
    }
  }
  TForm::WndProc(message);
}
