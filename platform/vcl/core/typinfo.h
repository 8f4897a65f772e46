#pragma once
/// \file
/// Unit TypInfo: published properties and methods, read and written by name.
///
/// A class publishes beside its class-information macro, one item a property:
///
///     VCL_COMPONENT_IMPL(TButton, TButtonControl,
///                        VCL_PROPERTY(Cancel, false),
///                        VCL_PROPERTY(ModalResult, 0),
///                        VCL_PROPERTY(Caption))
///
/// VCL_PROPERTY(Name[, default]) uses GetName and SetName; the type comes from
/// the getter. A property with a default is written by streaming only when its
/// value differs. A class whose instances start with another value publishes
/// the property again with that default. Enumerations name their values with VCL_ENUM_INFO beside
/// their declaration.
#include <string_view>
#include <type_traits>
#include <typeinfo>
#include <vector>

#include "platform/vcl/core/system.h"
#include "platform/vcl/core/sysutils.h"

namespace Typinfo {

using System::AnsiString;
using System::TObject;

/// What a published value is.
enum TTypeKind { tkUnknown, tkInteger, tkEnumeration, tkFloat, tkLString, tkSet, tkClass, tkMethod };

/// A published value's type. Enumerations list their value names (Boolean is
/// one: False, True); a set refers to its element type; an integer type may
/// name some values (colours: clBtnFace).
struct VCL_API TTypeInfo {
  TTypeKind Kind;
  const char* Name;
  /// Enumerations: the names of MinValue..MaxValue.
  std::vector<AnsiString> Names;
  int MinValue = 0, MaxValue = 0;
  /// Sets: the element type.
  const TTypeInfo* CompType = nullptr;
  /// Classes: the class of the sub-object.
  const System::TMetaClass* (*ClassType)() = nullptr;
  /// Methods: the signature, the same text in every module.
  const char* Signature = "";
  /// Integers with names: the name of a value (null when it has none), the
  /// value of a name (false when no value has it).
  const char* (*IntToIdent)(long long value) = nullptr;
  bool (*IdentToInt)(const char* ident, long long& value) = nullptr;

  TTypeInfo(TTypeKind kind, const char* name) : Kind(kind), Name(name) {}
};

///@{
/// The name of value in an enumeration (empty outside its range), and the
/// value of a name (case-insensitive; -1 when none has it).
VCL_API AnsiString GetEnumName(const TTypeInfo* info, int value);
VCL_API int GetEnumValue(const TTypeInfo* info, const AnsiString& name);
///@}

/// Raised for a property that does not exist or a value it cannot take.
class VCL_API EPropertyError : public Sysutils::Exception {
  VCL_CLASS();

 public:
  using Exception::Exception;
};

/// One published property, a published method (BindMethod set, no value
/// access) or a published field (SetField set). Made by VCL_PROPERTY,
/// VCL_METHOD and VCL_FIELD.
struct VCL_API TPropInfo {
  const char* Name = "";
  const TTypeInfo* (*PropType)() = nullptr;
  /// Integers, enumerations (Boolean too) and sets (as bits).
  long long (*GetOrd)(TObject*) = nullptr;
  void (*SetOrd)(TObject*, long long) = nullptr;
  double (*GetFloat)(TObject*) = nullptr;
  void (*SetFloat)(TObject*, double) = nullptr;
  AnsiString (*GetStr)(TObject*) = nullptr;
  void (*SetStr)(TObject*, const AnsiString&) = nullptr;
  /// Sub-objects; a property without a setter is read into in place.
  TObject* (*GetObj)(TObject*) = nullptr;
  void (*SetObj)(TObject*, TObject*) = nullptr;
  System::TMethod (*GetMethod)(TObject*) = nullptr;
  void (*SetMethod)(TObject*, const System::TMethod&) = nullptr;
  /// Ordinal properties: the value not written.
  bool HasDefault = false;
  long long Default = 0;
  /// Whether the value is written at all (null: it is); a control's Font is
  /// not while it follows its parent's.
  bool (*Stored)(TObject*) = nullptr;
  /// Published methods: the method bound to instance.
  System::TMethod (*BindMethod)(TObject* instance) = nullptr;
  /// Published fields: the component a field points to, and setting it
  /// (false when value is not of the field's class).
  TObject* (*GetField)(TObject* instance) = nullptr;
  bool (*SetField)(TObject* instance, TObject* value) = nullptr;

