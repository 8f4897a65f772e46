#include "velkin/gdi/gdi_dib.h"

#include <cstdlib>
#include <cstring>

#include "velkin/gdi/gdi_temp.h"

VCL_CLASS_IMPL(HGDIDib, HCustomGDIBitmap)
VCL_CLASS_IMPL(HGDIDib32, HGDIDib)

HGDIDib::HGDIDib(int bitCount, int width, int height) : HCustomGDIBitmap(1, 1), bitCount_(bitCount) {
  Assign(width, height);
  std::memset(&info_, 0, sizeof info_);
  info_.bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
  info_.bmiHeader.biPlanes = 1;
  info_.bmiHeader.biBitCount = static_cast<WORD>(bitCount);
  info_.bmiHeader.biCompression = BI_RGB;
}

HGDIDib::~HGDIDib() = default;

void* HGDIDib::DoCreateHandle() {
  info_.bmiHeader.biWidth = width_ ? width_ : 1;
  info_.bmiHeader.biHeight = height_ ? height_ : 1;  // positive: bottom-up
  // Below 16 bits GDI reads a whole colour table: give it one (the entries
  // after the request's single one are black) instead of reading past info_.
  struct {
    BITMAPINFOHEADER header;
    RGBQUAD colors[256];
  } request{};
  request.header = info_.bmiHeader;
  request.colors[0] = info_.bmiColors[0];
  HTemp_WindowDC screen(nullptr);
  void* bits = nullptr;
  HBITMAP h = CreateDIBSection(static_cast<HDC>(screen.GetDC()), reinterpret_cast<BITMAPINFO*>(&request),
                               DIB_RGB_COLORS, &bits, nullptr, 0);
  bits_ = h ? bits : nullptr;
  if (h) GetObjectA(h, sizeof section_, &section_);
  return h;
}

bool HGDIDib::EnsureLive() {
  // A handle destroyed since the last creation leaves bits_ pointing at freed
  // memory: make a new DIB rather than hand that out.
  if (!bits_ || !handleValid_) GetHandle();
  return handleValid_ && bits_;
}

int64_t HGDIDib::LiveSize() const {
  if (!handleValid_ || !bits_) return 0;
  const int64_t lines = std::llabs(static_cast<int64_t>(section_.dsBm.bmHeight));
  const int64_t whole = static_cast<int64_t>(section_.dsBm.bmWidthBytes) * lines;
  const int64_t image = section_.dsBmih.biSizeImage;
  return image > 0 && image < whole ? image : whole;
}

namespace {
// One sample with its optional neighbours, the divisor counted as it goes.
inline void Sample(const uint8_t* s, uint8_t* d, bool left, bool below, int64_t down) {
  unsigned b = s[0], g = s[1], r = s[2], n = 1;
  if (left) {
    b += s[-8], g += s[-7], r += s[-6];
    ++n;
  }
  if (below) {
    const uint8_t* v = s - down;
    b += v[0], g += v[1], r += v[2];
    ++n;
  }
  d[0] = static_cast<uint8_t>(b / n);
  d[1] = static_cast<uint8_t>(g / n);
  d[2] = static_cast<uint8_t>(r / n);
}

// count samples that all have the left neighbour and, when Below, the one two
// lines lower: N is known, so the division becomes a multiplication.
template <unsigned N, bool Below>
void Walk(const uint8_t* s, uint8_t* d, int64_t count, int64_t down) {
  // Whole pixels at a time: blue and red summed in two 16-bit lanes, green
  // alone; the fourth byte of d is carried over.
  auto load = [](const uint8_t* p) {
    uint32_t v;
    std::memcpy(&v, p, 4);
    return v;
  };
  for (int64_t i = 0; i < count; ++i, s += 8, d += 8) {
    const uint32_t a = load(s), l = load(s - 8);
    uint32_t br = (a & 0xFF00FFu) + (l & 0xFF00FFu);
    uint32_t g = ((a >> 8) & 0xFFu) + ((l >> 8) & 0xFFu);
    if constexpr (Below) {
      const uint32_t v = load(s - down);
      br += v & 0xFF00FFu;
      g += (v >> 8) & 0xFFu;
    }
    const uint32_t out = (load(d) & 0xFF000000u) | (((br >> 16) / N) << 16) | ((g / N) << 8) | ((br & 0xFFFFu) / N);
    std::memcpy(d, &out, 4);
  }
}
}  // namespace

