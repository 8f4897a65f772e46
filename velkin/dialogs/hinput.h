#pragma once
/// \file
/// Unit Hinput: asking the user for one line of text.
#include "platform/vcl/forms/forms.h"
#include "platform/vcl/stdctrls/ext_bevel.h"
#include "platform/vcl/stdctrls/std_buttons.h"
#include "platform/vcl/stdctrls/std_edits.h"
#include "platform/vcl/stdctrls/std_label.h"
#include "velkin/velkin_api.h"

/// The input dialog: a prompt above an edit, OK and Close, from its designed form.
class VELKIN_API THInputForm : public Forms::TForm {
  VCL_CLASS();

 public:
  explicit THInputForm(Classes::TComponent* owner);

  Extctrls::TBevel* Bevel1 = nullptr;
  Stdctrls::TLabel* txtName = nullptr;
  Stdctrls::TEdit* txtText = nullptr;
  Stdctrls::TButton* Button2 = nullptr;
  Stdctrls::TButton* Button1 = nullptr;
};

/// Asks for one line of text in a modal dialog owned by owner (may be null),
/// with caption as its title and prompt above the edit, which starts with
/// value. True, with value set to what was typed, when the user confirms;
/// false, with value as it was, otherwise.
VELKIN_API bool HInputDialog(Forms::TForm* owner, const System::AnsiString& caption, const System::AnsiString& prompt,
                             System::AnsiString& value);

/// The input dialog under the name it first shipped with, misspelt: the same
/// function as HInputDialog, kept for the programs that call it so.
VELKIN_API bool HIputDialog(Forms::TForm* owner, const System::AnsiString& caption, const System::AnsiString& prompt,
                            System::AnsiString& value);
