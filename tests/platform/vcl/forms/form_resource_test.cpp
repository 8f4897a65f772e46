// A form class whose design is compiled into this program's resources from
// its text description: made with an owner, it reads the design, creating its
// controls, binding its fields and events, reading its Russian texts in the
// process's code page and fitting the screen's density. Run again under a
// Cyrillic code page, in a program whose code page is UTF-8 and on a 144-DPI
// screen.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "platform/ostrel/dc_changer.h"
#include "platform/ostrel/owned_handle.h"
#include "platform/vcl/core/filer.h"
#include "platform/vcl/forms/application.h"
#include "platform/vcl/forms/forms.h"
#include "platform/vcl/graphics/measuring_dc.h"
#include "platform/vcl/stdctrls/std_buttons.h"
#include "platform/vcl/stdctrls/std_edits.h"
#include "platform/vcl/stdctrls/std_label.h"
#include "platform/vcl/stdctrls/std_lists.h"
#include "tests/platform/vcl/test_helpers.h"

class TOrderForm : public Forms::TForm {
  VCL_CLASS();

 public:
  explicit TOrderForm(Classes::TComponent* owner, bool scaled = true) : TForm(owner) {
    SetScaled(scaled);
    ReadDesign();
  }
  Stdctrls::TLabel* NameLabel = nullptr;
  Stdctrls::TEdit* NameEdit = nullptr;
  Stdctrls::TComboBox* KindCombo = nullptr;
  Stdctrls::TButton* OkButton = nullptr;
  Stdctrls::TButton* CancelButton = nullptr;
  int created = 0, oks = 0;
  void FormCreate(System::TObject*) { ++created; }
  void OkButtonClick(System::TObject*) { ++oks; }
};
VCL_COMPONENT_IMPL(TOrderForm, Forms::TForm, VCL_FIELD(NameLabel), VCL_FIELD(NameEdit), VCL_FIELD(KindCombo),
                   VCL_FIELD(OkButton), VCL_FIELD(CancelButton), VCL_METHOD(FormCreate, System::TNotifyEvent),
                   VCL_METHOD(OkButtonClick, System::TNotifyEvent))

// A form class without a design.
class TPlainForm : public Forms::TForm {
  VCL_CLASS();

 public:
  explicit TPlainForm(Classes::TComponent* owner) : TForm(owner) { ReadDesign(); }
};
VCL_COMPONENT_IMPL(TPlainForm, Forms::TForm)

