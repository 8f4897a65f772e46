#pragma once
#include <cstdint>

#include "velkin/velkin_api.h"

/// \file
/// A whole file mapped into memory for reading or writing.

/// A file and its mapping, as the mapping functions keep them.
struct MapFileInfo {
  uint32_t Mode;  // bit 0 set: write access wanted
  void* File;     // null when not open
  void* Mapping;  // null when not mapped
  void* View;     // first byte of the mapped file
  uint64_t Size;  // low + high * 0xFFFFFFFF, as the two 32-bit halves come
};

/// Opens and maps fileName. The open step asks for write access when bit 0 of
/// mode is set, the mapping steps whenever mode is non-zero: a mode with only
/// other bits set therefore fails. An empty file cannot be mapped and fails.
/// On failure the record is left closed and false returned.
VELKIN_API bool MapFileAccess(MapFileInfo& info, const char* fileName, int mode);

/// The view when size bytes of it are readable, else null; size 0xFFFFFFFF
/// returns the view unchecked.
VELKIN_API void* MapGetData(const MapFileInfo& info, unsigned long size);

/// Unmaps and closes whatever is open; safe on a closed or partly opened record.
VELKIN_API void MapClose(MapFileInfo& info);
