// The smallest program of the framework: a window with a label and a button
// that closes it.
#include "platform/vcl/forms/application.h"
#include "platform/vcl/stdctrls/std_buttons.h"
#include "platform/vcl/stdctrls/std_label.h"

using namespace Forms;
using namespace Stdctrls;

class THelloForm : public TForm {
 public:
  explicit THelloForm(Classes::TComponent* owner) : TForm(owner) {
    SetCaption("Hello");
    SetBorderStyle(bsDialog);
    SetPosition(poScreenCenter);
    SetClientWidth(264);
    SetClientHeight(88);

    auto* greeting = new TLabel(this);
    greeting->SetParent(this);
    greeting->SetBounds(16, 16, 232, 13);
    greeting->SetText("Hello, world");

    auto* close = new TButton(this);
    close->SetParent(this);
    close->SetBounds(173, 51, 75, 25);
    close->SetText("Close");
    close->SetDefault(true);
    close->SetOnClick({this, &THelloForm::CloseClick});
  }

 private:
  void CloseClick(System::TObject*) { Close(); }
};

int main() {
  Application->Initialize();
  THelloForm* form;
  Application->CreateForm(form);
  Application->Run();
  return 0;
}
