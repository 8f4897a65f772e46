#include "velkin/controls/h_cfield.h"

#include "platform/ostrel/strcol.h"
#include "platform/vcl/core/sysutils.h"

using System::AnsiString;

VCL_CLASS_IMPL(HControlField, System::TObject)

namespace {

enum : int { kUnsupportedAccept = 1001, kSupportedOnly = 1002, kUnsupportedClass = 1003 };

}  // namespace

HControlField::HControlField()
    : supportedTypes_(
          "TCustomLabel;TCustomEdit;TCustomComboBox;TCustomListBox;TCustomMemo;TButtonControl;TSpeedButton;TMenu;"
          "TScrollBar;TTrackBar;TProgressBar;TCustomUpDown"),
      // Deliberately forgets a freed control, the safe choice: Control never dangles.
      watch_(std::make_unique<HFreeWatch>([this](Classes::TComponent* component) {
        if (component != control_) return;
        control_ = nullptr;
        hooked_ = tracksText_ = modified_ = false;
      })) {}

// Deliberately unhooks a bound control, the safe choice: no handler is left pointing to a freed field.
HControlField::~HControlField() {
  if (hooked_) Hook(false);
}

template <class T>
T* HControlField::As() const {
  return dynamic_cast<T*>(control_);
}

Controls::TWinControl* HControlField::GetWinControl() const { return As<Controls::TWinControl>(); }
Stdctrls::TCustomLabel* HControlField::GetCustomLabel() const { return As<Stdctrls::TCustomLabel>(); }
Stdctrls::TCustomEdit* HControlField::GetCustomEdit() const { return As<Stdctrls::TCustomEdit>(); }
Stdctrls::TCustomComboBox* HControlField::GetCustomComboBox() const { return As<Stdctrls::TCustomComboBox>(); }
Stdctrls::TCustomListBox* HControlField::GetCustomListBox() const { return As<Stdctrls::TCustomListBox>(); }
Stdctrls::TCustomCheckBox* HControlField::GetCustomCheckBox() const { return As<Stdctrls::TCustomCheckBox>(); }
Stdctrls::TRadioButton* HControlField::GetRadioButton() const { return As<Stdctrls::TRadioButton>(); }
Stdctrls::TCustomMemo* HControlField::GetCustomMemo() const { return As<Stdctrls::TCustomMemo>(); }
Stdctrls::TButtonControl* HControlField::GetButtonControl() const { return As<Stdctrls::TButtonControl>(); }
Buttons::TSpeedButton* HControlField::GetSpeedButton() const { return As<Buttons::TSpeedButton>(); }
Menus::TMenuItem* HControlField::GetMenuItem() const { return As<Menus::TMenuItem>(); }
Stdctrls::TScrollBar* HControlField::GetScrollBar() const { return As<Stdctrls::TScrollBar>(); }
Comctrls::TTrackBar* HControlField::GetTrackBar() const { return As<Comctrls::TTrackBar>(); }
Comctrls::TProgressBar* HControlField::GetProgressBar() const { return As<Comctrls::TProgressBar>(); }
Comctrls::TCustomUpDown* HControlField::GetCustomUpDown() const { return As<Comctrls::TCustomUpDown>(); }

// Binding

bool HControlField::CheckSupported(const AnsiString& name) const {
  const int columns = StrColCount(supportedTypes_.c_str(), ";");
  for (int i = 1; i <= columns; ++i)
    if (name == AnsiString(StrGetCol(supportedTypes_.c_str(), i, ";").Text())) return true;
  return false;
}

void HControlField::SetAccept(const AnsiString& list) {
  const int columns = StrColCount(list.c_str(), ";");
  for (int i = 1; i <= columns; ++i) {
    const AnsiString name = StrGetCol(list.c_str(), i, ";").Text();
    if (!CheckSupported(name))
      throw Sysutils::Exception(Sysutils::LoadStr(kUnsupportedAccept) + " [" + name + "].\n" +
                                Sysutils::LoadStr(kSupportedOnly) + ": [" + supportedTypes_ + "]");
  }
  accept_ = list;
}