HColor32* HGDIDib32::DataAt(int x, int y) {
  if (!EnsureLive()) return nullptr;
  const int64_t stride = GetLineSize() / 4;
  const int64_t offset = 4 * ((static_cast<int64_t>(height_) - y) * stride + x);
  if (offset < 0 || offset + 4 > LiveSize()) return nullptr;
  return reinterpret_cast<HColor32*>(static_cast<uint8_t*>(bits_) + offset);
}

HColor32 HGDIDib32::GetPixelAt(int x, int y) {
  const HColor32* p = DataAt(x, y);
  if (!p) return HColor32{};
  GdiFlush();
  HColor32 c;
  std::memcpy(&c, p, 4);
  return c;
}

void HGDIDib32::SetPixelAt(int x, int y, const HColor32& color) {
  HColor32* p = DataAt(x, y);
  if (!p) return;
  GdiFlush();
  std::memcpy(p, &color, 4);
}

void HGDIDib32::AntiAlias(HGDIDib32* dst, MyRect& r) {
  if (!dst) return;
  const int64_t stride = GetLineSize() / 4;  // of the last creation, as it stands
  CorrectRect(r);
  if (r.left == r.right || r.top == r.bottom) return;
  dst->Assign(width_, height_);
  if (!EnsureLive() || !dst->EnsureLive()) return;
  GdiFlush();

  // The walk in byte offsets from each buffer's start, so that every access
  // can be checked against the buffer before it is made.
  const uint8_t* src = static_cast<const uint8_t*>(bits_);
  uint8_t* out = static_cast<uint8_t*>(dst->bits_);
  const int64_t srcSize = LiveSize(), dstSize = dst->LiveSize();
  const int64_t srcLine = GetLineSize() / 4, dstLine = dst->GetLineSize() / 4;
  const int64_t down = 8 * stride;
  const int64_t samples = static_cast<int64_t>(r.right) - r.left + 1;
  auto inSrc = [srcSize](int64_t o) { return o >= 0 && o + 4 <= srcSize; };

  for (int64_t y = r.top; y <= r.bottom; ++y) {
    const int64_t s0 = 4 * ((height_ - y) * srcLine + r.left);
    const int64_t d0 = 4 * ((dst->height_ - y) * dstLine + r.left);
    const int64_t sLast = s0 + 8 * (samples - 1);
    const int64_t dLast = d0 + 8 * (samples - 1);
    const bool left = r.left > 0, below = y > 0;
    // The whole row in range: no checks per sample. Only the first sample may
    // lack its left neighbour (x > 0 holds for every later one).
    if (samples > 0 && inSrc(s0) && inSrc(sLast) && (!left || inSrc(s0 - 8)) &&
        (!below || (inSrc(s0 - down) && inSrc(sLast - down))) && d0 >= 0 && dLast + 4 <= dstSize) {
      const uint8_t* s = src + s0;
      uint8_t* d = out + d0;
      Sample(s, d, left, below, down);
      // Every later sample has its left neighbour: a fixed divisor.
      if (below)
        Walk<3, true>(s + 8, d + 8, samples - 1, down);
      else
        Walk<2, false>(s + 8, d + 8, samples - 1, down);
      continue;
    }
    for (int64_t i = 0; i < samples; ++i) {
      const int64_t so = s0 + 8 * i, dOff = d0 + 8 * i;
      if (!inSrc(so) || dOff < 0 || dOff + 4 > dstSize) continue;
      const uint8_t* s = src + so;
      unsigned b = s[0], g = s[1], red = s[2], n = 1;
      if ((i > 0 || left) && inSrc(so - 8)) {
        b += s[-8], g += s[-7], red += s[-6];
        ++n;
      }
      if (below && inSrc(so - down)) {
        const uint8_t* v = src + so - down;
        b += v[0], g += v[1], red += v[2];
        ++n;
      }
      uint8_t* d = out + dOff;
      d[0] = static_cast<uint8_t>(b / n);
      d[1] = static_cast<uint8_t>(g / n);
      d[2] = static_cast<uint8_t>(red / n);
    }
  }
}
