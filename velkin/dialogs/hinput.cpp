#include "velkin/dialogs/hinput.h"

#include <memory>

#include "velkin/dialogs/dialog_texts.h"

VCL_COMPONENT_IMPL(THInputForm, Forms::TForm, VCL_FIELD(Bevel1), VCL_FIELD(txtName), VCL_FIELD(txtText),
                   VCL_FIELD(Button2), VCL_FIELD(Button1))

THInputForm::THInputForm(Classes::TComponent* owner) : TForm(owner) {
  ReadDesign();
  Button2->SetText(LibraryText(dtOk));
  Button1->SetText(LibraryText(dtClose));
}

bool HInputDialog(Forms::TForm* owner, const System::AnsiString& caption, const System::AnsiString& prompt,
                  System::AnsiString& value) {
  const std::unique_ptr<THInputForm> form = std::make_unique<THInputForm>(owner);
  form->SetCaption(caption);
  form->txtName->SetText(prompt);
  form->txtText->SetText(value);
  if (form->ShowModal() != Controls::mrOk) return false;
  value = form->txtText->GetText();
  return true;
}

bool HIputDialog(Forms::TForm* owner, const System::AnsiString& caption, const System::AnsiString& prompt,
                 System::AnsiString& value) {
  return HInputDialog(owner, caption, prompt, value);
}
