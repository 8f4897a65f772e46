#include "platform/vcl/core/component.h"
#include "platform/vcl/core/typinfo.h"

#include <algorithm>

namespace Classes {

VCL_COMPONENT_IMPL(TComponent, TPersistent, VCL_PROPERTY(Name), VCL_PROPERTY(Tag, 0))

namespace {
using Sysutils::SameText;

void Erase(std::vector<TComponent*>& list, TComponent* item) {
  auto it = std::find(list.begin(), list.end(), item);
  if (it != list.end()) list.erase(it);
}
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
  while (!freeNotifies_.empty()) {
    TComponent* other = freeNotifies_.back();
    freeNotifies_.pop_back();
    Erase(other->freeNotifies_, this);
    other->Notification(this, opRemove);
  }
  DestroyComponents();
  if (owner_) owner_->RemoveComponent(this);
}

TComponent* TComponent::GetComponent(int index) const {
  if (index < 0 || index >= GetComponentCount()) ListIndexError(index);
  return components_[index];
}

int TComponent::GetComponentIndex() const {
  if (!owner_) return -1;
  const auto& list = owner_->components_;
  return static_cast<int>(std::find(list.begin(), list.end(), this) - list.begin());
}

TComponent* TComponent::FindComponent(const AnsiString& name) const {
  if (name.IsEmpty()) return nullptr;
  for (TComponent* c : components_)
    if (SameText(c->name_, name)) return c;
  return nullptr;
}

void TComponent::SetName(const AnsiString& value) {
  if (value == name_) return;
  if (!value.IsEmpty() && !IsValidIdent(value)) throw EComponentError("'" + value + "' is not a valid component name");
  if (owner_) owner_->ValidateRename(this, name_, value);
  name_ = value;
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
  components_.push_back(component);
  component->owner_ = this;
}

void TComponent::Remove(TComponent* component) {
  Erase(components_, component);
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
  while (!components_.empty()) {
    TComponent* c = components_.back();
    Remove(c);
    delete c;
  }
}

void TComponent::Destroying() {
  if (state_.Contains(csDestroying)) return;
  state_ << csDestroying;
  for (TComponent* c : components_) c->Destroying();
}

void TComponent::FreeNotification(TComponent* component) {
  if (!component || component == this) return;
  if (std::find(freeNotifies_.begin(), freeNotifies_.end(), component) == freeNotifies_.end()) {
    freeNotifies_.push_back(component);
    component->freeNotifies_.push_back(this);
  }
}

void TComponent::RemoveFreeNotification(TComponent* component) {
  if (!component) return;
  Erase(freeNotifies_, component);
  Erase(component->freeNotifies_, this);
}

void TComponent::Notification(TComponent* component, TOperation operation) {
  if (operation == opRemove && component) RemoveFreeNotification(component);
  // A copy: a handler may free components of this one.
  const std::vector<TComponent*> owned = components_;
  for (TComponent* c : owned)
    if (std::find(components_.begin(), components_.end(), c) != components_.end())
      c->Notification(component, operation);
}

void TComponent::Loaded() { state_ >> csLoading; }

}  // namespace Classes
