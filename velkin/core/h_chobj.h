#pragma once
#include "platform/vcl/core/classes.h"
#include "velkin/velkin_api.h"

/// \file
/// Objects that announce their changes to an owner, with nested locks that hold
/// the change notification back until the last unlock.

/// Event member taking the sender and whether the unlock was silent.
using HUnlockEvent = System::TClosure<void(System::TObject* Sender, bool Silent)>;

/// An object that tells its owner when it changed, unless a lock holds the
/// notification back.
class VELKIN_API HChangableObject : public Classes::TPersistent {
  VCL_CLASS();

 public:
  HChangableObject() = default;
  /// Fires OnDeleting unless BeforeDestruction already did.
  ~HChangableObject() override;

  /// Fires OnDeleting while the whole object still exists, so that overrides of
  /// DoDeleting run and a listener sees the complete sender. Subclasses that
  /// override it call the inherited body.
  void BeforeDestruction() override;

  bool GetLocked() const { return lockCount_ > 0; }
  int GetLockCount() const { return lockCount_; }
  bool GetModified() const { return modified_; }
  bool GetLockOnChange() const { return lockOnChange_; }
  void SetLockOnChange(bool value) { lockOnChange_ = value; }

  void Lock();
  /// Releases one level; the last one fires the deferred notification.
  /// Ignored when not locked.
  void Unlock();
  /// Releases one level without the deferred notification.
  void SilentUnlock();

  void Changing();
  void Changed();
  void Deleting();

  System::TNotifyEvent GetOnChanging() const { return onChanging_; }
  void SetOnChanging(System::TNotifyEvent value) { onChanging_ = value; }
  System::TNotifyEvent GetOnChanged() const { return onChanged_; }
  void SetOnChanged(System::TNotifyEvent value) { onChanged_ = value; }
  System::TNotifyEvent GetOnDeleting() const { return onDeleting_; }
  void SetOnDeleting(System::TNotifyEvent value) { onDeleting_ = value; }
  System::TNotifyEvent GetOnLock() const { return onLock_; }
  void SetOnLock(System::TNotifyEvent value) { onLock_ = value; }
  HUnlockEvent GetOnUnlock() const { return onUnlock_; }
  void SetOnUnlock(HUnlockEvent value) { onUnlock_ = value; }

 protected:
  virtual void DoUnlock(bool silent);
  virtual void DoLock();
  virtual void DoChanging();
  virtual void DoChanged();
  virtual void DoDeleting();

  int lockCount_ = 0;
  bool modified_ = false;
  bool lockOnChange_ = false;

 private:
  /// Destruction announces itself once, from BeforeDestruction (delete) or
  /// from the destructor (objects destroyed without delete).
  void AnnounceDestruction();
  bool destructionAnnounced_ = false;
  System::TNotifyEvent onChanging_;
  System::TNotifyEvent onChanged_;
  System::TNotifyEvent onDeleting_;
  System::TNotifyEvent onLock_;
  HUnlockEvent onUnlock_;
};

/// A change-tracking object holding a resource that must be rebuilt after its
/// description changed: a locked batch ends in OnDirtied, not OnChanged.
class VELKIN_API HSizableObject : public HChangableObject {
  VCL_CLASS();

 public:
  HSizableObject() = default;

  bool GetDirty() const { return dirty_; }
  /// Sets both the dirty and the modified flag.
  void SetDirty(bool value);
  void Dirtied();

  System::TNotifyEvent GetOnDirtied() const { return onDirtied_; }
  void SetOnDirtied(System::TNotifyEvent value) { onDirtied_ = value; }

 protected:
  void DoUnlock(bool silent) override;
  virtual void DoDirtied();

  bool dirty_ = false;

 private:
  System::TNotifyEvent onDirtied_;
};
