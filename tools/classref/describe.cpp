#include "tools/classref/describe.h"

#include <cxxabi.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <set>

#include "platform/vcl/core/class_registry.h"
#include "platform/vcl/core/string_list.h"
#include "platform/vcl/graphics/color.h"

namespace classref {

namespace {

using namespace Typinfo;
using System::TMetaClass;
using System::TObject;

// Markdown cells: a bar would end the cell.
std::string Cell(const std::string& text) {
  std::string cell;
  for (char c : text) cell += c == '|' ? std::string("\\|") : std::string(1, c);
  return cell;
}

// A string as a form text writes it.
std::string Quoted(const std::string& text) {
  std::string quoted = "'";
  for (char c : text) quoted += c == '\'' ? std::string("''") : std::string(1, c);
  return quoted + "'";
}

// The handler's type, from the signature the type information keeps.
std::string Handler(const TTypeInfo* type) {
  int status = 0;
  const std::unique_ptr<char, void (*)(void*)> text(abi::__cxa_demangle(type->Signature, nullptr, nullptr, &status),
                                                    std::free);
  return status == 0 && text ? text.get() : type->Signature;
}

std::string TypeName(const TPropInfo* prop) {
  const TTypeInfo* type = prop->PropType();
  if (type->Kind == tkSet) return std::string("set of ") + type->CompType->Name;
  if (type->Kind == tkClass && type->ClassType) return type->ClassType()->Name;
  return type->Name;
}

std::string Ordinal(const TTypeInfo* type, long long value) {
  if (type->Kind == tkEnumeration) return GetEnumName(type, static_cast<int>(value)).c_str();
  if (type->Kind == tkSet) {
    std::string text;
    for (int i = 0; i < 64; ++i)
      if (value >> i & 1) text += (text.empty() ? "" : ", ") + std::string(GetEnumName(type->CompType, i).c_str());
    return "[" + text + "]";
  }
  if (type->IntToIdent)
    if (const char* name = type->IntToIdent(value)) return name;
  return std::to_string(value);
}

// The value a new object has, or without one the declared default.
std::string Value(TObject* instance, const TPropInfo* prop) {
  if (!instance) return prop->HasDefault ? Ordinal(prop->PropType(), prop->Default) : "";
  switch (prop->Kind()) {
    case tkInteger:
    case tkEnumeration:
    case tkSet:
      return Ordinal(prop->PropType(), GetOrdProp(instance, prop));
    case tkFloat: {
      char text[32];
      std::snprintf(text, sizeof text, "%g", GetFloatProp(instance, prop));
      return text;
    }
    case tkLString:
      return Quoted(GetStrProp(instance, prop).c_str());
    default:
      return "";
  }
}

void Add(ClassRows& rows, const TMetaClass* cls, TObject* instance, const std::string& prefix) {
  for (const TPropInfo* prop : GetPropList(cls)) {
    const std::string name = prefix + prop->Name;
    const TTypeInfo* type = prop->PropType();
    if (prop->Kind() == tkMethod) {
      rows.events.push_back({name, Cell(Handler(type)), ""});
      continue;
    }
    if (prop->Kind() == tkClass) {
      // An object the new object holds is a sub-object; an empty one refers
      // to another component.
      TObject* sub = instance ? GetObjectProp(instance, prop) : nullptr;
      if (sub && sub->InheritsFrom(Classes::TStrings::StaticClass())) {
        const int count = static_cast<Classes::TStrings*>(sub)->GetCount();
        rows.properties.push_back(
            {name + ".Strings", "list of strings", count ? std::to_string(count) + " lines" : "( )"});
      } else if (sub) {
        Add(rows, sub->ClassType(), sub, name + ".");
      } else {
        rows.properties.push_back({name, TypeName(prop) + ": a component of the form, by name", "(none)"});
      }
      continue;
    }
    Row row{name, TypeName(prop), Cell(Value(instance, prop))};
    if (type->Kind == tkEnumeration && type->Names.size() > 2) row.named = type;
    if (type->Kind == tkSet) row.named = type->CompType;
    if (type->IntToIdent) row.named = type;
    rows.properties.push_back(row);
  }
}

}  // namespace

ClassRows Describe(const TMetaClass* cls) {
  ClassRows rows;
  Classes::TComponent* instance = nullptr;
  try {
    instance = Classes::CreateComponent(cls, nullptr);
  } catch (const Sysutils::Exception&) {
    instance = nullptr;
  }
  rows.made = instance != nullptr;
  Add(rows, cls, instance, "");
  delete instance;
  return rows;
}

std::string Names(const TTypeInfo* type) {
  std::string list;
  std::set<std::string> seen;
  const auto add = [&](const std::string& name) {
    if (seen.insert(name).second) list += (list.empty() ? "" : ", ") + name;
  };
  if (!type->IntToIdent) {
    for (const auto& name : type->Names) add(name.c_str());
    return list;
  }
  // Named integers (the colours): the names of the system colours, of the
  // colours made of 0, 128, 192 and 255 per component, and of the sentinels.
  std::vector<long long> candidates = {Graphics::clNone, Graphics::clDefault};
  for (int i = 0; i < 64; ++i) candidates.push_back(Graphics::SystemColor(i));
  const int levels[] = {0, 0x80, 0xC0, 0xFF};
  for (int b : levels)
    for (int g : levels)
      for (int r : levels) candidates.push_back(b << 16 | g << 8 | r);
  for (long long value : candidates)
    if (const char* name = type->IntToIdent(value)) add(name);
  return "a number, or " + list;
}

}  // namespace classref
