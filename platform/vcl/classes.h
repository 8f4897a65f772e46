#pragma once
#include "platform/vcl/system.h"
#include "platform/vcl/sysutils.h"
#include "platform/vcl/vcl_api.h"

namespace Classes {

using System::TNotifyEvent;
using System::TObject;

class TFiler;

// An object that can copy itself to and from others of its kind.
class VCL_API TPersistent : public TObject {
  VCL_CLASS();

 public:
  // Copies from source. The default hands over to source->AssignTo(this);
  // a null source raises EConvertError "Cannot assign a nil to a <class>".
  virtual void Assign(TPersistent* source);

 protected:
  // Copies this into dest; the default raises EConvertError
  // "Cannot assign a <this class> to a <dest class>".
  virtual void AssignTo(TPersistent* dest);
  virtual void DefineProperties(TFiler* filer);
  [[noreturn]] void AssignError(TPersistent* source);
};

}  // namespace Classes
