#pragma once
/// \file
/// Unit H_cfield: one set of properties over many kinds of control, and an
/// edit-and-confirm protocol for the controls that take typed text.
#include <memory>

#include "platform/vcl/forms/menus.h"
#include "platform/vcl/stdctrls/buttons.h"
#include "platform/vcl/stdctrls/com_ranges.h"
#include "platform/vcl/stdctrls/std_buttons.h"
#include "platform/vcl/stdctrls/std_edits.h"
#include "platform/vcl/stdctrls/std_label.h"
#include "platform/vcl/stdctrls/std_lists.h"
#include "velkin/controls/h_freewatch.h"
#include "velkin/velkin_api.h"

/// A field bound to one control at a time. Text, Hint, Position, Max, Min,
/// Checked, Down, Strings, ItemIndex, Enabled and Visible are translated to
/// what the bound control offers, with fixed defaults for the kinds that do
/// not; a setter writes only a value that differs. Binding installs the
/// field's handlers into the control's own events (replacing what was there)
/// and re-raises them through the field's events. For an edit or combo box
/// the field keeps the confirmed text: Enter confirms it (OnAccept may veto),
/// Escape restores it, and OnAccept may drop single keystrokes.
///
/// Unbinding (SetControl(nullptr), or a refused bind) removes the handlers
/// but keeps Control, so the properties still reach the old control.
class VELKIN_API HControlField : public System::TObject {
  VCL_CLASS();

 public:
  /// Raised after binding (Old, New) and when a control is released (Old, null).
  using TControlChangeEvent =
      System::TClosure<void(System::TObject* Sender, Classes::TComponent* OldControl, Classes::TComponent* NewControl)>;
  /// The application's veto over a keystroke (one character) or finished text.
  using TAcceptEvent =
      System::TClosure<bool(System::TObject* Sender, Classes::TComponent* Control, const System::AnsiString& Text)>;

  HControlField();
  /// Unhooks a control still bound, and stops watching the one it holds.
  ~HControlField() override;
  HControlField(const HControlField&) = delete;
  HControlField& operator=(const HControlField&) = delete;

  /// The classes a field can serve, ';'-separated.
  const System::AnsiString& GetSupportedTypes() const { return supportedTypes_; }
  /// The text last confirmed; what Escape or a veto restores.
  const System::AnsiString& GetSavedText() const { return savedText_; }
  /// Typed text awaits confirmation when focus leaves. The field itself
  /// never sets it: derived fields do.
  bool GetModified() const { return modified_; }
  void SetModified(bool value) { modified_ = value; }
  /// Whether the bound control's text is tracked (see DoTextProcessed).
  bool GetTracksText() const { return tracksText_; }

  /// The control held (bound, or released but kept); null once it is freed.
  Classes::TComponent* GetControl() const { return control_; }
  /// Binds a control whose class chain holds a name of the accept list,
  /// releasing the previous one; null releases. Raises Exception naming the
  /// class and the accept list when none matches (the previous control is
  /// released all the same).
  void SetControl(Classes::TComponent* control);
  /// The ';'-separated class names SetControl accepts; empty at first, so
  /// nothing binds until it is set.
  const System::AnsiString& GetAccept() const { return accept_; }
  /// Raises Exception naming the first name that is not one of the supported
  /// types (exact spelling), leaving the list as it was.
  void SetAccept(const System::AnsiString& list);
  /// Whether name is one of the supported types, spelled exactly.
  bool CheckSupported(const System::AnsiString& name) const;

  ///@{
  /// The bound control as that kind, or null.
  Controls::TWinControl* GetWinControl() const;
  Stdctrls::TCustomLabel* GetCustomLabel() const;
  Stdctrls::TCustomEdit* GetCustomEdit() const;
  Stdctrls::TCustomComboBox* GetCustomComboBox() const;
  Stdctrls::TCustomListBox* GetCustomListBox() const;
  Stdctrls::TCustomCheckBox* GetCustomCheckBox() const;
  Stdctrls::TRadioButton* GetRadioButton() const;
  Stdctrls::TCustomMemo* GetCustomMemo() const;
  Stdctrls::TButtonControl* GetButtonControl() const;
  Buttons::TSpeedButton* GetSpeedButton() const;
  Menus::TMenuItem* GetMenuItem() const;
  Stdctrls::TScrollBar* GetScrollBar() const;
  Comctrls::TTrackBar* GetTrackBar() const;
  Comctrls::TProgressBar* GetProgressBar() const;
  Comctrls::TCustomUpDown* GetCustomUpDown() const;
  ///@}

  ///@{
  /// The properties, each through its virtual CFDo pair below.
  System::AnsiString GetText() { return CFDoGetText(); }
  void SetText(const System::AnsiString& value) { CFDoSetText(value); }
  System::AnsiString GetHint() { return CFDoGetHint(); }
  void SetHint(const System::AnsiString& value) { CFDoSetHint(value); }
  int GetPosition() { return CFDoGetPosition(); }
  void SetPosition(int value) { CFDoSetPosition(value); }
  int GetMax() { return CFDoGetMax(); }
  void SetMax(int value) { CFDoSetMax(value); }
  int GetMin() { return CFDoGetMin(); }
  void SetMin(int value) { CFDoSetMin(value); }
  bool GetChecked() { return CFDoGetChecked(); }
  void SetChecked(bool value) { CFDoSetChecked(value); }
  bool GetDown() { return CFDoGetDown(); }
  void SetDown(bool value) { CFDoSetDown(value); }
  Classes::TStrings* GetStrings() { return CFDoGetStrings(); }
  void SetStrings(Classes::TStrings* value) { CFDoSetStrings(value); }
  int GetItemIndex() { return CFDoGetItemIndex(); }
  void SetItemIndex(int value) { CFDoSetItemIndex(value); }
  bool GetEnabled() { return CFDoGetEnabled(); }
  void SetEnabled(bool value) { CFDoSetEnabled(value); }
  bool GetVisible() { return CFDoGetVisible(); }
  void SetVisible(bool value) { CFDoSetVisible(value); }
  ///@}

