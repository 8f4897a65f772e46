#pragma once
// The contact list: names added, deleted after a question that can be
// silenced, and exported to a file on a worker thread while the progress
// window shows and the form's controls wait, disabled.
#include <memory>
#include <string>

#include "platform/vcl/forms/forms.h"
#include "platform/vcl/stdctrls/std_buttons.h"
#include "platform/vcl/stdctrls/std_edits.h"
#include "platform/vcl/stdctrls/std_label.h"
#include "platform/vcl/stdctrls/std_lists.h"
#include "velkin/controls/vcl_control_status.h"
#include "velkin/dialogs/hoperation.h"

class TExportJob;

class TContactsForm : public Forms::TForm {
  VCL_CLASS();

 public:
  explicit TContactsForm(Classes::TComponent* owner);
  ~TContactsForm() override;

  // The file an export writes (contacts.txt in the current folder at first).
  void SetExportPath(const std::string& value) { exportPath_ = value; }

  // Bound to the objects of contacts.form when the design is read.
  Stdctrls::TLabel* NameLabel = nullptr;
  Stdctrls::TEdit* NameEdit = nullptr;
  Stdctrls::TButton* AddButton = nullptr;
  Stdctrls::TListBox* ContactList = nullptr;
  Stdctrls::TButton* DeleteButton = nullptr;
  Stdctrls::TButton* ExportButton = nullptr;
  Stdctrls::TButton* CloseButton = nullptr;
  Stdctrls::TLabel* StatusLabel = nullptr;

  // The handlers the form text names.
  void AddButtonClick(System::TObject* sender);
  void DeleteButtonClick(System::TObject* sender);
  void ExportButtonClick(System::TObject* sender);
  void CloseButtonClick(System::TObject* sender);
  void FormCloseQuery(System::TObject* sender, bool& canClose);

 private:
  void ExportDone(System::TObject* sender);
  void ShowCount();

  std::string exportPath_ = "contacts.txt";
  bool askBeforeDelete_ = true;  // false once "Don't ask me again" was ticked with Yes
  HControlStatus controls_;      // the controls' state while an export runs
  std::unique_ptr<HOperation> progress_;
  TExportJob* job_ = nullptr;
};
