#include "velkin/controls/vcl_conversions.h"

#include <windows.h>

#include <cstdint>
#include <cstdlib>

#include "platform/ostrel/strcompare.h"
#include "platform/ostrel/strnum.h"
#include "platform/ostrel/strutil.h"
#include "platform/pellum/filectrl.h"

namespace {

using Graphics::TColor;

struct ColorName {
  TColor Value;
  const char* Name;
};

// Duplicated values resolve to the earlier name: clSilver, clGray.
constexpr ColorName kColors[HVCLColorCount + 1] = {
    {TColor(0x000000), "clBlack"},
    {TColor(0x000080), "clMaroon"},
    {TColor(0x008000), "clGreen"},
    {TColor(0x008080), "clOlive"},
    {TColor(0x800000), "clNavy"},
    {TColor(0x800080), "clPurple"},
    {TColor(0x808000), "clTeal"},
    {TColor(0x808080), "clGray"},
    {TColor(0xC0C0C0), "clSilver"},
    {TColor(0x0000FF), "clRed"},
    {TColor(0x00FF00), "clLime"},
    {TColor(0x00FFFF), "clYellow"},
    {TColor(0xFF0000), "clBlue"},
    {TColor(0xFF00FF), "clFuchsia"},
    {TColor(0xFFFF00), "clAqua"},
    {TColor(0xC0C0C0), "clLtGray"},
    {TColor(0x808080), "clDkGray"},
    {TColor(0xFFFFFF), "clWhite"},
    {Graphics::SystemColor(COLOR_SCROLLBAR), "clScrollBar"},
    {Graphics::SystemColor(COLOR_BACKGROUND), "clBackground"},
    {Graphics::SystemColor(COLOR_ACTIVECAPTION), "clActiveCaption"},
    {Graphics::SystemColor(COLOR_INACTIVECAPTION), "clInactiveCaption"},
    {Graphics::SystemColor(COLOR_MENU), "clMenu"},
    {Graphics::SystemColor(COLOR_WINDOW), "clWindow"},
    {Graphics::SystemColor(COLOR_WINDOWFRAME), "clWindowFrame"},
    {Graphics::SystemColor(COLOR_MENUTEXT), "clMenuText"},
    {Graphics::SystemColor(COLOR_WINDOWTEXT), "clWindowText"},
    {Graphics::SystemColor(COLOR_CAPTIONTEXT), "clCaptionText"},
    {Graphics::SystemColor(COLOR_ACTIVEBORDER), "clActiveBorder"},
    {Graphics::SystemColor(COLOR_INACTIVEBORDER), "clInactiveBorder"},
    {Graphics::SystemColor(COLOR_APPWORKSPACE), "clAppWorkSpace"},
    {Graphics::SystemColor(COLOR_HIGHLIGHT), "clHighlight"},
    {Graphics::SystemColor(COLOR_HIGHLIGHTTEXT), "clHighlightText"},
    {Graphics::SystemColor(COLOR_BTNFACE), "clBtnFace"},
    {Graphics::SystemColor(COLOR_BTNSHADOW), "clBtnShadow"},
    {Graphics::SystemColor(COLOR_GRAYTEXT), "clGrayText"},
    {Graphics::SystemColor(COLOR_BTNTEXT), "clBtnText"},
    {Graphics::SystemColor(COLOR_INACTIVECAPTIONTEXT), "clInactiveCaptionText"},
    {Graphics::SystemColor(COLOR_BTNHIGHLIGHT), "clBtnHighlight"},
    {Graphics::SystemColor(COLOR_3DDKSHADOW), "cl3DDkShadow"},
    {Graphics::SystemColor(COLOR_3DLIGHT), "cl3DLight"},
    {Graphics::SystemColor(COLOR_INFOTEXT), "clInfoText"},
    {Graphics::SystemColor(COLOR_INFOBK), "clInfoBk"},
    {HNoColor, nullptr},
};

// Room for "0x" and eight hexadecimal digits.
char sharedColorText[16];

}  // namespace

const char* VCLColor2Str(TColor color) {
  const int index = VCLColorIndexOf(color);
  if (index >= 0) return kColors[index].Name;
  Sprintf(sharedColorText, sizeof sharedColorText, "0x%X", static_cast<unsigned>(color));
  return sharedColorText;
}

int VCLColorIndexOf(TColor color) {
  for (int i = 0; kColors[i].Name; ++i)
    if (kColors[i].Value == color) return i;
  return -1;
}

int VCLColorIndexOf(const char* name) {
  for (int i = 0; kColors[i].Name; ++i)
    if (StrCmp(kColors[i].Name, name, -1, StrCmpExact) == 0) return i;
  return -1;
}

TColor GetVCLColor(int index) { return index >= 0 && index < HVCLColorCount ? kColors[index].Value : HNoColor; }

