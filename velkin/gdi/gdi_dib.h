#pragma once
/// \file
/// DIB sections with pixel access and the smoothing filter.
#include <windows.h>

#include <cstdint>

#include "platform/ostrel/mygeom.h"
#include "velkin/gdi/gdi_bitmap.h"

/// One 32-bit DIB pixel as it lies in the buffer; the fourth byte is never
/// interpreted.
struct HColor32 {
  uint8_t Blue = 0;
  uint8_t Green = 0;
  uint8_t Red = 0;
  uint8_t Reserved = 0;
  bool operator==(const HColor32&) const = default;
};
static_assert(sizeof(HColor32) == 4);

/// A bottom-up DIB section of a chosen bit count with directly addressable bits.
/// The accessors read what the last creation stored and do not create the
/// handle; after DestroyHandle they keep their last values (GetData then points
/// at released memory) until the next creation.
class VELKIN_API HGDIDib : public HCustomGDIBitmap {
  VCL_CLASS();

 public:
  HGDIDib(int bitCount, int width, int height);
  ~HGDIDib() override;

  int GetBitCount() const { return bitCount_; }
  /// Buffer size in bytes.
  int GetSize() const { return static_cast<int>(section_.dsBmih.biSizeImage); }
  /// Bytes per line, a multiple of 4.
  int GetLineSize() const { return section_.dsBm.bmWidthBytes; }
  void* GetData() const { return bits_; }
  const DIBSECTION& GetDibSection() const { return section_; }
  const BITMAPINFO& GetBitmapInfo() const { return info_; }

 protected:
  void* DoCreateHandle() override;

  /// True when the DIB exists and is current (creating it when it is not), so
  /// that bits_ and section_ describe live memory.
  bool EnsureLive();
  /// The buffer's byte count from the live section (0 when none).
  int64_t LiveSize() const;

  void* bits_ = nullptr;
  DIBSECTION section_{};
  BITMAPINFO info_{};
  int bitCount_ = 0;
};

/// A 32-bit DIB with pixel access and the smoothing filter AntiAlias.
///
/// Rows are addressed from the bottom: y = height names the first line in
/// memory and y = 1 the last; y = 0 names the line just past the buffer. x runs
/// on into the next line in memory past the line's end.
/// Out of range (any address whose 4 bytes are not inside the pixel buffer):
/// DataAt returns null, GetPixelAt returns an all-zero HColor32, SetPixelAt
/// does nothing. Nothing outside the buffer is ever read or written.
class VELKIN_API HGDIDib32 : public HGDIDib {
  VCL_CLASS();

 public:
  HGDIDib32(int width, int height) : HGDIDib(32, width, height) {}

  void* GetPixels() const { return GetData(); }
  /// Makes the DIB first when it has none (or it is out of date).
  HColor32* DataAt(int x, int y);
  HColor32 GetPixelAt(int x, int y);
  void SetPixelAt(int x, int y, const HColor32& color);

  /// Smooths r of this DIB into dst, resized to this DIB's size. Each sample
  /// averages (truncating) its own pixel, the pixel two places to its left
  /// (from x > 0) and the pixel two lines lower in memory (from y > 0); samples
  /// step two pixels at a time, (r.right - r.left + 1) of them per row, rows
  /// r.top..r.bottom inclusive after CorrectRect. The fourth byte of dst is
  /// kept. An empty corrected rectangle does nothing at all.
  /// Out of the buffer: a neighbour that lies outside is left out of the
  /// average; a sample whose own pixel or target lies outside is skipped.
  void AntiAlias(HGDIDib32* dst, MyRect& r);
};
