#pragma once
/// \file
/// Unit StdCtrls, edits: one-line edit boxes over the system's EDIT windows.
#include <memory>

#include "platform/vcl/controls/controls.h"
#include "platform/vcl/core/string_list.h"
#include "platform/vcl/core/typinfo.h"

namespace Stdctrls {

using System::AnsiString;

/// An edit box. The text, limits and selection read and write the window
/// when it exists, and are kept until it is made otherwise.
class VCL_API TCustomEdit : public Controls::TWinControl {
  VCL_CLASS();

 public:
  explicit TCustomEdit(Classes::TComponent* owner);

  /// Characters the user may type at most, as the window counts them (UTF-16
  /// units: a letter beyond the basic plane takes two); 0: no limit.
  int GetMaxLength() const { return maxLength_; }
  void SetMaxLength(int value);
  bool GetReadOnly() const { return readOnly_; }
  void SetReadOnly(bool value);
  /// The character shown in place of each typed one; '\0': the text itself.
  char GetPasswordChar() const { return passwordChar_; }
  void SetPasswordChar(char value);
  /// Whether the user changed the text since it was last set.
  bool GetModified();
  void SetModified(bool value);

  ///@{
  /// The selection in characters as the window counts them (UTF-16 units),
  /// not in bytes of the code page; its text in the code page.
  int GetSelStart();
  void SetSelStart(int value);
  int GetSelLength();
  void SetSelLength(int value);
  AnsiString GetSelText();
  ///@}
  /// Replaces the selection.
  void SetSelText(const AnsiString& value);
  void SelectAll();
  void Clear() { SetText(""); }

  /// Runs after every change of the text.
  System::TNotifyEvent GetOnChange() const { return onChange_; }
  void SetOnChange(System::TNotifyEvent value) { onChange_ = value; }

 protected:
  void CreateParams(Controls::TCreateParams& params) override;
  void CreateWnd() override;
  void Notified(Controls::TMessage& message) override;

 private:
  int maxLength_ = 0;
  bool readOnly_ = false;
  char passwordChar_ = '\0';
  int selStart_ = 0, selLength_ = 0;
  System::TNotifyEvent onChange_;
};

/// The edit box to make instances of.
class VCL_API TEdit : public TCustomEdit {
  VCL_CLASS();

 public:
  using TCustomEdit::TCustomEdit;
};

/// Which scroll bars a memo shows.
enum TScrollStyle { ssNone, ssHorizontal, ssVertical, ssBoth };
VCL_ENUM_INFO(TScrollStyle, ssNone, ssHorizontal, ssVertical, ssBoth)

/// A multi-line edit box; Lines are its text as a string list. Enter makes a
/// line break unless WantReturns is off (then it goes to the form: the
/// default button); Tab types a tab only with WantTabs.
class VCL_API TCustomMemo : public TCustomEdit {
  VCL_CLASS();

 public:
  explicit TCustomMemo(Classes::TComponent* owner);
  ~TCustomMemo() override;

  Classes::TStrings* GetLines() const { return lines_.get(); }
  void SetLines(Classes::TStrings* value) { lines_->Assign(value); }
  TScrollStyle GetScrollBars() const { return scrollBars_; }
  void SetScrollBars(TScrollStyle value);
  bool GetWantReturns() const { return wantReturns_; }
  void SetWantReturns(bool value) { wantReturns_ = value; }
  bool GetWantTabs() const { return wantTabs_; }
  void SetWantTabs(bool value) { wantTabs_ = value; }
  bool GetWordWrap() const { return wordWrap_; }
  void SetWordWrap(bool value);

  void WndProc(Controls::TMessage& message) override;
  /// Runs OnChange when the text changes: the window tells of typing, not of
  /// a text set as a whole (lines added, assigned or cleared).
  void SetText(const AnsiString& value) override;

 protected:
  void CreateParams(Controls::TCreateParams& params) override;

 private:
  std::unique_ptr<Classes::TStrings> lines_;
  TScrollStyle scrollBars_ = ssNone;
  bool wantReturns_ = true;
  bool wantTabs_ = false;
  bool wordWrap_ = true;
};

/// The memo to make instances of.
class VCL_API TMemo : public TCustomMemo {
  VCL_CLASS();

 public:
  using TCustomMemo::TCustomMemo;
};

}  // namespace Stdctrls
