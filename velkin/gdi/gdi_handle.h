#pragma once
/// \file
/// The lazy-handle protocol shared by every GDI wrapper.
#include "velkin/core/h_chobj.h"
#include "velkin/velkin_api.h"

/// The class record of HHandleObject, one for the whole process (the library
/// instantiates the template once, with void* handles and contexts).
VELKIN_API const System::TMetaClass* HHandleObjectClass();

/// An object owning one OS handle that it makes lazily from its properties,
/// re-makes after they changed, and selects into a context while remembering
/// what the selection displaced.
///
/// A setter only raises the changed (Changed()) or dirty (Dirtied()) flag; the
/// next GetHandle() or Select() restores any selection, destroys the old handle
/// and creates the new one. The handle is released from BeforeDestruction when
/// the object is deleted, while the whole object still exists; an object that
/// ends without delete (on the stack, as a member) is released by the
/// destructor of the class that knows how (ReleaseOnDestroy).
template <class THandle, class TContext, THandle InvalidHandle, TContext InvalidContext>
class HHandleObject : public HSizableObject {
 public:
  static const System::TMetaClass* StaticClass() { return HHandleObjectClass(); }
  const System::TMetaClass* ClassType() const override { return StaticClass(); }

  HHandleObject() = default;
  HHandleObject(const HHandleObject&) = delete;
  HHandleObject& operator=(const HHandleObject&) = delete;

  /// A live handle, (re-)created as needed; returned even when creation failed.
  THandle GetHandle() {
    if (dirty_ || modified_) DestroyHandle();
    if (!handleValid_) {
      handle_ = DoCreateHandle();
      SetDirty(false);
      const bool valid = IsValidHandle(handle_);
      handleValid_ = valid;
      modified_ = valid;
    }
    if (handleValid_ && modified_) {
      DoHandleCreated(handle_);
      modified_ = false;
    }
    return handle_;
  }

  /// Restores any selection, then releases a live handle.
  void DestroyHandle() {
    Restore();
    if (handleValid_) DoDestroyHandle(handle_);
    handleValid_ = false;
  }

  /// Selects the handle into dc; nothing when already selected there and
  /// unchanged, when dc is not valid or when no handle can be made.
  void Select(TContext dc) {
    if (selected_ && dc == selectedDC_ && !modified_) return;
    if (!IsValidContext(dc)) return;
    if (!IsValidHandle(GetHandle())) return;
    Restore();
    oldObject_ = DoSelect(dc, GetHandle());
    selectedDC_ = dc;
    selected_ = true;
  }

  /// Puts back what Select displaced.
  void Restore() {
    if (!selected_) return;
    DoRestore(selectedDC_, oldObject_);
    selected_ = false;
    selectedDC_ = InvalidContext;
    oldObject_ = InvalidHandle;
  }

  /// Re-makes a live handle now (re-selecting it where it was selected) and
  /// clears the changed and dirty flags.
  void Refresh() {
    if (handleValid_) {
      const bool wasSelected = selected_;
      const TContext dc = selectedDC_;
      DestroyHandle();
      if (wasSelected) Select(dc);
    }
    SetDirty(false);
  }

  bool GetHandleValid() const { return handleValid_; }
  bool GetSelected() const { return selected_; }
  TContext GetSelectedDC() const { return selectedDC_; }
  /// What the current selection displaced (0 when not selected).
  THandle GetOldObject() const { return oldObject_; }

  void BeforeDestruction() override {
    DestroyHandle();
    HSizableObject::BeforeDestruction();
  }

 protected:
  virtual THandle DoCreateHandle() = 0;
  virtual void DoDestroyHandle(THandle handle) = 0;
  virtual void DoHandleCreated(THandle) {}
  virtual THandle DoSelect(TContext, THandle) { return InvalidHandle; }
  virtual void DoRestore(TContext, THandle) {}
  virtual bool IsValidHandle(THandle handle) { return handle != InvalidHandle; }
  virtual bool IsValidContext(TContext context) { return context != InvalidContext; }

  /// For destructors: releases what BeforeDestruction did not (no delete ran).
  /// Virtual calls reach the class whose destructor is running.
  void ReleaseOnDestroy() {
    if (handleValid_ || selected_) DestroyHandle();
  }

  THandle oldObject_ = InvalidHandle;
  THandle handle_ = InvalidHandle;
  bool handleValid_ = false;
  bool selected_ = false;
  TContext selectedDC_ = InvalidContext;
};
