#include <windows.h>

#include <algorithm>
#include <atomic>
#include <mutex>

#include "platform/ostrel/dc_changer.h"
#include "platform/ostrel/owned_handle.h"
#include "platform/vcl/core/typinfo.h"
#include "platform/vcl/graphics/brush.h"
#include "platform/vcl/graphics/font.h"
#include "platform/vcl/graphics/measuring_dc.h"
#include "platform/vcl/graphics/object.h"
#include "platform/vcl/graphics/pen.h"
#include "platform/vcl/graphics/screen_density.h"

namespace Graphics {

VCL_CLASS_IMPL(TGraphicsObject, Classes::TPersistent)
VCL_CLASS_IMPL(TPen, TGraphicsObject, VCL_PROPERTY(Color, clBlack), VCL_PROPERTY(Mode, pmCopy),
               VCL_PROPERTY(Style, psSolid), VCL_PROPERTY(Width, 1))
VCL_CLASS_IMPL(TBrush, TGraphicsObject, VCL_PROPERTY(Color, clWhite), VCL_PROPERTY(Style, bsSolid))
VCL_CLASS_IMPL(TFont, TGraphicsObject, VCL_PROPERTY(Charset, DEFAULT_CHARSET), VCL_PROPERTY(Color, clWindowText),
               VCL_PROPERTY(Height), VCL_PROPERTY(Name), VCL_PROPERTY(Pitch, fpDefault),
               VCL_PROPERTY(Style, TFontStyles()))

void TGraphicsObject::Changed() {
  if (onChange_) onChange_(this);
}

// ---- TPen

TPen::~TPen() = default;

// The old handle lives until the listeners have let go of it (a canvas
// deselects it), and one that asks for the handle meanwhile gets a new one.
void TPen::Changed() {
  const OwnedPen old = std::move(handle_);
  TGraphicsObject::Changed();
}

void TPen::SetColor(TColor value) {
  if (value == color_) return;
  color_ = value;
  Changed();
}

void TPen::SetWidth(int value) {
  if (value < 1) value = 1;
  if (value == width_) return;
  width_ = value;
  Changed();
}

void TPen::SetStyle(TPenStyle value) {
  if (value == style_) return;
  style_ = value;
  Changed();
}

void TPen::SetMode(TPenMode value) {
  if (value == mode_) return;
  mode_ = value;
  Changed();
}

HPEN TPen::GetHandle() {
  if (!handle_) {
    static const int styles[] = {PS_SOLID, PS_DASH, PS_DOT, PS_DASHDOT, PS_DASHDOTDOT, PS_NULL, PS_INSIDEFRAME};
    LOGPEN lp{};
    lp.lopnStyle = static_cast<UINT>(style_ >= psSolid && style_ <= psInsideFrame ? styles[style_] : PS_SOLID);
    lp.lopnWidth.x = width_;
    lp.lopnColor = static_cast<COLORREF>(ColorToRGB(color_));
    handle_.reset(CreatePenIndirect(&lp));
  }
  return handle_.get();
}

void TPen::Assign(Classes::TPersistent* source) {
  if (auto* p = dynamic_cast<TPen*>(source)) {
    if (p == this) return;
    if (p->color_ == color_ && p->width_ == width_ && p->style_ == style_ && p->mode_ == mode_) return;
    color_ = p->color_;
    width_ = p->width_;
    style_ = p->style_;
    mode_ = p->mode_;
    Changed();
    return;
  }
  TGraphicsObject::Assign(source);
}

// ---- TBrush

TBrush::~TBrush() = default;

// As for the pen.
void TBrush::Changed() {
  const OwnedBrush old = std::move(handle_);
  TGraphicsObject::Changed();
}

void TBrush::SetColor(TColor value) {
  if (value == color_) return;
  color_ = value;
  Changed();
}

void TBrush::SetStyle(TBrushStyle value) {
  if (value == style_) return;
  style_ = value;
  Changed();
}

HBRUSH TBrush::GetHandle() {
  if (!handle_) {
    LOGBRUSH lb{};
    lb.lbColor = static_cast<COLORREF>(ColorToRGB(color_));
    switch (style_) {
      case bsSolid:
        lb.lbStyle = BS_SOLID;
        break;
      case bsClear:
        lb.lbStyle = BS_HOLLOW;
        break;
      default: {
        static const int hatches[] = {HS_HORIZONTAL, HS_VERTICAL, HS_FDIAGONAL, HS_BDIAGONAL, HS_CROSS, HS_DIAGCROSS};
        const int i = style_ - bsHorizontal;
        lb.lbStyle = BS_HATCHED;
        lb.lbHatch = static_cast<ULONG_PTR>(i >= 0 && i < 6 ? hatches[i] : HS_CROSS);
      }
    }
    handle_.reset(CreateBrushIndirect(&lb));
  }
  return handle_.get();
}

void TBrush::Assign(Classes::TPersistent* source) {
  if (auto* b = dynamic_cast<TBrush*>(source)) {
    if (b == this || (b->color_ == color_ && b->style_ == style_)) return;
    color_ = b->color_;
    style_ = b->style_;
    Changed();
    return;
  }
  TGraphicsObject::Assign(source);
}

// ---- TMeasuringDC

namespace {

// The one measuring context, and the 32-bit bitmap it keeps selected to draw
// ink on: making and selecting a bitmap costs more than the drawing.
struct Measuring {
  std::mutex lock;
  OwnedMemoryDC dc{CreateCompatibleDC(nullptr)};
  OwnedBitmap canvas;
  HGDIOBJ original = nullptr;
  HGDIOBJ originalFont = nullptr;
  HFONT font = nullptr;  // selected by UseFont
  HFONT lasting = nullptr;
  const DWORD* bits = nullptr;
  int width = 0, height = 0;

