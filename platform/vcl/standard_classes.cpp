// The framework's own component classes are registered when the package is
// loaded, so that streams naming them read without the program registering
// them first.
#include "platform/vcl/core/class_registry.h"
#include "platform/vcl/forms/forms.h"
#include "platform/vcl/forms/menus.h"
#include "platform/vcl/stdctrls/buttons.h"
#include "platform/vcl/stdctrls/com_ranges.h"
#include "platform/vcl/stdctrls/ext_bevel.h"
#include "platform/vcl/stdctrls/ext_panels.h"
#include "platform/vcl/stdctrls/scroll_box.h"
#include "platform/vcl/stdctrls/std_buttons.h"
#include "platform/vcl/stdctrls/std_edits.h"
#include "platform/vcl/stdctrls/std_group_box.h"
#include "platform/vcl/stdctrls/std_label.h"
#include "platform/vcl/stdctrls/std_lists.h"

namespace {

const bool registered = [] {
  Classes::RegisterClasses(
      {Forms::TForm::StaticClass(),        Forms::TScrollBox::StaticClass(),      Stdctrls::TButton::StaticClass(),
       Stdctrls::TCheckBox::StaticClass(), Stdctrls::TRadioButton::StaticClass(), Stdctrls::TEdit::StaticClass(),
       Stdctrls::TMemo::StaticClass(),     Stdctrls::TLabel::StaticClass(),       Stdctrls::TListBox::StaticClass(),
       Stdctrls::TComboBox::StaticClass(), Stdctrls::TGroupBox::StaticClass(),    Stdctrls::TScrollBar::StaticClass(),
       Extctrls::TPanel::StaticClass(),    Extctrls::TBevel::StaticClass(),       Buttons::TSpeedButton::StaticClass(),
       Buttons::TBitBtn::StaticClass(),    Comctrls::TTrackBar::StaticClass(),    Comctrls::TProgressBar::StaticClass(),
       Comctrls::TUpDown::StaticClass(),   Menus::TMainMenu::StaticClass(),       Menus::TPopupMenu::StaticClass(),
       Menus::TMenuItem::StaticClass()});
  return true;
}();

}  // namespace
