#pragma once
/// \file
/// Unit System: the object model and class information.
#include <atomic>
#include <iterator>
#include <new>

#include "platform/vcl/core/ansistring.h"
#include "platform/vcl/core/closure.h"
#include "platform/vcl/core/set.h"
#include "platform/vcl/core/vcl_api.h"

namespace System {

class TObject;

/// A date and time: days since 30 December 1899, the time as the fraction.
/// A type of its own so that published properties know it from a Double.
struct TDateTime {
  double Val = 0;
  TDateTime() = default;
  TDateTime(double value) : Val(value) {}
  operator double() const { return Val; }
};

}  // namespace System

namespace Typinfo {
struct TPropInfo;
}

namespace System {

/// Run-time description of a class: its name, its parent's, how to make one
/// by name and what it publishes. One instance per class, made by
/// VCL_CLASS_IMPL or VCL_COMPONENT_IMPL.
struct VCL_API TMetaClass {
  const char* Name;
  const TMetaClass* Parent;
  /// Makes an instance with an owner; null for classes that cannot be made by
  /// name (set by VCL_COMPONENT_IMPL).
  TObject* (*Factory)(TObject* owner) = nullptr;
  /// The class's own published properties and methods (see typinfo.h); the
  /// parent's come on top.
  const Typinfo::TPropInfo* Published = nullptr;
  int PublishedCount = 0;
  /// The published members by name, parents' included: made by the first
  /// lookup (typinfo.h) and kept here, where finding it costs nothing.
  mutable std::atomic<const void*> NameIndex{nullptr};

  const char* ClassName() const { return Name; }
  const TMetaClass* ClassParent() const { return Parent; }
  /// Case-insensitive, as the framework compares class names.
  bool ClassNameIs(const char* name) const;
  /// True for this class itself and for every ancestor.
  bool InheritsFrom(const TMetaClass* ancestor) const;
};

/// Puts the class-information members into a class declaration.
#define VCL_CLASS()                                 \
 public:                                            \
  static const ::System::TMetaClass* StaticClass(); \
  const ::System::TMetaClass* ClassType() const override

/// Defines them, in one source file of the class's package. Cls's published
/// properties and methods follow as VCL_PROPERTY/VCL_METHOD items (typinfo.h).
#define VCL_CLASS_IMPL(Cls, ParentCls, ...) VCL_METACLASS_IMPL(Cls, ParentCls, nullptr, __VA_ARGS__)

/// The common part of VCL_CLASS_IMPL and VCL_COMPONENT_IMPL.
#define VCL_METACLASS_IMPL(Cls, ParentCls, Factory, ...)                                           \
  const ::System::TMetaClass* Cls::StaticClass() {                                                 \
    using ThisClass [[maybe_unused]] = Cls;                                                        \
    __VA_OPT__(static const ::Typinfo::TPropInfo published[] = {__VA_ARGS__};)                     \
    static const ::System::TMetaClass meta{#Cls, ParentCls::StaticClass(),                         \
                                           Factory __VA_OPT__(, published, std::size(published))}; \
    return &meta;                                                                                  \
  }                                                                                                \
  const ::System::TMetaClass* Cls::ClassType() const { return Cls::StaticClass(); }

/// The root of every framework class: class information and the destruction protocol.
class VCL_API TObject {
 public:
  TObject() = default;
  TObject(const TObject&) = default;
  TObject& operator=(const TObject&) = default;
  virtual ~TObject();

  static const TMetaClass* StaticClass();
  virtual const TMetaClass* ClassType() const;

  AnsiString ClassName() const { return ClassType()->Name; }
  const TMetaClass* ClassParent() const { return ClassType()->Parent; }
  bool ClassNameIs(const AnsiString& name) const { return ClassType()->ClassNameIs(name.c_str()); }
  bool InheritsFrom(const TMetaClass* ancestor) const { return ClassType()->InheritsFrom(ancestor); }

  /// Runs when the object is destroyed by delete, before any destructor, while
  /// the whole object still exists (virtual calls reach the most derived class).
  virtual void BeforeDestruction() {}
  /// Asked by delete before anything is destroyed: true when the object is
  /// busy in its own code (a control inside its window procedure) and has
  /// put its destruction off until that returns.
  virtual bool DestroyLater() { return false; }

  /// delete of any framework object goes through here to give DestroyLater
  /// and BeforeDestruction their chance; objects on the stack are destroyed
  /// without them.
  void operator delete(TObject* object, std::destroying_delete_t) {
    if (object->DestroyLater()) return;
    void* block = dynamic_cast<void*>(object);
    object->BeforeDestruction();
    object->~TObject();
    ::operator delete(block);
  }
};

/// Event member taking the sender.
using TNotifyEvent = TClosure<void(TObject* Sender)>;

}  // namespace System
