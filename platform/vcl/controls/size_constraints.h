#pragma once
/// \file
/// TSizeConstraints: the smallest and largest size a control may take.
#include "platform/vcl/core/classes.h"
#include "platform/vcl/core/closure.h"

namespace Controls {

/// Limits on a control's width and height, 0 for none. Every way the control
/// changes size obeys them: SetBounds, alignment, anchors, and the user
/// dragging a form's frame (for a form they limit the whole window).
class VCL_API TSizeConstraints : public Classes::TPersistent {
  VCL_CLASS();

 public:
  int GetMinWidth() const { return minWidth_; }
  void SetMinWidth(int value) { Set(minWidth_, value); }
  int GetMinHeight() const { return minHeight_; }
  void SetMinHeight(int value) { Set(minHeight_, value); }
  int GetMaxWidth() const { return maxWidth_; }
  void SetMaxWidth(int value) { Set(maxWidth_, value); }
  int GetMaxHeight() const { return maxHeight_; }
  void SetMaxHeight(int value) { Set(maxHeight_, value); }
  /// width and height brought inside the limits (a maximum below the minimum
  /// gives way to the minimum).
  int ConstrainWidth(int width) const { return Constrain(width, minWidth_, maxWidth_); }
  int ConstrainHeight(int height) const { return Constrain(height, minHeight_, maxHeight_); }
  /// Runs after a limit changed, so that the control obeys it at once.
  System::TNotifyEvent GetOnChange() const { return onChange_; }
  void SetOnChange(System::TNotifyEvent value) { onChange_ = value; }

 private:
  void Set(int& field, int value) {
    value = value > 0 ? value : 0;
    if (value == field) return;
    field = value;
    onChange_(this);
  }
  static int Constrain(int size, int min, int max) {
    if (max > 0 && size > max) size = max;
    return size < min ? min : size;
  }

  int minWidth_ = 0, minHeight_ = 0, maxWidth_ = 0, maxHeight_ = 0;
  System::TNotifyEvent onChange_;
};

}  // namespace Controls
