// A small contact list: contacts [EXPORT_FILE]. The form is designed in
// contacts.form; exports go to EXPORT_FILE, by default contacts.txt in the
// current folder.
#include "contacts_form.h"
#include "platform/vcl/forms/application.h"

int main(int argc, char** argv) {
  Forms::Application->Initialize();
  Forms::Application->SetTitle("Contacts");
  TContactsForm* form;
  Forms::Application->CreateForm(form);
  if (argc > 1) form->SetExportPath(argv[1]);
  Forms::Application->Run();
  return 0;
}
