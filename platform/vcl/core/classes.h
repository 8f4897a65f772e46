#pragma once
/// \file
/// Unit Classes: persistent objects and the errors of lists, components and classes.
#include "platform/vcl/core/system.h"
#include "platform/vcl/core/sysutils.h"
#include "platform/vcl/core/vcl_api.h"

namespace Classes {

using System::AnsiString;
using System::TNotifyEvent;
using System::TObject;

/// An index outside a list; the message names the index.
class VCL_API EListError : public Sysutils::Exception {
  VCL_CLASS();

 public:
  using Exception::Exception;
};
class VCL_API EStringListError : public Sysutils::Exception {
  VCL_CLASS();

 public:
  using Exception::Exception;
};
/// A component name that is not an identifier or is taken.
class VCL_API EComponentError : public Sysutils::Exception {
  VCL_CLASS();

 public:
  using Exception::Exception;
};
/// A class name nobody registered.
class VCL_API EClassNotFound : public Sysutils::Exception {
  VCL_CLASS();

 public:
  using Exception::Exception;
};

/// Raises E with "List index out of bounds (<index>)".
template <class E = EListError>
[[noreturn]] void ListIndexError(int index) {
  throw E("List index out of bounds (" + System::AnsiString(index) + ")");
}

class TFiler;
class TReader;
class TWriter;

/// An object that can copy itself to and from others of its kind.
class VCL_API TPersistent : public TObject {
  VCL_CLASS();

 public:
  /// Copies from source. The default hands over to source->AssignTo(this);
  /// a null source raises EConvertError "Cannot assign a nil to a <class>".
  virtual void Assign(TPersistent* source);

 protected:
  friend class TReader;  // they ask for the defined properties
  friend class TWriter;
  /// Copies this into dest; the default raises EConvertError
  /// "Cannot assign a <this class> to a <dest class>".
  virtual void AssignTo(TPersistent* dest);
  virtual void DefineProperties(TFiler* filer);
  [[noreturn]] void AssignError(TPersistent* source);
};

}  // namespace Classes
