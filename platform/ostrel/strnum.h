#pragma once
/// \file
/// Numbers to and from text.
#include "platform/ostrel/ostrel_api.h"

/// Reads text as a whole number in base 2..36 (digits 0-9, then letters a-z or
/// A-Z). Accepted: an optional '-' or '+', then, in base 16 only, an optional
/// "0x"/"0X", then at least one digit, and nothing else (no spaces). The value
/// must fit in 32 bits: without '-' up to 0xFFFFFFFF, returned as the int with
/// the same bits ("FFFFFFFF" in base 16 gives -1, as colour values expect);
/// with '-' down to -2147483648. Anything else (null, empty, bad base, a stray
/// character, overflow) returns defaultValue.
OSTREL_API int Str2Digit(const char* text, int base, int defaultValue);