void HControlField::SetControl(Classes::TComponent* control) {
  Classes::TComponent* old = control_;
  if (control == old) return;
  if (!control) {
    DoRemoveControl(old);
    return;
  }
  const int columns = StrColCount(accept_.c_str(), ";");
  for (int i = 1; i <= columns; ++i) {
    const MyString name = StrGetCol(accept_.c_str(), i, ";");
    for (const System::TMetaClass* c = control->ClassType(); c; c = c->ClassParent()) {
      if (!c->ClassNameIs(name.Text())) continue;
      DoRemoveControl(old);
      Watch(control);
      control_ = control;
      DoSetControl(old, control);
      return;
    }
  }
  DoRemoveControl(old);
  throw Sysutils::Exception(Sysutils::LoadStr(kUnsupportedClass) + "[" + control->ClassName() + "].\n" +
                            Sysutils::LoadStr(kSupportedOnly) + ": [" + accept_ + "]");
}

void HControlField::Watch(Classes::TComponent* control) {
  watch_->Unwatch(control_);
  watch_->Watch(control);
}

bool HControlField::DoTextProcessed(Classes::TComponent*) {
  return GetCustomEdit() || GetCustomComboBox() || GetCustomMemo();
}

bool HControlField::DoAccept(const AnsiString& text) { return !onAccept_ || onAccept_(this, control_, text); }

void HControlField::DoSetControl(Classes::TComponent* oldControl, Classes::TComponent* newControl) {
  modified_ = false;
  tracksText_ = newControl && DoTextProcessed(newControl);
  savedText_ = tracksText_ ? GetText() : AnsiString();
  Hook(true);
  onControlChange_(this, oldControl, newControl);
}

void HControlField::DoRemoveControl(Classes::TComponent* oldControl) {
  onControlChange_(this, oldControl, nullptr);
  modified_ = tracksText_ = false;
  savedText_ = AnsiString();
  if (control_) Hook(false);
}

// Installs the field's handlers, or clears the same events, choosing each
// event by the first kind that matches in a fixed order.
void HControlField::Hook(bool install) {
  hooked_ = install;
  const auto notify = [&](void (HControlField::*method)(System::TObject*)) {
    return install ? System::TNotifyEvent(this, method) : System::TNotifyEvent();
  };
  if (Controls::TWinControl* w = GetWinControl()) {
    w->SetOnEnter(notify(&HControlField::idEnter));
    w->SetOnExit(notify(&HControlField::idExit));
    w->SetOnKeyDown(install ? Controls::TKeyEvent(this, &HControlField::idKeyDown) : Controls::TKeyEvent());
    w->SetOnKeyUp(install ? Controls::TKeyEvent(this, &HControlField::idKeyUp) : Controls::TKeyEvent());
    w->SetOnKeyPress(install ? Controls::TKeyPressEvent(this, &HControlField::idKeyPress) : Controls::TKeyPressEvent());
  }

  if (GetCustomLabel() || GetCustomEdit() || GetCustomComboBox() || GetCustomListBox() || GetCustomCheckBox() ||
      GetRadioButton() || GetCustomMemo() || GetButtonControl() || GetSpeedButton())
    static_cast<Controls::TControl*>(control_)->SetOnClick(notify(&HControlField::idClick));
  else if (Menus::TMenuItem* item = GetMenuItem())
    item->SetOnClick(notify(&HControlField::idClick));
  else if (Comctrls::TCustomUpDown* upDown = GetCustomUpDown())
    upDown->SetOnClick(install ? Comctrls::TUDClickEvent(this, &HControlField::idUpDownClick)
                               : Comctrls::TUDClickEvent());

  Stdctrls::TCustomComboBox* combo = GetCustomComboBox();
  if (combo && combo->GetStyle() == Stdctrls::csDropDownList)
    combo->SetOnChange(notify(&HControlField::idChange));
  else if (Stdctrls::TCustomListBox* list = GetCustomListBox())
    list->SetOnDblClick(notify(&HControlField::idChange));
  else if (Stdctrls::TScrollBar* bar = GetScrollBar())
    bar->SetOnChange(notify(&HControlField::idChange));
  else if (Comctrls::TTrackBar* track = GetTrackBar())
    track->SetOnChange(notify(&HControlField::idChange));
  else if (Comctrls::TCustomUpDown* upDown = GetCustomUpDown())
    upDown->SetOnChanging(install ? Comctrls::TUDChangingEvent(this, &HControlField::idUpDownChanging)
                                  : Comctrls::TUDChangingEvent());
}