const char* GetVCLColorName(int index) { return index >= 0 && index < HVCLColorCount ? kColors[index].Name : ""; }

TColor Str2VCLColor(const char* text) {
  if (!text) text = "";
  if (StrCmp(text, "0x", 2, StrCmpExact) == 0) return TColor(Str2Digit(text, 16, HNoColor));
  if (StrCmp(text, "cl", 2, StrCmpExact) == 0) return GetVCLColor(VCLColorIndexOf(text));
  // As atol, but a number too large for 32 bits stops at the limit.
  return TColor(std::strtol(text, nullptr, 10));
}

// The sums wrap as 32-bit arithmetic would, so no step count is undefined.
TColor GetTransColor(TColor from, TColor to, int steps) {
  if (steps == 0) return from;
  if (steps > 8) return to;
  const auto f = static_cast<std::uint32_t>(Graphics::ColorToRGB(from));
  const auto t = static_cast<std::uint32_t>(Graphics::ColorToRGB(to));
  std::uint32_t result = 0;
  for (int shift = 0; shift < 24; shift += 8) {
    const std::uint32_t sum = ((t >> shift) & 0xFF) * (static_cast<std::uint32_t>(steps) - 1) + ((f >> shift) & 0xFF) +
                              static_cast<std::uint32_t>((steps + 1) / 2);
    result |= (static_cast<std::uint32_t>(static_cast<std::int32_t>(sum) / steps) & 0xFF) << shift;
  }
  return TColor(static_cast<int>(result));
}

int Align2DTFlags(Stdctrls::TAlignment alignment, bool horizontal) {
  switch (alignment) {
    case Stdctrls::taRightJustify:
      return horizontal ? DT_RIGHT : DT_BOTTOM;
    case Stdctrls::taCenter:
      return horizontal ? DT_CENTER : DT_VCENTER;
    default:
      return 0;
  }
}

int Layout2DTFlags(Stdctrls::TTextLayout layout) {
  switch (layout) {
    case Stdctrls::tlTop:
      return 0;
    case Stdctrls::tlBottom:
      return DT_BOTTOM;
    default:
      return DT_VCENTER;
  }
}

Controls::TAlign Align2Opposite(Controls::TAlign align) {
  switch (align) {
    case Controls::alTop:
      return Controls::alBottom;
    case Controls::alBottom:
      return Controls::alTop;
    case Controls::alLeft:
      return Controls::alRight;
    case Controls::alRight:
      return Controls::alLeft;
    default:
      return align;
  }
}

bool IsVertical(Controls::TAlign align) { return align == Controls::alLeft || align == Controls::alRight; }

Controls::TShiftState VCLMouseShifts() {
  const struct {
    int key;
    Controls::TShiftStateItem shift;
  } keys[] = {{VK_SHIFT, Controls::ssShift},  {VK_CONTROL, Controls::ssCtrl},  {VK_MENU, Controls::ssAlt},
              {VK_LBUTTON, Controls::ssLeft}, {VK_RBUTTON, Controls::ssRight}, {VK_MBUTTON, Controls::ssMiddle}};
  Controls::TShiftState state;
  for (const auto& k : keys)
    if (GetKeyState(k.key) < 0) state += Controls::TShiftState{k.shift};
  return state;
}

unsigned ShiftToWMParam(Controls::TShiftState shift) {
  const struct {
    Controls::TShiftStateItem shift;
    unsigned flag;
  } flags[] = {{Controls::ssShift, 8},
               {Controls::ssCtrl, 4},
               {Controls::ssLeft, MK_LBUTTON},
               {Controls::ssMiddle, MK_MBUTTON},
               {Controls::ssRight, MK_RBUTTON}};
  unsigned word = 0;
  for (const auto& f : flags)
    if (shift.Contains(f.shift)) word |= f.flag;
  return word;
}

System::AnsiString VCLNormalizeNRString(const System::AnsiString& text) {
  std::string out;
  out.reserve(static_cast<size_t>(text.Length()));
  const char* p = text.c_str();
  const char* end = p + text.Length();
  while (p < end) {
    if (*p == '\r' || *p == '\n') {
      while (p < end && (*p == '\r' || *p == '\n')) ++p;
      out += '\n';
    } else {
      out += *p++;
    }
  }
  return System::AnsiString(out.c_str(), static_cast<int>(out.size()));
}

bool HSelectDirectory(System::AnsiString& directory, bool allowCreate) {
  const Filectrl::TSelectDirOpts options =
      allowCreate ? Filectrl::TSelectDirOpts{Filectrl::sdAllowCreate, Filectrl::sdPerformCreate, Filectrl::sdPrompt}
                  : Filectrl::TSelectDirOpts{};
  return Filectrl::SelectDirectory(directory, options, 0);
}
