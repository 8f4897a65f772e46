#pragma once
/// \file
/// Controls that paint themselves: without a window (on their parent's) and with one.
#include <memory>

#include "platform/vcl/controls/win_control.h"

namespace Controls {

/// A control without a window of its own, painted by its parent on the
/// parent's window (see Paint).
class VCL_API TGraphicControl : public TControl {
  VCL_CLASS();

 public:
  explicit TGraphicControl(Classes::TComponent* owner);
  void SetText(const AnsiString& value) override;
  /// Paints the control on dc, whose origin is the control's top-left corner
  /// and whose clip is the control's area.
  virtual void Paint(HDC dc) = 0;
};

/// A windowed control that paints itself: Paint draws on Canvas, which holds
/// the window's paint context while Paint runs.
class VCL_API TCustomControl : public TWinControl {
  VCL_CLASS();

 public:
  explicit TCustomControl(Classes::TComponent* owner);
  ~TCustomControl() override;
  Graphics::TCanvas* GetCanvas() const { return canvas_.get(); }
  void WndProc(TMessage& message) override;

 protected:
  /// Draws the control; the default fills it with its Color.
  virtual void Paint();

 private:
  std::unique_ptr<Graphics::TCanvas> canvas_;
};

}  // namespace Controls
