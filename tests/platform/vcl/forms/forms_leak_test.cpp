// A form with one of every control, made, shown and freed a thousand times,
// leaves the thread's windows and the process's GDI and USER objects as they
// were. (Wine counts no GDI and USER objects, GetGuiResources gives 0 there:
// the framework's own counts of the GDI objects, menus and paint contexts it
// holds stand in, and every menu handle it made must be gone.)
#include <gtest/gtest.h>

#include "platform/ostrel/owned_handle.h"
#include "platform/vcl/forms/application.h"
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
#include "tests/platform/vcl/test_helpers.h"

namespace {

struct Counts {
  int windows;
  DWORD gdi, user;
  long owned, menus, windowDCs;
  bool operator==(const Counts&) const = default;
};
std::ostream& operator<<(std::ostream& os, const Counts& c) {
  return os << c.windows << " windows, " << c.gdi << " GDI, " << c.user << " USER objects, " << c.owned
            << " owned GDI objects, " << c.menus << " menus, " << c.windowDCs << " window and paint contexts";
}
Counts Now() {
  return {vcl_test::ThreadWindows(),
          GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS),
          GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS),
          OwnedHandleCount(OK_GdiObject),
          OwnedHandleCount(OK_Menu),
          OwnedHandleCount(OK_WindowDC)};
}

template <class T>
T* Add(Forms::TForm* form, Controls::TWinControl* parent, int top) {
  return vcl_test::Make<T>(form, parent, 0, top, 100, 20);
}

// Makes, shows and frees the form; the number of menu handles it made that
// are still menus afterwards.
int MakeShowAndFree() {
  auto* form = new Forms::TForm(nullptr);
  form->SetCaption("Every control");
  auto* panel = Add<Extctrls::TPanel>(form, form, 0);
  panel->SetAlign(Controls::alTop);
  panel->SetText("Panel");
  Add<Stdctrls::TEdit>(form, form, 50)->SetText("text");
  Add<Stdctrls::TButton>(form, form, 80)->SetDefault(true);
  Add<Stdctrls::TCheckBox>(form, form, 110)->SetChecked(true);
  Add<Stdctrls::TRadioButton>(form, form, 130)->SetChecked(true);
  Add<Stdctrls::TListBox>(form, panel, 0)->GetItems()->SetText("a\nb");
  Add<Stdctrls::TComboBox>(form, form, 150)->GetItems()->SetText("c\nd");
  Add<Stdctrls::TMemo>(form, form, 180)->GetLines()->SetText("one\ntwo");
  Add<Stdctrls::TLabel>(form, form, 210)->SetText("Label");
  auto* group = Add<Stdctrls::TGroupBox>(form, form, 230);
  Add<Extctrls::TBevel>(form, group, 20);
  Add<Buttons::TSpeedButton>(form, group, 20)->SetFont(form->GetFont());
  Add<Buttons::TBitBtn>(form, group, 50)->GetGlyph()->SetSize(8, 8);
  auto* scroll = Add<Forms::TScrollBox>(form, form, 340);
  Add<Stdctrls::TScrollBar>(form, scroll, 100);
  Add<Comctrls::TTrackBar>(form, form, 390);
  Add<Comctrls::TProgressBar>(form, form, 440)->SetPosition(50);
  Add<Comctrls::TUpDown>(form, form, 470)->SetAssociate(Add<Stdctrls::TEdit>(form, form, 470));
  const auto item = [&](const char* caption) {
    auto* i = new Menus::TMenuItem(form);
    i->SetCaption(caption);
    return i;
  };
  auto* menu = new Menus::TMainMenu(form);
  auto* file = item("&File");
  menu->GetItems()->Add(file);
  file->Add(item("&Open"));
  form->SetMenu(menu);
  auto* popup = new Menus::TPopupMenu(form);
  popup->GetItems()->Add(item("&Copy"));
  form->Show();
  Forms::Application->ProcessMessages();
  const HMENU made[] = {menu->GetHandle(), file->GetHandle(), popup->GetHandle()};
  delete form;
  int alive = 0;
  for (HMENU m : made) alive += m && IsMenu(m);
  return alive;
}

TEST(TCustomForm, ThousandFormsWithEveryControlLeaveNothingBehind) {
  MakeShowAndFree();  // the first makes what lives for the process: classes, the shared font
  Forms::Application->ProcessMessages();
  const Counts before = Now();
  int menusLeft = 0;
  for (int i = 0; i < 1000; ++i) menusLeft += MakeShowAndFree();
  Forms::Application->ProcessMessages();
  EXPECT_EQ(before, Now());
  EXPECT_EQ(0, menusLeft) << "menu handles still alive after their form went";
}

}  // namespace
