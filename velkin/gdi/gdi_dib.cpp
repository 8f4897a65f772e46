#include "velkin/gdi/gdi_dib.h"

#include <emmintrin.h>

#include <algorithm>
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
// Sums of three bytes (at most 765) divided by 3 as a multiplication and a
// shift: (sum * kThird) >> 16 truncates exactly as sum / 3 does.
constexpr unsigned kThird = 21846;
constexpr bool ThirdIsExact() {
  for (unsigned sum = 0; sum <= 765; ++sum)
    if ((sum * kThird) >> 16 != sum / 3) return false;
  return true;
}
static_assert(ThirdIsExact());

// Walks blocks of four samples (8 bytes apart, 32 bytes a block), each with its left
// neighbour (8 bytes before) and the pixel `down` bytes before. Reads 4 bytes
// past the block's last sample and writes back the odd pixels and fourth
// bytes unchanged, so the caller keeps every block 32 bytes inside both
// buffers.
void WalkBlocks(const uint8_t* s, uint8_t* d, int64_t blocks, int64_t down) {
  const __m128i zero = _mm_setzero_si128();
  // The fourth byte's lane multiplied by 0 drops it.
  const __m128i third = _mm_set_epi16(0, kThird, kThird, kThird, 0, kThird, kThird, kThird);
  // Of d: the fourth byte of each sample and the pixel between samples.
  const __m128i keep = _mm_set_epi32(-1, static_cast<int>(0xFF000000u), -1, static_cast<int>(0xFF000000u));
  // The four samples of a block side by side.
  auto samples = [](const uint8_t* p) {
    const __m128 a = _mm_castsi128_ps(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p)));
    const __m128 b = _mm_castsi128_ps(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 16)));
    return _mm_castps_si128(_mm_shuffle_ps(a, b, _MM_SHUFFLE(2, 0, 2, 0)));
  };
  auto pairs = [](__m128i a, __m128i b) {  // a's upper sample, then b's lower
    return _mm_castpd_si128(_mm_shuffle_pd(_mm_castsi128_pd(a), _mm_castsi128_pd(b), 1));
  };
  int32_t first;
  std::memcpy(&first, s - 8, 4);
  // Samples widened to 16 bits, two a register; the left neighbour of each is
  // the sample before it.
  __m128i before = _mm_unpacklo_epi8(_mm_set1_epi32(first), zero);
#pragma GCC unroll 2
  for (int64_t i = 0; i < blocks; ++i, s += 32, d += 32) {
    const __m128i a = samples(s), v = samples(s - down);
    const __m128i lo = _mm_unpacklo_epi8(a, zero), hi = _mm_unpackhi_epi8(a, zero);
    __m128i sumLo = _mm_add_epi16(_mm_add_epi16(lo, pairs(before, lo)), _mm_unpacklo_epi8(v, zero));
    __m128i sumHi = _mm_add_epi16(_mm_add_epi16(hi, pairs(lo, hi)), _mm_unpackhi_epi8(v, zero));
    before = hi;
    const __m128i out = _mm_packus_epi16(_mm_mulhi_epu16(sumLo, third), _mm_mulhi_epu16(sumHi, third));
    auto* d0 = reinterpret_cast<__m128i*>(d);
    auto* d1 = reinterpret_cast<__m128i*>(d + 16);
    _mm_storeu_si128(d0, _mm_or_si128(_mm_and_si128(_mm_loadu_si128(d0), keep), _mm_unpacklo_epi32(out, zero)));
    _mm_storeu_si128(d1, _mm_or_si128(_mm_and_si128(_mm_loadu_si128(d1), keep), _mm_unpackhi_epi32(out, zero)));
  }
}

// One sample; its left neighbour when left, the pixel `down` bytes before
// when below.
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

// A source and a distinct target of the same geometry: one buffer size, line
// (in pixels) and height; offsets are the same in both.
struct SmoothFrame {
  const uint8_t* src;
  uint8_t* dst;
  int64_t size, line, height, down;
  bool In(int64_t o) const { return o >= 0 && o + 4 <= size; }
};

