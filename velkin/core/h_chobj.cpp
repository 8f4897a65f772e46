#include "velkin/core/h_chobj.h"

VCL_CLASS_IMPL(HChangableObject, Classes::TPersistent)
VCL_CLASS_IMPL(HSizableObject, HChangableObject)

HChangableObject::~HChangableObject() { AnnounceDestruction(); }

void HChangableObject::BeforeDestruction() {
  TPersistent::BeforeDestruction();
  AnnounceDestruction();
}

void HChangableObject::AnnounceDestruction() {
  if (destructionAnnounced_) return;
  destructionAnnounced_ = true;
  Deleting();
}

void HChangableObject::Lock() {
  ++lockCount_;
  DoLock();
}

void HChangableObject::Unlock() {
  if (lockCount_ <= 0) return;
  --lockCount_;
  DoUnlock(false);
}

void HChangableObject::SilentUnlock() {
  if (lockCount_ <= 0) return;
  --lockCount_;
  DoUnlock(true);
}

void HChangableObject::Changing() {
  if (lockCount_ == 0) DoChanging();
  if (lockOnChange_) Lock();
}

void HChangableObject::Changed() {
  // With LockOnChange the unlock cannot recurse into Changed(): DoUnlock only
  // calls it when LockOnChange is false.
  if (lockOnChange_) Unlock();
  if (lockCount_ == 0) DoChanged();
  modified_ = true;
}

void HChangableObject::Deleting() { DoDeleting(); }

void HChangableObject::DoUnlock(bool silent) {
  if (!lockOnChange_ && lockCount_ == 0 && !silent) Changed();
  if (HUnlockEvent event = GetOnUnlock()) event(this, silent);
}

void HChangableObject::DoLock() {
  if (onLock_) onLock_(this);
}

void HChangableObject::DoChanging() {
  if (onChanging_) onChanging_(this);
}

void HChangableObject::DoChanged() {
  if (onChanged_) onChanged_(this);
}

void HChangableObject::DoDeleting() {
  if (onDeleting_) onDeleting_(this);
}

void HSizableObject::SetDirty(bool value) {
  modified_ = value;
  dirty_ = value;
}

void HSizableObject::Dirtied() {
  if (lockOnChange_) Unlock();
  if (!GetLocked()) DoDirtied();
  modified_ = true;
  SetDirty(true);
}

void HSizableObject::DoUnlock(bool silent) {
  if (!lockOnChange_ && !GetLocked() && !silent) Dirtied();
  if (HUnlockEvent event = GetOnUnlock()) event(this, silent);
}

void HSizableObject::DoDirtied() {
  if (onDirtied_) onDirtied_(this);
}
