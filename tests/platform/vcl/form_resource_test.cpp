// A form class whose design is compiled into this program's resources from
// its text description: made with an owner, it reads the design, creating its
// controls, binding its fields and events, keeping its 8-bit texts byte for
// byte and fitting the screen's density. Run again under a Russian code page
// and on a 144-DPI screen.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "platform/vcl/application.h"
#include "platform/vcl/filer.h"
#include "platform/vcl/forms.h"
#include "platform/vcl/std_buttons.h"
#include "platform/vcl/std_edits.h"
#include "platform/vcl/std_label.h"
#include "platform/vcl/std_lists.h"

class TOrderForm : public Forms::TForm {
  VCL_CLASS();

 public:
  explicit TOrderForm(Classes::TComponent* owner) : TForm(owner) { ReadDesign(); }
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

std::string WindowText(HWND w) {
  char text[256] = {};
  GetWindowTextA(w, text, sizeof text);
  return text;
}

TEST(TCustomForm, AFormReadsItsDesignFromItsModulesResources) {
  const int dpi = Forms::Screen->GetPixelsPerInch();
  if (const char* want = std::getenv("VELKIN_SCREEN_DPI")) ASSERT_EQ(std::atoi(want), dpi) << "the prefix's density";
  if (const char* want = std::getenv("VELKIN_ANSI_CP")) ASSERT_EQ(static_cast<UINT>(std::atoi(want)), GetACP());

  TOrderForm form(Forms::Application);
  ASSERT_NE(nullptr, form.OkButton);
  ASSERT_NE(nullptr, form.NameEdit);
  ASSERT_NE(nullptr, form.KindCombo);
  EXPECT_EQ("OrderForm", std::string(form.GetName().c_str()));
  EXPECT_EQ(5, form.GetControlCount());
  EXPECT_EQ(&form, form.NameEdit->GetParent());
  EXPECT_EQ(form.NameEdit, form.NameLabel->GetFocusControl());
  EXPECT_EQ(Forms::bsDialog, form.GetBorderStyle());
  EXPECT_EQ(Controls::mrCancel, form.CancelButton->GetModalResult());

  // Texts are the resource's bytes; under a Cyrillic code page they are the
  // Russian words.
  EXPECT_EQ("\xC7\xE0\xEA\xE0\xE7", WindowText(form.GetHandle()));
  EXPECT_EQ("\xCE\xF2\xEC\xE5\xED\xE0", WindowText(form.CancelButton->GetHandle()));
  EXPECT_EQ("it's me", WindowText(form.NameEdit->GetHandle()));
  if (GetACP() == 1251) {
    wchar_t caption[32] = {};
    GetWindowTextW(form.GetHandle(), caption, 32);
    EXPECT_EQ(std::wstring(L"\u0417\u0430\u043A\u0430\u0437"), caption);
  }
  EXPECT_EQ(1, SendMessageA(form.KindCombo->GetHandle(), CB_GETCURSEL, 0, 0));
  EXPECT_EQ(2, SendMessageA(form.KindCombo->GetHandle(), CB_GETCOUNT, 0, 0));

  // Events are the form's own methods.
  form.DoCreate();
  SendMessageA(form.OkButton->GetHandle(), BM_CLICK, 0, 0);
  EXPECT_EQ(1, form.created);
  EXPECT_EQ(1, form.oks);

  // Designed at 96 pixels per inch: at any other density it is scaled.
  EXPECT_EQ(dpi, form.GetPixelsPerInch());
  RECT client;
  GetClientRect(form.GetHandle(), &client);
  EXPECT_EQ(MulDiv(300, dpi, 96), client.right);
  EXPECT_EQ(MulDiv(110, dpi, 96), client.bottom);
  EXPECT_EQ(MulDiv(217, dpi, 96), form.CancelButton->GetLeft());
  EXPECT_EQ(MulDiv(-11, dpi, 96), form.GetFont()->GetHeight());
  EXPECT_EQ(200, form.GetLeft()) << "the form keeps its place";

  // A form class without a design says so.
  std::string message;
  try {
    TPlainForm plain(nullptr);
  } catch (const Classes::EResNotFound& e) {
    message = e.Message.c_str();
  }
  EXPECT_EQ("Resource TPlainForm not found", message);
}

}  // namespace
