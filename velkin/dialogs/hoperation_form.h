#pragma once
/// \file
/// The progress window that every long operation of the process shares.
#include "platform/vcl/forms/forms.h"
#include "platform/vcl/stdctrls/com_ranges.h"
#include "platform/vcl/stdctrls/std_buttons.h"
#include "platform/vcl/stdctrls/std_label.h"
#include "velkin/velkin_api.h"

/// A tool window with a line of text, a progress bar and an abort button,
/// laid out from its designed form. It shows itself while its text is not
/// empty and stacks what is visible from the top, holding the mouse so that
/// the application's other windows are left alone while the job runs. The
/// HOperation objects of the process share one (see HOperation).
class VELKIN_API THLongOperationForm : public Forms::TForm {
  VCL_CLASS();

 public:
  explicit THLongOperationForm(Classes::TComponent* owner);

  Stdctrls::TLabel* txtText = nullptr;
  Comctrls::TProgressBar* pbProgress = nullptr;
  Stdctrls::TButton* btnAbort = nullptr;

  void FormCreate(System::TObject* sender);
  /// Gives the mouse back and the owner form its enabled state.
  void FormHide(System::TObject* sender);
  void btnAbortClick(System::TObject* sender);

  /// Sets what the window shows and lays it out again: shown or hidden by
  /// its text, the bar and the button stacked below it.
  void UpdateForm();

  ///@{
  /// Values that change the window; setting an equal value does nothing.
  bool GetAborted() const { return aborted_; }
  void SetAborted(bool value);
  bool GetModal() const { return modal_; }
  void SetModal(bool value);
  int GetProgress() const { return progress_; }
  void SetProgress(int value);
  ///@}
  bool GetAbortVisible() const { return abortVisible_; }
  /// Shows or hides the abort button and forgets an earlier press.
  void SetAbortVisible(bool value);

  ///@{
  /// How many holders share the window; it is freed when the last lets go.
  int GetUseCount() const { return useCount_; }
  void AddUse(int delta = 1) { useCount_ += delta; }
  ///@}

  void WndProc(Controls::TMessage& message) override;

 private:
  Forms::TCustomForm* OwnerForm() const;
  /// Whether the window holding the mouse is one of this window's controls.
  bool HoldsMouse(HWND window) const;

  bool ownerEnabled_ = true;
  int useCount_ = 1;
  bool abortVisible_ = false;
  bool aborted_ = false;
  bool modal_ = true;
  int progress_ = 0;
};
