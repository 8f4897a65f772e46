#include "platform/pellum/mktclass.h"

#include "platform/vcl/core/class_registry.h"

namespace Mktclass {

Classes::TComponent* HCreateClassObject(Classes::TComponent* owner, const System::TMetaClass* cls) {
  if (!cls || !cls->Factory || !cls->InheritsFrom(Classes::TComponent::StaticClass())) return nullptr;
  return Classes::CreateComponent(cls, owner);
}

}  // namespace Mktclass
