#pragma once
/// \file
/// TMeasuringDC: a device context to measure text in as the screen shows it.
#include <windows.h>

#include "platform/vcl/core/vcl_api.h"

namespace Graphics {

/// Lends the process's one memory device context made like the screen's, to
/// measure text in (fonts and metrics as on the screen). Taking the screen's
/// own context costs tens of microseconds a time under some window systems,
/// more than making a control; this one is made once. One lender at a time:
/// the lender holds a lock while it lives, so keep it short, and put back
/// what you select into it (a DCChanger does).
class VCL_API TMeasuringDC {
 public:
  TMeasuringDC();
  ~TMeasuringDC();
  TMeasuringDC(const TMeasuringDC&) = delete;
  TMeasuringDC& operator=(const TMeasuringDC&) = delete;
  HDC get() const { return dc_; }

 private:
  HDC dc_;
};

}  // namespace Graphics
