#include "contacts_form.h"

#include <string>
#include <vector>

#include "export_job.h"
#include "velkin/dialogs/hoperation_form.h"
#include "velkin/dialogs/xmessagebox.h"

// Fields and handlers are published so that reading the design binds them.
VCL_COMPONENT_IMPL(TContactsForm, Forms::TForm, VCL_FIELD(NameLabel), VCL_FIELD(NameEdit), VCL_FIELD(AddButton),
                   VCL_FIELD(ContactList), VCL_FIELD(DeleteButton), VCL_FIELD(ExportButton), VCL_FIELD(CloseButton),
                   VCL_FIELD(StatusLabel), VCL_METHOD(AddButtonClick, System::TNotifyEvent),
                   VCL_METHOD(DeleteButtonClick, System::TNotifyEvent),
                   VCL_METHOD(ExportButtonClick, System::TNotifyEvent),
                   VCL_METHOD(CloseButtonClick, System::TNotifyEvent),
                   VCL_METHOD(FormCloseQuery, Forms::TCloseQueryEvent))

TContactsForm::TContactsForm(Classes::TComponent* owner) : TForm(owner) { ReadDesign(); }

TContactsForm::~TContactsForm() {
  // Only when the program ends during an export: stop it before the form goes.
  if (job_) {
    job_->SetOnTerminate({});
    delete job_;
  }
}

void TContactsForm::AddButtonClick(System::TObject*) {
  const System::AnsiString name = NameEdit->GetText();
  if (name.IsEmpty()) return;
  ContactList->GetItems()->Add(name);
  NameEdit->SetText("");
  ShowCount();
}

void TContactsForm::DeleteButtonClick(System::TObject*) {
  const int index = ContactList->GetItemIndex();
  if (index < 0) {
    StatusLabel->SetText("Select the contact to delete.");
    return;
  }
  if (askBeforeDelete_) {
    // Ticked with Yes, the question is not asked again: every later delete
    // is a Yes. A No is never remembered.
    const System::AnsiString question = "Delete " + ContactList->GetItems()->Get(index) + "?";
    const int answer =
        XMessageBox(GetHandle(), question.c_str(), "Delete contact", MB_YESNO | MB_ICONQUESTION | XMB_DONOTASKAGAIN, 0);
    const int button = answer & ~XMB_DONOTASKAGAIN;
    if (button != IDYES) return;
    if (answer & XMB_DONOTASKAGAIN) askBeforeDelete_ = false;
  }
  ContactList->GetItems()->Delete(index);
  ShowCount();
}

void TContactsForm::ExportButtonClick(System::TObject*) {
  Classes::TStrings* items = ContactList->GetItems();
  if (job_) return;
  if (items->GetCount() == 0) {
    StatusLabel->SetText("No contacts to export.");
    return;
  }
  std::vector<std::string> names;
  for (int i = 0; i < items->GetCount(); ++i) names.push_back(items->Get(i).c_str());

  // The job exists before anything that may handle messages (showing the
  // progress window paints it): a close asked for meanwhile is refused.
  const int count = static_cast<int>(names.size());
  progress_ = std::make_unique<HOperation>(this);
  job_ = new TExportJob(std::move(names), exportPath_, progress_.get());
  job_->SetOnTerminate({this, &TContactsForm::ExportDone});

  // Every control waits, disabled, until the export is over; Restore puts
  // back exactly what each had.
  controls_.Store(this, true, 1);
  controls_.Set(HCS_Enabled, false);
  progress_->SetModal(false);  // the form stays movable; its controls are what wait
  progress_->SetAbort(true);
  progress_->SetButtonCaption("&Stop");
  progress_->SetText("Exporting %d contacts", count);
  // The window's caption is its design's; this program names the job.
  if (THLongOperationForm* window = HOperation::SharedForm()) window->SetCaption("Export");
  job_->Start();
}

// On the main thread, once the job has ended.
void TContactsForm::ExportDone(System::TObject*) {
  const int written = job_->GetWritten();
  const bool failed = job_->GetFailed(), aborted = job_->GetAborted();
  delete job_;  // from its own OnTerminate: it frees itself once this returns
  job_ = nullptr;
  progress_.reset();
  controls_.Restore(HCS_Enabled);

  const std::string text = failed ? "Cannot write " + exportPath_ + "."
                                  : std::string(aborted ? "Stopped after " : "Exported ") + std::to_string(written) +
                                        " contacts to " + exportPath_ + ".";
  StatusLabel->SetText(text.c_str());
}

void TContactsForm::CloseButtonClick(System::TObject*) { Close(); }

void TContactsForm::FormCloseQuery(System::TObject*, bool& canClose) { canClose = job_ == nullptr; }

void TContactsForm::ShowCount() {
  const int count = ContactList->GetItems()->GetCount();
  StatusLabel->SetText(count == 1 ? System::AnsiString("1 contact.")
                                  : System::AnsiString(std::to_string(count).c_str()) + " contacts.");
}
