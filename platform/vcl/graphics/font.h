#pragma once
/// \file
/// Fonts whose handle is made on demand.
#include <windows.h>

#include "platform/ostrel/owned_handle.h"
#include "platform/vcl/core/ansistring.h"
#include "platform/vcl/core/set.h"
#include "platform/vcl/core/typinfo.h"
#include "platform/vcl/graphics/color.h"
#include "platform/vcl/graphics/object.h"

namespace Graphics {

/// Bold, italic, underlined, struck out.
enum TFontStyle { fsBold, fsItalic, fsUnderline, fsStrikeOut };
VCL_ENUM_INFO(TFontStyle, fsBold, fsItalic, fsUnderline, fsStrikeOut)
using TFontStyles = System::Set<TFontStyle, fsBold, fsStrikeOut>;
/// Whether all characters are as wide.
enum TFontPitch { fpDefault, fpVariable, fpFixed };
VCL_ENUM_INFO(TFontPitch, fpDefault, fpVariable, fpFixed)
using TFontCharset = unsigned char;

/// A font described by name, size (points) or height (pixels), style, charset
/// and pitch; the GDI handle is made on demand and dropped after every change.
/// Size and Height are two views of one value: Height = -Size * PixelsPerInch / 72.
class VCL_API TFont : public TGraphicsObject {
  VCL_CLASS();

 public:
  TFont();
  ~TFont() override;
  TFont(const TFont&) = delete;
  TFont& operator=(const TFont&) = delete;

  System::AnsiString GetName() const { return name_; }
  /// An empty name is ignored.
  void SetName(const System::AnsiString& value);
  int GetSize() const;
  void SetSize(int value);
  int GetHeight() const { return height_; }
  void SetHeight(int value);
  TColor GetColor() const { return color_; }
  void SetColor(TColor value);
  TFontStyles GetStyle() const { return style_; }
  void SetStyle(const TFontStyles& value);
  TFontCharset GetCharset() const { return charset_; }
  void SetCharset(TFontCharset value);
  TFontPitch GetPitch() const { return pitch_; }
  void SetPitch(TFontPitch value);
  /// The resolution Size is converted with; the screen's by default.
  int GetPixelsPerInch() const { return pixelsPerInch_; }
  void SetPixelsPerInch(int value);

  /// The font's handle, created when first asked for; owned by the font.
  HFONT GetHandle();
  bool HandleAllocated() const { return static_cast<bool>(handle_); }

  void Assign(Classes::TPersistent* source) override;

 protected:
  void Changed() override;

 private:
  System::AnsiString name_ = "MS Sans Serif";
  int height_ = 0;
  TColor color_ = clWindowText;
  TFontStyles style_;
  TFontCharset charset_ = DEFAULT_CHARSET;
  TFontPitch pitch_ = fpDefault;
  int pixelsPerInch_ = 96;
  OwnedFont handle_;
};

}  // namespace Graphics
