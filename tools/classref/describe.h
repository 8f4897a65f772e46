#pragma once
// A class's published properties and events as rows of the reference.
#include <string>
#include <vector>

#include "platform/vcl/core/typinfo.h"

namespace classref {

struct Row {
  std::string name, type, value;
  // A type whose names a form text writes (an enumeration, a set's members,
  // the colours), listed once at the end.
  const Typinfo::TTypeInfo* named = nullptr;
};

struct ClassRows {
  bool made = false;  // whether the defaults were read from a new object
  std::vector<Row> properties, events;
};

// The rows of cls: sub-objects' properties as "Font.Name", a string list as
// "Items.Strings", events with their handler's signature.
ClassRows Describe(const System::TMetaClass* cls);

// The names a form text may write for values of type.
std::string Names(const Typinfo::TTypeInfo* type);

}  // namespace classref
