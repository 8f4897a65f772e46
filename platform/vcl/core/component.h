#pragma once
/// \file
/// Components: owned, named objects that hear of each other.
#include <memory>

#include "platform/vcl/core/classes.h"
#include "platform/vcl/core/closure.h"
#include "platform/vcl/core/component_set.h"
#include "platform/vcl/core/set.h"

namespace Classes {

/// What a notification tells: a component came or is going.
enum TOperation { opInsert, opRemove };

/// What a component is going through.
enum TComponentStateItem { csLoading, csReading, csWriting, csDestroying, csDesigning, csUpdating };
using TComponentState = System::Set<TComponentStateItem, csLoading, csUpdating>;

class TComponent;
class TOwnedComponents;
class TReader;
class TWriter;
/// Called with each child a component hands to streaming.
using TGetChildProc = System::TClosure<void(TComponent*)>;

/// A persistent object with an owner and a name. The owner keeps a list of the
/// components it owns and destroys them when it is destroyed itself; a
/// component destroyed by anyone else leaves its owner's list. The owner hears
/// (Notification) each component it takes and lets go, and passes that on only
/// to the owned components that asked (SetSiblingNotification). A component
/// that asked for it (FreeNotification) hears when another one goes, so nobody
/// keeps a pointer to a destroyed component. Adding, removing and finding a
/// component by name cost O(1) on average however many the owner has
/// (positions O(log n) after removals from the middle), plus one call per
/// component that asked.
class VCL_API TComponent : public TPersistent {
  VCL_CLASS();

 public:
  explicit TComponent(TComponent* owner);
  ~TComponent() override;
  TComponent(const TComponent&) = delete;
  TComponent& operator=(const TComponent&) = delete;
  /// Marks the component as being destroyed and frees what it owns, while the
  /// whole object still exists.
  void BeforeDestruction() override;

  TComponent* GetOwner() const { return owner_; }
  int GetComponentCount() const;
  /// The owned components in the order they came. Raises EListError "List
  /// index out of bounds (<index>)" outside the list.
  TComponent* GetComponent(int index) const;
  /// Place in the owner's list; -1 without an owner.
  int GetComponentIndex() const;
  /// The owned component of that name (case-insensitive), or null.
  TComponent* FindComponent(const AnsiString& name) const;

  const AnsiString& GetName() const { return name_; }
  /// Empty or an identifier, not used by another component of the owner;
  /// otherwise raises EComponentError and the old name stays.
  virtual void SetName(const AnsiString& value);
  int GetTag() const { return tag_; }
  void SetTag(int value) { tag_ = value; }

  TComponentState GetComponentState() const { return state_; }

  /// Takes component over from its current owner (if any).
  void InsertComponent(TComponent* component);
  void RemoveComponent(TComponent* component);
  /// Frees every owned component, last first.
  void DestroyComponents();
  /// Sets csDestroying here and in every owned component.
  void Destroying();

  /// component will call Notification(this, opRemove) on this one when it goes
  /// (and the other way round). O(1) a link, however many either side has.
  void FreeNotification(TComponent* component);
  void RemoveFreeNotification(TComponent* component);

  /// The components streaming writes inside this one, those that root owns:
  /// none by default; a control's child controls, a menu's items.
  virtual void GetChildren(TGetChildProc proc, TComponent* root);
  /// The component this one sits in (a control's parent, a menu item's
  /// menu), which streaming writes it inside; null by default.
  virtual TComponent* GetParentComponent() const { return nullptr; }
  /// Whether it sits in another component when it is in place.
  virtual bool HasParent() const { return false; }
  /// Puts it in value, as streaming does before reading its properties.
  virtual void SetParentComponent(TComponent* value);

 protected:
  /// component was added to (opInsert) or is leaving (opRemove) this
  /// component, or its owner when this one asked to hear its siblings, or a
  /// component this one asked about (FreeNotification) is going. The default
  /// forgets a component that goes and passes the news on to the owned
  /// components that asked to hear their siblings.
  virtual void Notification(TComponent* component, TOperation operation);
  ///@{
  /// Whether this component hears (Notification) its owner take and let go
  /// of its other components; off by default. Each such event costs the owner
  /// one call for every component that asked and nothing for the others, so
  /// ask only to follow siblings not known in advance: to forget one
  /// component, FreeNotification is enough.
  bool GetSiblingNotification() const { return siblingNotification_; }
  void SetSiblingNotification(bool value);
  ///@}
  /// After streaming has read the component's properties.
  virtual void Loaded();
  /// Raises EComponentError when newName is taken among this component's own
  /// components by one other than component.
  virtual void ValidateRename(TComponent* component, const AnsiString& currentName, const AnsiString& newName);
  void SetComponentState(TComponentState value) { state_ = value; }

 private:
  void Insert(TComponent* component);
  void Remove(TComponent* component);
  void Release();
  // They mark what they read as loading and what they write as writing.
  friend class TReader;
  friend class TWriter;
  // It keeps each component's slot in the owner's list.
  friend class TOwnedComponents;

  TComponent* owner_ = nullptr;
  std::unique_ptr<TOwnedComponents> owned_;  // made with the first owned component
  TComponentSet freeNotifies_;
  AnsiString name_;
  int tag_ = 0;
  int ownerSlot_ = -1;  // in the owner's list
  TComponentState state_;
  bool released_ = false;
  bool siblingNotification_ = false;
};

/// True for an identifier: a letter or '_', then letters, digits or '_'.
VCL_API bool IsValidIdent(const AnsiString& ident);

}  // namespace Classes

/// Defines the class-information members of a component class together with
/// its factory, so that the class can be made by name with an owner; the
/// published items follow as in VCL_CLASS_IMPL.
#define VCL_COMPONENT_IMPL(Cls, ParentCls, ...)                                                  \
  VCL_METACLASS_IMPL(Cls, ParentCls, [](::System::TObject* owner) {                              \
    return static_cast<::System::TObject*>(new Cls(static_cast<::Classes::TComponent*>(owner))); \
  } __VA_OPT__(, ) __VA_ARGS__)
