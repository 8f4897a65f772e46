#pragma once
/// \file
/// Fonts behind a lazy handle, with text measuring.
#include <windows.h>

#include "platform/ostrel/mygeom.h"
#include "platform/vcl/core/ansistring.h"
#include "platform/vcl/graphics/color.h"
#include "velkin/gdi/gdi_charset.h"
#include "velkin/gdi/gdi_object.h"

namespace Graphics {
class TFont;
}

/// A font over a LOGFONTA record, which starts as the stock ANSI_VAR_FONT.
/// Selecting it also sets the context's text colour to the font colour;
/// restoring puts the previous text colour back.
class VELKIN_API HCustomGDIFont : public HGDIObject {
  VCL_CLASS();

 public:
  HCustomGDIFont();
  ~HCustomGDIFont() override;

  /// Every setter does nothing when the value is unchanged; SetColor raises
  /// Changed(), the others Dirtied().
  /// Size and Height both are lfHeight (logical units, no point conversion);
  /// SetSize also zeroes lfWidth.
  int GetSize() const { return logFont_.lfHeight; }
  void SetSize(int value);
  int GetHeight() const { return logFont_.lfHeight; }
  void SetHeight(int value);
  int GetWidth() const { return logFont_.lfWidth; }
  void SetWidth(int value);
  /// Whole degrees; lfEscapement holds tenths (lfOrientation is left alone).
  int GetAngle() const { return logFont_.lfEscapement / 10; }
  void SetAngle(int value);
  bool GetBold() const { return logFont_.lfWeight == FW_BOLD; }
  void SetBold(bool value);
  /// Stores the weight, but reads back as Bold does (lfWeight == 700).
  bool GetWeight() const { return GetBold(); }
  void SetWeight(int value);
  bool GetItalic() const { return logFont_.lfItalic != 0; }
  void SetItalic(bool value);
  bool GetUnderline() const { return logFont_.lfUnderline != 0; }
  void SetUnderline(bool value);
  bool GetStrikeout() const { return logFont_.lfStrikeOut != 0; }
  void SetStrikeout(bool value);
  System::AnsiString GetFontName() const { return System::AnsiString(logFont_.lfFaceName); }
  /// Compared without case; longer names are cut to 31 characters.
  void SetFontName(const System::AnsiString& value);
  HFontCharset GetCharset() const { return hfValue2Charset(logFont_.lfCharSet); }
  void SetCharset(HFontCharset value);
  int GetCharsetIndex() const { return hfCharset2Index(GetCharset()); }
  void SetCharsetIndex(int value) { SetCharset(hfIndex2Charset(value)); }
  Graphics::TColor GetColor() const { return color_; }
  void SetColor(Graphics::TColor value);
  /// VARIABLE_PITCH set; the setter writes the whole pitch-and-family byte.
  bool GetVariable() const { return (logFont_.lfPitchAndFamily & VARIABLE_PITCH) != 0; }
  void SetVariable(bool value);

  const LOGFONTA& GetLogFont() const { return logFont_; }

  /// Size of the text drawn in this font, measured on dc, or on the pool's
  /// shared memory context when dc is null (the pool starts on first use).
  /// Raises the pool's exception when that context cannot be made.
  MyPoint TextSize(const char* text, void* dc = nullptr);

  /// Dispatches: a GDI font, then a framework TFont (ignored), else the
  /// conversion error.
  void Assign(Classes::TPersistent* source) override;
  /// The whole LOGFONTA and the colour. Null: nothing.
  void Assign(HCustomGDIFont* source);
  /// Does nothing: framework fonts are not converted here.
  void Assign(Graphics::TFont* source);

  HGDI_OBJECT_SLOTS();

 private:
  LOGFONTA logFont_;
  COLORREF oldTextColor_ = 0;
  Graphics::TColor color_ = Graphics::clBlack;
};

/// The font wrapper to make instances of.
class VELKIN_API HGDIFont : public HCustomGDIFont {
  VCL_CLASS();

 public:
  HGDIFont() = default;
};
