#pragma once
// The controls the benchmarks fill their forms with, by kind.
#include "platform/vcl/stdctrls/std_buttons.h"
#include "platform/vcl/stdctrls/std_edits.h"
#include "platform/vcl/stdctrls/std_label.h"

// A control of owner: kind 0 a label, 1 an edit, 2 a button, 3 a check box
// (windowed ones for kinds 1 to 3).
inline Controls::TControl* NewControl(Classes::TComponent* owner, int kind) {
  switch (kind) {
    case 0:
      return new Stdctrls::TLabel(owner);
    case 1:
      return new Stdctrls::TEdit(owner);
    case 2:
      return new Stdctrls::TButton(owner);
    default:
      return new Stdctrls::TCheckBox(owner);
  }
}

// Edits, buttons and check boxes in turn.
inline Controls::TWinControl* NewWindowedControl(Classes::TComponent* owner, int i) {
  return static_cast<Controls::TWinControl*>(NewControl(owner, 1 + i % 3));
}
