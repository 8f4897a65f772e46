#include "platform/pellum/gdi_ext.h"

#include <atomic>

#include "platform/ostrel/dc_changer.h"
#include "platform/ostrel/owned_handle.h"

namespace Gdi_ext {

namespace {

using TransparentBltFn = BOOL(WINAPI*)(HDC, int, int, int, int, HDC, int, int, int, int, UINT);

// Looked up once: older systems ship the routine only in msimg32.
TransparentBltFn TransparentBltProc() {
  static const TransparentBltFn proc = [] {
    HMODULE gdi = GetModuleHandleA("GDI32");
    return gdi ? reinterpret_cast<TransparentBltFn>(reinterpret_cast<void*>(GetProcAddress(gdi, "GdiTransparentBlt")))
               : nullptr;
  }();
  return proc;
}

std::atomic<bool> useTransparentBlt{true};

// A monochrome mask (1 where the source has the key colour) keeps the
// target there: target ^ source, & mask, ^ source.
void MaskedBlt(HDC dc, int x, int y, int w, int h, HDC src, int sx, int sy, int sw, int sh, COLORREF key) {
  const OwnedMemoryDC maskDC(CreateCompatibleDC(dc));
  const OwnedBitmap mask(CreateBitmap(sw, sh, 1, 1, nullptr));
  if (!maskDC || !mask) return;
  DCChanger maskUse(maskDC.get());  // declared after the owners: the mask goes back first
  maskUse.Select(mask.get());
  {
    DCChanger srcUse(src);
    srcUse.SetBkColor(key);
    BitBlt(maskDC.get(), 0, 0, sw, sh, src, sx, sy, SRCCOPY);
  }
  DCChanger use(dc);
  use.SetBkColor(RGB(255, 255, 255));
  use.SetTextColor(RGB(0, 0, 0));
  use.SetStretchBltMode(COLORONCOLOR);
  StretchBlt(dc, x, y, w, h, src, sx, sy, sw, sh, SRCINVERT);
  StretchBlt(dc, x, y, w, h, maskDC.get(), 0, 0, sw, sh, SRCAND);
  StretchBlt(dc, x, y, w, h, src, sx, sy, sw, sh, SRCINVERT);
}

}  // namespace

bool HasTransparentBlt() { return TransparentBltProc() != nullptr; }
bool GetUseTransparentBlt() { return useTransparentBlt; }
void SetUseTransparentBlt(bool value) { useTransparentBlt = value; }

void StretchBltTransparent(HDC dc, int x, int y, int w, int h, HDC src, int sx, int sy, int sw, int sh,
                           COLORREF transparent) {
  if (!dc || !src || w <= 0 || h <= 0 || sw <= 0 || sh <= 0) return;
  const COLORREF key = transparent & 0xFFFFFF;
  if (TransparentBltFn proc = useTransparentBlt ? TransparentBltProc() : nullptr)
    proc(dc, x, y, w, h, src, sx, sy, sw, sh, key);
  else
    MaskedBlt(dc, x, y, w, h, src, sx, sy, sw, sh, key);
}

void DrawTransparentBitmap(HDC dc, HBITMAP bitmap, int x, int y, COLORREF transparent) {
  BITMAP info{};
  if (!dc || !bitmap || !GetObjectA(bitmap, sizeof info, &info)) return;
  const OwnedMemoryDC src(CreateCompatibleDC(dc));
  if (!src) return;
  DCChanger use(src.get());
  use.Select(bitmap);
  StretchBltTransparent(dc, x, y, info.bmWidth, info.bmHeight, src.get(), 0, 0, info.bmWidth, info.bmHeight,
                        transparent);
}

}  // namespace Gdi_ext
