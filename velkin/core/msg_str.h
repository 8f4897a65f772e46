#pragma once
#include "velkin/velkin_api.h"

/// \file
/// Symbolic names of window messages, for tracing.

/// A window message number and its symbolic name.
struct HMsgName {
  unsigned long Msg;
  const char* Name;
};

/// 68 component messages, 24 reflected notifications, 208 window messages and a
/// closing entry {0, ""}.
constexpr int WinMsgNameCount = 301;
VELKIN_API extern const HMsgName WinMsgNames[WinMsgNameCount];

/// The message's name, or its number as at least four upper-case hexadecimal
/// digits ("1234", "ABCDE") in a static buffer that the next unknown number
/// overwrites. Not for several threads at once.
VELKIN_API const char* WinMsg2Str(unsigned long msg);
