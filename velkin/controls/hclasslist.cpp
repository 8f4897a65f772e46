#include "velkin/controls/hclasslist.h"

#include "platform/pellum/mktclass.h"

HClassHolder::HClassHolder(const System::TMetaClass* cls, Controls::TControl* prototype)
    : class_(cls), prototype_(nullptr) {
  if (!prototype) return;
  const System::AnsiString name = prototype->GetName();
  prototype->SetName("");
  try {
    prototype_ = new Classes::TMemoryStream;
    prototype_->WriteComponent(prototype);
  } catch (...) {
    delete prototype_;
    prototype->SetName(name);
    throw;
  }
  prototype->SetName(name);
}

HClassHolder::~HClassHolder() { delete prototype_; }

System::AnsiString HClassHolder::Name() const { return class_ ? class_->ClassName() : ""; }

// A stream error frees the new instance before it passes on: it would
// otherwise stay half made with its owner, or leak without one.
Classes::TComponent* HClassHolder::Create(Classes::TComponent* owner, Controls::TWinControl* parent) {
  Classes::TComponent* object = Mktclass::HCreateClassObject(owner, class_);
  if (!object) return nullptr;
  try {
    if (prototype_) {
      prototype_->SetPosition(0);
      prototype_->ReadComponent(object);
    }
  } catch (...) {
    delete object;
    throw;
  }
  if (auto* control = dynamic_cast<Controls::TControl*>(object); control && parent) control->SetParent(parent);
  return object;
}

HClassArray::HClassArray() : MyArray<HClassHolder*>(true, 20, 20) {}

HClassArray::~HClassArray() = default;

void HClassArray::ItemAdded(HClassHolder*) {}

HClassHolder* HClassArray::CreateNew(const System::TMetaClass* cls, Controls::TControl* prototype) {
  return new HClassHolder(cls, prototype);
}

void HClassArray::Append(HClassHolder* holder) {
  if (Add(holder) >= 0)
    ItemAdded(holder);
  else
    delete holder;
}

void HClassArray::Register(Controls::TWinControl* container) {
  if (!container) return;
  for (int i = 0; i < container->GetControlCount(); ++i) {
    Controls::TControl* child = container->GetControl(i);
    Append(CreateNew(child->ClassType(), child));
  }
}

void HClassArray::Register(const System::TMetaClass* const* classes, int count) {
  for (int i = 0; i < count; ++i) Append(CreateNew(classes[i], nullptr));
}
