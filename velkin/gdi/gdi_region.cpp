#include "velkin/gdi/gdi_region.h"

#include <windows.h>

#include <cstdint>

#include "platform/ostrel/owned_handle.h"

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

void HGDIRegion::DoDestroyHandle(void* handle) { OwnedGdiObject::Close(handle); }

void* HGDIRegion::DoSelect(void* dc, void* handle) {
  // Starts empty: when the context has no clip region GetClipRgn leaves it so,
  // and restoring then selects the empty region.
  OwnedRegion saved(CreateRectRgn(1, 1, 1, 1));
  GetClipRgn(static_cast<HDC>(dc), saved.get());
  const int r = SelectClipRgn(static_cast<HDC>(dc), static_cast<HRGN>(handle));
  // A failed selection keeps no copy: the result is handed back as the old
  // value and the copy goes.
  if (r == -1) return reinterpret_cast<void*>(static_cast<intptr_t>(-1));
  if (r == ERROR) return nullptr;
  return saved.release();
}

void HGDIRegion::DoRestore(void* dc, void* old) {
  // A failed selection stored 0 or -1: hand it back to GDI as it is, but
  // never delete what is not a region of ours.
  const bool ours = old && old != reinterpret_cast<void*>(static_cast<intptr_t>(-1));
  const OwnedRegion copy(ours ? static_cast<HRGN>(old) : nullptr);
  SelectClipRgn(static_cast<HDC>(dc), static_cast<HRGN>(old));
}
