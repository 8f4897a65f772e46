#pragma once
/// \file
/// Colours and the system colour constants.
#include "platform/vcl/core/typinfo.h"
#include "platform/vcl/core/vcl_api.h"

namespace Graphics {

/// The framework's 32-bit colour: 0x00BBGGRR for a fixed colour, 0x80000000 +
/// index for a system colour (resolved by ColorToRGB).
enum TColor : int { clMin = -0x7FFFFFFF - 1, clMax = 0x7FFFFFFF };

constexpr TColor clBlack = TColor(0x000000);
constexpr TColor clMaroon = TColor(0x000080);
constexpr TColor clGreen = TColor(0x008000);
constexpr TColor clOlive = TColor(0x008080);
constexpr TColor clNavy = TColor(0x800000);
constexpr TColor clPurple = TColor(0x800080);
constexpr TColor clTeal = TColor(0x808000);
constexpr TColor clGray = TColor(0x808080);
constexpr TColor clSilver = TColor(0xC0C0C0);
constexpr TColor clRed = TColor(0x0000FF);
constexpr TColor clLime = TColor(0x00FF00);
constexpr TColor clYellow = TColor(0x00FFFF);
constexpr TColor clBlue = TColor(0xFF0000);
constexpr TColor clFuchsia = TColor(0xFF00FF);
constexpr TColor clAqua = TColor(0xFFFF00);
constexpr TColor clLtGray = TColor(0xC0C0C0);
constexpr TColor clDkGray = TColor(0x808080);
constexpr TColor clWhite = TColor(0xFFFFFF);

/// System colours: the high bit plus the GetSysColor index.
constexpr TColor SystemColor(int index) { return TColor(static_cast<int>(0x80000000u | static_cast<unsigned>(index))); }
constexpr TColor clScrollBar = SystemColor(0);
constexpr TColor clBackground = SystemColor(1);
constexpr TColor clActiveCaption = SystemColor(2);
constexpr TColor clInactiveCaption = SystemColor(3);
constexpr TColor clMenu = SystemColor(4);
constexpr TColor clWindow = SystemColor(5);
constexpr TColor clWindowFrame = SystemColor(6);
constexpr TColor clMenuText = SystemColor(7);
constexpr TColor clWindowText = SystemColor(8);
constexpr TColor clCaptionText = SystemColor(9);
constexpr TColor clActiveBorder = SystemColor(10);
constexpr TColor clInactiveBorder = SystemColor(11);
constexpr TColor clAppWorkSpace = SystemColor(12);
constexpr TColor clHighlight = SystemColor(13);
constexpr TColor clHighlightText = SystemColor(14);
constexpr TColor clBtnFace = SystemColor(15);
constexpr TColor clBtnShadow = SystemColor(16);
constexpr TColor clGrayText = SystemColor(17);
constexpr TColor clBtnText = SystemColor(18);
constexpr TColor clInactiveCaptionText = SystemColor(19);
constexpr TColor clBtnHighlight = SystemColor(20);
constexpr TColor cl3DDkShadow = SystemColor(21);
constexpr TColor cl3DLight = SystemColor(22);
constexpr TColor clInfoText = SystemColor(23);
constexpr TColor clInfoBk = SystemColor(24);

/// Sentinels used by drawing code: draw nothing / keep the current colour.
constexpr TColor clNone = TColor(0x1FFFFFFF);
constexpr TColor clDefault = TColor(0x20000000);

/// A system colour becomes its current RGB value (GetSysColor of the low byte);
/// every other value, the sentinels included, is returned unchanged.
VCL_API int ColorToRGB(TColor color);

///@{
/// The name of a colour that has one ("clBtnFace"; null otherwise), and the
/// colour of a name (case-insensitive; false when no colour has it).
VCL_API const char* ColorToIdent(long long color);
VCL_API bool IdentToColor(const char* ident, long long& color);
///@}

/// Published colours are integers named where a name exists.
inline const Typinfo::TTypeInfo* TypeInfoOf(TColor*) {
  static const Typinfo::TTypeInfo info = [] {
    Typinfo::TTypeInfo i(Typinfo::tkInteger, "TColor");
    i.IntToIdent = ColorToIdent;
    i.IdentToInt = IdentToColor;
    return i;
  }();
  return &info;
}

}  // namespace Graphics
