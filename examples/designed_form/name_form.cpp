#include "name_form.h"

// The class publishes its fields so that reading the design can set them.
VCL_COMPONENT_IMPL(TNameForm, Forms::TForm, VCL_FIELD(PromptLabel), VCL_FIELD(NameEdit), VCL_FIELD(OkButton),
                   VCL_FIELD(CancelButton))

// The design is the resource named after the class (velkin_add_forms put it there).
TNameForm::TNameForm(Classes::TComponent* owner) : TForm(owner) { ReadDesign(); }
