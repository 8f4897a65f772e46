#pragma once
/// \file
/// Unit Vcl_utils: timed values and the conversions between the framework's
/// vocabulary and other forms.
#include "velkin/controls/vcl_conversions.h"
#include "velkin/controls/vcl_timed_value.h"
