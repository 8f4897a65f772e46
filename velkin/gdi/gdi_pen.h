#pragma once
/// \file
/// Pens with dash patterns behind a lazy handle.
#include <memory>

#include "platform/ostrel/mystring.h"
#include "platform/vcl/core/ansistring.h"
#include "platform/vcl/graphics/color.h"
#include "velkin/gdi/gdi_object.h"

namespace Graphics {
class TPen;
}

/// Whether a pen draws at all.
enum HPenStyle_Types : unsigned char { HPS_Solid = 0, HPS_None = 1 };

/// A geometric pen. Its dash pattern is not given to GDI: it is data for the
/// library's own dashed-line drawing (one bool per pixel, true = draw).
class VELKIN_API HCustomGDIPen : public HGDIObject {
  VCL_CLASS();

 public:
  HCustomGDIPen();
  ~HCustomGDIPen() override;

  /// SetColor and SetPattern raise Changed(), every other setter Dirtied(); all
  /// of them notify even when the value is the same (a refused pattern does not).
  Graphics::TColor GetColor() const { return color_; }
  void SetColor(Graphics::TColor value);
  int GetWidth() const { return width_; }
  /// Negative widths are stored as 0.
  void SetWidth(int value);
  HPenStyle_Types GetStyle() const { return style_; }
  void SetStyle(HPenStyle_Types value);
  bool GetRoundEnd() const { return roundEnd_; }
  void SetRoundEnd(bool value);

  /// Run lengths separated by ",", alternately drawn and skipped, first drawn
  /// ("5,3"). A text with a run below 1, with no runs, or longer than 2^20
  /// pixels in all is ignored; blanks are dropped, so " 5, 3" is stored as "5,3".
  System::AnsiString GetPattern() const { return System::AnsiString(pattern_.Str()); }
  void SetPattern(const System::AnsiString& text);
  /// GetPatternLength() entries (one more is allocated, never read).
  const bool* GetPatternBits() const { return bits_.get(); }
  int GetPatternLength() const { return patternLength_; }

  /// Dispatches on the source's class: a GDI pen, then a framework TPen, else
  /// the inherited conversion error.
  void Assign(Classes::TPersistent* source) override;
  /// Everything, pattern included; the source is refreshed first. Null: nothing.
  void Assign(HCustomGDIPen* source);
  /// Colour and width; style becomes HPS_Solid and the dash style a pattern
  /// (psClear and psInsideFrame become solid). Round end is kept. Null: nothing.
  void Assign(Graphics::TPen* source);

  HGDI_OBJECT_SLOTS();

 private:
  std::unique_ptr<bool[]> bits_;
  int patternLength_ = 0;
  Graphics::TColor color_ = Graphics::clBlack;
  int width_ = 1;
  HPenStyle_Types style_ = HPS_Solid;
  bool roundEnd_ = true;
  MyString pattern_;
};

/// The pen wrapper to make instances of.
class VELKIN_API HGDIPen : public HCustomGDIPen {
  VCL_CLASS();

 public:
  HGDIPen() = default;
};