  bool IsMethod() const { return BindMethod != nullptr; }
  bool IsField() const { return SetField != nullptr; }
  bool IsProperty() const { return !IsMethod() && !IsField(); }
  TTypeKind Kind() const { return PropType()->Kind; }
};

///@{
/// The published properties of a class, the parent's first; one by name
/// (case-insensitive), null when it has none of that name.
VCL_API std::vector<const TPropInfo*> GetPropList(const System::TMetaClass* cls);
VCL_API const TPropInfo* GetPropInfo(const System::TMetaClass* cls, const AnsiString& name);
///@}
///@{
/// Published methods: the one of a name bound to instance (unset when there
/// is none), and the name of the one a method is (empty when none).
VCL_API System::TMethod MethodAddress(TObject* instance, const AnsiString& name);
VCL_API AnsiString MethodName(TObject* instance, const System::TMethod& method);
/// The signature of a published method of that name, or null.
VCL_API const char* MethodSignature(const System::TMetaClass* cls, const AnsiString& name);
///@}
/// The published field of that name (case-insensitive), or null.
VCL_API const TPropInfo* GetFieldInfo(const System::TMetaClass* cls, const AnsiString& name);

///@{
/// A property's value by kind. The wrong kind, or a property that cannot be
/// written, raises EPropertyError naming the property.
VCL_API long long GetOrdProp(TObject* instance, const TPropInfo* prop);
VCL_API void SetOrdProp(TObject* instance, const TPropInfo* prop, long long value);
VCL_API double GetFloatProp(TObject* instance, const TPropInfo* prop);
VCL_API void SetFloatProp(TObject* instance, const TPropInfo* prop, double value);
VCL_API AnsiString GetStrProp(TObject* instance, const TPropInfo* prop);
VCL_API void SetStrProp(TObject* instance, const TPropInfo* prop, const AnsiString& value);
VCL_API TObject* GetObjectProp(TObject* instance, const TPropInfo* prop);
VCL_API void SetObjectProp(TObject* instance, const TPropInfo* prop, TObject* value);
VCL_API System::TMethod GetMethodProp(TObject* instance, const TPropInfo* prop);
VCL_API void SetMethodProp(TObject* instance, const TPropInfo* prop, const System::TMethod& value);
///@}
///@{
/// Enumerations and sets by their names: "alClient", "[fsBold,fsItalic]".
/// An unknown name raises EPropertyError.
VCL_API AnsiString GetEnumProp(TObject* instance, const TPropInfo* prop);
VCL_API void SetEnumProp(TObject* instance, const TPropInfo* prop, const AnsiString& value);
VCL_API AnsiString GetSetProp(TObject* instance, const TPropInfo* prop);
VCL_API void SetSetProp(TObject* instance, const TPropInfo* prop, const AnsiString& value);
///@}
/// Whether the property need not be written: not stored, or holding its
/// default (an ordinal equal to its default, an empty string, a zero float,
/// an unset event). Sub-objects are always written when stored.
VCL_API bool IsDefaultPropValue(TObject* instance, const TPropInfo* prop);

// ---- type information of C++ types ----

/// Builds the information of an enumeration from the text of its value list.
VCL_API TTypeInfo MakeEnumInfo(const char* name, const char* values);

///@{
/// The information of the built-in types, objects, events and sets; an
/// overload taking a null pointer of the type.
inline const TTypeInfo* TypeInfoOf(int*) {
  static const TTypeInfo info(tkInteger, "Integer");
  return &info;
}
inline const TTypeInfo* TypeInfoOf(short*) {
  static const TTypeInfo info(tkInteger, "Smallint");
  return &info;
}
inline const TTypeInfo* TypeInfoOf(unsigned char*) {
  static const TTypeInfo info(tkInteger, "Byte");
  return &info;
}
inline const TTypeInfo* TypeInfoOf(char*) {
  static const TTypeInfo info(tkInteger, "Char");
  return &info;
}
inline const TTypeInfo* TypeInfoOf(unsigned short*) {
  static const TTypeInfo info(tkInteger, "Word");
  return &info;
}
inline const TTypeInfo* TypeInfoOf(bool*) {
  static const TTypeInfo info = MakeEnumInfo("Boolean", "False, True");
  return &info;
}
inline const TTypeInfo* TypeInfoOf(double*) {
  static const TTypeInfo info(tkFloat, "Double");
  return &info;
}
inline const TTypeInfo* TypeInfoOf(System::TDateTime*) {
  static const TTypeInfo info(tkFloat, "TDateTime");
  return &info;
}
inline const TTypeInfo* TypeInfoOf(AnsiString*) {
  static const TTypeInfo info(tkLString, "AnsiString");
  return &info;
}
template <class C>
requires std::is_base_of_v<TObject, C>
const TTypeInfo* TypeInfoOf(C**) {
  static const TTypeInfo info = [] {
    TTypeInfo i(tkClass, "TObject");
    i.ClassType = [] { return C::StaticClass(); };
    return i;
  }();
  return &info;
}
template <class R, class... A>
const TTypeInfo* TypeInfoOf(System::TClosure<R(A...)>*) {
  static const TTypeInfo info = [] {
    TTypeInfo i(tkMethod, "TMethod");
    i.Signature = typeid(R(A...)).name();
    return i;
  }();
  return &info;
}
template <class E, int Min, int Max>
const TTypeInfo* TypeInfoOf(System::Set<E, Min, Max>*) {
  static const TTypeInfo info = [] {
    TTypeInfo i(tkSet, "Set");
    i.CompType = TypeInfoOf(static_cast<E*>(nullptr));
    return i;
  }();
  return &info;
}

///@}

/// The information of T, found by overload (enumerations and named integer
/// types declare theirs beside them, found by argument-dependent lookup).
template <class T>
const TTypeInfo* TypeInfo() {
  return TypeInfoOf(static_cast<T*>(nullptr));
}

namespace detail {

template <class T>
struct IsSet : std::false_type {};
template <class E, int Min, int Max>
struct IsSet<System::Set<E, Min, Max>> : std::true_type {};
template <class T>
struct IsClosure : std::false_type {};
template <class S>
struct IsClosure<System::TClosure<S>> : std::true_type {};

// The class and result of a member function.
template <class M>
struct Member;
template <class C, class R, class... A>
struct Member<R (C::*)(A...)> {
  using Class = C;
  using Type = std::decay_t<R>;
};
template <class C, class R, class... A>
struct Member<R (C::*)(A...) const> : Member<R (C::*)(A...)> {};

// The class and type of a data member.
template <class M>
struct FieldOf;
template <class C, class T>
struct FieldOf<T C::*> {
  using Class = C;
  using Type = T;
};

template <class T>
constexpr bool kOrdinal = std::is_integral_v<T> || std::is_enum_v<T> || IsSet<T>::value;

template <class T>
long long ToOrd(const T& v) {
  if constexpr (IsSet<T>::value)
    return static_cast<long long>(v.ToBits());
  else
    return static_cast<long long>(v);
}
template <class T>
T FromOrd(long long v) {
  if constexpr (IsSet<T>::value)
    return T::FromBits(static_cast<unsigned long long>(v));
  else
    return static_cast<T>(v);
}

// What a getter gives, and a setter taking a value, for the object the
// property belongs to.
template <auto Get>
auto Read(TObject* o) {
  return (static_cast<typename Member<decltype(Get)>::Class*>(o)->*Get)();
}
template <auto Set, class T>
void Write(TObject* o, const T& v) {
  (static_cast<typename Member<decltype(Set)>::Class*>(o)->*Set)(v);
}

}  // namespace detail

/// A property read by Get and written by Set (null: read only; a sub-object
/// is then read into in place).
template <auto Get, auto Set, class D = long long>
TPropInfo Property(const char* name, bool hasDefault = false, D def = D()) {
  using T = typename detail::Member<decltype(Get)>::Type;
  TPropInfo p;
  p.Name = name;
  if constexpr (detail::kOrdinal<T>) {
    p.PropType = [] { return TypeInfo<T>(); };
    p.GetOrd = [](TObject* o) { return detail::ToOrd<T>(detail::Read<Get>(o)); };
    if constexpr (Set != nullptr)
      p.SetOrd = [](TObject* o, long long v) { detail::Write<Set>(o, detail::FromOrd<T>(v)); };
    p.HasDefault = hasDefault;
    if (hasDefault) p.Default = detail::ToOrd<T>(static_cast<T>(def));
  } else if constexpr (std::is_same_v<T, double> || std::is_same_v<T, System::TDateTime>) {
    p.PropType = [] { return TypeInfo<T>(); };
    p.GetFloat = [](TObject* o) { return static_cast<double>(detail::Read<Get>(o)); };
    if constexpr (Set != nullptr) p.SetFloat = [](TObject* o, double v) { detail::Write<Set>(o, T(v)); };
  } else if constexpr (std::is_same_v<T, AnsiString>) {
    p.PropType = [] { return TypeInfo<T>(); };
    p.GetStr = [](TObject* o) { return AnsiString(detail::Read<Get>(o)); };
    if constexpr (Set != nullptr) p.SetStr = [](TObject* o, const AnsiString& v) { detail::Write<Set>(o, v); };
  } else if constexpr (std::is_pointer_v<T>) {
    using C = std::remove_cv_t<std::remove_pointer_t<T>>;
    p.PropType = [] { return TypeInfo<C*>(); };
    p.GetObj = [](TObject* o) { return static_cast<TObject*>(detail::Read<Get>(o)); };
    if constexpr (Set != nullptr) p.SetObj = [](TObject* o, TObject* v) { detail::Write<Set>(o, dynamic_cast<C*>(v)); };
  } else {
    static_assert(detail::IsClosure<T>::value, "a published property is ordinal, float, string, object or event");
    p.PropType = [] { return TypeInfo<T>(); };
    p.GetMethod = [](TObject* o) { return detail::Read<Get>(o).ToMethod(); };
    p.SetMethod = [](TObject* o, const System::TMethod& v) { detail::Write<Set>(o, T::FromMethod(v)); };
  }
  return p;
}

/// prop, written only when Stored (a member function) says so.
template <auto Stored>
TPropInfo WithStored(TPropInfo prop) {
  prop.Stored = [](TObject* o) -> bool {
    return (static_cast<typename detail::Member<decltype(Stored)>::Class*>(o)->*Stored)();
  };
  return prop;
}

/// A published method, bound to events of type Event.
template <class Event, auto Method>
TPropInfo PublishedMethod(const char* name) {
  TPropInfo p;
  p.Name = name;
  p.PropType = [] { return TypeInfo<Event>(); };
  p.BindMethod = [](TObject* o) {
    return Event(static_cast<typename detail::Member<decltype(Method)>::Class*>(o), Method).ToMethod();
  };
  return p;
}

/// A published field: a data member pointing to a component.
template <auto Field>
TPropInfo PublishedField(const char* name) {
  TPropInfo p;
  p.Name = name;
  p.PropType = [] { return TypeInfo<typename detail::FieldOf<decltype(Field)>::Type>(); };
  p.GetField = [](TObject* o) -> TObject* {
    return static_cast<typename detail::FieldOf<decltype(Field)>::Class*>(o)->*Field;
  };
  p.SetField = [](TObject* o, TObject* v) {
    using F = detail::FieldOf<decltype(Field)>;
    auto* typed = dynamic_cast<typename F::Type>(v);
    if (v && !typed) return false;
    static_cast<typename F::Class*>(o)->*Field = typed;
    return true;
  };
  return p;
}

}  // namespace Typinfo

