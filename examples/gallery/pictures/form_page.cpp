// The framework's form of every standard control, laid out by alignment, as
// a real window captured to PNG.
#include <windows.h>

#include <cstdio>
#include <string>
#include <vector>

#include "examples/gallery/pictures/picture_sheet.h"
#include "examples/gallery/pictures/pictures.h"
#include "examples/gallery/pictures/window_capture.h"
#include "platform/pellum/filectrl.h"
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

using namespace Forms;
using namespace Stdctrls;

namespace {

template <class T>
T* Add(TForm* form, Controls::TWinControl* parent, int left, int top, int width, int height, const char* text = "") {
  auto* control = new T(form);
  control->SetParent(parent);
  control->SetBounds(left, top, width, height);
  control->SetText(text);
  return control;
}

// A panel of the form placed by alignment, without bevels.
Extctrls::TPanel* Area(TForm* form, Controls::TWinControl* parent, Controls::TAlign align, int size) {
  auto* panel = Add<Extctrls::TPanel>(form, parent, 0, 0, size, size);
  panel->SetBevelOuter(Extctrls::bvNone);
  panel->SetAlign(align);
  return panel;
}

// A green tick on a magenta ground, the corner colour that is left out.
void DrawTick(Graphics::TBitmap& glyph) {
  glyph.SetSize(12, 12);
  Graphics::TCanvas* canvas = glyph.GetCanvas();
  canvas->GetBrush()->SetColor(Graphics::clFuchsia);
  canvas->FillRect({0, 0, 12, 12});
  canvas->GetPen()->SetColor(Graphics::clGreen);
  canvas->GetPen()->SetWidth(2);
  canvas->MoveTo(2, 6);
  canvas->LineTo(5, 9);
  canvas->LineTo(10, 2);
}

void BuildMenu(TForm* form) {
  auto* menu = new Menus::TMainMenu(form);
  for (const char* caption : {"&File", "&Edit", "&View", "&Help"}) {
    auto* item = new Menus::TMenuItem(form);
    item->SetCaption(caption);
    menu->GetItems()->Add(item);
    auto* sub = new Menus::TMenuItem(form);
    sub->SetCaption("&Open...");
    item->Add(sub);
  }
  form->SetMenu(menu);
}

// Every control, in the areas that alignment makes: a tool bar on top, the
// buttons at the bottom, a group of options on the left, the rest in the
// client area.
void BuildForm(TForm* form) {
  BuildMenu(form);
  auto* tools = Area(form, form, Controls::alTop, 30);
  const char* marks[] = {"B", "I", "U"};
  for (int i = 0; i < 3; ++i) {
    auto* b = Add<Buttons::TSpeedButton>(form, tools, 6 + i * 25, 3, 24, 24, marks[i]);
    b->SetGroupIndex(i + 1);
    b->SetAllowAllUp(true);
    b->SetFlat(i != 0);
    if (i == 1) b->SetDown(true);
  }
  auto* line = Add<Extctrls::TBevel>(form, tools, 0, 28, 600, 2);
  line->SetShape(Extctrls::bsBottomLine);
  line->SetAlign(Controls::alBottom);

  auto* bottom = Area(form, form, Controls::alBottom, 44);
  auto* progress = Add<Comctrls::TProgressBar>(form, bottom, 12, 14, 200, 16);
  progress->SetPosition(60);
  auto* ok = Add<Buttons::TBitBtn>(form, bottom, 392, 10, 80, 25, "OK");
  Graphics::TBitmap tick;
  DrawTick(tick);
  ok->SetGlyph(&tick);
  ok->SetDefault(true);
  Add<TButton>(form, bottom, 478, 10, 80, 25, "Cancel")->SetCancel(true);

  auto* options = Add<TGroupBox>(form, form, 0, 0, 180, 0, "Options");
  options->SetAlign(Controls::alLeft);
  Add<TCheckBox>(form, options, 12, 22, 150, 19, "&Check box")->SetChecked(true);
  auto* grayed = Add<TCheckBox>(form, options, 12, 44, 150, 19, "&Grayed check box");
  grayed->SetAllowGrayed(true);
  grayed->SetState(cbGrayed);
  Add<TRadioButton>(form, options, 12, 72, 150, 19, "&First choice")->SetChecked(true);
  Add<TRadioButton>(form, options, 12, 94, 150, 19, "&Second choice");
  Add<TRadioButton>(form, options, 12, 116, 150, 19, "Disabled choice")->SetEnabled(false);
  auto* scroll = Add<TScrollBox>(form, options, 12, 144, 156, 64);
  for (int i = 0; i < 5; ++i)
    Add<TLabel>(form, scroll, 6, 4 + i * 18, 100, 15, ("Scrolled line " + std::to_string(i + 1)).c_str());

  auto* client = Area(form, form, Controls::alClient, 0);
  auto* name = Add<TLabel>(form, client, 12, 14, 40, 15, "&Name:");
  name->SetFocusControl(Add<TEdit>(form, client, 60, 10, 140, 23, "Edit box with text"));
  auto* combo = Add<TComboBox>(form, client, 210, 10, 160, 23);
  combo->SetStyle(csDropDownList);
  combo->GetItems()->SetText("Combo box\nSecond item");
  combo->SetItemIndex(0);
  auto* list = Add<TListBox>(form, client, 12, 44, 120, 84);
  list->GetItems()->SetText("List box\nSecond item\nThird item\nFourth item");
  list->SetItemIndex(1);
  auto* memo = Add<TMemo>(form, client, 142, 44, 228, 84);
  memo->GetLines()->SetText("A memo with lines\nthat wrap when they reach the edge of the box.");
  Add<Comctrls::TTrackBar>(form, client, 6, 136, 200, 30)->SetPosition(4);
  auto* number = Add<TEdit>(form, client, 220, 140, 50, 23, "7");
  auto* updown = Add<Comctrls::TUpDown>(form, client, 270, 140, 17, 23);
  updown->SetPosition(7);
  updown->SetAssociate(number);
  auto* bar = Add<TScrollBar>(form, client, 12, 180, 358, 17);
  bar->SetPosition(30);
}

// The directory dialog, a form designed as text and compiled into the helper
// package: captured once it has painted, then cancelled.
std::string dialogPath;
bool dialogWritten = false;
int dialogTicks = 0;
void CALLBACK CaptureDialog(HWND, UINT, UINT_PTR, DWORD) {
  HWND dialog = GetActiveWindow();
  if (++dialogTicks < 10 || !dialog) return;  // let it paint first
  if (dialogTicks == 10) dialogWritten = WriteWindow(dialog, dialogPath);
  PostMessageA(dialog, WM_CLOSE, 0, 0);
}

bool WriteDirectoryDialog(const std::string& path) {
  dialogPath = path;
  dialogTicks = 0;
  const UINT_PTR timer = SetTimer(nullptr, 0, 30, &CaptureDialog);
  System::AnsiString dir = "C:\\windows";
  Filectrl::SelectDirectory(dir, {}, 0);
  KillTimer(nullptr, timer);
  return dialogWritten;
}

}  // namespace

int RenderFormPage(const char* folderName) {
  const std::string path = std::string(folderName ? folderName : "pictures") + "\\form.png";
  Application->Initialize();
  TForm form(nullptr);
  form.SetCaption("Velkin controls");
  form.SetBorderStyle(bsDialog);
  form.SetPosition(poScreenCenter);
  BuildForm(&form);
  form.SetClientWidth(560);
  form.SetClientHeight(300);
  form.Show();
  LetPaint(form.GetHandle());

  const bool written = WriteWindow(form.GetHandle(), path);
  form.Hide();
  const std::string folder = folderName ? folderName : "pictures";
  return written && WriteDirectoryDialog(folder + "\\select-directory.png") ? 1 : 0;
}
