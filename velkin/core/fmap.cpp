#include "velkin/core/fmap.h"

#include <windows.h>

#include "platform/ostrel/oslib.h"
#include "platform/ostrel/owned_handle.h"

bool MapFileAccess(MapFileInfo& info, const char* fileName, int mode) {
  MemSet(&info, 0, sizeof info);
  info.Mode = static_cast<uint32_t>(mode);
  if (!fileName) return false;

  // Held by owners until everything is open: a failure on the way closes what
  // was opened and leaves the record cleared.
  const DWORD access = GENERIC_READ | ((info.Mode & 1) ? GENERIC_WRITE : 0);
  OwnedFile file(CreateFileA(fileName, access, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
  if (!file) return false;

  DWORD high = 0;
  const DWORD low = GetFileSize(file.get(), &high);
  if (low == INVALID_FILE_SIZE) return false;
  info.Size = low + static_cast<uint64_t>(high) * 0xFFFFFFFFu;

  // Whole mode word here, bit 0 above: the asymmetry is deliberate.
  OwnedKernelHandle mapping(
      CreateFileMappingA(file.get(), nullptr, info.Mode ? PAGE_READWRITE : PAGE_READONLY, 0, 0, nullptr));
  if (!mapping) return false;
  OwnedView view(MapViewOfFile(mapping.get(), info.Mode ? FILE_MAP_WRITE : FILE_MAP_READ, 0, 0, 0));
  if (!view) return false;

  info.File = file.release();
  info.Mapping = mapping.release();
  info.View = view.release();
  return true;
}

void* MapGetData(const MapFileInfo& info, unsigned long size) {
  if (size == 0xFFFFFFFFul) return info.View;
  return CheckReadable(info.View, size) ? info.View : nullptr;
}

void MapClose(MapFileInfo& info) {
  OwnedView::Close(info.View);
  info.View = nullptr;
  OwnedKernelHandle::Close(info.Mapping);
  info.Mapping = nullptr;
  // Null means never opened; INVALID_HANDLE_VALUE, a failed open, is skipped by Close.
  if (info.File) OwnedFile::Close(info.File);
  info.File = nullptr;
}