  // Ink is drawn black on white, transparently over a cleared canvas; the
  // context is the measuring's own, and lenders put back what they change.
  Measuring() {
    SetTextColor(dc.get(), RGB(0, 0, 0));
    SetBkColor(dc.get(), RGB(255, 255, 255));
    SetBkMode(dc.get(), TRANSPARENT);
  }

  ~Measuring() {
    if (original) SelectObject(dc.get(), original);  // so that the bitmap can go
    if (originalFont) SelectObject(dc.get(), originalFont);
  }
  // A canvas of at least w x h, selected.
  bool Reserve(int w, int h) {
    if (canvas && w <= width && h <= height) return true;
    w = std::max(w, width);
    h = std::max(h, height);
    BITMAPINFO info{};
    info.bmiHeader = {sizeof(BITMAPINFOHEADER), w, -h, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* pixels = nullptr;
    OwnedBitmap made(CreateDIBSection(dc.get(), &info, DIB_RGB_COLORS, &pixels, nullptr, 0));
    if (!made || !pixels) return false;
    const HGDIOBJ was = SelectObject(dc.get(), made.get());
    if (!original) original = was;
    canvas = std::move(made);
    bits = static_cast<const DWORD*>(pixels);
    width = w;
    height = h;
    return true;
  }
};

Measuring& TheMeasuring() {
  static Measuring measuring;
  return measuring;
}

}  // namespace

TMeasuringDC::TMeasuringDC() {
  Measuring& m = TheMeasuring();
  m.lock.lock();
  dc_ = m.dc.get();
}

// A font other than the lasting one goes out again: its owner may delete it.
TMeasuringDC::~TMeasuringDC() {
  Measuring& m = TheMeasuring();
  if (m.font && m.font != m.lasting) {
    SelectObject(dc_, m.originalFont);
    m.font = nullptr;
  }
  m.lock.unlock();
}

void TMeasuringDC::UseFont(HFONT font) const {
  Measuring& m = TheMeasuring();
  if (!font || font == m.font) return;
  const HGDIOBJ was = SelectObject(dc_, font);
  if (!m.originalFont) m.originalFont = was;
  m.font = font;
}

void TMeasuringDC::SetLastingFont(HFONT font) {
  const TMeasuringDC lend;
  TheMeasuring().lasting = font;
}

namespace {

// A text that DrawTextW draws as one ExtTextOutW run at the rectangle's
// top-left corner when the rectangle is as wide as the text: one line, no
// prefix character to hide, nothing to expand, nothing to shorten.
bool OneRun(const wchar_t* text, int length, UINT flags) {
  constexpr UINT kReshaping = DT_WORDBREAK | DT_EXPANDTABS | DT_VCENTER | DT_BOTTOM | DT_END_ELLIPSIS |
                              DT_PATH_ELLIPSIS | DT_WORD_ELLIPSIS | DT_EDITCONTROL | DT_RTLREADING |
                              DT_TABSTOP | DT_EXTERNALLEADING | DT_INTERNAL;
  if (!(flags & DT_SINGLELINE) || (flags & kReshaping)) return false;
  const bool prefixes = !(flags & DT_NOPREFIX);
  for (int i = 0; i < length; ++i)
    if (text[i] == L'\t' || text[i] == L'\r' || text[i] == L'\n' || (prefixes && text[i] == L'&')) return false;
  return true;
}

}  // namespace

RECT TMeasuringDC::TextRect(const wchar_t* text, int length, UINT flags, int width) const {
  RECT r{0, 0, width, 0};
  SIZE size{};
  if (OneRun(text, length, flags) && GetTextExtentPoint32W(dc_, text, length, &size)) {
    r.right = size.cx;
    r.bottom = size.cy;
  } else {
    DrawTextW(dc_, text, length, &r, flags | DT_CALCRECT);
  }
  return r;
}

int TMeasuringDC::InkRight(const wchar_t* text, int length, const RECT& laidOut, UINT flags) const {
  const int width = laidOut.right - laidOut.left, height = laidOut.bottom - laidOut.top;
  if (!text || length == 0 || width <= 0 || height <= 0) return 0;
  Measuring& m = TheMeasuring();
  // One run starts at the corner when aligned left, or whatever the alignment
  // when as wide as the rectangle: drawn by ExtTextOutW, which also clears.
  SIZE size{};
  const bool oneRun = OneRun(text, length, flags) &&
                      (!(flags & (DT_CENTER | DT_RIGHT)) ||
                       (GetTextExtentPoint32W(dc_, text, length, &size) && size.cx == width));
  TEXTMETRICA metrics{};
  GetTextMetricsA(dc_, &metrics);
  // Room for the ink past the measured end; more is tried when it reaches the edge.
  int room = width + width / 2 + 2 * metrics.tmMaxCharWidth + 8;
  for (int tries = 0; tries < 4; ++tries, room *= 2) {
    if (!m.Reserve(room, height)) return width;
    const RECT all{0, 0, room, height};
    if (oneRun) {
      ExtTextOutW(dc_, 0, 0, ETO_OPAQUE, &all, text, static_cast<UINT>(length), nullptr);
    } else {
      PatBlt(dc_, 0, 0, room, height, WHITENESS);
      RECT at{0, 0, width, height};
      DrawTextW(dc_, text, length, &at, (flags & ~DT_CALCRECT) | DT_NOCLIP);
    }
    GdiFlush();
    int right = 0;
    for (int y = 0; y < height; ++y) {
      const DWORD* row = m.bits + static_cast<size_t>(y) * m.width;
      // Most of a row right of the ink found so far is white: asked in one
      // pass without branches first.
      DWORD ink = 0;
      for (int x = right; x < room; ++x) ink |= ~row[x] & 0xFFFFFF;
      if (!ink) continue;
      for (int x = room - 1; x >= right; --x)
        if ((row[x] & 0xFFFFFF) != 0xFFFFFF) {
          right = x + 1;
          break;
        }
    }
    if (right < room) return right;
  }
  return room / 2;
}

namespace {

std::wstring Widened(UINT codePage, const char* text, int length) {
  if (!text || length == 0) return std::wstring();
  const int n = MultiByteToWideChar(codePage, 0, text, length, nullptr, 0);
  std::wstring wide(n > 0 ? n : 0, L'\0');
  if (n > 0) MultiByteToWideChar(codePage, 0, text, length, wide.data(), n);
  if (length < 0 && !wide.empty()) wide.pop_back();  // the terminator
  return wide;
}

}  // namespace

std::wstring WideText(const char* text, int length) { return Widened(CP_ACP, text, length); }

std::string AnsiText(const wchar_t* text, int length) {
  if (!text || length == 0) return std::string();
  const int n = WideCharToMultiByte(CP_ACP, 0, text, length, nullptr, 0, nullptr, nullptr);
  std::string bytes(n > 0 ? n : 0, '\0');
  if (n > 0) WideCharToMultiByte(CP_ACP, 0, text, length, bytes.data(), n, nullptr, nullptr);
  if (length < 0 && !bytes.empty()) bytes.pop_back();  // the terminator
  return bytes;
}

std::wstring DrawnText(HDC dc, const char* text, int length) {
  UINT codePage = CP_ACP;
  if (GetACP() != CP_UTF8) {
    const int charset = GetTextCharset(dc);
    CHARSETINFO info{};
    if (charset == OEM_CHARSET)
      codePage = GetOEMCP();
    else if (charset >= 0 &&
             TranslateCharsetInfo(reinterpret_cast<DWORD*>(static_cast<uintptr_t>(charset)), &info, TCI_SRCCHARSET))
      codePage = info.ciACP;
  }
  return Widened(codePage, text, length);
}

// ---- TFont

namespace {
std::atomic<int> screenPixelsPerInch{0};  // 0 until read
}  // namespace

int ScreenPixelsPerInch() {
  if (const int known = screenPixelsPerInch.load(std::memory_order_relaxed)) return known;
  RefreshScreenPixelsPerInch();
  return screenPixelsPerInch.load(std::memory_order_relaxed);
}

void RefreshScreenPixelsPerInch() {
  const OwnedWindowDC screen(nullptr);
  const int ppi = screen ? GetDeviceCaps(screen.get(), LOGPIXELSY) : 96;
  screenPixelsPerInch.store(ppi > 0 ? ppi : 96, std::memory_order_relaxed);
}

TFont::TFont() : pixelsPerInch_(ScreenPixelsPerInch()) { height_ = -MulDiv(8, pixelsPerInch_, 72); }

TFont::~TFont() = default;

// As for the pen: a control's window is handed the new handle at once.
void TFont::Changed() {
  const OwnedFont old = std::move(handle_);
  TGraphicsObject::Changed();
}

void TFont::SetName(const System::AnsiString& value) {
  if (value.IsEmpty() || value == name_) return;
  name_ = value;
  Changed();
}

int TFont::GetSize() const { return -MulDiv(height_, 72, pixelsPerInch_); }

void TFont::SetSize(int value) { SetHeight(-MulDiv(value, pixelsPerInch_, 72)); }

void TFont::SetHeight(int value) {
  if (value == height_) return;
  height_ = value;
  Changed();
}

void TFont::SetColor(TColor value) {
  if (value == color_) return;
  color_ = value;
  // The colour is not part of the GDI font: only listeners need to know.
  TGraphicsObject::Changed();
}

void TFont::SetStyle(const TFontStyles& value) {
  if (value == style_) return;
  style_ = value;
  Changed();
}

void TFont::SetCharset(TFontCharset value) {
  if (value == charset_) return;
  charset_ = value;
  Changed();
}

void TFont::SetPitch(TFontPitch value) {
  if (value == pitch_) return;
  pitch_ = value;
  Changed();
}

void TFont::SetPixelsPerInch(int value) {
  if (value > 0) pixelsPerInch_ = value;
}

HFONT TFont::GetHandle() {
  if (!handle_) {
    LOGFONTW lf{};
    lf.lfHeight = height_;
    lf.lfWeight = style_.Contains(fsBold) ? FW_BOLD : FW_NORMAL;
    lf.lfItalic = style_.Contains(fsItalic);
    lf.lfUnderline = style_.Contains(fsUnderline);
    lf.lfStrikeOut = style_.Contains(fsStrikeOut);
    lf.lfCharSet = charset_;
    lf.lfOutPrecision = OUT_DEFAULT_PRECIS;
    lf.lfClipPrecision = CLIP_DEFAULT_PRECIS;
    lf.lfQuality = DEFAULT_QUALITY;
    lf.lfPitchAndFamily = pitch_ == fpVariable ? VARIABLE_PITCH : pitch_ == fpFixed ? FIXED_PITCH : DEFAULT_PITCH;
    // Wide: the record holds 31 characters of a name, fewer bytes of UTF-8.
    std::wstring face = WideText(name_.c_str(), name_.Length());
    if (face.size() >= LF_FACESIZE)
      face.resize(IS_LOW_SURROGATE(face[LF_FACESIZE - 1]) ? LF_FACESIZE - 2 : LF_FACESIZE - 1);
    std::copy(face.begin(), face.end(), lf.lfFaceName);
    handle_.reset(CreateFontIndirectW(&lf));
  }
  return handle_.get();
}

void TFont::Assign(Classes::TPersistent* source) {
  if (auto* f = dynamic_cast<TFont*>(source)) {
    if (f == this) return;
    name_ = f->name_;
    // Height carries over; Size follows from this font's resolution.
    height_ = f->height_;
    color_ = f->color_;
    style_ = f->style_;
    charset_ = f->charset_;
    pitch_ = f->pitch_;
    Changed();
    return;
  }
  TGraphicsObject::Assign(source);
}

}  // namespace Graphics