// The filter over r with each target pixel written once, by the row that
// would write it last in the plain top-to-bottom walk. Row y's sample k lies
// where row y + 1's sample k + line / 2 does (even lines) and, when the rows
// are a line plus one sample long, where row y + 2's last does; a sample lies
// inside the buffers for every row alike. With no pixel written twice the
// rows can go in memory order (bottom row first), which the cache prefers.
void SmoothRows(const SmoothFrame& f, const MyRect& r) {
  const int64_t samples = static_cast<int64_t>(r.right) - r.left + 1;
  if (samples <= 0) return;
  for (int64_t y = r.bottom; y >= r.top; --y) {
    int64_t k0 = 0;
    if (y < r.bottom && f.line % 2 == 0)
      k0 = std::max<int64_t>(0, samples - f.line / 2);
    else if (y + 2 <= r.bottom && samples == f.line + 1)
      k0 = 1;
    const int64_t s0 = 4 * ((f.height - y) * f.line + r.left);
    const int64_t first = s0 + 8 * k0, last = s0 + 8 * (samples - 1);
    const bool left = k0 > 0 || r.left > 0, below = y > 0;
    if (k0 < samples && below && f.In(first) && f.In(last) && (!left || f.In(first - 8)) && f.In(first - f.down)) {
      int64_t k = k0;
      if (!left) {
        Sample(f.src + first, f.dst + first, false, true, f.down);
        ++k;
      }
      const int64_t blocks = std::min((samples - k) / 4, (f.size - (s0 + 8 * k)) / 32);
      WalkBlocks(f.src + s0 + 8 * k, f.dst + s0 + 8 * k, blocks, f.down);
      for (k += 4 * blocks; k < samples; ++k) Sample(f.src + s0 + 8 * k, f.dst + s0 + 8 * k, true, true, f.down);
      continue;
    }
    // Rows that reach out of the buffers: each sample and neighbour checked.
    for (int64_t k = k0; k < samples; ++k) {
      const int64_t o = s0 + 8 * k;
      if (f.In(o))
        Sample(f.src + o, f.dst + o, (k > 0 || r.left > 0) && f.In(o - 8), below && f.In(o - f.down), f.down);
    }
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

  const uint8_t* src = static_cast<const uint8_t*>(bits_);
  uint8_t* out = static_cast<uint8_t*>(dst->bits_);
  const int64_t srcSize = LiveSize(), dstSize = dst->LiveSize();
  const int64_t srcLine = GetLineSize() / 4, dstLine = dst->GetLineSize() / 4;
  const int64_t down = 8 * stride;
  // A row's samples span at most a line and one sample (CorrectRect), which
  // SmoothRows relies on.
  if (dst != this && srcLine == dstLine && srcSize == dstSize && height_ == dst->height_ && down >= 0 &&
      r.right - r.left <= srcLine) {
    SmoothRows(SmoothFrame{src, out, srcSize, srcLine, height_, down}, r);
    return;
  }

  // Filtering in place (or into a buffer of another shape): the plain walk,
  // in order, as each sample may read what the one before it wrote.
  const int64_t samples = static_cast<int64_t>(r.right) - r.left + 1;
  auto inSrc = [srcSize](int64_t o) { return o >= 0 && o + 4 <= srcSize; };
  for (int64_t y = r.top; y <= r.bottom; ++y) {
    const int64_t s0 = 4 * ((height_ - y) * srcLine + r.left);
    const int64_t d0 = 4 * ((dst->height_ - y) * dstLine + r.left);
    for (int64_t i = 0; i < samples; ++i) {
      const int64_t so = s0 + 8 * i, dOff = d0 + 8 * i;
      if (!inSrc(so) || dOff < 0 || dOff + 4 > dstSize) continue;
      Sample(src + so, out + dOff, (i > 0 || r.left > 0) && inSrc(so - 8), y > 0 && inSrc(so - down), down);
    }
  }
}
