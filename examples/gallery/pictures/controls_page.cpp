// The control utilities on a real window: order rows lifted from a template
// form and stacked in a scroll box, and a group of controls of every kind
// filled by one routine through a single control field.
#include <windows.h>

#include <string>

#include "examples/gallery/pictures/pictures.h"
#include "examples/gallery/pictures/window_capture.h"
#include "platform/vcl/forms/application.h"
#include "platform/vcl/stdctrls/scroll_box.h"
#include "platform/vcl/stdctrls/std_group_box.h"
#include "velkin/controls/h_cfield.h"
#include "velkin/controls/h_dynarray.h"

using namespace Forms;

// The template: one order row on a panel.
class TOrderRowForm : public TForm {
  VCL_CLASS();

 public:
  explicit TOrderRowForm(Classes::TComponent* owner) : TForm(owner) { ReadDesign(); }
  Stdctrls::TLabel* NumberLabel = nullptr;
  Stdctrls::TEdit* ItemEdit = nullptr;
  Stdctrls::TComboBox* UnitCombo = nullptr;
  Comctrls::TUpDown* QuantityUpDown = nullptr;
};
VCL_COMPONENT_IMPL(TOrderRowForm, TForm, VCL_FIELD(NumberLabel), VCL_FIELD(ItemEdit), VCL_FIELD(UnitCombo),
                   VCL_FIELD(QuantityUpDown))

namespace {

// One value for whichever property a control offers; the field ignores the rest.
struct Value {
  const char* text;
  int position;
  int itemIndex;
  bool checked;
};

void Fill(HControlField& field, Classes::TComponent* control, const Value& v) {
  field.SetControl(control);
  if (v.text) field.SetText(v.text);
  field.SetMax(100);
  field.SetPosition(v.position);
  field.SetItemIndex(v.itemIndex);
  field.SetChecked(v.checked);
  field.SetControl(nullptr);
}

template <class T>
T* Add(TForm* form, Controls::TWinControl* parent, int left, int top, int width, int height) {
  auto* control = new T(form);
  control->SetParent(parent);
  control->SetBounds(left, top, width, height);
  return control;
}

}  // namespace

int RenderControlsPage(const char* folderName) {
  const std::string path = std::string(folderName ? folderName : "pictures") + "\\controls.png";
  Application->Initialize();
  TForm form(nullptr);
  form.SetCaption("Order");
  form.SetBorderStyle(bsDialog);
  form.SetPosition(poScreenCenter);
  form.SetClientWidth(620);
  form.SetClientHeight(250);

  // Rows from the template, stacked top to bottom in call order.
  auto* rowsBox = Add<Stdctrls::TGroupBox>(&form, &form, 8, 8, 328, 234);
  rowsBox->SetText("Rows placed from a template form");
  auto* scroll = Add<TScrollBox>(&form, rowsBox, 8, 18, 312, 206);
  HControlField field;
  field.SetAccept(
      "TCustomLabel;TCustomEdit;TCustomComboBox;TCustomListBox;TButtonControl;TTrackBar;TProgressBar;"
      "TCustomUpDown");
  HDynamicArray rows(nullptr, 0);
  const struct {
    const char* item;
    int unit, quantity;
  } order[] = {{"Copper wire", 1, 12},
               {"Terminal block", 0, 40},
               {"Cable ties", 2, 3},
               {"Heat shrink", 0, 25},
               {"Solder", 1, 2}};
  for (int i = 0; i < 5; ++i) {
    auto* row = new TOrderRowForm(&form);
    Fill(field, row->NumberLabel, {(std::to_string(i + 1) + ".").c_str(), 0, -1, false});
    Fill(field, row->ItemEdit, {order[i].item, 0, -1, false});
    Fill(field, row->UnitCombo, {nullptr, 0, order[i].unit, false});
    Fill(field, row->QuantityUpDown, {nullptr, order[i].quantity, -1, false});
    rows.NewControl(reinterpret_cast<void*>(static_cast<intptr_t>(i)), row, scroll, Controls::alTop, 0, 0);
  }

  // Every kind, filled by the one routine.
  auto* group = Add<Stdctrls::TGroupBox>(&form, &form, 344, 8, 268, 234);
  group->SetText("Filled through one control field");
  auto* label = Add<Stdctrls::TLabel>(&form, group, 12, 24, 240, 13);
  label->SetAutoSize(false);
  Fill(field, label, {"A label with its caption", 0, -1, false});
  Fill(field, Add<Stdctrls::TEdit>(&form, group, 12, 44, 244, 21), {"An edit with its text", 0, -1, false});
  auto* check = Add<Stdctrls::TCheckBox>(&form, group, 12, 72, 120, 17);
  Fill(field, check, {"Checked", 0, -1, true});
  Fill(field, Add<Stdctrls::TRadioButton>(&form, group, 140, 72, 116, 17), {"Chosen", 0, -1, true});
  auto* combo = Add<Stdctrls::TComboBox>(&form, group, 12, 96, 244, 21);
  combo->SetStyle(Stdctrls::csDropDownList);
  combo->GetItems()->SetText("First choice\nSecond choice\nThird choice");
  Fill(field, combo, {nullptr, 0, 1, false});
  Fill(field, Add<Comctrls::TTrackBar>(&form, group, 6, 124, 256, 30), {nullptr, 70, -1, false});
  Fill(field, Add<Comctrls::TProgressBar>(&form, group, 12, 160, 244, 16), {nullptr, 45, -1, false});
  auto* list = Add<Stdctrls::TListBox>(&form, group, 12, 184, 244, 40);
  list->GetItems()->SetText("Listed item\nSelected item\nAnother item");
  Fill(field, list, {nullptr, 0, 1, false});

  form.Show();
  check->SetFocus();
  LetPaint(form.GetHandle());
  const bool written = WriteWindow(form.GetHandle(), path);
  form.Hide();
  rows.DeleteAll();
  return written ? 1 : 0;
}
