#pragma once
/// \file
/// Classes registered by name, and making components by class.
#include <initializer_list>
#include <vector>

#include "platform/vcl/core/component.h"

/// The classes a program can make by name, such as the classes of the
/// components a stream names. Names compare without regard to case.
namespace Classes {

using System::TMetaClass;

///@{
/// Adds classes (one registered already: nothing); a different class already
/// registered under the same name raises EComponentError.
VCL_API void RegisterClass(const TMetaClass* cls);
VCL_API void RegisterClasses(std::initializer_list<const TMetaClass*> classes);
///@}
/// Takes a class off the register.
VCL_API void UnRegisterClass(const TMetaClass* cls);
/// The registered class of that name, or null.
VCL_API const TMetaClass* GetClass(const AnsiString& name);
/// Every registered class, in the order of registration.
VCL_API std::vector<const TMetaClass*> GetRegisteredClasses();
/// The same, raising EClassNotFound "Class <name> not found" when absent.
VCL_API const TMetaClass* FindClass(const AnsiString& name);

/// A new component of class cls with that owner; raises EComponentError when
/// cls is not a component class that can be made by name.
VCL_API TComponent* CreateComponent(const TMetaClass* cls, TComponent* owner);

}  // namespace Classes
