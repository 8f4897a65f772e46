#pragma once
/// \file
/// Unit ExtCtrls, panels: containers with a bevelled edge and a caption.
#include "platform/vcl/controls/controls.h"
#include "platform/vcl/core/typinfo.h"

namespace Extctrls {

using System::AnsiString;

/// The edge of a bevel: none, sunk, raised, or a flat space.
enum TBevelCut { bvNone, bvLowered, bvRaised, bvSpace };
VCL_ENUM_INFO(TBevelCut, bvNone, bvLowered, bvRaised, bvSpace)

/// A panel: a windowed container that draws its bevels and its caption
/// centred.
class VCL_API TCustomPanel : public Controls::TWinControl {
  VCL_CLASS();

 public:
  explicit TCustomPanel(Classes::TComponent* owner);
  TBevelCut GetBevelOuter() const { return bevelOuter_; }
  void SetBevelOuter(TBevelCut value);
  TBevelCut GetBevelInner() const { return bevelInner_; }
  void SetBevelInner(TBevelCut value);

  void WndProc(Controls::TMessage& message) override;

 private:
  void Paint(HDC dc);

  TBevelCut bevelOuter_ = bvRaised;
  TBevelCut bevelInner_ = bvNone;
};

/// The panel to make instances of.
class VCL_API TPanel : public TCustomPanel {
  VCL_CLASS();

 public:
  using TCustomPanel::TCustomPanel;
};

}  // namespace Extctrls
