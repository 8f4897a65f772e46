// Asks for a name in a designed dialog: Enter (the default button) greets,
// Escape (the cancel button) leaves without a word. Exits 0 when greeted.
#include "name_form.h"
#include "platform/vcl/forms/application.h"
#include "velkin/dialogs/xmessagebox.h"

int main() {
  Forms::Application->Initialize();
  TNameForm form(Forms::Application);
  if (form.ShowModal() != Controls::mrOk) return 1;
  const System::AnsiString greeting = "Hello, " + form.NameEdit->GetText() + "!";
  XMessageBox(nullptr, greeting.c_str(), "Designed form", MB_OK | MB_ICONINFORMATION, 0);
  return 0;
}
