// A form with one of every control, made, shown and freed a thousand times,
// leaves the thread's windows and the process's GDI and USER objects as they
// were. (Wine counts no GDI and USER objects, GetGuiResources gives 0 there:
// the framework's own count of the GDI objects it owns stands in.)
#include <gtest/gtest.h>

#include "platform/ostrel/owned_handle.h"
#include "platform/vcl/application.h"
#include "platform/vcl/ext_panels.h"
#include "platform/vcl/std_buttons.h"
#include "platform/vcl/std_edits.h"
#include "platform/vcl/std_lists.h"

namespace {

// Every window of this thread, children included.
int ThreadWindows() {
  int count = 0;
  EnumThreadWindows(
      GetCurrentThreadId(),
      [](HWND w, LPARAM p) -> BOOL {
        auto* n = reinterpret_cast<int*>(p);
        ++*n;
        EnumChildWindows(
            w,
            [](HWND, LPARAM q) -> BOOL {
              ++*reinterpret_cast<int*>(q);
              return TRUE;
            },
            p);
        return TRUE;
      },
      reinterpret_cast<LPARAM>(&count));
  return count;
}

struct Counts {
  int windows;
  DWORD gdi, user;
  long owned;
  bool operator==(const Counts&) const = default;
};
std::ostream& operator<<(std::ostream& os, const Counts& c) {
  return os << c.windows << " windows, " << c.gdi << " GDI, " << c.user << " USER objects, " << c.owned
            << " owned GDI objects";
}
Counts Now() {
  return {ThreadWindows(), GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS),
          GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS), OwnedHandleCount(OK_GdiObject)};
}

template <class T>
T* Add(Forms::TForm* form, Controls::TWinControl* parent, int top) {
  auto* control = new T(form);
  control->SetParent(parent);
  control->SetTop(top);
  return control;
}

void MakeShowAndFree() {
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
  form->Show();
  Forms::Application->ProcessMessages();
  delete form;
}

TEST(TCustomForm, ThousandFormsWithEveryControlLeaveNothingBehind) {
  MakeShowAndFree();  // the first makes what lives for the process: classes, the shared font
  Forms::Application->ProcessMessages();
  const Counts before = Now();
  for (int i = 0; i < 1000; ++i) MakeShowAndFree();
  Forms::Application->ProcessMessages();
  EXPECT_EQ(before, Now());
}

}  // namespace
