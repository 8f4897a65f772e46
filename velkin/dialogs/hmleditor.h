#pragma once
/// \file
/// Unit Hmleditor: editing a text of many lines in a modal dialog.
#include "platform/vcl/forms/forms.h"
#include "platform/vcl/stdctrls/buttons.h"
#include "platform/vcl/stdctrls/ext_bevel.h"
#include "platform/vcl/stdctrls/std_edits.h"
#include "platform/vcl/stdctrls/std_label.h"
#include "velkin/velkin_api.h"

/// The text editor: a memo under a counter of its characters and lines, OK
/// and Close, from its designed form. Ctrl+Enter confirms and Escape closes
/// from anywhere in it; Enter is a line break in the memo.
class VELKIN_API THMultilineEditorForm : public Forms::TForm {
  VCL_CLASS();

 public:
  explicit THMultilineEditorForm(Classes::TComponent* owner);

  Extctrls::TBevel* Bevel1 = nullptr;
  Stdctrls::TLabel* txtLines = nullptr;
  Stdctrls::TMemo* Memo = nullptr;
  Buttons::TBitBtn* NvOS8PushButton1 = nullptr;
  Buttons::TBitBtn* NvOS8PushButton2 = nullptr;

  /// Shows the memo's length in characters (line breaks included; in UTF-16
  /// units, as the edit control counts them) and lines.
  void MemoChange(System::TObject* sender);
  void FormKeyDown(System::TObject* sender, WORD& key, Controls::TShiftState shift);

 private:
  System::AnsiString characters_, lines_;  // the counter's words
};

///@{
/// Edits a text in a modal editor titled caption (the designed title when
/// null or empty), of at most maxLength characters (-1, or any negative
/// value, for no limit). The text is split into lines at LF, CR or CR LF and
/// comes back, when the user confirms, with its lines joined by LF; the list
/// form takes and gives back lines. True when the user confirmed; the text or
/// the list is left alone otherwise (and a null list is never shown).
VELKIN_API bool HTextEditor(System::AnsiString& text, const char* caption, int maxLength);
VELKIN_API bool HTextEditor(Classes::TStrings* lines, const char* caption, int maxLength);
///@}
