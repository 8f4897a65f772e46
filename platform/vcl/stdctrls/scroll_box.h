#pragma once
/// \file
/// Unit Forms, scrolling: containers whose contents scroll when they do not
/// fit.
#include "platform/vcl/controls/controls.h"
#include "platform/vcl/forms/forms.h"
#include "platform/vcl/stdctrls/com_ranges.h"

namespace Forms {

class TScrollingWinControl;

/// One scroll bar of a scrolling container. Range is how far the contents
/// reach (the right or bottom edge of the farthest control, scrolled or
/// not); the bar shows while Range exceeds the client area.
class VCL_API TControlScrollBar : public Classes::TPersistent {
  VCL_CLASS();

 public:
  TControlScrollBar(TScrollingWinControl* control, Stdctrls::TScrollBarKind kind);
  Stdctrls::TScrollBarKind GetKind() const { return kind_; }
  /// How far the contents are scrolled, 0 .. Range - client size.
  int GetPosition() const { return position_; }
  void SetPosition(int value);
  int GetRange() const;
  /// The step of an arrow click (a page is the client size).
  int GetIncrement() const { return increment_; }
  void SetIncrement(int value) { increment_ = value > 0 ? value : 1; }
  bool IsScrollBarVisible() const;

 private:
  friend class TScrollingWinControl;
  int ClientSize() const;
  int MaxPosition() const { return std::max(0, GetRange() - ClientSize()); }
  void Scroll(WORD code);

  TScrollingWinControl* control_;
  Stdctrls::TScrollBarKind kind_;
  int position_ = 0;
  int increment_ = 8;
};

/// A container whose controls scroll (their Left and Top move) when they
/// reach beyond its client area, by its scroll bars or the mouse wheel.
class VCL_API TScrollingWinControl : public Controls::TWinControl {
  VCL_CLASS();

 public:
  explicit TScrollingWinControl(Classes::TComponent* owner);
  ~TScrollingWinControl() override;
  TControlScrollBar* GetHorzScrollBar() const { return horz_.get(); }
  TControlScrollBar* GetVertScrollBar() const { return vert_.get(); }
  /// Scrolls so that control lies wholly inside the client area.
  void ScrollInView(Controls::TControl* control);
  /// Moves the contents by dx, dy pixels.
  void ScrollBy(int dx, int dy);
  void WndProc(Controls::TMessage& message) override;

 protected:
  void CreateWnd() override;
  void ChildrenChanged() override { UpdateScrollBars(); }
  void Resize() override { UpdateScrollBars(); }

 private:
  friend class TControlScrollBar;
  void UpdateScrollBars();

  std::unique_ptr<TControlScrollBar> horz_, vert_;
  int scrolling_ = 0;  // the contents are being moved: their changes are ours
};

/// A scroll box: a scrolling container with a sunk border (BorderStyle
/// bsSingle, or bsNone).
class VCL_API TScrollBox : public TScrollingWinControl {
  VCL_CLASS();

 public:
  explicit TScrollBox(Classes::TComponent* owner);
  TFormBorderStyle GetBorderStyle() const { return borderStyle_; }
  void SetBorderStyle(TFormBorderStyle value);

 protected:
  void CreateParams(Controls::TCreateParams& params) override;

 private:
  TFormBorderStyle borderStyle_ = bsSingle;
};

}  // namespace Forms
