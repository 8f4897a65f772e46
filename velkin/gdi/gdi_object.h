#pragma once
/// \file
/// The base of every GDI wrapper.
#include "velkin/gdi/gdi_check.h"
#include "velkin/gdi/gdi_handle.h"
#include "velkin/velkin_api.h"

using HGDIHandleObject = HHandleObject<void*, void*, nullptr, nullptr>;

/// The named base of every GDI wrapper: handle = GDI object, context = DC.
class VELKIN_API HGDIObject : public HGDIHandleObject {
  VCL_CLASS();
};

/// Declares what each kind of wrapper fills in: Check, true when a handle is of
/// the wrapper's kind, and the slots that make, free, select and restore it.
/// Leaves the declaration in the protected section.
#define HGDI_OBJECT_SLOTS()                        \
 public:                                           \
  virtual bool Check(void* handle);                \
                                                   \
 protected:                                        \
  void* DoCreateHandle() override;                 \
  void DoDestroyHandle(void* handle) override;     \
  void* DoSelect(void* dc, void* handle) override; \
  void DoRestore(void* dc, void* old) override
