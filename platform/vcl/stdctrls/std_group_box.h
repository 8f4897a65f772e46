#pragma once
/// \file
/// Unit StdCtrls, group boxes: a captioned frame round related controls.
#include "platform/vcl/controls/controls.h"

namespace Stdctrls {

/// A group box: the system's group frame with its caption in the top edge,
/// holding the controls it groups. Its client area, where aligned children
/// go, lies inside the frame and below the caption.
class VCL_API TCustomGroupBox : public Controls::TWinControl {
  VCL_CLASS();

 public:
  explicit TCustomGroupBox(Classes::TComponent* owner);
  MyRect GetClientRect() const override;
  void WndProc(Controls::TMessage& message) override;

 protected:
  void CreateParams(Controls::TCreateParams& params) override;
};

/// The group box to make instances of.
class VCL_API TGroupBox : public TCustomGroupBox {
  VCL_CLASS();

 public:
  using TCustomGroupBox::TCustomGroupBox;
};

}  // namespace Stdctrls
