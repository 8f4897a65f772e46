#pragma once
/// \file
/// Checks that a handle is a GDI object of the expected kind.
#include "velkin/velkin_api.h"

///@{
/// Handle validity tests: true exactly when the handle is not 0. They never ask
/// GDI for the object's type, so they are cheap and work on any handle value.
VELKIN_API bool GDICheckDC(void* handle);
VELKIN_API bool GDICheckPen(void* handle);
VELKIN_API bool GDICheckBrush(void* handle);
VELKIN_API bool GDICheckFont(void* handle);
VELKIN_API bool GDICheckPal(void* handle);
VELKIN_API bool GDICheckRgn(void* handle);
VELKIN_API bool GDICheckBitmap(void* handle);
VELKIN_API bool GDICheckMetafile(void* handle);
VELKIN_API bool GDICheckObject(void* handle);
///@}
