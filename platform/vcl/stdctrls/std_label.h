#pragma once
/// \file
/// Unit StdCtrls, labels: text painted on the parent's window.
#include "platform/vcl/controls/controls.h"
#include "platform/vcl/core/typinfo.h"

namespace Stdctrls {

using System::AnsiString;

/// Where text goes across.
enum TAlignment { taLeftJustify, taRightJustify, taCenter };
VCL_ENUM_INFO(TAlignment, taLeftJustify, taRightJustify, taCenter)
/// Where text goes down.
enum TTextLayout { tlTop, tlCenter, tlBottom };
VCL_ENUM_INFO(TTextLayout, tlTop, tlCenter, tlBottom)

/// A label: its caption drawn in the parent's font, '&' underlining the
/// next letter. AutoSize (on by default) fits the label to its text as it is
/// drawn: as wide as the text's ink reaches, measured or not, and one column
/// more, so that no renderer cuts its last letter.
class VCL_API TCustomLabel : public Controls::TGraphicControl {
  VCL_CLASS();

 public:
  explicit TCustomLabel(Classes::TComponent* owner);

  void SetText(const AnsiString& value) override;
  TAlignment GetAlignment() const { return alignment_; }
  void SetAlignment(TAlignment value);
  TTextLayout GetLayout() const { return layout_; }
  void SetLayout(TTextLayout value);
  /// Transparent: the parent shows through; else the button face colour fills it.
  bool GetTransparent() const { return transparent_; }
  void SetTransparent(bool value);
  bool GetAutoSize() const { return autoSize_; }
  void SetAutoSize(bool value);
  bool GetWordWrap() const { return wordWrap_; }
  void SetWordWrap(bool value);
  /// The control the label's '&' letter focuses.
  Controls::TWinControl* GetFocusControl() const { return focusControl_; }
  void SetFocusControl(Controls::TWinControl* value);

  void Paint(HDC dc) override;
  /// Alt and the caption's '&' letter focus FocusControl.
  void WndProc(Controls::TMessage& message) override;

 protected:
  void Notification(Classes::TComponent* component, Classes::TOperation operation) override;
  /// Fits the label once every value is read, whatever order they came in.
  void Loaded() override;

 private:
  UINT DrawFlags() const;
  void AdjustSize();

  TAlignment alignment_ = taLeftJustify;
  TTextLayout layout_ = tlTop;
  bool transparent_ = false;
  bool autoSize_ = true;
  bool wordWrap_ = false;
  int margin_ = 0;  // room AdjustSize gave past the measured text, for its ink
  Controls::TWinControl* focusControl_ = nullptr;
};

/// The label to make instances of.
class VCL_API TLabel : public TCustomLabel {
  VCL_CLASS();

 public:
  using TCustomLabel::TCustomLabel;
};

}  // namespace Stdctrls
