#pragma once
/// \file
/// Unit Mktclass: components made from their class at run time.
#include "platform/pellum/pellum_api.h"
#include "platform/vcl/core/component.h"

namespace Mktclass {

/// A new component of class cls owned by owner, made through the class's
/// factory. Null when cls is null, has no factory or is not a component
/// class; an exception raised by the component's constructor passes on.
PELLUM_API Classes::TComponent* HCreateClassObject(Classes::TComponent* owner, const System::TMetaClass* cls);

}  // namespace Mktclass
