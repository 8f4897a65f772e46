#pragma once
/// \file
/// The base of pens, brushes and fonts: change events.
#include "platform/vcl/core/classes.h"
#include "platform/vcl/core/vcl_api.h"

namespace Graphics {

/// Base of pen, brush and font: a persistent object that tells its owner (the
/// canvas) about every change through OnChange.
class VCL_API TGraphicsObject : public Classes::TPersistent {
  VCL_CLASS();

 public:
  System::TNotifyEvent GetOnChange() const { return onChange_; }
  void SetOnChange(System::TNotifyEvent value) { onChange_ = value; }

 protected:
  /// Fires OnChange; subclasses drop their OS handle afterwards, so a canvas
  /// listening here deselects it while it still exists.
  virtual void Changed();

 private:
  System::TNotifyEvent onChange_;
};

}  // namespace Graphics
