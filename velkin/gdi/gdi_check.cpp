#include "velkin/gdi/gdi_check.h"

bool GDICheckDC(void* handle) { return handle != nullptr; }
bool GDICheckPen(void* handle) { return handle != nullptr; }
bool GDICheckBrush(void* handle) { return handle != nullptr; }
bool GDICheckFont(void* handle) { return handle != nullptr; }
bool GDICheckPal(void* handle) { return handle != nullptr; }
bool GDICheckRgn(void* handle) { return handle != nullptr; }
bool GDICheckBitmap(void* handle) { return handle != nullptr; }
bool GDICheckMetafile(void* handle) { return handle != nullptr; }
bool GDICheckObject(void* handle) { return handle != nullptr; }
