#pragma once
/// \file
/// Components: owned, named objects that hear of each other.
#include <vector>

#include "platform/vcl/core/classes.h"
#include "platform/vcl/core/closure.h"
#include "platform/vcl/core/set.h"

namespace Classes {

/// What a notification tells: a component came or is going.
enum TOperation { opInsert, opRemove };

/// What a component is going through.
enum TComponentStateItem { csLoading, csReading, csWriting, csDestroying, csDesigning, csUpdating };
using TComponentState = System::Set<TComponentStateItem, csLoading, csUpdating>;

class TComponent;
class TReader;
class TWriter;
/// Called with each child a component hands to streaming.
using TGetChildProc = System::TClosure<void(TComponent*)>;

/// A persistent object with an owner and a name. The owner keeps a list of the
/// components it owns and destroys them when it is destroyed itself; a
/// component destroyed by anyone else leaves its owner's list. Every component
/// of an owner hears (Notification) when a component is added to the owner or
/// removed from it, and a component asked for it (FreeNotification) hears when
/// another one goes, so nobody keeps a pointer to a destroyed component.
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
  int GetComponentCount() const { return static_cast<int>(components_.size()); }
  /// Raises EListError "List index out of bounds (<index>)" outside the list.
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
  /// (and the other way round).
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
  /// component's owner, or a component this one asked about is going. The
  /// default passes it on to the owned components.
  virtual void Notification(TComponent* component, TOperation operation);
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

  TComponent* owner_ = nullptr;
  std::vector<TComponent*> components_;
  std::vector<TComponent*> freeNotifies_;
  AnsiString name_;
  int tag_ = 0;
  TComponentState state_;
  bool released_ = false;
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
