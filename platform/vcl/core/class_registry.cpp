#include "platform/vcl/core/class_registry.h"

#include <mutex>
#include <vector>

namespace Classes {

namespace {
std::mutex registryLock;
std::vector<const TMetaClass*>& Registry() {
  static std::vector<const TMetaClass*> classes;
  return classes;
}
const TMetaClass* Lookup(const AnsiString& name) {
  for (const TMetaClass* c : Registry())
    if (c->ClassNameIs(name.c_str())) return c;
  return nullptr;
}
}  // namespace

void RegisterClass(const TMetaClass* cls) {
  if (!cls) return;
  std::lock_guard<std::mutex> guard(registryLock);
  if (const TMetaClass* known = Lookup(cls->Name)) {
    if (known == cls) return;
    throw EComponentError("A class named " + AnsiString(cls->Name) + " already exists");
  }
  Registry().push_back(cls);
}

void RegisterClasses(std::initializer_list<const TMetaClass*> classes) {
  for (const TMetaClass* c : classes) RegisterClass(c);
}

void UnRegisterClass(const TMetaClass* cls) {
  std::lock_guard<std::mutex> guard(registryLock);
  auto& list = Registry();
  for (auto it = list.begin(); it != list.end(); ++it)
    if (*it == cls) {
      list.erase(it);
      return;
    }
}

const TMetaClass* GetClass(const AnsiString& name) {
  std::lock_guard<std::mutex> guard(registryLock);
  return Lookup(name);
}

std::vector<const TMetaClass*> GetRegisteredClasses() {
  std::lock_guard<std::mutex> guard(registryLock);
  return Registry();
}

const TMetaClass* FindClass(const AnsiString& name) {
  if (const TMetaClass* c = GetClass(name)) return c;
  throw EClassNotFound("Class " + name + " not found");
}

TComponent* CreateComponent(const TMetaClass* cls, TComponent* owner) {
  if (!cls || !cls->InheritsFrom(TComponent::StaticClass()) || !cls->Factory)
    throw EComponentError("Cannot create an instance of " + AnsiString(cls ? cls->Name : "nil"));
  return static_cast<TComponent*>(cls->Factory(owner));
}

}  // namespace Classes
