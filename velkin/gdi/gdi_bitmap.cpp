#include "velkin/gdi/gdi_bitmap.h"

#include <windows.h>

#include <algorithm>

#include "platform/ostrel/owned_handle.h"
#include "velkin/gdi/gdi_temp.h"

VCL_CLASS_IMPL(HCustomGDIBitmap, HGDIObject)
VCL_CLASS_IMPL(HGDIBitmap, HCustomGDIBitmap)

HCustomGDIBitmap::HCustomGDIBitmap(int width, int height) { Assign(width, height); }

HCustomGDIBitmap::~HCustomGDIBitmap() { ReleaseOnDestroy(); }

bool HCustomGDIBitmap::Check(void* handle) { return GDICheckBitmap(handle); }

void HCustomGDIBitmap::SetWidth(int value) {
  if (value == width_) return;
  Changing();
  width_ = value;
  Refresh();
  Dirtied();
}

void HCustomGDIBitmap::SetHeight(int value) {
  if (value == height_) return;
  Changing();
  height_ = value;
  Refresh();
  Dirtied();
}

void HCustomGDIBitmap::Assign(int width, int height) {
  if (width == width_ && height == height_) return;
  Changing();
  width_ = std::max(1, width);
  height_ = std::max(1, height);
  Refresh();
  Dirtied();
}

void HCustomGDIBitmap::Assign(HCustomGDIBitmap* source) {
  if (!source) return;
  source->Refresh();
  Assign(source->width_, source->height_);
}

void HCustomGDIBitmap::Assign(Classes::TPersistent*) {}

void HCustomGDIBitmap::CorrectRect(MyRect& r) const {
  const int left = std::min(r.left, r.right), right = std::max(r.left, r.right);
  const int top = std::min(r.top, r.bottom), bottom = std::max(r.top, r.bottom);
  r.left = std::max(0, left);
  r.top = std::max(0, top);
  r.right = std::min(right, width_);
  r.bottom = std::min(bottom, height_);
}

void* HCustomGDIBitmap::DoCreateHandle() {
  HTemp_WindowDC screen(nullptr);
  return CreateCompatibleBitmap(static_cast<HDC>(screen.GetDC()), width_, height_);
}

void HCustomGDIBitmap::DoDestroyHandle(void* handle) { OwnedGdiObject::Close(handle); }

void* HCustomGDIBitmap::DoSelect(void* dc, void* handle) {
  return SelectObject(static_cast<HDC>(dc), static_cast<HGDIOBJ>(handle));
}

void HCustomGDIBitmap::DoRestore(void* dc, void* old) { SelectObject(static_cast<HDC>(dc), static_cast<HGDIOBJ>(old)); }
