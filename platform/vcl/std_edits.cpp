#include "platform/vcl/std_edits.h"

namespace Stdctrls {

using Controls::TCreateParams;
using Controls::TMessage;

VCL_COMPONENT_IMPL(TCustomEdit, Controls::TWinControl)
VCL_COMPONENT_IMPL(TEdit, TCustomEdit)

TCustomEdit::TCustomEdit(Classes::TComponent* owner) : TWinControl(owner) {
  SetTabStop(true);
  SetBounds(0, 0, 121, 21);
}

void TCustomEdit::CreateParams(TCreateParams& params) {
  TWinControl::CreateParams(params);
  params.SystemClass = "EDIT";
  params.Style |= ES_AUTOHSCROLL | (readOnly_ ? ES_READONLY : 0);
  params.ExStyle |= WS_EX_CLIENTEDGE;
}

void TCustomEdit::CreateWnd() {
  TWinControl::CreateWnd();
  if (!HandleAllocated()) return;
  HWND h = GetHandle();
  SendMessageA(h, EM_LIMITTEXT, maxLength_, 0);
  if (passwordChar_) SendMessageA(h, EM_SETPASSWORDCHAR, static_cast<unsigned char>(passwordChar_), 0);
  SendMessageA(h, EM_SETSEL, selStart_, selStart_ + selLength_);
}

void TCustomEdit::SetMaxLength(int value) {
  maxLength_ = value < 0 ? 0 : value;
  if (HandleAllocated()) SendMessageA(GetHandle(), EM_LIMITTEXT, maxLength_, 0);
}

void TCustomEdit::SetReadOnly(bool value) {
  readOnly_ = value;
  if (HandleAllocated()) SendMessageA(GetHandle(), EM_SETREADONLY, value, 0);
}

void TCustomEdit::SetPasswordChar(char value) {
  passwordChar_ = value;
  if (!HandleAllocated()) return;
  SendMessageA(GetHandle(), EM_SETPASSWORDCHAR, static_cast<unsigned char>(value), 0);
  Invalidate();
}

bool TCustomEdit::GetModified() { return HandleAllocated() && SendMessageA(GetHandle(), EM_GETMODIFY, 0, 0); }

void TCustomEdit::SetModified(bool value) {
  if (HandleAllocated()) SendMessageA(GetHandle(), EM_SETMODIFY, value, 0);
}

int TCustomEdit::GetSelStart() {
  if (HandleAllocated()) {
    DWORD start = 0, end = 0;
    SendMessageA(GetHandle(), EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
    selStart_ = static_cast<int>(start);
    selLength_ = static_cast<int>(end - start);
  }
  return selStart_;
}

void TCustomEdit::SetSelStart(int value) {
  selStart_ = value;
  selLength_ = 0;
  if (HandleAllocated()) SendMessageA(GetHandle(), EM_SETSEL, value, value);
}

int TCustomEdit::GetSelLength() {
  GetSelStart();
  return selLength_;
}

void TCustomEdit::SetSelLength(int value) {
  const int start = GetSelStart();
  selLength_ = value;
  if (HandleAllocated()) SendMessageA(GetHandle(), EM_SETSEL, start, start + value);
}

AnsiString TCustomEdit::GetSelText() {
  const int start = GetSelStart();
  return GetText().SubString(start + 1, selLength_);
}

void TCustomEdit::SetSelText(const AnsiString& value) {
  if (HandleAllocated()) SendMessageA(GetHandle(), EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(value.c_str()));
}

void TCustomEdit::SelectAll() {
  if (HandleAllocated()) SendMessageA(GetHandle(), EM_SETSEL, 0, -1);
}

void TCustomEdit::Notified(TMessage& message) {
  if (message.Msg == Controls::CN_COMMAND && HIWORD(message.WParam) == EN_CHANGE) onChange_(this);
}

}  // namespace Stdctrls
