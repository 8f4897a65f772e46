#pragma once
/// \file
/// Unit Controls: the base of every visual control. A TControl has a place
/// (Left, Top, Width, Height relative to its parent's client area), a parent and
/// a visible flag; a TWinControl adds a real window of the framework's own
/// window class, made on demand and destroyed with the control.
#include "platform/vcl/controls/control.h"
#include "platform/vcl/controls/custom_control.h"
#include "platform/vcl/controls/win_control.h"
