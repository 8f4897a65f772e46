#pragma once
/// \file
/// Unit Buttons: a flat tool button without a window, and a push button
/// with a picture.
#include <memory>

#include "platform/vcl/controls/controls.h"
#include "platform/vcl/graphics/bitmap.h"
#include "platform/vcl/stdctrls/std_buttons.h"

namespace Buttons {

using System::AnsiString;

/// Draws glyph (its bottom-left pixel's colour transparent) and caption side
/// by side, centred in r: the face of both kinds of button. Grey text when
/// not enabled.
VCL_API void DrawButtonFace(HDC dc, RECT r, Graphics::TBitmap* glyph, const AnsiString& caption, HFONT font,
                            bool enabled);

/// A speed button: a windowless button for tool bars. With a GroupIndex it
/// stays Down once clicked, and clicking it lets the others of its group on
/// the same parent up; AllowAllUp lets a click raise the one that is down.
/// A Flat button shows its edge only while pressed or down.
class VCL_API TSpeedButton : public Controls::TGraphicControl {
  VCL_CLASS();

 public:
  explicit TSpeedButton(Classes::TComponent* owner);
  ~TSpeedButton() override;
  bool GetDown() const { return down_; }
  void SetDown(bool value);
  int GetGroupIndex() const { return groupIndex_; }
  void SetGroupIndex(int value);
  bool GetAllowAllUp() const { return allowAllUp_; }
  void SetAllowAllUp(bool value) { allowAllUp_ = value; }
  bool GetFlat() const { return flat_; }
  void SetFlat(bool value);
  /// The picture beside the caption.
  Graphics::TBitmap* GetGlyph() const { return glyph_.get(); }
  void SetGlyph(Graphics::TBitmap* value);

  void Click() override;
  void Paint(HDC dc) override;

 protected:
  void MouseDown(Controls::TMouseButton button, Controls::TShiftState shift, int x, int y) override;
  void MouseMove(Controls::TShiftState shift, int x, int y) override;
  void MouseUp(Controls::TMouseButton button, Controls::TShiftState shift, int x, int y) override;

 private:
  void SetPressed(bool value);
  void GlyphChanged(System::TObject*) { Invalidate(); }

  bool down_ = false;
  bool pressed_ = false;   // the mouse holds it in
  bool tracking_ = false;  // a press by the left button is under way
  int groupIndex_ = 0;
  bool allowAllUp_ = false;
  bool flat_ = false;
  std::unique_ptr<Graphics::TBitmap> glyph_;
};

/// A push button with a picture beside its caption. It draws itself on the
/// system's push-button frame, the default button with its dark border.
class VCL_API TBitBtn : public Stdctrls::TButton {
  VCL_CLASS();

 public:
  explicit TBitBtn(Classes::TComponent* owner);
  ~TBitBtn() override;
  Graphics::TBitmap* GetGlyph() const { return glyph_.get(); }
  void SetGlyph(Graphics::TBitmap* value);

 protected:
  UINT PushStyle() const override { return BS_OWNERDRAW; }
  void Notified(Controls::TMessage& message) override;

 private:
  void GlyphChanged(System::TObject*) { Invalidate(); }

  std::unique_ptr<Graphics::TBitmap> glyph_;
};

}  // namespace Buttons