/// A published property Name with GetName/SetName; a second argument is its default.
#define VCL_PROPERTY(Name, ...) \
  ::Typinfo::Property<&ThisClass::Get##Name, &ThisClass::Set##Name>(#Name __VA_OPT__(, true, ) __VA_ARGS__)
/// A published property Name with GetName only: a sub-object read into in place.
#define VCL_PROPERTY_READONLY(Name) ::Typinfo::Property<&ThisClass::Get##Name, nullptr>(#Name)
/// A published property Name over GetAccessor/SetAccessor (Caption over Text).
#define VCL_PROPERTY_AS(Name, Accessor, ...) \
  ::Typinfo::Property<&ThisClass::Get##Accessor, &ThisClass::Set##Accessor>(#Name __VA_OPT__(, true, ) __VA_ARGS__)
/// A published property Name written only when the member function Stored
/// says so; a third argument is its default.
#define VCL_PROPERTY_STORED(Name, Stored, ...) \
  ::Typinfo::WithStored<&ThisClass::Stored>(VCL_PROPERTY(Name __VA_OPT__(, ) __VA_ARGS__))
/// A published method of the class, bound to events of type Event by name.
#define VCL_METHOD(Name, Event) ::Typinfo::PublishedMethod<Event, &ThisClass::Name>(#Name)

/// A published field Name: a member pointing to the component of that name
/// that streaming makes for the object (the controls of a designed form).
#define VCL_FIELD(Name) ::Typinfo::PublishedField<&ThisClass::Name>(#Name)

/// Names the values of an enumeration (listed in order from 0) for
/// published properties: put it after the enumeration, in its namespace.
#define VCL_ENUM_INFO(Enum, ...)                                                           \
  inline const ::Typinfo::TTypeInfo* TypeInfoOf(Enum*) {                                   \
    static const ::Typinfo::TTypeInfo info = ::Typinfo::MakeEnumInfo(#Enum, #__VA_ARGS__); \
    return &info;                                                                          \
  }
