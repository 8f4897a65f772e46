#include "platform/vcl/core/component.h"

#include "platform/vcl/core/owned_components.h"
#include "platform/vcl/core/typinfo.h"

namespace Classes {

VCL_COMPONENT_IMPL(TComponent, TPersistent, VCL_PROPERTY(Name), VCL_PROPERTY(Tag, 0))

namespace {
using Sysutils::SameText;
}  // namespace

bool IsValidIdent(const AnsiString& ident) {
  auto alpha = [](char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_'; };
  if (ident.IsEmpty() || !alpha(ident[1])) return false;
  for (int i = 2; i <= ident.Length(); ++i)
    if (!alpha(ident[i]) && !(ident[i] >= '0' && ident[i] <= '9')) return false;
  return true;
}

TComponent::TComponent(TComponent* owner) {
  if (owner) owner->InsertComponent(this);
}

TComponent::~TComponent() { Release(); }

void TComponent::BeforeDestruction() { Release(); }

// Runs once, from BeforeDestruction when the component is deleted, else from
// the destructor (a component on the stack or a member).
void TComponent::Release() {
  if (released_) return;
  released_ = true;
  Destroying();
  while (!freeNotifies_.IsEmpty()) {
    TComponent* other = freeNotifies_.Items().back();
    freeNotifies_.Remove(other);
    other->freeNotifies_.Remove(this);
    other->Notification(this, opRemove);
  }
  DestroyComponents();
  if (owner_) owner_->RemoveComponent(this);
}

int TComponent::GetComponentCount() const { return owned_ ? owned_->Count() : 0; }

TComponent* TComponent::GetComponent(int index) const {
  if (index < 0 || index >= GetComponentCount()) ListIndexError(index);
  return owned_->At(index);
}

int TComponent::GetComponentIndex() const { return owner_ ? owner_->owned_->IndexOf(this) : -1; }

TComponent* TComponent::FindComponent(const AnsiString& name) const {
  return owned_ ? owned_->Find(name.c_str()) : nullptr;
}

void TComponent::SetName(const AnsiString& value) {
  if (value == name_) return;
  if (!value.IsEmpty() && !IsValidIdent(value)) throw EComponentError("'" + value + "' is not a valid component name");
  if (!owner_) {
    name_ = value;
    return;
  }
  owner_->ValidateRename(this, name_, value);
  owner_->owned_->BeforeRename(this);
  name_ = value;
  owner_->owned_->AfterRename(this);
}

void TComponent::ValidateRename(TComponent* component, const AnsiString& currentName, const AnsiString& newName) {
  if (SameText(currentName, newName)) return;
  if (TComponent* other = FindComponent(newName); other && other != component)
    throw EComponentError("A component named " + newName + " already exists");
}

void TComponent::InsertComponent(TComponent* component) {
  if (!component || component->owner_ == this) return;
  // A name taken here stops the move before anything changed.
  ValidateRename(nullptr, "", component->name_);
  if (component->owner_) component->owner_->RemoveComponent(component);
  Insert(component);
  Notification(component, opInsert);
}

void TComponent::RemoveComponent(TComponent* component) {
  if (!component || component->owner_ != this) return;
  Notification(component, opRemove);
  Remove(component);
}

void TComponent::Insert(TComponent* component) {
  if (!owned_) owned_ = std::make_unique<TOwnedComponents>();
  owned_->Add(component);
  component->owner_ = this;
}

void TComponent::Remove(TComponent* component) {
  owned_->Remove(component);
  component->owner_ = nullptr;
  // A published field naming it would dangle. Not while this one goes: the
  // class the field belongs to may be destroyed already.
  if (state_.Contains(csDestroying) || component->name_.IsEmpty()) return;
  if (const Typinfo::TPropInfo* field = Typinfo::GetFieldInfo(ClassType(), component->name_))
    if (field->GetField(this) == component) field->SetField(this, nullptr);
}

void TComponent::GetChildren(TGetChildProc, TComponent*) {}

void TComponent::SetParentComponent(TComponent*) {}

void TComponent::DestroyComponents() {
  while (TComponent* c = owned_ ? owned_->Last() : nullptr) {
    Remove(c);
    delete c;
  }
}

void TComponent::Destroying() {
  if (state_.Contains(csDestroying)) return;
  state_ << csDestroying;
  if (owned_) owned_->ForEach([](TComponent* c) { c->Destroying(); });
}

void TComponent::FreeNotification(TComponent* component) {
  if (!component || component == this) return;
  if (freeNotifies_.Add(component)) component->freeNotifies_.Add(this);
}

void TComponent::RemoveFreeNotification(TComponent* component) {
  if (!component) return;
  freeNotifies_.Remove(component);
  component->freeNotifies_.Remove(this);
}

void TComponent::SetSiblingNotification(bool value) {
  if (value == siblingNotification_) return;
  siblingNotification_ = value;
  if (!owner_) return;
  if (value)
    owner_->owned_->Listeners().Add(this);
  else
    owner_->owned_->Listeners().Remove(this);
}

void TComponent::Notification(TComponent* component, TOperation operation) {
  if (operation == opRemove && component) RemoveFreeNotification(component);
  if (!owned_ || owned_->Listeners().IsEmpty()) return;
  // A copy: a handler may free components of this one.
  const std::vector<TComponent*> listeners = owned_->Listeners().Items();
  for (TComponent* c : listeners)
    if (owned_->Listeners().Contains(c)) c->Notification(component, operation);
}

void TComponent::Loaded() { state_ >> csLoading; }

}  // namespace Classes