// Handlers

void HControlField::idClick(System::TObject* sender) { onClick_(sender); }
void HControlField::idChange(System::TObject* sender) { onChange_(sender); }
void HControlField::idKeyDown(System::TObject*, WORD& key, Controls::TShiftState shift) {
  onKeyDown_(this, key, shift);
}
void HControlField::idKeyUp(System::TObject*, WORD& key, Controls::TShiftState shift) { onKeyUp_(this, key, shift); }
void HControlField::idUpDownClick(System::TObject* sender, Comctrls::TUDBtnType) { idClick(sender); }
void HControlField::idUpDownChanging(System::TObject* sender, bool&) { idChange(sender); }

void HControlField::idKeyPress(System::TObject*, char& key) {
  if (tracksText_ && control_ && key != '\b') {
    if (key == '\r') {
      key = 0;
      modified_ = false;
      if (!DoAccept(GetText())) {
        SetText(savedText_);
      } else {
        savedText_ = GetText();
        onChange_(this);
      }
    } else if (key == '\x1b') {
      SetText(savedText_);
      modified_ = false;
    } else if (!DoAccept(AnsiString(&key, 1))) {
      key = 0;
    }
  }
  onKeyPress_(this, key);
}

void HControlField::idEnter(System::TObject*) {
  if (tracksText_) {
    savedText_ = GetText();
    modified_ = false;
  }
  onEnter_(this);
}

void HControlField::idExit(System::TObject*) {
  if (tracksText_ && modified_) {
    modified_ = false;
    if (!DoAccept(GetText())) {
      SetText(savedText_);
    } else {
      savedText_ = GetText();
      onChange_(this);
    }
  }
  onExit_(this);
}

// Properties

Controls::TControl* HControlField::TextControl() const {
  if (GetCustomLabel() || GetCustomEdit() || GetCustomComboBox() || GetCustomCheckBox() || GetRadioButton() ||
      GetCustomMemo() || GetButtonControl() || GetSpeedButton())
    return static_cast<Controls::TControl*>(control_);
  return nullptr;
}

Controls::TControl* HControlField::HintControl() const {
  if (TextControl() || GetCustomListBox() || GetScrollBar() || GetTrackBar() || GetProgressBar() || GetCustomUpDown())
    return static_cast<Controls::TControl*>(control_);
  return nullptr;
}

AnsiString HControlField::CFDoGetText() {
  if (Controls::TControl* c = TextControl()) return c->GetText();
  if (Menus::TMenuItem* item = GetMenuItem()) return item->GetCaption();
  return AnsiString();
}

void HControlField::CFDoSetText(const AnsiString& value) {
  if (Controls::TControl* c = TextControl()) {
    if (c->GetText() != value) c->SetText(value);
  } else if (Menus::TMenuItem* item = GetMenuItem()) {
    if (item->GetCaption() != value) item->SetCaption(value);
  }
}

AnsiString HControlField::CFDoGetHint() {
  if (Controls::TControl* c = HintControl()) return c->GetHint();
  if (Menus::TMenuItem* item = GetMenuItem()) return item->GetHint();
  return AnsiString();
}

void HControlField::CFDoSetHint(const AnsiString& value) {
  if (Controls::TControl* c = HintControl()) {
    if (c->GetHint() != value) c->SetHint(value);
  } else if (Menus::TMenuItem* item = GetMenuItem()) {
    if (item->GetHint() != value) item->SetHint(value);
  }
}

