#pragma once
/// \file
/// The screen's density, read once and kept until the system says it changed.
#include "platform/vcl/core/vcl_api.h"

namespace Graphics {

/// The screen's pixels per inch (96 at 100 %). Asking the screen costs more
/// than making a control, so the value is read once and kept.
VCL_API int ScreenPixelsPerInch();
/// Reads the density again: the framework's windows call it when the system
/// reports a change of settings, display or density.
VCL_API void RefreshScreenPixelsPerInch();

}  // namespace Graphics
