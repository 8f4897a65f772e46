#pragma once
#include <cstddef>

#include "platform/ostrel/mystring.h"
#include "platform/ostrel/ostrel_api.h"

/// \file
/// Small process-level services of the base package.

/// Instance handle of the process's main executable (not of the calling package).
OSTREL_API void* GetHInstance();

/// The module (executable or DLL) whose image holds address: a package's own
/// handle, found from one of its functions or data. Null for an address in
/// no module. The module's reference count is not changed.
OSTREL_API void* ModuleOf(const void* address);

/// The path of module's file (null: the process's executable) in the ANSI
/// code page, whole however long (a UTF-8 program's letters take several
/// bytes each); empty when module is none.
OSTREL_API MyString ModuleFileName(void* module);

/// Folder of the process's executable, ending in a path separator.
OSTREL_API const char* GetStartupDir();

/// Whether size bytes from p may be read, found out from the memory map without
/// touching them. A null pointer is never readable; size 0 at a valid pointer is.
OSTREL_API bool CheckReadable(const void* p, std::size_t size);

///@{
/// memmove/memset that do nothing when a pointer is null.
OSTREL_API void MemMove(void* dst, const void* src, std::size_t size);
OSTREL_API void MemSet(void* dst, int value, std::size_t size);
///@}
