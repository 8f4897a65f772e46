#include "platform/vcl/core/classes.h"

namespace Classes {

VCL_CLASS_IMPL(TPersistent, TObject)
VCL_CLASS_IMPL(EListError, Sysutils::Exception)
VCL_CLASS_IMPL(EStringListError, Sysutils::Exception)
VCL_CLASS_IMPL(EComponentError, Sysutils::Exception)
VCL_CLASS_IMPL(EClassNotFound, Sysutils::Exception)

void TPersistent::Assign(TPersistent* source) {
  if (source)
    source->AssignTo(this);
  else
    AssignError(nullptr);
}

void TPersistent::AssignTo(TPersistent* dest) { dest->AssignError(this); }

void TPersistent::DefineProperties(TFiler*) {}

void TPersistent::AssignError(TPersistent* source) {
  System::AnsiString from = source ? source->ClassName() : System::AnsiString("nil");
  throw Sysutils::EConvertError("Cannot assign a " + from + " to a " + ClassName());
}

}  // namespace Classes
