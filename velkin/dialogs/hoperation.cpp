#include "velkin/dialogs/hoperation.h"

#include <string>

#include "platform/ostrel/strutil.h"
#include "platform/vcl/forms/application.h"
#include "velkin/controls/vcl_messages.h"
#include "velkin/dialogs/hoperation_form.h"

namespace {

// The window all operations share; null while there is none.
THLongOperationForm* sharedForm = nullptr;

void ReleaseForm() {
  if (!sharedForm) return;
  THLongOperationForm* form = sharedForm;
  if (form->GetUseCount() > 1) {
    form->AddUse(-1);
    return;
  }
  sharedForm = nullptr;
  delete form;
}

// A format read without arguments: "%%" is "%", any other conversion stays
// as written.
std::string Literal(const char* format) {
  std::string text;
  for (const char* c = format; *c; ++c) {
    text += *c;
    if (c[0] == '%' && c[1] == '%') ++c;
  }
  return text;
}

}  // namespace

HOperation::HOperation(Controls::TWinControl* owner, const char* text) : HOperation(owner) { ConstructText(text); }

HOperation::HOperation(Controls::TWinControl* owner, const System::AnsiString& text) : HOperation(owner) {
  ConstructText(text.c_str());
}

HOperation::HOperation(Controls::TWinControl* owner) {
  Init();
  owner_ = owner ? owner : Forms::Application->GetMainForm();
}

HOperation::~HOperation() { ReleaseForm(); }

THLongOperationForm* HOperation::SharedForm() { return sharedForm; }

void HOperation::Init() {
  showCount_ = 1;
  onIncShow_ = {};
  onSetText_ = {};
  onSetProgress_ = {};
  onSetAbort_ = {};
  onSetModal_ = {};
  onSetColor_ = {};
  onSetButtonCaption_ = {};
  onIsAborted_ = {};
  onIsShowed_ = {};
  if (sharedForm) sharedForm->AddUse();
}

THLongOperationForm* HOperation::Form() {
  if (!sharedForm) sharedForm = new THLongOperationForm(nullptr);
  showCount_ = 1;
  return sharedForm;
}

void HOperation::IncShow() {
  ++showCount_;
  onIncShow_();
}

void HOperation::SetText(const char* format, ...) {
  va_list args;
  va_start(args, format);
  SetTextV(format, args);
  va_end(args);
}

void HOperation::SetTextV(const char* format, va_list args) { ShowText(format, args, true); }

// The constructors' text goes the same way with an empty argument list.
void HOperation::ConstructText(const char* text, ...) {
  va_list none;
  va_start(none, text);
  ShowText(text, none, false);
  va_end(none);
}

void HOperation::ShowText(const char* format, va_list args, bool withArguments) {
  HSaveError keep;
  if (!format) {
    if (showCount_ > 0) --showCount_;
    if (sharedForm && showCount_ == 0) ReleaseForm();
  }
  if (onSetText_) {
    onSetText_(format, &args);
    return;
  }
  if (!format) return;
  THLongOperationForm* form = Form();
  form->txtText->SetText(withArguments ? MessageV(format, args).Text() : Literal(format).c_str());
  form->UpdateForm();
}

void HOperation::SetProgress(int value) {
  HSaveError keep;
  if (onSetProgress_)
    onSetProgress_(value);
  else
    Form()->SetProgress(value);
}

void HOperation::SetAbort(bool value) {
  HSaveError keep;
  if (onSetAbort_)
    onSetAbort_(value);
  else
    Form()->SetAbortVisible(value);
}

void HOperation::SetModal(bool value) {
  HSaveError keep;
  if (onSetModal_)
    onSetModal_(value);
  else
    Form()->SetModal(value);
}

void HOperation::SetColor(const Graphics::TColor& value) {
  HSaveError keep;
  if (onSetColor_)
    onSetColor_(value);
  else
    Form()->SetColor(value);
}

void HOperation::SetButtonCaption(const System::AnsiString& value) {
  HSaveError keep;
  if (onSetButtonCaption_)
    onSetButtonCaption_(value);
  else
    Form()->btnAbort->SetText(value);
}

bool HOperation::isAborted() {
  HSaveError keep;
  if (onIsAborted_) return onIsAborted_();
  THLongOperationForm* form = Form();
  const bool aborted = form->GetAborted();
  form->SetAborted(false);
  return aborted;
}

bool HOperation::isShowed() {
  THLongOperationForm* form = Form();
  return onIsShowed_ ? onIsShowed_() : form->GetVisible();
}
