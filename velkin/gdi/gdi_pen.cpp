#include "velkin/gdi/gdi_pen.h"

#include <windows.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "platform/ostrel/owned_handle.h"
#include "platform/ostrel/strcol.h"
#include "platform/vcl/graphics/pen.h"

VCL_CLASS_IMPL(HCustomGDIPen, HGDIObject)
VCL_CLASS_IMPL(HGDIPen, HCustomGDIPen)

namespace {
// Longest dash pattern accepted, in pixels: a guard against texts that would
// ask for gigabytes; real patterns are a few dozen pixels.
constexpr long long kMaxPatternLength = 1 << 20;
}  // namespace

HCustomGDIPen::HCustomGDIPen() { SetPattern("1"); }

HCustomGDIPen::~HCustomGDIPen() { ReleaseOnDestroy(); }

bool HCustomGDIPen::Check(void* handle) { return GDICheckPen(handle); }

void HCustomGDIPen::SetColor(Graphics::TColor value) {
  Changing();
  color_ = value;
  Changed();
}

void HCustomGDIPen::SetWidth(int value) {
  Changing();
  width_ = value < 0 ? 0 : value;
  Dirtied();
}

void HCustomGDIPen::SetStyle(HPenStyle_Types value) {
  Changing();
  style_ = value;
  Dirtied();
}

void HCustomGDIPen::SetRoundEnd(bool value) {
  Changing();
  roundEnd_ = value;
  Dirtied();
}

void HCustomGDIPen::SetPattern(const System::AnsiString& text) {
  // Fields between commas (adjacent commas enclose an empty field, which
  // converts to 0 and so refuses the text); an empty text has none.
  std::vector<long> runs;
  const int fields = StrColCount(text.c_str(), ",");
  for (int i = 1; i <= fields; ++i) runs.push_back(std::atol(StrGetCol(text.c_str(), i, ",").Text()));
  long long sum = 0;
  std::string normalised;
  for (long run : runs) {
    if (run < 1) return;
    sum += run;
    if (sum > kMaxPatternLength) return;
    if (!normalised.empty()) normalised += ',';
    normalised += std::to_string(run);
  }
  if (sum == 0) return;

  Changing();
  pattern_.Set(normalised.c_str());
  patternLength_ = static_cast<int>(sum);
  bits_ = std::make_unique<bool[]>(static_cast<std::size_t>(sum) + 1);
  int at = 0;
  bool on = true;
  for (long run : runs) {
    for (long i = 0; i < run; ++i) bits_[at++] = on;
    on = !on;
  }
  Changed();
}

void HCustomGDIPen::Assign(Classes::TPersistent* source) {
  if (auto* pen = dynamic_cast<HCustomGDIPen*>(source))
    Assign(pen);
  else if (auto* vclPen = dynamic_cast<Graphics::TPen*>(source))
    Assign(vclPen);
  else
    HGDIObject::Assign(source);
}

void HCustomGDIPen::Assign(HCustomGDIPen* source) {
  if (!source) return;
  source->Refresh();
  Changing();
  color_ = source->color_;
  width_ = source->width_;
  style_ = source->style_;
  roundEnd_ = source->roundEnd_;
  pattern_ = source->pattern_;
  if (source != this) {
    patternLength_ = source->patternLength_ > 1 ? source->patternLength_ : 1;
    auto copy = std::make_unique<bool[]>(static_cast<std::size_t>(patternLength_) + 1);
    for (int i = 0; i < patternLength_ && i < source->patternLength_; ++i) copy[i] = source->bits_[i];
    // A source without a pattern reads as one drawn pixel.
    if (source->patternLength_ < 1) copy[0] = true;
    bits_ = std::move(copy);
  }
  Dirtied();
}

void HCustomGDIPen::Assign(Graphics::TPen* source) {
  if (!source) return;
  SetColor(source->GetColor());
  SetWidth(source->GetWidth());
  style_ = HPS_Solid;
  switch (source->GetStyle()) {
    case Graphics::psDash:
      SetPattern("5,5");
      break;
    case Graphics::psDot:
      SetPattern("2,2");
      break;
    case Graphics::psDashDot:
      SetPattern("5,3,2,3");
      break;
    case Graphics::psDashDotDot:
      SetPattern("5,3,2,3,2,3");
      break;
    default:  // psSolid, psClear, psInsideFrame
      SetPattern("1");
      break;
  }
}

void* HCustomGDIPen::DoCreateHandle() {
  LOGBRUSH brush{BS_SOLID, static_cast<COLORREF>(Graphics::ColorToRGB(color_)), 0};
  DWORD flags = PS_GEOMETRIC | (style_ == HPS_None ? PS_NULL : PS_SOLID);
  flags |= roundEnd_ ? (PS_ENDCAP_ROUND | PS_JOIN_ROUND) : (PS_ENDCAP_SQUARE | PS_JOIN_BEVEL);
  return ExtCreatePen(flags, static_cast<DWORD>(width_), &brush, 0, nullptr);
}

void HCustomGDIPen::DoDestroyHandle(void* handle) { OwnedGdiObject::Close(handle); }

void* HCustomGDIPen::DoSelect(void* dc, void* handle) {
  return SelectObject(static_cast<HDC>(dc), static_cast<HGDIOBJ>(handle));
}

void HCustomGDIPen::DoRestore(void* dc, void* old) { SelectObject(static_cast<HDC>(dc), static_cast<HGDIOBJ>(old)); }
