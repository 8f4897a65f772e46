#include "velkin/gdi/gdi_region.h"

#include <windows.h>

#include <cstdint>

VCL_CLASS_IMPL(HGDIRegion, HGDIObject)

namespace {
// right + 1 without signed overflow at the top of the range (it wraps).
int32_t Exclusive(int32_t edge) { return static_cast<int32_t>(static_cast<uint32_t>(edge) + 1u); }
}  // namespace

HGDIRegion::HGDIRegion(const MyRect& r) : rect_{r.left, r.top, Exclusive(r.right), Exclusive(r.bottom)} {}

HGDIRegion::HGDIRegion(int left, int top, int right, int bottom)
    : rect_{left, top, Exclusive(right), Exclusive(bottom)} {}

HGDIRegion::~HGDIRegion() { ReleaseOnDestroy(); }

bool HGDIRegion::Check(void* handle) { return GDICheckRgn(handle); }

void* HGDIRegion::DoCreateHandle() { return CreateRectRgn(rect_.left, rect_.top, rect_.right, rect_.bottom); }

void HGDIRegion::DoDestroyHandle(void* handle) { DeleteObject(static_cast<HGDIOBJ>(handle)); }

void* HGDIRegion::DoSelect(void* dc, void* handle) {
  // Starts empty: when the context has no clip region GetClipRgn leaves it so,
  // and restoring then selects the empty region.
  HRGN saved = CreateRectRgn(1, 1, 1, 1);
  GetClipRgn(static_cast<HDC>(dc), saved);
  const int r = SelectClipRgn(static_cast<HDC>(dc), static_cast<HRGN>(handle));
  if (r == -1) {
    DeleteObject(saved);
    return reinterpret_cast<void*>(static_cast<intptr_t>(-1));
  }
  if (r == ERROR) {
    DeleteObject(saved);
    return nullptr;
  }
  return saved;
}

void HGDIRegion::DoRestore(void* dc, void* old) {
  // A failed selection stored 0 or -1: hand it back to GDI as it is, but
  // never delete what is not a region of ours.
  SelectClipRgn(static_cast<HDC>(dc), static_cast<HRGN>(old));
  if (old && old != reinterpret_cast<void*>(static_cast<intptr_t>(-1))) DeleteObject(static_cast<HGDIOBJ>(old));
}
