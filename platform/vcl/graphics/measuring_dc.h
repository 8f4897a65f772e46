#pragma once
/// \file
/// TMeasuringDC: a device context to measure text in as the screen shows it.
#include <windows.h>

#include <string>

#include "platform/vcl/core/vcl_api.h"

namespace Graphics {

/// Lends the process's one memory device context made like the screen's, to
/// measure text in (fonts and metrics as on the screen). Taking the screen's
/// own context costs tens of microseconds a time under some window systems,
/// more than making a control; this one is made once. One lender at a time:
/// the lender holds a lock while it lives, so keep it short, and put back
/// what you select into it (a DCChanger does).
class VCL_API TMeasuringDC {
 public:
  TMeasuringDC();
  ~TMeasuringDC();
  TMeasuringDC(const TMeasuringDC&) = delete;
  TMeasuringDC& operator=(const TMeasuringDC&) = delete;
  HDC get() const { return dc_; }
  /// Selects font to measure in, for this lending; selecting costs more than
  /// measuring, so the lasting font stays selected between lendings.
  void UseFont(HFONT font) const;
  /// A font that lives as long as the process (the message font every
  /// control starts with), which may stay selected.
  static void SetLastingFont(HFONT font);

  /// The rectangle DrawTextW with DT_CALCRECT gives text in the font
  /// selected now (width: the room for DT_WORDBREAK); a single plain line is
  /// measured without laying it out.
  RECT TextRect(const wchar_t* text, int length, UINT flags, int width = 0) const;

  /// How far right the ink of text reaches when DrawTextW draws it with flags
  /// in the font selected now into laidOut (the rectangle DT_CALCRECT gave):
  /// one past the last column with ink, counted from laidOut.left; 0 when
  /// nothing is inked. A renderer may place glyphs further apart than it
  /// measures them (this Wine's monochrome glyphs by up to two pixels a
  /// letter), so a box as wide as the measured text can cut its last letter;
  /// this is what it must hold. Drawn on a bitmap the context keeps selected,
  /// over the text colour, background colour and mode the context starts with.
  int InkRight(const wchar_t* text, int length, const RECT& laidOut, UINT flags) const;

 private:
  HDC dc_;
};

/// An 8-bit text of the active ANSI code page as UTF-16, for drawing and
/// measuring through the wide functions: under Wine the 8-bit GDI functions
/// read a UTF-8 program's text as a single-byte code page.
VCL_API std::wstring WideText(const char* text, int length);

/// UTF-16 text in the active ANSI code page, for what the wide functions give
/// whole where the 8-bit ones have fixed room (UTF-8 takes up to three bytes
/// for a character).
VCL_API std::string AnsiText(const wchar_t* text, int length);

/// An 8-bit text as UTF-16 as GDI's 8-bit functions would read it on dc (in
/// the code page of the charset of the font selected into it), except in a
/// UTF-8 program, whose texts are UTF-8 whatever the font: under Wine the 8-bit
/// functions read them in the font's single-byte code page. Drawing and
/// measuring go through the wide functions with it.
VCL_API std::wstring DrawnText(HDC dc, const char* text, int length);

}  // namespace Graphics
