#pragma once
/// \file
/// What tests of XMessageBox replace or read without showing a box: the
/// platform calls it cannot provoke to fail, and the template it writes.
#include <windows.h>

#include <vector>

#include "velkin/velkin_api.h"

/// Platform calls XMessageBox makes through these pointers; a null member
/// stands for the system's own function.
struct XMessageBoxSeams {
  HLOCAL(WINAPI* Alloc)(UINT flags, SIZE_T bytes) = nullptr;                             ///< the template's memory
  BOOL(WINAPI* Help)(HWND window, LPCSTR file, UINT command, ULONG_PTR data) = nullptr;  ///< the Help button
  BOOL(WINAPI* Beep)(UINT type) = nullptr;  ///< the sound made as the box comes
};

/// Replaces the seams for the calls that follow (all null: the system's own).
VELKIN_API void XMessageBoxSetSeams(const XMessageBoxSeams& seams);

/// The dialog template XMessageBox would run for these arguments, byte for
/// byte as the dialog manager gets it, without showing anything; empty for the
/// system message box's path.
VELKIN_API std::vector<unsigned char> XMessageBoxTemplate(const char* text, const char* caption, unsigned style);
