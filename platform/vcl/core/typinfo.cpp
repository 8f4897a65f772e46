#include "platform/vcl/core/typinfo.h"

#include <map>
#include <memory>
#include <mutex>
#include <unordered_map>

#include <windows.h>

#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "platform/vcl/core/name_hash.h"

namespace Typinfo {

VCL_CLASS_IMPL(EPropertyError, Sysutils::Exception)

namespace {

using Sysutils::SameText;

[[noreturn]] void Fail(const TPropInfo* prop, const char* what) {
  throw EPropertyError(AnsiString("Property ") + prop->Name + ": " + what);
}

[[noreturn]] void BadValue(const TPropInfo* prop, const AnsiString& value) {
  throw EPropertyError(AnsiString("Property ") + prop->Name + ": invalid value '" + value + "'");
}

// The property's accessor, or a clear error when it has none of that kind.
template <class F>
F Need(const TPropInfo* prop, F f, const char* what) {
  if (!f) Fail(prop, what);
  return f;
}

// The items of a comma-separated list, blanks trimmed, empty ones left out.
std::vector<std::string_view> SplitList(std::string_view rest) {
  std::vector<std::string_view> items;
  while (!rest.empty()) {
    const size_t comma = rest.find(',');
    std::string_view item = rest.substr(0, comma);
    while (!item.empty() && item.front() == ' ') item.remove_prefix(1);
    while (!item.empty() && item.back() == ' ') item.remove_suffix(1);
    if (!item.empty()) items.push_back(item);
    if (comma == std::string_view::npos) break;
    rest.remove_prefix(comma + 1);
  }
  return items;
}

}  // namespace

TTypeInfo MakeEnumInfo(const char* name, const char* values) {
  TTypeInfo info(tkEnumeration, name);
  for (std::string_view item : SplitList(values)) {
    // A qualified value (Forms::bsNone) is named by its last part.
    if (const size_t colon = item.rfind(':'); colon != std::string_view::npos) item.remove_prefix(colon + 1);
    info.Names.emplace_back(std::string(item).c_str());
  }
  info.MaxValue = static_cast<int>(info.Names.size()) - 1;
  return info;
}

AnsiString GetEnumName(const TTypeInfo* info, int value) {
  if (value < info->MinValue || value > info->MaxValue || value - info->MinValue >= int(info->Names.size())) return "";
  return info->Names[value - info->MinValue];
}

int GetEnumValue(const TTypeInfo* info, const AnsiString& name) {
  for (size_t i = 0; i < info->Names.size(); ++i)
    if (SameText(info->Names[i].c_str(), name.c_str())) return info->MinValue + static_cast<int>(i);
  return -1;
}

namespace {

std::vector<const TPropInfo*> BuildPropList(const System::TMetaClass* cls) {
  std::vector<const TPropInfo*> list;
  if (!cls) return list;
  list = BuildPropList(cls->Parent);
  for (int i = 0; i < cls->PublishedCount; ++i) {
    const TPropInfo* p = &cls->Published[i];
    if (!p->IsProperty()) continue;
    // A class that publishes a property again replaces its parent's entry.
    bool replaced = false;
    for (auto& q : list)
      if (SameText(q->Name, p->Name)) {
        q = p;
        replaced = true;
      }
    if (!replaced) list.push_back(p);
  }
  return list;
}

}  // namespace

std::vector<const TPropInfo*> GetPropList(const System::TMetaClass* cls) {
  // Streaming asks for every component it writes: built once a class.
  static std::mutex lock;
  static std::map<const System::TMetaClass*, std::vector<const TPropInfo*>> lists;
  const std::lock_guard<std::mutex> guard(lock);
  auto it = lists.find(cls);
  if (it == lists.end()) it = lists.emplace(cls, BuildPropList(cls)).first;
  return it->second;
}

namespace {

using TNameMap = std::unordered_map<std::string_view, const TPropInfo*, Classes::TNameHash, Classes::TNameEqual>;

// A class's published properties, methods and fields by name, its own before
// its parents' (the first found wins, as a search up the classes finds it).
struct TClassIndex {
  TNameMap properties, methods, fields;
};

TClassIndex BuildIndex(const System::TMetaClass* cls) {
  TClassIndex index;
  for (; cls; cls = cls->Parent)
    for (int i = 0; i < cls->PublishedCount; ++i) {
      const TPropInfo* p = &cls->Published[i];
      TNameMap& map = p->IsMethod() ? index.methods : p->IsField() ? index.fields : index.properties;
      map.emplace(p->Name, p);
    }
  return index;
}

// Reading asks for every property it reads and every field it binds: the
// index is made once a class and kept in its class information. Indexes stay
// until the process ends, as a class of an unloaded package leaves its own.
const TPropInfo* Lookup(const System::TMetaClass* cls, TNameMap TClassIndex::*kind, const AnsiString& name) {
  if (!cls) return nullptr;
  auto* index = static_cast<const TClassIndex*>(cls->NameIndex.load(std::memory_order_acquire));
  if (!index) {
    static std::mutex lock;
    static std::vector<std::unique_ptr<TClassIndex>> made;
    const std::lock_guard<std::mutex> guard(lock);
    index = static_cast<const TClassIndex*>(cls->NameIndex.load(std::memory_order_acquire));
    if (!index) {
      made.push_back(std::make_unique<TClassIndex>(BuildIndex(cls)));
      index = made.back().get();
      cls->NameIndex.store(index, std::memory_order_release);
    }
  }
  const TNameMap& map = index->*kind;
  const auto found = map.find(std::string_view(name.c_str(), static_cast<size_t>(name.Length())));
  return found == map.end() ? nullptr : found->second;
}

}  // namespace

const TPropInfo* GetPropInfo(const System::TMetaClass* cls, const AnsiString& name) {
  return Lookup(cls, &TClassIndex::properties, name);
}

namespace {

const TPropInfo* FindMethod(const System::TMetaClass* cls, const AnsiString& name) {
  return Lookup(cls, &TClassIndex::methods, name);
}

bool SameMethod(const System::TMethod& a, const System::TMethod& b) {
  return a.Data == b.Data && std::memcmp(a.Code, b.Code, sizeof a.Code) == 0;
}

}  // namespace

const TPropInfo* GetFieldInfo(const System::TMetaClass* cls, const AnsiString& name) {
  return Lookup(cls, &TClassIndex::fields, name);
}

System::TMethod MethodAddress(TObject* instance, const AnsiString& name) {
  const TPropInfo* m = instance ? FindMethod(instance->ClassType(), name) : nullptr;
  return m ? m->BindMethod(instance) : System::TMethod{};
}

const char* MethodSignature(const System::TMetaClass* cls, const AnsiString& name) {
  const TPropInfo* m = FindMethod(cls, name);
  return m ? m->PropType()->Signature : nullptr;
}

AnsiString MethodName(TObject* instance, const System::TMethod& method) {
  if (!instance || !method.IsSet()) return "";
  for (const System::TMetaClass* cls = instance->ClassType(); cls; cls = cls->Parent)
    for (int i = 0; i < cls->PublishedCount; ++i)
      if (cls->Published[i].IsMethod() && SameMethod(cls->Published[i].BindMethod(instance), method))
        return cls->Published[i].Name;
  return "";
}

long long GetOrdProp(TObject* instance, const TPropInfo* prop) {
  return Need(prop, prop->GetOrd, "not an ordinal value")(instance);
}

void SetOrdProp(TObject* instance, const TPropInfo* prop, long long value) {
  Need(prop, prop->GetOrd, "not an ordinal value");
  Need(prop, prop->SetOrd, "read only")(instance, value);
}

double GetFloatProp(TObject* instance, const TPropInfo* prop) {
  return Need(prop, prop->GetFloat, "not a floating-point value")(instance);
}

void SetFloatProp(TObject* instance, const TPropInfo* prop, double value) {
  Need(prop, prop->GetFloat, "not a floating-point value");
  Need(prop, prop->SetFloat, "read only")(instance, value);
}

AnsiString GetStrProp(TObject* instance, const TPropInfo* prop) {
  return Need(prop, prop->GetStr, "not a string")(instance);
}

void SetStrProp(TObject* instance, const TPropInfo* prop, const AnsiString& value) {
  Need(prop, prop->GetStr, "not a string");
  Need(prop, prop->SetStr, "read only")(instance, value);
}

TObject* GetObjectProp(TObject* instance, const TPropInfo* prop) {
  return Need(prop, prop->GetObj, "not an object")(instance);
}

void SetObjectProp(TObject* instance, const TPropInfo* prop, TObject* value) {
  Need(prop, prop->GetObj, "not an object");
  if (value && !value->InheritsFrom(prop->PropType()->ClassType())) Fail(prop, "an object of the wrong class");
  Need(prop, prop->SetObj, "read only")(instance, value);
}

System::TMethod GetMethodProp(TObject* instance, const TPropInfo* prop) {
  return Need(prop, prop->GetMethod, "not an event")(instance);
}

void SetMethodProp(TObject* instance, const TPropInfo* prop, const System::TMethod& value) {
  Need(prop, prop->GetMethod, "not an event");
  Need(prop, prop->SetMethod, "read only")(instance, value);
}

AnsiString GetEnumProp(TObject* instance, const TPropInfo* prop) {
  if (prop->Kind() != tkEnumeration) Fail(prop, "not an enumeration");
  return GetEnumName(prop->PropType(), static_cast<int>(GetOrdProp(instance, prop)));
}

void SetEnumProp(TObject* instance, const TPropInfo* prop, const AnsiString& value) {
  if (prop->Kind() != tkEnumeration) Fail(prop, "not an enumeration");
  const int v = GetEnumValue(prop->PropType(), value);
  if (v < 0) BadValue(prop, value);
  SetOrdProp(instance, prop, v);
}

AnsiString GetSetProp(TObject* instance, const TPropInfo* prop) {
  if (prop->Kind() != tkSet) Fail(prop, "not a set");
  const TTypeInfo* element = prop->PropType()->CompType;
  const auto bits = static_cast<unsigned long long>(GetOrdProp(instance, prop));
  AnsiString text = "[";
  for (int i = 0; i < 64; ++i)
    if (bits >> i & 1) {
      if (text.Length() > 1) text += ",";
      text += GetEnumName(element, element->MinValue + i);
    }
  return text + "]";
}

void SetSetProp(TObject* instance, const TPropInfo* prop, const AnsiString& value) {
  if (prop->Kind() != tkSet) Fail(prop, "not a set");
  const TTypeInfo* element = prop->PropType()->CompType;
  std::string_view rest(value.c_str());
  if (!rest.empty() && rest.front() == '[') {
    if (rest.back() != ']') Fail(prop, "a set without its closing ']'");
    rest = rest.substr(1, rest.size() - 2);
  }
  unsigned long long bits = 0;
  for (std::string_view item : SplitList(rest)) {
    const AnsiString name(std::string(item).c_str());
    const int v = GetEnumValue(element, name);
    if (v < 0) BadValue(prop, name);
    bits |= 1ull << (v - element->MinValue);
  }
  SetOrdProp(instance, prop, static_cast<long long>(bits));
}

bool IsDefaultPropValue(TObject* instance, const TPropInfo* prop) {
  if (prop->Stored && !prop->Stored(instance)) return true;
  switch (prop->Kind()) {
    case tkInteger:
    case tkEnumeration:
    case tkSet:
      return prop->HasDefault && GetOrdProp(instance, prop) == prop->Default;
    case tkFloat:
      return GetFloatProp(instance, prop) == 0;
    case tkLString:
      return GetStrProp(instance, prop).IsEmpty();
    case tkMethod:
      return !GetMethodProp(instance, prop).IsSet();
    default:
      return false;
  }
}

}  // namespace Typinfo
