#include "velkin/gdi/gdi_font.h"

#include <cstdint>
#include <cstring>

#include "platform/ostrel/mbchar.h"
#include "platform/ostrel/owned_handle.h"
#include "platform/ostrel/strcompare.h"
#include "platform/vcl/graphics/font.h"
#include "platform/vcl/graphics/measuring_dc.h"
#include "velkin/gdi/gdi_temp.h"

VCL_CLASS_IMPL(HCustomGDIFont, HGDIObject)
VCL_CLASS_IMPL(HGDIFont, HCustomGDIFont)

static_assert(sizeof(LOGFONTA) == 60, "the font record is copied whole");

HCustomGDIFont::HCustomGDIFont() {
  std::memset(&logFont_, 0, sizeof logFont_);
  GetObjectA(GetStockObject(ANSI_VAR_FONT), sizeof logFont_, &logFont_);
}

HCustomGDIFont::~HCustomGDIFont() { ReleaseOnDestroy(); }

bool HCustomGDIFont::Check(void* handle) { return GDICheckFont(handle); }

void HCustomGDIFont::SetSize(int value) {
  if (logFont_.lfHeight == value && logFont_.lfWidth == 0) return;
  Changing();
  logFont_.lfHeight = value;
  logFont_.lfWidth = 0;
  Dirtied();
}

void HCustomGDIFont::SetHeight(int value) {
  if (logFont_.lfHeight == value) return;
  Changing();
  logFont_.lfHeight = value;
  Dirtied();
}

void HCustomGDIFont::SetWidth(int value) {
  if (logFont_.lfWidth == value) return;
  Changing();
  logFont_.lfWidth = value;
  Dirtied();
}

void HCustomGDIFont::SetAngle(int value) {
  // Tenths of a degree; absurd angles wrap instead of overflowing.
  const LONG tenths = static_cast<LONG>(static_cast<int64_t>(value) * 10);
  if (logFont_.lfEscapement == tenths) return;
  Changing();
  logFont_.lfEscapement = tenths;
  Dirtied();
}

void HCustomGDIFont::SetBold(bool value) {
  if (GetBold() == value) return;
  Changing();
  logFont_.lfWeight = value ? FW_BOLD : FW_NORMAL;
  Dirtied();
}

void HCustomGDIFont::SetWeight(int value) {
  if (logFont_.lfWeight == value) return;
  Changing();
  logFont_.lfWeight = value;
  Dirtied();
}

void HCustomGDIFont::SetItalic(bool value) {
  if (GetItalic() == value) return;
  Changing();
  logFont_.lfItalic = value ? 1 : 0;
  Dirtied();
}

void HCustomGDIFont::SetUnderline(bool value) {
  if (GetUnderline() == value) return;
  Changing();
  logFont_.lfUnderline = value ? 1 : 0;
  Dirtied();
}

void HCustomGDIFont::SetStrikeout(bool value) {
  if (GetStrikeout() == value) return;
  Changing();
  logFont_.lfStrikeOut = value ? 1 : 0;
  Dirtied();
}

void HCustomGDIFont::SetFontName(const System::AnsiString& value) {
  if (StrCmp(logFont_.lfFaceName, value.c_str(), -1, StrCmpIgnoreCase) == 0) return;
  Changing();
  // As much of the name as the record holds, never half a letter.
  const int kept = CharFit(value.c_str(), value.Length(), LF_FACESIZE - 1);
  std::memcpy(logFont_.lfFaceName, value.c_str(), static_cast<std::size_t>(kept));
  logFont_.lfFaceName[kept] = 0;
  Dirtied();
}

void HCustomGDIFont::SetCharset(HFontCharset value) {
  const unsigned char byte = hfCharset2Value(value);
  if (logFont_.lfCharSet == byte) return;
  Changing();
  logFont_.lfCharSet = byte;
  Dirtied();
}

void HCustomGDIFont::SetColor(Graphics::TColor value) {
  if (color_ == value) return;
  Changing();
  color_ = value;
  Changed();
}

void HCustomGDIFont::SetVariable(bool value) {
  if (GetVariable() == value) return;
  Changing();
  logFont_.lfPitchAndFamily = value ? VARIABLE_PITCH : FIXED_PITCH;
  Dirtied();
}

MyPoint HCustomGDIFont::TextSize(const char* text, void* dc) {
  HTemp_CompatibleDC* shared = HTempGet<HTemp_CompatibleDC>("All.HTemp_CompatibleDC", HTempCreateCompatibleDC, 0);
  void* chosen = dc ? dc : shared->GetDC();
  RECT rect{0, 0, 0, 0};
  Refresh();
  if (!selected_) Select(chosen);
  if (!text) text = "";
  if (selectedDC_) {
    const HDC dc = static_cast<HDC>(selectedDC_);
    const std::wstring drawn = Graphics::DrawnText(dc, text, static_cast<int>(std::strlen(text)));
    DrawTextW(dc, drawn.c_str(), static_cast<int>(drawn.size()), &rect, DT_CALCRECT);
  }
  if (chosen == selectedDC_) Restore();
  return MyPoint{rect.right - rect.left, rect.bottom - rect.top};
}

void HCustomGDIFont::Assign(Classes::TPersistent* source) {
  if (auto* font = dynamic_cast<HCustomGDIFont*>(source))
    Assign(font);
  else if (auto* vclFont = dynamic_cast<Graphics::TFont*>(source))
    Assign(vclFont);
  else
    HGDIObject::Assign(source);
}

void HCustomGDIFont::Assign(HCustomGDIFont* source) {
  if (!source) return;
  Changing();
  if (source != this) {
    logFont_ = source->logFont_;
    color_ = source->color_;
  }
  Dirtied();
}

void HCustomGDIFont::Assign(Graphics::TFont*) {}

void* HCustomGDIFont::DoCreateHandle() { return CreateFontIndirectA(&logFont_); }

void HCustomGDIFont::DoDestroyHandle(void* handle) { OwnedGdiObject::Close(handle); }

void* HCustomGDIFont::DoSelect(void* dc, void* handle) {
  void* old = SelectObject(static_cast<HDC>(dc), static_cast<HGDIOBJ>(handle));
  oldTextColor_ = SetTextColor(static_cast<HDC>(dc), static_cast<COLORREF>(Graphics::ColorToRGB(color_)));
  return old;
}

void HCustomGDIFont::DoRestore(void* dc, void* old) {
  SelectObject(static_cast<HDC>(dc), static_cast<HGDIOBJ>(old));
  SetTextColor(static_cast<HDC>(dc), oldTextColor_);
}
