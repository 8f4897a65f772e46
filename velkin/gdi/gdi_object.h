#pragma once
#include "velkin/gdi/gdi_check.h"
#include "velkin/gdi/gdi_handle.h"
#include "velkin/velkin_api.h"

using HGDIHandleObject = HHandleObject<void*, void*, nullptr, nullptr>;

// The named base of every GDI wrapper: handle = GDI object, context = DC.
class VELKIN_API HGDIObject : public HGDIHandleObject {
  VCL_CLASS();
};
