// The framework's own component classes are registered when the package is
// loaded, so that streams naming them read without the program registering
// them first.
#include "platform/vcl/buttons.h"
#include "platform/vcl/class_registry.h"
#include "platform/vcl/com_ranges.h"
#include "platform/vcl/ext_bevel.h"
#include "platform/vcl/ext_panels.h"
#include "platform/vcl/forms.h"
#include "platform/vcl/menus.h"
#include "platform/vcl/scroll_box.h"
#include "platform/vcl/std_buttons.h"
#include "platform/vcl/std_edits.h"
#include "platform/vcl/std_group_box.h"
#include "platform/vcl/std_label.h"
#include "platform/vcl/std_lists.h"

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
