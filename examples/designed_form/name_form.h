#pragma once
// The dialog of name_form.form: its controls are made and these fields bound
// to them when the form reads its design.
#include "platform/vcl/forms/forms.h"
#include "platform/vcl/stdctrls/std_buttons.h"
#include "platform/vcl/stdctrls/std_edits.h"
#include "platform/vcl/stdctrls/std_label.h"

class TNameForm : public Forms::TForm {
  VCL_CLASS();

 public:
  explicit TNameForm(Classes::TComponent* owner);

  // The fields have the names of the form text's objects.
  Stdctrls::TLabel* PromptLabel = nullptr;
  Stdctrls::TEdit* NameEdit = nullptr;
  Stdctrls::TButton* OkButton = nullptr;
  Stdctrls::TButton* CancelButton = nullptr;
};