// Position, Max and Min over the four range controls. The up-down's values
// are 16-bit: read sign-extended, written as their low 16 bits. The progress
// bar compares whole values but is given the low 16 bits, sign-extended.
#define VELKIN_RANGE_PROPERTY(Name)                                            \
  int HControlField::CFDoGet##Name() {                                         \
    if (Stdctrls::TScrollBar* c = GetScrollBar()) return c->Get##Name();       \
    if (Comctrls::TTrackBar* c = GetTrackBar()) return c->Get##Name();         \
    if (Comctrls::TProgressBar* c = GetProgressBar()) return c->Get##Name();   \
    if (Comctrls::TCustomUpDown* c = GetCustomUpDown()) return c->Get##Name(); \
    return 0;                                                                  \
  }                                                                            \
  void HControlField::CFDoSet##Name(const int& value) {                        \
    if (Stdctrls::TScrollBar* c = GetScrollBar()) {                            \
      if (c->Get##Name() != value) c->Set##Name(value);                        \
    } else if (Comctrls::TTrackBar* c = GetTrackBar()) {                       \
      if (c->Get##Name() != value) c->Set##Name(value);                        \
    } else if (Comctrls::TProgressBar* c = GetProgressBar()) {                 \
      if (c->Get##Name() != value) c->Set##Name(static_cast<short>(value));    \
    } else if (Comctrls::TCustomUpDown* c = GetCustomUpDown()) {               \
      if (c->Get##Name() != value) c->Set##Name(static_cast<short>(value));    \
    }                                                                          \
  }

VELKIN_RANGE_PROPERTY(Position)
VELKIN_RANGE_PROPERTY(Max)
VELKIN_RANGE_PROPERTY(Min)
#undef VELKIN_RANGE_PROPERTY

bool HControlField::CFDoGetChecked() {
  if (GetCustomCheckBox() || GetRadioButton()) return GetButtonControl()->GetChecked();
  if (Buttons::TSpeedButton* b = GetSpeedButton()) return b->GetDown();
  if (Menus::TMenuItem* item = GetMenuItem()) return item->GetChecked();
  return true;
}

void HControlField::CFDoSetChecked(const bool& value) {
  if (GetCustomCheckBox() || GetRadioButton()) {
    if (GetButtonControl()->GetChecked() != value) GetButtonControl()->SetChecked(value);
  } else if (Buttons::TSpeedButton* b = GetSpeedButton()) {
    if (b->GetDown() != value) b->SetDown(value);
  } else if (Menus::TMenuItem* item = GetMenuItem()) {
    if (item->GetChecked() != value) item->SetChecked(value);
  }
}

bool HControlField::CFDoGetDown() { return CFDoGetChecked(); }
void HControlField::CFDoSetDown(const bool& value) { CFDoSetChecked(value); }

Classes::TStrings* HControlField::CFDoGetStrings() {
  if (Stdctrls::TCustomComboBox* c = GetCustomComboBox()) return c->GetItems();
  if (Stdctrls::TCustomListBox* c = GetCustomListBox()) return c->GetItems();
  return nullptr;
}

void HControlField::CFDoSetStrings(Classes::TStrings* const&) {}

int HControlField::CFDoGetItemIndex() {
  if (Stdctrls::TCustomComboBox* c = GetCustomComboBox()) return c->GetItemIndex();
  if (Stdctrls::TCustomListBox* c = GetCustomListBox()) return c->GetItemIndex();
  return -1;
}

void HControlField::CFDoSetItemIndex(const int& value) {
  if (Stdctrls::TCustomComboBox* c = GetCustomComboBox()) {
    if (c->GetItemIndex() != value) c->SetItemIndex(value);
  } else if (Stdctrls::TCustomListBox* c = GetCustomListBox()) {
    if (c->GetItemIndex() != value) c->SetItemIndex(value);
  }
}

bool HControlField::CFDoGetEnabled() {
  if (auto* c = As<Controls::TControl>()) return c->GetEnabled();
  return true;
}

void HControlField::CFDoSetEnabled(const bool& value) {
  if (auto* c = As<Controls::TControl>(); c && c->GetEnabled() != value) c->SetEnabled(value);
}

bool HControlField::CFDoGetVisible() {
  if (auto* c = As<Controls::TControl>()) return c->GetVisible();
  return true;
}

void HControlField::CFDoSetVisible(const bool& value) {
  if (auto* c = As<Controls::TControl>(); c && c->GetVisible() != value) c->SetVisible(value);
}
