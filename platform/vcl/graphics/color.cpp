#include "platform/vcl/graphics/color.h"

#include <windows.h>

#include <iterator>

namespace Graphics {

int ColorToRGB(TColor color) {
  if (color < 0) return static_cast<int>(GetSysColor(color & 0xFF));
  return color;
}

namespace {

struct ColorName {
  TColor color;
  const char* name;
};

// The named colours, as form descriptions write them. clLtGray and clDkGray
// are clSilver and clGray under other names: the first name wins.
constexpr ColorName kColorNames[] = {
    {clBlack, "clBlack"},
    {clMaroon, "clMaroon"},
    {clGreen, "clGreen"},
    {clOlive, "clOlive"},
    {clNavy, "clNavy"},
    {clPurple, "clPurple"},
    {clTeal, "clTeal"},
    {clGray, "clGray"},
    {clSilver, "clSilver"},
    {clRed, "clRed"},
    {clLime, "clLime"},
    {clYellow, "clYellow"},
    {clBlue, "clBlue"},
    {clFuchsia, "clFuchsia"},
    {clAqua, "clAqua"},
    {clWhite, "clWhite"},
    {clLtGray, "clLtGray"},
    {clDkGray, "clDkGray"},
    {clScrollBar, "clScrollBar"},
    {clBackground, "clBackground"},
    {clActiveCaption, "clActiveCaption"},
    {clInactiveCaption, "clInactiveCaption"},
    {clMenu, "clMenu"},
    {clWindow, "clWindow"},
    {clWindowFrame, "clWindowFrame"},
    {clMenuText, "clMenuText"},
    {clWindowText, "clWindowText"},
    {clCaptionText, "clCaptionText"},
    {clActiveBorder, "clActiveBorder"},
    {clInactiveBorder, "clInactiveBorder"},
    {clAppWorkSpace, "clAppWorkSpace"},
    {clHighlight, "clHighlight"},
    {clHighlightText, "clHighlightText"},
    {clBtnFace, "clBtnFace"},
    {clBtnShadow, "clBtnShadow"},
    {clGrayText, "clGrayText"},
    {clBtnText, "clBtnText"},
    {clInactiveCaptionText, "clInactiveCaptionText"},
    {clBtnHighlight, "clBtnHighlight"},
    {cl3DDkShadow, "cl3DDkShadow"},
    {cl3DLight, "cl3DLight"},
    {clInfoText, "clInfoText"},
    {clInfoBk, "clInfoBk"},
    {clNone, "clNone"},
    {clDefault, "clDefault"},
};

}  // namespace

const char* ColorToIdent(long long color) {
  for (const ColorName& c : kColorNames)
    if (c.color == color) return c.name;
  return nullptr;
}

bool IdentToColor(const char* ident, long long& color) {
  for (const ColorName& c : kColorNames)
    if (Sysutils::SameText(c.name, ident)) {
      color = c.color;
      return true;
    }
  return false;
}

}  // namespace Graphics
