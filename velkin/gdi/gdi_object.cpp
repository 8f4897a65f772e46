#include "velkin/gdi/gdi_object.h"

const System::TMetaClass* HHandleObjectClass() {
  static const System::TMetaClass meta{"HHandleObject", HSizableObject::StaticClass()};
  return &meta;
}

VCL_CLASS_IMPL(HGDIObject, HGDIHandleObject)
