#include "velkin/core/fmap.h"

#include <windows.h>

#include "platform/ostrel/oslib.h"

bool MapFileAccess(MapFileInfo& info, const char* fileName, int mode) {
  MemSet(&info, 0, sizeof info);
  info.Mode = static_cast<uint32_t>(mode);
  if (!fileName) return false;

  const DWORD access = GENERIC_READ | ((info.Mode & 1) ? GENERIC_WRITE : 0);
  HANDLE file = CreateFileA(fileName, access, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  info.File = file;

  DWORD high = 0;
  const DWORD low = GetFileSize(file, &high);
  if (low == INVALID_FILE_SIZE) {
    MapClose(info);
    return false;
  }
  info.Size = low + static_cast<uint64_t>(high) * 0xFFFFFFFFu;

  // Whole mode word here, bit 0 above: the asymmetry is deliberate.
  info.Mapping = CreateFileMappingA(file, nullptr, info.Mode ? PAGE_READWRITE : PAGE_READONLY, 0, 0, nullptr);
  if (info.Mapping) info.View = MapViewOfFile(info.Mapping, info.Mode ? FILE_MAP_WRITE : FILE_MAP_READ, 0, 0, 0);
  if (!info.View) {
    MapClose(info);
    return false;
  }
  return true;
}

void* MapGetData(const MapFileInfo& info, unsigned long size) {
  if (size == 0xFFFFFFFFul) return info.View;
  return CheckReadable(info.View, size) ? info.View : nullptr;
}

void MapClose(MapFileInfo& info) {
  if (info.View) UnmapViewOfFile(info.View);
  info.View = nullptr;
  if (info.Mapping) CloseHandle(info.Mapping);
  info.Mapping = nullptr;
  if (info.File && info.File != INVALID_HANDLE_VALUE) CloseHandle(info.File);
  info.File = nullptr;
}
