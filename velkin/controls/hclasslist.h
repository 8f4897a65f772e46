#pragma once
/// \file
/// Unit Hclasslist: component classes registered with an optional prototype,
/// from which new instances are made at run time.
#include "platform/ostrel/myarray.h"
#include "platform/vcl/controls/controls.h"
#include "platform/vcl/core/streams.h"
#include "velkin/velkin_api.h"

/// One class and, when it was registered from a control, that control's
/// published values as a stream without its name.
class VELKIN_API HClassHolder {
 public:
  /// Streams the prototype's values (its name left out: copies are
  /// nameless); the prototype is only needed during the call.
  HClassHolder(const System::TMetaClass* Class, Controls::TControl* Prototype);
  virtual ~HClassHolder();
  HClassHolder(const HClassHolder&) = delete;
  HClassHolder& operator=(const HClassHolder&) = delete;

  /// The class's name.
  System::AnsiString Name() const;
  /// A new instance owned by Owner, with the prototype's values, placed into
  /// Parent when it is a control and Parent is given; null when the class
  /// cannot be made. A stream error is raised after the new instance is freed.
  Classes::TComponent* Create(Classes::TComponent* Owner, Controls::TWinControl* Parent);

  const System::TMetaClass* GetClass() const { return class_; }
  /// The prototype's values as written by WriteComponent; null without one.
  Classes::TMemoryStream* GetPrototype() const { return prototype_; }

 private:
  const System::TMetaClass* class_;
  Classes::TMemoryStream* prototype_;  // owned
};

/// An owning array of class holders: destroying it destroys every holder.
class VELKIN_API HClassArray : public MyArray<HClassHolder*> {
 public:
  HClassArray();
  ~HClassArray() override;

  /// Called for each holder once it has been appended.
  virtual void ItemAdded(HClassHolder* holder);
  /// A new holder of the class and prototype; a derived array may make a
  /// derived holder.
  virtual HClassHolder* CreateNew(const System::TMetaClass* Class, Controls::TControl* Prototype);

  /// Every direct child of Container, in child order, as class and prototype.
  void Register(Controls::TWinControl* Container);
  /// Count bare classes (none for a Count of 0 or less).
  void Register(const System::TMetaClass* const* Classes, int Count);

 private:
  void Append(HClassHolder* holder);
};
