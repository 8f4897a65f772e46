#pragma once
/// \file
/// Unit Vcl_utils: timed values, the conversions between the framework's
/// vocabulary and other forms, the state of control trees saved and put back,
/// and message pumping from busy loops.
#include "velkin/controls/vcl_control_status.h"
#include "velkin/controls/vcl_conversions.h"
#include "velkin/controls/vcl_messages.h"
#include "velkin/controls/vcl_timed_value.h"