  ///@{
  /// The field's events. Key, focus, bind and confirmed-text events come
  /// from the field; click and change pass the control's own sender on.
  TControlChangeEvent GetOnControlChange() const { return onControlChange_; }
  void SetOnControlChange(TControlChangeEvent value) { onControlChange_ = value; }
  System::TNotifyEvent GetOnClick() const { return onClick_; }
  void SetOnClick(System::TNotifyEvent value) { onClick_ = value; }
  System::TNotifyEvent GetOnChange() const { return onChange_; }
  void SetOnChange(System::TNotifyEvent value) { onChange_ = value; }
  Controls::TKeyEvent GetOnKeyDown() const { return onKeyDown_; }
  void SetOnKeyDown(Controls::TKeyEvent value) { onKeyDown_ = value; }
  Controls::TKeyEvent GetOnKeyUp() const { return onKeyUp_; }
  void SetOnKeyUp(Controls::TKeyEvent value) { onKeyUp_ = value; }
  Controls::TKeyPressEvent GetOnKeyPress() const { return onKeyPress_; }
  void SetOnKeyPress(Controls::TKeyPressEvent value) { onKeyPress_ = value; }
  System::TNotifyEvent GetOnEnter() const { return onEnter_; }
  void SetOnEnter(System::TNotifyEvent value) { onEnter_ = value; }
  System::TNotifyEvent GetOnExit() const { return onExit_; }
  void SetOnExit(System::TNotifyEvent value) { onExit_ = value; }
  TAcceptEvent GetOnAccept() const { return onAccept_; }
  void SetOnAccept(TAcceptEvent value) { onAccept_ = value; }
  ///@}

  ///@{
  /// The handlers binding installs into the control's events.
  void idClick(System::TObject* sender);
  void idChange(System::TObject* sender);
  void idKeyDown(System::TObject* sender, WORD& key, Controls::TShiftState shift);
  void idKeyUp(System::TObject* sender, WORD& key, Controls::TShiftState shift);
  void idKeyPress(System::TObject* sender, char& key);
  void idEnter(System::TObject* sender);
  void idExit(System::TObject* sender);
  void idUpDownClick(System::TObject* sender, Comctrls::TUDBtnType button);
  void idUpDownChanging(System::TObject* sender, bool& allowChange);
  ///@}

 protected:
  /// Whether the control's text is tracked: edits, combo boxes and memos.
  virtual bool DoTextProcessed(Classes::TComponent* component);
  /// OnAccept's verdict; true without one.
  virtual bool DoAccept(const System::AnsiString& text);
  /// Takes the text and installs the handlers; raises OnControlChange.
  virtual void DoSetControl(Classes::TComponent* oldControl, Classes::TComponent* newControl);
  /// Raises OnControlChange, forgets the text and clears the handlers.
  virtual void DoRemoveControl(Classes::TComponent* oldControl);
  virtual System::AnsiString CFDoGetText();
  virtual void CFDoSetText(const System::AnsiString& value);
  virtual System::AnsiString CFDoGetHint();
  virtual void CFDoSetHint(const System::AnsiString& value);
  virtual int CFDoGetPosition();
  virtual void CFDoSetPosition(const int& value);
  virtual int CFDoGetMax();
  virtual void CFDoSetMax(const int& value);
  virtual int CFDoGetMin();
  virtual void CFDoSetMin(const int& value);
  virtual bool CFDoGetChecked();
  virtual void CFDoSetChecked(const bool& value);
  virtual bool CFDoGetDown();
  virtual void CFDoSetDown(const bool& value);
  virtual Classes::TStrings* CFDoGetStrings();
  /// Lists are not replaced through the field: nothing happens.
  virtual void CFDoSetStrings(Classes::TStrings* const& value);
  virtual int CFDoGetItemIndex();
  virtual void CFDoSetItemIndex(const int& value);
  virtual bool CFDoGetEnabled();
  virtual void CFDoSetEnabled(const bool& value);
  virtual bool CFDoGetVisible();
  virtual void CFDoSetVisible(const bool& value);

 private:
  template <class T>
  T* As() const;
  Controls::TControl* TextControl() const;
  Controls::TControl* HintControl() const;
  void Watch(Classes::TComponent* control);
  void Hook(bool install);

  System::AnsiString supportedTypes_;
  System::AnsiString savedText_;
  bool modified_ = false;
  bool tracksText_ = false;
  bool hooked_ = false;
  Classes::TComponent* control_ = nullptr;
  System::AnsiString accept_;
  std::unique_ptr<HFreeWatch> watch_;
  TControlChangeEvent onControlChange_;
  System::TNotifyEvent onClick_;
  System::TNotifyEvent onChange_;
  Controls::TKeyEvent onKeyDown_;
  Controls::TKeyEvent onKeyUp_;
  Controls::TKeyPressEvent onKeyPress_;
  System::TNotifyEvent onEnter_;
  System::TNotifyEvent onExit_;
  TAcceptEvent onAccept_;
};