namespace {

using namespace vcl_test;

TEST(TCustomForm, AFormReadsItsDesignFromItsModulesResources) {
  const int dpi = Forms::Screen->GetPixelsPerInch();
  if (const char* want = std::getenv("VELKIN_SCREEN_DPI")) {
    ASSERT_EQ(std::atoi(want), dpi) << "the prefix's density";
  }
  if (const char* want = std::getenv("VELKIN_ANSI_CP")) {
    ASSERT_EQ(static_cast<UINT>(std::atoi(want)), GetACP());
  }

  TOrderForm form(Forms::Application);
  ASSERT_NE(nullptr, form.OkButton);
  ASSERT_NE(nullptr, form.NameEdit);
  ASSERT_NE(nullptr, form.KindCombo);
  EXPECT_EQ("OrderForm", Str(form.GetName()));
  EXPECT_EQ(6, form.GetControlCount());
  EXPECT_EQ(form.NameEdit, form.NameLabel->GetFocusControl());

  // The Russian words wherever the code page has Cyrillic letters, a '?' for
  // each letter where it has none; never other letters.
  const bool cyrillic = GetACP() == 1251 || GetACP() == CP_UTF8;
  EXPECT_EQ(cyrillic ? L"Заказ" : L"?????", Wide(WindowText(form.GetHandle())));
  EXPECT_EQ(cyrillic ? L"Отмена" : L"??????", Wide(WindowText(form.CancelButton->GetHandle())));
  EXPECT_EQ(L"it's me", Wide(WindowText(form.NameEdit->GetHandle())));
  EXPECT_EQ(1, SendMessageA(form.KindCombo->GetHandle(), CB_GETCURSEL, 0, 0));
  EXPECT_EQ(2, SendMessageA(form.KindCombo->GetHandle(), CB_GETCOUNT, 0, 0));

  // Events are the form's own methods; OnCreate ran once the design was read.
  form.DoCreate();
  SendMessageA(form.OkButton->GetHandle(), BM_CLICK, 0, 0);
  EXPECT_EQ(1, form.created);
  EXPECT_EQ(1, form.oks);

  // Designed at 96 pixels per inch: at any other density it is scaled.
  EXPECT_EQ(dpi, form.GetPixelsPerInch());
  RECT client;
  GetClientRect(form.GetHandle(), &client);
  EXPECT_EQ(MulDiv(300, dpi, 96), client.right);
  EXPECT_EQ(MulDiv(230, dpi, 96), client.bottom);
  EXPECT_EQ(MulDiv(217, dpi, 96), form.CancelButton->GetLeft());
  EXPECT_EQ(MulDiv(-11, dpi, 96), form.GetFont()->GetHeight());
  EXPECT_EQ(200, form.GetLeft()) << "the form keeps its place";

  // Nested panels, a memo's lines, a label's own font style, a colour by name.
  auto* memo = dynamic_cast<Stdctrls::TMemo*>(form.FindComponent("NotesMemo"));
  ASSERT_NE(nullptr, memo);
  EXPECT_EQ(form.FindComponent("InnerPanel"), memo->GetParent());
  EXPECT_EQ(form.FindComponent("OuterPanel"), memo->GetParent()->GetParent());
  EXPECT_EQ(2, memo->GetLines()->GetCount());
  EXPECT_EQ(cyrillic ? L"Строка 2" : L"?????? 2", Wide(memo->GetLines()->Get(1)));
  EXPECT_EQ(Graphics::clInfoBk, dynamic_cast<Controls::TControl*>(form.FindComponent("InnerPanel"))->GetColor());
  auto* note = dynamic_cast<Controls::TControl*>(form.FindComponent("NoteLabel"));
  EXPECT_EQ((Graphics::TFontStyles{Graphics::fsBold, Graphics::fsUnderline}), note->GetFont()->GetStyle());

  // Every control where the design puts it, scaled to the screen, with room
  // for its caption in its font.
  TOrderForm designed(nullptr, false);
  const OwnedWindowDC screen(nullptr);
  for (int i = 0; i < designed.GetComponentCount(); ++i) {
    auto* d = dynamic_cast<Controls::TControl*>(designed.GetComponent(i));
    auto* c = dynamic_cast<Controls::TControl*>(form.FindComponent(designed.GetComponent(i)->GetName()));
    if (!d) continue;
    ASSERT_NE(nullptr, c);
    const std::string name = c->GetName().c_str();
    const int want[] = {d->GetLeft(), d->GetTop(), d->GetWidth(), d->GetHeight()};
    const int got[] = {c->GetLeft(), c->GetTop(), c->GetWidth(), c->GetHeight()};
    // A label that sizes itself to its caption is as large as the caption
    // in its scaled font; a combo box is as high as the system makes it for
    // that font, which the caption must fit like any other text.
    auto* label = dynamic_cast<Stdctrls::TCustomLabel*>(c);
    auto* edit = dynamic_cast<Stdctrls::TCustomEdit*>(c);
    auto* combo = dynamic_cast<Stdctrls::TCustomComboBox*>(c);
    const bool autoSized = label && label->GetAutoSize();
    const int checked = autoSized ? 2 : combo ? 3 : 4;
    for (int k = 0; k < checked; ++k)
      EXPECT_NEAR(MulDiv(want[k], dpi, 96), got[k], 1) << name << " bound " << k << " designed " << want[k];
    const std::string text = c->GetText().c_str();
    RECT extent{};
    {
      DCChanger use(screen.get());
      use.Select(c->GetFont()->GetHandle());
      // Wide, as the controls draw: Wine's 8-bit GDI reads bytes in a code page of its own.
      DrawTextW(screen.get(), Graphics::WideText(text.c_str(), static_cast<int>(text.size())).c_str(), -1, &extent,
                DT_CALCRECT | (edit || combo ? DT_NOPREFIX : 0));
    }
    if (autoSized) {
      EXPECT_NEAR(extent.right, c->GetWidth(), 1) << name << ": '" << text << "' sized";
      EXPECT_NEAR(extent.bottom, c->GetHeight(), 1) << name << ": '" << text << "' sized";
    }
    // The room the text has: an edit's formatting rectangle, a combo box's
    // selection field, or the whole control.
    RECT room{0, 0, c->GetWidth(), c->GetHeight()};
    if (edit) SendMessageA(edit->GetHandle(), EM_GETRECT, 0, reinterpret_cast<LPARAM>(&room));
    if (combo) {
      COMBOBOXINFO info{};
      info.cbSize = sizeof info;
      ASSERT_TRUE(GetComboBoxInfo(combo->GetHandle(), &info)) << name;
      room = info.rcItem;
      RECT window;
      GetWindowRect(combo->GetHandle(), &window);
      EXPECT_EQ(window.bottom - window.top, c->GetHeight()) << name << ": the height the system gives";
    }
    if (text.empty()) continue;
    EXPECT_LE(extent.right, room.right - room.left) << name << ": '" << text << "' fits";
    EXPECT_LE(extent.bottom, room.bottom - room.top) << name << ": '" << text << "' fits";
  }

  // A form class without a design says so.
  EXPECT_EQ("Resource TPlainForm not found", ErrorOf<Classes::EResNotFound>([] { TPlainForm plain(nullptr); }));
}

}  // namespace
